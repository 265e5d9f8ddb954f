#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "geometry/meshSettings.h"
#include "geometry/paramSnapshot.h"
#include "geometry/sourceCrop.h"
#include "support/caseName.h"

namespace {

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
const cropCase kPercents[] = {
    {"None", 0, 0, 0, 0, {0, 0, 641, 480}, true},
    {"CutsToWholePixels", 10, 10, 0, 25, {64, 0, 576, 360}, true},
    {"TooThin", 0, 0, 50, 49.2, {0, 240, 641, 243}, false},
    {"Crossed", 80, 80, 0, 0, {512, 0, 128, 480}, false},
    {"NotANumberIsNoCrop", std::nan(""), 0, 0, 0, {0, 0, 641, 480}, true}};
INSTANTIATE_TEST_SUITE_P(Percents, SourceCrop, testing::ValuesIn(kPercents), caseName{});

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
