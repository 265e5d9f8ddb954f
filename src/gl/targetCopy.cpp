#include "gl/targetCopy.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/glext.h>

TargetCopy::~TargetCopy()
{
    if (name_ != 0) glDeleteTextures(1, &name_);
}

AESDK_OpenGL::AESDK_OpenGL_Err TargetCopy::Take(int width, int height, GLint internalFormat)
{
    (void)AESDK_OpenGL::TakeGLErrors();  // of whatever came before
    glActiveTexture(GL_TEXTURE0);
    if (name_ == 0) glGenTextures(1, &name_);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, name_);
    const auto set = [](GLenum what, GLint value) {
        glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, what, value);
    };
    set(GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    set(GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    set(GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    set(GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glReadBuffer(GL_COLOR_ATTACHMENT0_EXT);
    glCopyTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, static_cast<GLenum>(internalFormat), 0, 0, width,
                     height, 0);
    return AESDK_OpenGL::CheckGLErrors();
}
