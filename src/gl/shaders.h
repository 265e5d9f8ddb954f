// shaders.h: the two texts of the effect's program, GLSL 1.10. NUL-terminated.
//
// Per vertex: gl_Color carries (cells - 1 or 1, face / 2 or 1, 0 or 1, position along the mask);
// gl_MultiTexCoord0 texels of the source; gl_Normal any length but 0.
// Uniforms:
//   videoTexture, backTexture, blurTexture   rectangle textures on units 0, 1, 2
//   dataFromAE    geometry: source width and height in texels, number of lights (0 unlit),
//                           -1 one source for both faces, -2 a separate back-face source
//                 post pass: gain, -, > 0 blur by blurTexture, resolution factor (clamped to 0..1)
//   reveal        start and end as fractions of the source, orientation 1..4, specular factor
//   pathReveal    start and end of the visible stretch of path, -, -
//   contourColor  blue, green, red, alpha
//   DOF           geometry: depth range [0]..[1] when [3] is -1; focus distance [3] > 0 (at least
//                           0.001) encodes the blur; else nothing is encoded
//                 post pass: [0] * [1] / 100 scales the blur
#pragma once

namespace AESDK_OpenGL {

extern const char* const kVertexShaderText;
extern const char* const kFragmentShaderText;

}  // namespace AESDK_OpenGL
