// frameUniforms.h: what the shader program is told for the mesh of one instant. Plain numbers.
#pragma once

#include <array>

#include "camera/camData.h"
#include "geometry/paramSnapshot.h"
#include "gl/frameSettings.h"
#include "gl/sourceTextures.h"

using vec4 = std::array<float, 4>;

/// A frame has one pass, or two when the camera has depth of field: the first draws how blurred
/// each pixel is, the second the picture that is then blurred accordingly.
enum class passKind { single, encodeBlur, blurred };

struct meshUniforms {
    vec4 dataFromAE{}, reveal{}, pathReveal{}, contourColor{}, DOF{};
};

/// The uniforms of the mesh. Angles and fractions as the shader takes them; colours as (blue,
/// green, red, 1), since red and blue are exchanged inside GL. No first component is exactly -1,
/// which the GL layer refuses.
meshUniforms MakeMeshUniforms(const frameSettings& settings, const frameTextures& textures,
                              const paramSnapshot& values, const camData& camera, passKind pass);

/// Which texture goes to which sampler.
struct textureRoles {
    AESDK_OpenGL::glName video = 0, back = 0;
};
textureRoles ChooseTextureRoles(const frameTextures& textures, const paramSnapshot& values);
