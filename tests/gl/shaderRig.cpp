#include "gl/shaderRig.h"

#include <gtest/gtest.h>

#include <cmath>

#include "gl/glFunctions.h"

using namespace AESDK_OpenGL;

namespace {

constexpr const char* kSamplers[] = {"videoTexture", "backTexture", "blurTexture"};
constexpr const char* kVectors[] = {"dataFromAE", "reveal", "pathReveal", "contourColor", "DOF"};
constexpr double kDepth = 1e6;

GLuint FloatTexture(int width, int height, const void* pixels)
{
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, name);
    glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, GL_RGBA32F_ARB, width, height, 0, GL_RGBA, GL_FLOAT,
                 pixels);
    glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    return name;
}

void BindTarget(int edge)
{
    GLuint frameBuffer = 0;
    glExt.GenFramebuffersEXT(1, &frameBuffer);
    glExt.BindFramebufferEXT(GL_FRAMEBUFFER_EXT, frameBuffer);
    glExt.FramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT,
                                  GL_TEXTURE_RECTANGLE_ARB, FloatTexture(edge, edge, nullptr), 0);
    glViewport(0, 0, edge, edge);
}

}  // namespace

image FlatImage(int width, int height, const pixel& value)
{
    return {width, height, std::vector<pixel>(static_cast<std::size_t>(width * height), value)};
}

ShaderRig::ShaderRig(int edge) : edge_(edge)
{
    data.started = 0;
    EXPECT_EQ(AESDK_OpenGL_Startup(data), Ok) << macGLError();
    EXPECT_EQ(AESDK_OpenGL_InitShader(data, "", ""), Ok) << LastShaderLog();
    BindTarget(edge);
    glMatrixMode(GL_PROJECTION);
    glOrtho(0, edge, 0, edge, -kDepth, kDepth);
    glMatrixMode(GL_MODELVIEW);
}

ShaderRig::~ShaderRig()
{
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    EXPECT_EQ(AESDK_OpenGL_Shutdown(data), Ok) << macGLError();
}

void ShaderRig::SetImage(int unit, const image& picture)
{
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    const GLuint name = FloatTexture(picture.width, picture.height, picture.pixels.data());
    EXPECT_EQ(AESDK_OpenGL_BindTextureToTarget(data, name, kSamplers[unit], unit), Ok);
}

void ShaderRig::Pass(const std::string& name, float x, float y, float z, float w)
{
    EXPECT_EQ(AESDK_OpenGL_PassMetal(data, x, y, z, w, name), Ok);
}

void ShaderRig::PassWholeSource(float width, float height)
{
    Pass("dataFromAE", width, height, 0, -1);
    Pass("reveal", 0, 1, 1, 1);
    Pass("pathReveal", 0, 1, 1, 1);
    Pass("DOF", 0, 0, 0, 0);
}

image ShaderRig::Draw(const cellDraw& cell)
{
    AESDK_OpenGL_StartRenderToShader(data);
    return DrawInUse(cell);
}

image ShaderRig::DrawGenerally(const cellDraw& cell)
{
    const auto program = static_cast<GLhandleARB>(data.program);
    glExt.UseProgramObjectARB(program);
    for (int unit = 0; unit < 3; ++unit)
        glExt.Uniform1iARB(glExt.GetUniformLocationARB(program, kSamplers[unit]), unit);
    for (std::size_t i = 0; i < std::size(kVectors); ++i) {
        const auto& value = data.forms.vectors[i];
        glExt.Uniform4fARB(glExt.GetUniformLocationARB(program, kVectors[i]), value[0], value[1],
                           value[2], value[3]);
    }
    return DrawInUse(cell);
}

image ShaderRig::DrawInUse(const cellDraw& cell) const
{
    AESDK_OpenGL_ClearBoundTarget(edge_, edge_);
    const auto corner = [&](int right, int up) {
        glTexCoord2f(right ? cell.texX1 : cell.texX0, up ? cell.texY1 : cell.texY0);
        glVertex3f(right ? static_cast<float>(edge_) : 0.0f, up ? static_cast<float>(edge_) : 0.0f,
                   cell.z);
    };
    glBegin(GL_TRIANGLE_FAN);
    glColor4f(cell.red, cell.green, 0.0f, cell.alpha);
    glNormal3fv(cell.normal.data());
    corner(0, 0);
    corner(cell.backFacing ? 0 : 1, cell.backFacing ? 1 : 0);
    corner(1, 1);
    corner(cell.backFacing ? 1 : 0, cell.backFacing ? 0 : 1);
    glEnd();
    AESDK_OpenGL_StopRenderToShader();
    image result = FlatImage(edge_, edge_, {});
    glReadPixels(0, 0, edge_, edge_, GL_RGBA, GL_FLOAT, result.pixels.data());
    return result;
}

void ExpectPixel(const pixel& actual, const pixel& expected, float tolerance)
{
    bool near = true;  // never so for a NaN
    for (std::size_t channel = 0; channel < 4; ++channel)
        near = near && std::abs(actual[channel] - expected[channel]) <= tolerance;
    EXPECT_TRUE(near) << testing::PrintToString(actual) << " is not "
                      << testing::PrintToString(expected);
}
