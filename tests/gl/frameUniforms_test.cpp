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

TEST(MeshUniforms, OfTheDefaults)
{
    const meshUniforms uniforms = Make(Defaults());
    EXPECT_EQ(uniforms.dataFromAE, (vec4{640, 480, 0, -1}));
    EXPECT_EQ(uniforms.reveal, (vec4{0, 1, 1, 0}));
    EXPECT_EQ(uniforms.pathReveal, (vec4{0, 1, 1, 1}));
    EXPECT_EQ(uniforms.contourColor, (vec4{0.25f, 0.5f, 1, 1}));  // blue, green, red
    EXPECT_EQ(uniforms.DOF, (vec4{}));
    EXPECT_EQ(Make(Defaults(), {}, passKind::single, true).dataFromAE[3], -2.0f);
}

TEST(MeshUniforms, LightsCountOnlyWhenUsedAndInThe3DMode)
{
    camData camera;
    camera.numLights = 3;
    for (const int mode : {kCamera2D, kCamera3D}) {
        for (const float used : {0.0f, 1.0f}) {
            paramSnapshot values = Defaults();
            values.value[kCameraMode] = static_cast<float>(mode);
            values.value[kUseLights] = used;
            const float lights = mode == kCamera3D && used != 0.0f ? 3.0f : 0.0f;
            EXPECT_EQ(Make(values, camera).dataFromAE[2], lights) << mode << ' ' << used;
        }
    }
}

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

struct roleCase {
    const char* name;
    int cameraMode;
    float useLights, extrusion, layers;
    bool swapped;
};
class TextureRoles : public testing::TestWithParam<roleCase> {};
TEST_P(TextureRoles, AreSwappedOnlyForAnUnlitSheetIn3D)
{
    const roleCase& c = GetParam();
    paramSnapshot values = Defaults();
    values.value[kCameraMode] = static_cast<float>(c.cameraMode);
    values.value[kUseLights] = c.useLights;
    values.value[kExtrusion] = c.extrusion;
    values.value[kExtrusionNumLayers] = c.layers;
    const textureRoles roles = ChooseTextureRoles({.ready = true, .source = 7, .back = 9}, values);
    EXPECT_EQ(roles.video, c.swapped ? 9u : 7u);
    EXPECT_EQ(roles.back, c.swapped ? 7u : 9u);
}
INSTANTIATE_TEST_SUITE_P(
    Frames, TextureRoles,
    testing::Values(roleCase{"Unlit3DSheetWithoutLayers", kCamera3D, 0, 0.1f, 0, true},
                    roleCase{"Unlit3DSheetWithoutDepth", kCamera3D, 0, 0, 5, true},
                    roleCase{"Unlit3DBand", kCamera3D, 0, 0.1f, 1, false},
                    roleCase{"Lit3DSheet", kCamera3D, 1, 0, 0, false},
                    roleCase{"Unlit2DSheet", kCamera2D, 0, 0, 0, false}),
    [](const auto& each) { return std::string(each.param.name); });

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
