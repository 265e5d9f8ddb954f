#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "geometry/meshSettings.h"
#include "geometry/paramSnapshot.h"
#include "geometry/sourceCrop.h"

namespace {

/// A host's parameter array, all float sliders at 0 unless a test says otherwise.
struct hostParams {
    hostParams()
    {
        for (std::size_t i = 0; i < defs.size(); ++i) {
            defs[i].param_type = PF_Param_FLOAT_SLIDER;
            pointers[i] = &defs[i];
        }
    }
    PF_ParamDef& at(PF_ParamIndex index, PF_ParamType type)
    {
        PF_ParamDef& def = defs[static_cast<std::size_t>(index)];
        def.param_type = type;
        return def;
    }
    std::array<PF_ParamDef, kParamCount> defs{};
    std::array<PF_ParamDef*, kParamCount> pointers{};
};

PF_InData Downsampled(A_u_long denX, A_u_long denY)
{
    PF_InData in_data{};
    in_data.downsample_x = {1, denX};
    in_data.downsample_y = {1, denY};
    return in_data;
}

TEST(ReadParams, ReadsEveryKindAsShown)
{
    hostParams params;
    params.at(kSourceXScale, PF_Param_FLOAT_SLIDER).u.fs_d.value = 0.1;
    params.at(kMeshSubSampling, PF_Param_SLIDER).u.sd.value = 7;
    params.at(kTwistAtStart, PF_Param_ANGLE).u.ad.value = -90 * 65536 - 32768;
    params.at(kSmoothZ, PF_Param_CHECKBOX).u.bd.value = 1;
    params.at(kRotation, PF_Param_POPUP).u.pd.value = 3;
    params.at(kContourColor, PF_Param_COLOR).u.cd.value = {255, 51, 102, 255};
    params.at(kMask, PF_Param_PATH).u.path_d.path_id = 11;
    params.at(kContourMask, PF_Param_PATH).u.path_d.path_id = 12;
    params.at(kSourceReferenceMask, PF_Param_PATH).u.path_d.path_id = 13;
    params.at(kMaskReferenceMask, PF_Param_PATH).u.path_d.path_id = 14;
    const paramSnapshot values = ReadParams(Downsampled(1, 1), params.pointers.data());
    EXPECT_EQ(values[kSourceXScale], 0.1f);
    EXPECT_EQ(values[kMeshSubSampling], 7.0f);
    EXPECT_EQ(values[kTwistAtStart], -90.5f);
    EXPECT_TRUE(values.on(kSmoothZ));
    EXPECT_EQ(values.popup(kRotation), kRotation180);
    EXPECT_EQ(values.contourColor, (point3{0.2f, 0.4f, 1.0f}));
    EXPECT_EQ(values[kContourColor], 0.0f);
    EXPECT_EQ(values.paths.mask, 11u);
    EXPECT_EQ(values.paths.contour, 12u);
    EXPECT_EQ(values.paths.sourceReference, 13u);
    EXPECT_EQ(values.paths.maskReference, 14u);
}

TEST(ReadParams, BringsPointsToFullResolutionAndTheTransformMirrorsZ)
{
    hostParams params;
    PF_Point3DDef& position = params.at(kPosition, PF_Param_POINT_3D).u.point3d_d;
    position.x_value = 100;
    position.y_value = 50;
    position.z_value = 10;
    const paramSnapshot values = ReadParams(Downsampled(2, 3), params.pointers.data());
    EXPECT_EQ(values.position, (point3{200, 150, 20}));
    EXPECT_EQ(MakeMeshSettings(values, {}).transform.position, (point3{200, 150, -20}));
}

TEST(MeshSettings, ConvertOnce)
{
    paramSnapshot values;
    values.value[kTwistAtMaskEnd] = 180.0f;
    values.value[kScale] = 50.0f;
    values.value[kScaleY] = -300.0f;
    values.value[kRotationX] = 90.0f;
    values.value[kExtrusion] = 8.0f;
    values.value[kExtrusionNumLayers] = 2.0f;
    values.value[kZAtVertex1 + 99] = 5.0f;
    values.value[kScaleAtVertex1 + 1] = 25.0f;
    values.value[kUndistortedEnd] = 80.0f;
    const meshSettings settings = MakeMeshSettings(values, {.denX = 4});
    EXPECT_DOUBLE_EQ(settings.twistMaskEnd, std::numbers::pi);
    EXPECT_FLOAT_EQ(settings.transform.scale.y, -1.5f);
    EXPECT_NEAR(settings.transform.angleX, -std::numbers::pi / 2, 1e-7);  // through a float
    EXPECT_DOUBLE_EQ(settings.halfDepth(), 2.0);
    EXPECT_EQ(settings.vertexZ[99], 5.0f);
    EXPECT_DOUBLE_EQ(settings.vertexScale[1], 0.25);
    EXPECT_DOUBLE_EQ(settings.undistortedEnd, 0.8);
    EXPECT_EQ(settings.sizes.denX, 4);
}

TEST(MeshSettings, SurviveValuesThatNoControlHolds)
{
    paramSnapshot values;
    values.value.fill(std::numeric_limits<float>::quiet_NaN());
    values.value[kExtrusionNumLayers] = 1e30f;
    values.value[kMeshSubSampling] = -5.0f;
    values.value[kScale] = std::numeric_limits<float>::infinity();
    values.anchor.x = std::numeric_limits<float>::quiet_NaN();
    const meshSettings settings = MakeMeshSettings(values, {});
    EXPECT_EQ(settings.rotation, kRotation0);
    EXPECT_EQ(settings.extrusionLayers, kMostLayers);
    EXPECT_EQ(settings.subSampling, 0);
    EXPECT_EQ(settings.transform.anchor.x, 0.0f);
    EXPECT_TRUE(std::isfinite(settings.transform.scale.x));
    EXPECT_EQ(settings.twistStart, 0.0);
}

struct cropCase {
    const char* name;
    double left, right, top, bottom;
    PF_Rect rect;
    bool usable;
};

class SourceCrop : public testing::TestWithParam<cropCase> {};

TEST_P(SourceCrop, OfAnImage)
{
    const cropCase& c = GetParam();
    const cropRect crop = CropSource({0, 0, 641, 480}, 641, 480, c.left, c.right, c.top, c.bottom);
    EXPECT_EQ(crop.rect.left, c.rect.left);
    EXPECT_EQ(crop.rect.top, c.rect.top);
    EXPECT_EQ(crop.rect.right, c.rect.right);
    EXPECT_EQ(crop.rect.bottom, c.rect.bottom);
    EXPECT_EQ(crop.width, c.rect.right - c.rect.left);
    EXPECT_EQ(crop.height, c.rect.bottom - c.rect.top);
    EXPECT_EQ(crop.usable, c.usable);
}

// 10 % of 641 is 64.1: 64 from the left, and 641 - 64.1 = 576.9 from the right, both cut short.
INSTANTIATE_TEST_SUITE_P(
    Percents, SourceCrop,
    testing::Values(cropCase{"None", 0, 0, 0, 0, {0, 0, 641, 480}, true},
                    cropCase{"CutsToWholePixels", 10, 10, 0, 25, {64, 0, 576, 360}, true},
                    cropCase{"TooThin", 0, 0, 50, 49.2, {0, 240, 641, 243}, false},
                    cropCase{"Crossed", 80, 80, 0, 0, {512, 0, 128, 480}, false},
                    cropCase{"NotANumberIsNoCrop", std::nan(""), 0, 0, 0, {0, 0, 641, 480}, true}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(SourceCrop, HasASmallestAndALargestSide)
{
    const auto usable = [](A_long side) {
        return CropSource({0, 0, side, 100}, side, 100, 0, 0, 0, 0).usable;
    };
    EXPECT_FALSE(usable(3));
    EXPECT_TRUE(usable(4));
    EXPECT_TRUE(usable(30003));
    EXPECT_FALSE(usable(30004));
}

}  // namespace
