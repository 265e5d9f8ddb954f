// shaderForms.h: specialised forms of the effect's program.
// The fragment shader tests its uniforms to choose what to compute. Software GL has no branches:
// for every pixel it computes both sides of every test, which costs three times the work that
// counts. So a draw runs a form of the program in which the outcomes of these tests are written
// into the text. Which one follows from the uniforms; all forms compute the same.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace AESDK_OpenGL {

/// A shader or program object: as wide as the widest form that GL implementations use.
using shaderHandle = std::uintptr_t;

inline constexpr int kShaderFormCount = 6;
inline constexpr int kVectorUniformCount = 5;
inline constexpr int kSamplerUniformCount = 3;

/// The forms linked so far and the uniforms' values, which all forms share.
struct shaderForms {
    std::array<shaderHandle, kShaderFormCount> program{};  ///< 0: not linked yet
    std::array<std::array<float, 4>, kVectorUniformCount> vectors{};
    std::array<std::int32_t, kSamplerUniformCount> samplers{};
};

struct AESDK_OpenGL_EffectCommonData;

/// Puts the form that the uniforms ask for into use and sends it all uniforms.
void StartForm(AESDK_OpenGL_EffectCommonData& data);
/// Deletes the forms and forgets the uniforms.
void DeleteForms(AESDK_OpenGL_EffectCommonData& data);

/// Sets a uniform, and changes the form in use when the value asks for another one. While no
/// program is in use the value is kept for the next start. A name that the program does not have is
/// ignored.
void SetVectorUniform(AESDK_OpenGL_EffectCommonData& data, const std::string& name,
                      const std::array<float, 4>& value);
void SetSamplerUniform(AESDK_OpenGL_EffectCommonData& data, const std::string& name,
                       std::int32_t unit);

/// Which form these values ask for, 0..kShaderFormCount - 1, and the lines that make it.
int FormFor(const std::array<float, 4>& dataFromAE, const std::array<float, 4>& DOF);
std::string FormHead(int form);

}  // namespace AESDK_OpenGL
