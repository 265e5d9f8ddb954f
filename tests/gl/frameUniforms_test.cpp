#include "gl/frameUniforms.h"

#include <gtest/gtest.h>

#include "gl/frameScene.h"

namespace {

paramSnapshot Defaults()
{
    paramSnapshot values;
    values.value[kSourceTimeMode] = kSourceTimeCurrent;
    values.value[kRotation] = kRotation0;
    values.value[kRevealEnd] = 100.0f;
    values.value[kRevealAtMaskEnd] = 100.0f;
    values.value[kExtrusion] = 0.1f;
    values.value[kExtrusionNumLayers] = 1.0f;
    values.value[kLightMetal] = 100.0f;
    values.value[kCameraMode] = kCamera2D;
    values.contourColor = {1.0f, 0.5f, 0.25f};
    return values;
}

meshUniforms Make(const paramSnapshot& values, const camData& camera = {},
                  passKind pass = passKind::single, bool separateBack = false, int denX = 1)
{
    frameSettings settings;
    settings.denX = denX;
    settings.separateBack = separateBack;
    return MakeMeshUniforms(settings, {.ready = true, .width = 640, .height = 480}, values, camera,
                            pass);
}

camData BlurringCamera()
{
    camData camera;
    camera.depthOfField = 1.0f;
    camera.focusDistance = 800.0f;
    camera.aperture = 50.0f;
    camera.blurLevel = 75.0f;
    return camera;
}

}  // namespace

TEST(MeshUniforms, AFirstComponentOfMinusOneIsNudged)
{
    paramSnapshot values = Defaults();
    values.value[kRevealAtMaskStart] = -100.0f;
    EXPECT_FLOAT_EQ(Make(values).pathReveal[0], -0.9999f);
    values.value[kRevealAtMaskStart] = -99.9f;
    EXPECT_FLOAT_EQ(Make(values).pathReveal[0], -0.999f);

    camData camera = BlurringCamera();
    camera.aperture = -2.0f;
    EXPECT_FLOAT_EQ(Make(values, camera, passKind::blurred, false, 2).DOF[0], -0.9999f);
}

TEST(MeshUniforms, DepthOfFieldNamesTheFocusOnlyToTheEncodingPass)
{
    const camData camera = BlurringCamera();
    EXPECT_EQ(Make(Defaults(), camera, passKind::encodeBlur, false, 2).DOF, (vec4{25, 75, 1, 800}));
    EXPECT_EQ(Make(Defaults(), camera, passKind::blurred, false, 2).DOF, (vec4{25, 75, 1, 0}));

    camData close = camera;
    close.focusDistance = 0.0f;  // must still ask for the encoding
    EXPECT_EQ(Make(Defaults(), close, passKind::encodeBlur).DOF[3], 0.001f);

    camData off = camera;
    off.depthOfField = 0.0f;
    EXPECT_EQ(Make(Defaults(), off).DOF, (vec4{}));
}

TEST(EyeDistance, IsTheLargerOfTheTwoAndKeepsTheLayerInTheDepthRange)
{
    EXPECT_EQ(EyeDistance2D(1, 2666.0f), 3000.0);
    EXPECT_EQ(EyeDistance2D(2, 5333.0f), 5333.0);
    EXPECT_EQ(EyeDistance2D(4, 100.0f), 750.0);
    EXPECT_EQ(EyeDistance2D(8, 180000.0f), 50000.0);
}

TEST(SourceTime, FollowsTheSelectorInWholeTicks)
{
    paramSnapshot values = Defaults();
    values.value[kSourceTime] = 12.5f;
    EXPECT_EQ(SourceTime(values, 777, 1001), 777);
    values.value[kSourceTimeMode] = kSourceTimeSelector;
    EXPECT_EQ(SourceTime(values, 777, 1001), 12512);  // 12512.5 is cut
    values.value[kSourceTime] = 1.0e6f;
    EXPECT_EQ(SourceTime(values, 0, 100000), 2147483647);
}
