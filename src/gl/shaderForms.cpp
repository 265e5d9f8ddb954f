#include "gl/shaderForms.h"

#include <algorithm>

#include "gl/GL_base.h"
#include "gl/glFunctions.h"
#include "gl/shaderObjects.h"
#include "gl/shaders.h"

namespace AESDK_OpenGL {

namespace {

enum vectorUniform : std::size_t { kDataFromAE = 0, kDOF = 4 };
constexpr std::array<const char*, kVectorUniformCount> kVectorNames{
    "dataFromAE", "reveal", "pathReveal", "contourColor", "DOF"};
constexpr std::array<const char*, kSamplerUniformCount> kSamplerNames{"videoTexture", "backTexture",
                                                                      "blurTexture"};

// The forms: post pass without and with blur, then geometry: bit 0 lit, bit 1 encoding.
constexpr int kPostForms = 2;

template <std::size_t N>
std::size_t IndexOf(const std::array<const char*, N>& names, const std::string& name)
{
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

GLint LocationOf(shaderHandle program, const char* name)
{
    return glExt.GetUniformLocationARB(static_cast<GLhandleARB>(program), name);
}

void SendVector(const shaderForms& forms, shaderHandle program, std::size_t index)
{
    const auto& value = forms.vectors[index];
    glExt.Uniform4fARB(LocationOf(program, kVectorNames[index]), value[0], value[1], value[2],
                       value[3]);
}

void SendSampler(const shaderForms& forms, shaderHandle program, std::size_t index)
{
    glExt.Uniform1iARB(LocationOf(program, kSamplerNames[index]), forms.samplers[index]);
}

shaderHandle ProgramInUse()
{
    return glExt.GetHandleARB(GL_PROGRAM_OBJECT_ARB);
}

void Delete(shaderHandle object)
{
    glExt.DeleteObjectARB(static_cast<GLhandleARB>(object));
}

/// A form's own program, or the general one should GL refuse the form.
shaderHandle LinkForm(const AESDK_OpenGL_EffectCommonData& data, int form)
{
    const std::string head = FormHead(form);
    shaderHandle fragmentShader = 0;
    shaderHandle program = 0;
    try {
        CompileStage(GL_FRAGMENT_SHADER_ARB, {head.c_str(), kFragmentShaderText}, fragmentShader);
        LinkProgram(data.vertexShader, fragmentShader, program);
    } catch (const AESDK_OpenGL_Fault&) {
        Delete(program);
        program = data.program;
    }
    Delete(fragmentShader);  // a linked program keeps it
    return program;
}

shaderHandle ProgramOf(AESDK_OpenGL_EffectCommonData& data, int form)
{
    shaderHandle& program = data.forms.program[static_cast<std::size_t>(form)];
    if (!program) program = LinkForm(data, form);
    return program;
}

shaderHandle WantedProgram(AESDK_OpenGL_EffectCommonData& data)
{
    return ProgramOf(data, FormFor(data.forms.vectors[kDataFromAE], data.forms.vectors[kDOF]));
}

}  // namespace

int FormFor(const std::array<float, 4>& dataFromAE, const std::array<float, 4>& DOF)
{
    if (!(dataFromAE[3] < 0.0f)) return dataFromAE[2] > 0.0f ? 1 : 0;
    const bool lit = dataFromAE[2] != 0.0f;
    const bool encodes = DOF[3] > 0.0f || DOF[3] == -1.0f;
    return kPostForms + (lit ? 1 : 0) + (encodes ? 2 : 0);
}

std::string FormHead(int form)
{
    const bool geometry = form >= kPostForms;
    const int bits = geometry ? form - kPostForms : 0;
    const auto line = [](const char* name, bool value) {
        return std::string("#define ") + name + (value ? " true\n" : " false\n");
    };
    return line("IS_GEOMETRY", geometry) + line("IS_LIT", (bits & 1) != 0) +
           line("IS_ENCODING", (bits & 2) != 0) + line("IS_BLURRING", form == 1);
}

void StartForm(AESDK_OpenGL_EffectCommonData& data)
{
    const shaderHandle program = WantedProgram(data);
    glExt.UseProgramObjectARB(static_cast<GLhandleARB>(program));
    for (std::size_t i = 0; i < kVectorNames.size(); ++i) SendVector(data.forms, program, i);
    for (std::size_t i = 0; i < kSamplerNames.size(); ++i) SendSampler(data.forms, program, i);
}

void DeleteForms(AESDK_OpenGL_EffectCommonData& data)
{
    for (const shaderHandle program : data.forms.program)
        if (program != data.program) Delete(program);
    data.forms = {};
}

void SetVectorUniform(AESDK_OpenGL_EffectCommonData& data, const std::string& name,
                      const std::array<float, 4>& value)
{
    const std::size_t index = IndexOf(kVectorNames, name);
    if (index == kVectorNames.size()) return;
    data.forms.vectors[index] = value;
    const shaderHandle inUse = ProgramInUse();
    if (!inUse) return;
    if (WantedProgram(data) == inUse)
        SendVector(data.forms, inUse, index);
    else
        StartForm(data);
}

void SetSamplerUniform(AESDK_OpenGL_EffectCommonData& data, const std::string& name,
                       std::int32_t unit)
{
    const std::size_t index = IndexOf(kSamplerNames, name);
    if (index == kSamplerNames.size()) return;
    data.forms.samplers[index] = unit;
    if (const shaderHandle inUse = ProgramInUse()) SendSampler(data.forms, inUse, index);
}

}  // namespace AESDK_OpenGL
