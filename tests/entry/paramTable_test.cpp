// The parameters as the host gets to see them.
#include <gtest/gtest.h>

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

// Names, IDs, ranges and choices of all of them: tests/golden/params.json, by the program's tests.
TEST_F(ParamsSetupTest, StartAtTheirDefaults)
{
    ASSERT_EQ(Send(), PF_Err_NONE);
    for (PF_ParamIndex index = 1; index < kParamCount; ++index) {
        const PF_ParamDef& def = Param(index);
        EXPECT_EQ(def.ui_flags, 0) << index;
        switch (def.param_type) {
            case PF_Param_FLOAT_SLIDER:
                EXPECT_EQ(static_cast<float>(def.u.fs_d.value), def.u.fs_d.dephault) << index;
                EXPECT_EQ(def.u.fs_d.precision, 2) << index;
                EXPECT_EQ(def.u.fs_d.curve_tolerance, 0.05f) << index;
                break;
            case PF_Param_SLIDER:
                EXPECT_EQ(def.u.sd.value, def.u.sd.dephault) << index;
                break;
            case PF_Param_POPUP:
                EXPECT_EQ(def.u.pd.value, def.u.pd.dephault) << index;
                break;
            case PF_Param_CHECKBOX:
                EXPECT_EQ(def.u.bd.value, def.u.bd.dephault) << index;
                break;
            case PF_Param_LAYER:
                EXPECT_EQ(def.u.ld.dephault, PF_LayerDefault_NONE) << index;
                break;
            default:
                break;
        }
    }
}

}  // namespace
