#include "gl/shaderObjects.h"

#include <array>
#include <string>
#include <vector>

namespace AESDK_OpenGL {

namespace {

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

}  // namespace

void CompileStage(GLenum type, std::initializer_list<const char*> texts, shaderHandle& shader)
{
    const GLhandleARB object = glExt.CreateShaderObjectARB(type);
    shader = object;
    std::vector<const char*> parts(texts);
    glExt.ShaderSourceARB(object, static_cast<GLsizei>(parts.size()), parts.data(), nullptr);
    glExt.CompileShaderARB(object);
    CheckObject(object, GL_OBJECT_COMPILE_STATUS_ARB);
}

void LinkProgram(shaderHandle vertexShader, shaderHandle fragmentShader, shaderHandle& program)
{
    const GLhandleARB object = glExt.CreateProgramObjectARB();
    program = object;
    glExt.AttachObjectARB(object, static_cast<GLhandleARB>(vertexShader));
    glExt.AttachObjectARB(object, static_cast<GLhandleARB>(fragmentShader));
    glExt.LinkProgramARB(object);
    CheckObject(object, GL_OBJECT_LINK_STATUS_ARB);
}

const std::string& LastShaderLog()
{
    return ShaderLog();
}

}  // namespace AESDK_OpenGL
