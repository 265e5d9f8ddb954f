// The parameters as the host gets to see them.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "entry/KAL_Orv.h"
#include "entry/tinyHost.h"
#include "geometry/paramIndex.h"

namespace {

class ParamsSetupTest : public testing::Test {
protected:
    PF_Err Send()
    {
        return EntryPointFunc(PF_Cmd_PARAMS_SETUP, &host_.in_data, &host_.out_data, nullptr,
                              nullptr, nullptr);
    }
    /// By the index of the `params` array.
    const PF_ParamDef& Param(PF_ParamIndex index)
    {
        return host_.params.at(static_cast<std::size_t>(index) - 1);
    }
    tinyHost host_;
};

TEST_F(ParamsSetupTest, AddsAllInOrder)
{
    ASSERT_EQ(Send(), PF_Err_NONE);
    EXPECT_EQ(host_.out_data.num_params, 283);
    ASSERT_EQ(host_.params.size(), 282u);

    // Paths are placed, all others appended.
    for (PF_ParamIndex index = 1; index < kParamCount; ++index) {
        const bool path = index == 14 || index == 29 || index == 31 || index == 252;
        EXPECT_EQ(Param(index).param_type == PF_Param_PATH, path) << index;
        EXPECT_EQ(host_.positions.at(static_cast<std::size_t>(index) - 1), path ? index : -1);
    }
}

TEST_F(ParamsSetupTest, GroupsNest)
{
    ASSERT_EQ(Send(), PF_Err_NONE);
    std::vector<PF_ParamIndex> open;
    std::vector<std::pair<PF_ParamIndex, PF_ParamIndex>> groups;
    for (PF_ParamIndex index = 1; index < kParamCount; ++index) {
        if (Param(index).param_type == PF_Param_GROUP_START) open.push_back(index);
        if (Param(index).param_type != PF_Param_GROUP_END) continue;
        ASSERT_FALSE(open.empty()) << index;
        groups.emplace_back(open.back(), index);
        open.pop_back();
    }
    EXPECT_TRUE(open.empty());
    EXPECT_EQ(groups, (std::vector<std::pair<PF_ParamIndex, PF_ParamIndex>>{{5, 13},
                                                                            {1, 27},
                                                                            {42, 144},
                                                                            {145, 247},
                                                                            {28, 248},
                                                                            {256, 265},
                                                                            {249, 266},
                                                                            {271, 275},
                                                                            {267, 280}}));
}

TEST_F(ParamsSetupTest, EndsAtTheFirstAddThatIsRefused)
{
    host_.refusedParam = 150;
    EXPECT_EQ(Send(), PF_Err_INVALID_INDEX);
    EXPECT_EQ(host_.params.size(), 149u);
    EXPECT_EQ(host_.out_data.num_params, 0);
}

struct commonCase {
    PF_ParamIndex index;
    A_long id;
    PF_ParamType type;
    const char* name;
    PF_ParamFlags flags;
};

TEST_F(ParamsSetupTest, RowsHaveTheirIdsNamesAndFlags)
{
    ASSERT_EQ(Send(), PF_Err_NONE);
    for (const commonCase& c : {
             commonCase{1, 18, PF_Param_GROUP_START, "Source parameters", 0},
             {2, 3, PF_Param_LAYER, "Source", 0},
             {6, 22, PF_Param_POPUP, "Rotation", 2},
             {14, 268, PF_Param_PATH, "Reference mask", 64},
             {16, 42, PF_Param_LAYER, "Back face source", 0},
             {17, 1, PF_Param_FLOAT_SLIDER, "Mesh definition", 2},
             {19, 11, PF_Param_ANGLE, "Twist at start", 32},
             {26, 263, PF_Param_FLOAT_SLIDER, "Undistorted end", 0},
             {29, 4, PF_Param_PATH, "Mask", 64},
             {31, 267, PF_Param_PATH, "Reference mask", 64},
             {42, 50, PF_Param_GROUP_START, "Mask Z parameters", 512},
             {43, 51, PF_Param_FLOAT_SLIDER, "Z at vertex 1", 0},
             {51, 59, PF_Param_FLOAT_SLIDER, "Z at vertex 9", 0},
             {142, 150, PF_Param_FLOAT_SLIDER, "Z at vertex 100", 0},
             {143, 282, PF_Param_CHECKBOX, "Smooth Z interpolation", 0},
             {144, 151, PF_Param_GROUP_END, "", 0},
             {146, 161, PF_Param_FLOAT_SLIDER, "Scale at vertex 1", 0},
             {245, 260, PF_Param_FLOAT_SLIDER, "Scale at vertex 100", 0},
             {246, 281, PF_Param_CHECKBOX, "Smooth scale interpolation", 0},
             {252, 153, PF_Param_PATH, "Contour mask", 0},
             {254, 155, PF_Param_COLOR, "Contour color", 0},
             {268, 272, PF_Param_POINT_3D, "Anchor", 0},
             {271, 284, PF_Param_GROUP_START, "Separate dimensions (X,Y,Z)", 0},
             {279, 10, PF_Param_POPUP, "Camera mode", 0},
             {282, 270, PF_Param_CHECKBOX, "Allow maximum texture size", 66},
         }) {
        const PF_ParamDef& def = Param(c.index);
        EXPECT_EQ(def.uu.id, c.id) << c.index;
        EXPECT_EQ(def.param_type, c.type) << c.index;
        EXPECT_STREQ(def.name, c.name) << c.index;
        EXPECT_EQ(def.flags, c.flags) << c.index;
        EXPECT_EQ(def.ui_flags, 0) << c.index;
    }
}

struct sliderCase {
    PF_ParamIndex index;
    double value;
    float validMin, validMax, sliderMin, sliderMax;
    A_short display;
};

TEST_F(ParamsSetupTest, SlidersHaveTheirValuesAndRanges)
{
    ASSERT_EQ(Send(), PF_Err_NONE);
    for (const sliderCase& c : {
             sliderCase{4, 0, 0, 1000000, 0, 1000, 0},
             {7, 100, -1000, 1000, 0, 100, 1},
             {12, 0, 0, 100, 0, 100, 1},
             {15, 100, 0, 1000, 0, 100, 1},
             {17, 25, 1, 200, 1, 100, 1},
             {32, 0, -1000000, 1000000, 0, 100, 1},
             {41, 100, -1000, 1000, 0, 100, 1},
             {142, 0, -1000000, 1000000, -1000, 1000, 0},
             {245, 100, 0, 1000, 0, 100, 1},
             {250, 0.1, 0.1f, 1000, 0.1f, 100, 0},
             {253, 50, 0, 100, 0, 100, 1},
             {260, 5, 0, 100, 0, 100, 0},
             {262, 15, 0, 100, 0, 100, 0},
             {270, 100, -1000, 1000, 0, 100, 1},
         }) {
        const PF_FloatSliderDef& def = Param(c.index).u.fs_d;
        EXPECT_EQ(def.value, c.value) << c.index;
        EXPECT_EQ(def.dephault, static_cast<float>(c.value)) << c.index;
        EXPECT_EQ(def.valid_min, c.validMin) << c.index;
        EXPECT_EQ(def.valid_max, c.validMax) << c.index;
        EXPECT_EQ(def.slider_min, c.sliderMin) << c.index;
        EXPECT_EQ(def.slider_max, c.sliderMax) << c.index;
        EXPECT_EQ(def.display_flags, c.display) << c.index;
        EXPECT_EQ(def.precision, 2) << c.index;
        EXPECT_EQ(def.curve_tolerance, 0.05f) << c.index;
    }

    const PF_SliderDef& subSampling = Param(18).u.sd;
    EXPECT_EQ(subSampling.value, 2);
    EXPECT_EQ(subSampling.valid_min, 2);
    EXPECT_EQ(subSampling.valid_max, 100);
    EXPECT_EQ(subSampling.slider_max, 10);
    const PF_SliderDef& layers = Param(251).u.sd;
    EXPECT_EQ(layers.dephault, 1);
    EXPECT_EQ(layers.valid_min, 0);
    EXPECT_EQ(layers.valid_max, 500);
}

TEST_F(ParamsSetupTest, ChoicesBoxesAndOtherTypesHaveTheirValues)
{
    ASSERT_EQ(Send(), PF_Err_NONE);

    const PF_PopupDef& rotation = Param(6).u.pd;
    EXPECT_STREQ(rotation.namesptr, "0°|90°|180°|270°");
    EXPECT_EQ(rotation.num_choices, 4);
    EXPECT_EQ(rotation.value, 1);
    EXPECT_EQ(rotation.dephault, 1);
    EXPECT_STREQ(Param(3).u.pd.namesptr, "Current time|Selector");
    EXPECT_STREQ(Param(279).u.pd.namesptr, "2D|3D (composition)");
    EXPECT_EQ(Param(279).u.pd.num_choices, 2);
    EXPECT_STREQ(Param(281).u.pd.namesptr, "None|Over original|Under original");
    EXPECT_EQ(Param(281).u.pd.num_choices, 3);

    struct boxCase {
        PF_ParamIndex index;
        A_long on;
        const char* text;
    };
    for (const boxCase& c : {boxCase{30, 0, ""},
                             {33, 1, "(open masks only)"},
                             {35, 0, ""},
                             {143, 1, ""},
                             {246, 1, ""},
                             {255, 1, ""},
                             {282, 0, "(can cause slowdown)"}}) {
        EXPECT_EQ(Param(c.index).u.bd.value, c.on) << c.index;
        EXPECT_EQ(Param(c.index).u.bd.dephault, c.on) << c.index;
        EXPECT_STREQ(Param(c.index).u.bd.nameptr, c.text) << c.index;
    }

    const PF_Pixel& color = Param(254).u.cd.value;
    EXPECT_EQ(color.alpha & color.red & color.green & color.blue, 255);
    const PF_Point3DDef& position = Param(269).u.point3d_d;
    EXPECT_EQ(position.x_value, 50);
    EXPECT_EQ(position.z_dephault, 50);
    EXPECT_EQ(Param(252).u.path_d.path_id, 0u);
    EXPECT_EQ(Param(2).u.ld.dephault, PF_LayerDefault_NONE);
}

}  // namespace
