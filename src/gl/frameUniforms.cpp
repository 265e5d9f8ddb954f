#include "gl/frameUniforms.h"

#include <algorithm>

namespace {

/// The GL layer refuses a uniform that begins with exactly -1.
float NotMinusOne(float first)
{
    return first == -1.0f ? first + 0.0001f : first;
}

float Fraction(const paramSnapshot& values, PF_ParamIndex index)
{
    return static_cast<float>(values.fraction(index));
}

int LightCount(const paramSnapshot& values, const camData& camera)
{
    const bool lit = values.on(kUseLights) && values.composition3D();
    return lit ? std::clamp(static_cast<int>(camera.numLights), 0, kMaxLights) : 0;
}

vec4 MakeDOF(const frameSettings& settings, const camData& camera, passKind pass)
{
    if (camera.depthOfField == 0.0f) return {};
    // The shader divides by the distance and takes a positive one as the order to encode.
    constexpr float kNearestFocus = 0.001f;
    const float focus =
        pass == passKind::encodeBlur ? std::max(kNearestFocus, camera.focusDistance) : 0.0f;
    return {NotMinusOne(camera.aperture / static_cast<float>(settings.denX)), camera.blurLevel,
            camera.depthOfField, focus};
}

}  // namespace

meshUniforms MakeMeshUniforms(const frameSettings& settings, const frameTextures& textures,
                              const paramSnapshot& values, const camData& camera, passKind pass)
{
    const point3& color = values.contourColor;
    return {.dataFromAE = {static_cast<float>(textures.width), static_cast<float>(textures.height),
                           static_cast<float>(LightCount(values, camera)),
                           settings.separateBack ? -2.0f : -1.0f},
            .reveal = {Fraction(values, kRevealStart), Fraction(values, kRevealEnd),
                       values[kRotation], static_cast<float>(1.0 - values.fraction(kLightMetal))},
            .pathReveal = {NotMinusOne(Fraction(values, kRevealAtMaskStart)),
                           Fraction(values, kRevealAtMaskEnd), 1.0f, 1.0f},
            .contourColor = {color.z, color.y, color.x, 1.0f},
            .DOF = MakeDOF(settings, camera, pass)};
}

textureRoles ChooseTextureRoles(const frameTextures& textures, const paramSnapshot& values)
{
    const bool unlit3D = !values.on(kUseLights) && values.composition3D();
    const bool extruded = values[kExtrusion] * values[kExtrusionNumLayers] != 0.0f;
    // A single unlit sheet: the shader then shows `back` on the side that faces the viewer.
    if (unlit3D && !extruded) return {.video = textures.back, .back = textures.source};
    return {.video = textures.source, .back = textures.back};
}
