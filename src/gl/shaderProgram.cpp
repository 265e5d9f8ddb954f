// The shader program of GL_base.h.

#include <array>

#include "gl/GL_base.h"
#include "gl/glFunctions.h"
#include "gl/shaders.h"

namespace AESDK_OpenGL {

namespace {

constexpr glName kNoTexture = 0xFFFFFFFFu;

std::string& ShaderLog()
{
    static std::string log;
    return log;
}

/// Fails unless `status` of the object is good. What GL says is kept either way: warnings count.
void CheckObject(GLhandleARB object, GLenum status)
{
    std::array<char, 4096> text{};
    glExt.GetInfoLogARB(object, static_cast<GLsizei>(text.size()), nullptr, text.data());
    ShaderLog() = text.data();
    GLint good = 0;
    glExt.GetObjectParameterivARB(object, status, &good);
    if (!good) throw AESDK_OpenGL_Fault(ShaderFailed);
}

void CompileStage(GLenum type, const char* text, shaderHandle& shader)
{
    const GLhandleARB object = glExt.CreateShaderObjectARB(type);
    shader = object;
    glExt.ShaderSourceARB(object, 1, &text, nullptr);
    glExt.CompileShaderARB(object);
    CheckObject(object, GL_OBJECT_COMPILE_STATUS_ARB);
}

void LinkProgram(AESDK_OpenGL_EffectCommonData& data)
{
    const GLhandleARB object = glExt.CreateProgramObjectARB();
    data.program = object;
    glExt.AttachObjectARB(object, static_cast<GLhandleARB>(data.vertexShader));
    glExt.AttachObjectARB(object, static_cast<GLhandleARB>(data.fragmentShader));
    glExt.LinkProgramARB(object);
    CheckObject(object, GL_OBJECT_LINK_STATUS_ARB);
}

GLint LocationOf(const AESDK_OpenGL_EffectCommonData& data, const std::string& name)
{
    return glExt.GetUniformLocationARB(static_cast<GLhandleARB>(data.program), name.c_str());
}

}  // namespace

AESDK_OpenGL_Err AESDK_OpenGL_InitShader(AESDK_OpenGL_EffectCommonData& data, const std::string&,
                                         const std::string&)
try {
    if (data.shaderReady) return Ok;
    if (!data.context) throw AESDK_OpenGL_Fault(ShaderFailed);
    CompileStage(GL_VERTEX_SHADER_ARB, kVertexShaderText, data.vertexShader);
    CompileStage(GL_FRAGMENT_SHADER_ARB, kFragmentShaderText, data.fragmentShader);
    LinkProgram(data);
    data.shaderReady = 1;
    return Ok;
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}

const std::string& LastShaderLog()
{
    return ShaderLog();
}

void AESDK_OpenGL_StartRenderToShader(AESDK_OpenGL_EffectCommonData& data)
{
    glExt.UseProgramObjectARB(static_cast<GLhandleARB>(data.program));
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
    glExt.Uniform1iARB(LocationOf(data, name), unit);
    return Ok;
}

AESDK_OpenGL_Err AESDK_OpenGL_PassMetal(AESDK_OpenGL_EffectCommonData& data, float x, float y,
                                        float z, float w, const std::string& name)
{
    if (x == -1.0f) return ShaderFailed;
    glExt.Uniform4fARB(LocationOf(data, name), x, y, z, w);
    return Ok;
}

}  // namespace AESDK_OpenGL
