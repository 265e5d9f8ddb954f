// The shader program of GL_base.h.

#include "gl/GL_base.h"
#include "gl/glFunctions.h"
#include "gl/shaderForms.h"
#include "gl/shaderObjects.h"
#include "gl/shaders.h"

namespace AESDK_OpenGL {

namespace {

constexpr glName kNoTexture = 0xFFFFFFFFu;

}  // namespace

AESDK_OpenGL_Err AESDK_OpenGL_InitShader(AESDK_OpenGL_EffectCommonData& data, const std::string&,
                                         const std::string&)
try {
    if (data.shaderReady) return Ok;
    if (!data.context) throw AESDK_OpenGL_Fault(ShaderFailed);
    CompileStage(GL_VERTEX_SHADER_ARB, {kVertexShaderText}, data.vertexShader);
    CompileStage(GL_FRAGMENT_SHADER_ARB, {kFragmentShaderText}, data.fragmentShader);
    LinkProgram(data.vertexShader, data.fragmentShader, data.program);
    data.shaderReady = 1;
    return Ok;
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}

void AESDK_OpenGL_StartRenderToShader(AESDK_OpenGL_EffectCommonData& data)
{
    StartForm(data);
}

void AESDK_OpenGL_StopRenderToShader()
{
    glExt.UseProgramObjectARB(0);
}

AESDK_OpenGL_Err AESDK_OpenGL_BindTextureToTarget(AESDK_OpenGL_EffectCommonData& data,
                                                  glName texture, const std::string& name, int unit)
{
    if (texture == kNoTexture) return ShaderFailed;
    glActiveTexture(unit == 0 ? GL_TEXTURE0 : unit == 1 ? GL_TEXTURE1 : GL_TEXTURE2);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, texture);
    SetSamplerUniform(data, name, unit);
    return Ok;
}

AESDK_OpenGL_Err AESDK_OpenGL_PassMetal(AESDK_OpenGL_EffectCommonData& data, float x, float y,
                                        float z, float w, const std::string& name)
{
    if (x == -1.0f) return ShaderFailed;
    SetVectorUniform(data, name, {x, y, z, w});
    return Ok;
}

}  // namespace AESDK_OpenGL
