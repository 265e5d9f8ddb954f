// agl.cpp: pixel formats, contexts and the hidden window.

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <array>
#include <cstdio>
#include <new>
#include <utility>

#include "internal.h"

namespace {

AGLContext liveContexts = nullptr;  // a list through `next`
std::array<char, 256> errorText{};

/// Reads an attribute list. False when an attribute is not known.
bool ReadAttributes(const GLint* attributes, macGL::channelBits& bits)
{
    for (const GLint* each = attributes; each && *each != AGL_NONE; ++each) {
        switch (*each) {
            case AGL_RGBA:
            case AGL_DOUBLEBUFFER:  // nothing is ever shown
                break;
            case AGL_RED_SIZE:
                bits.red = *++each;
                break;
            case AGL_GREEN_SIZE:
                bits.green = *++each;
                break;
            case AGL_BLUE_SIZE:
                bits.blue = *++each;
                break;
            case AGL_ALPHA_SIZE:
                bits.alpha = *++each;
                break;
            default:
                return false;
        }
    }
    return true;
}

bool NeedsSurface(EGLDisplay display)
{
    return !macGL::HasExtension(eglQueryString(display, EGL_EXTENSIONS),
                                "EGL_KHR_surfaceless_context");
}

bool IsCurrent(AGLContext context)
{
    return eglGetCurrentContext() == context->handle;
}

void Unlink(AGLContext context)
{
    AGLContext* link = &liveContexts;
    while (*link != context) link = &(*link)->next;
    *link = context->next;
}

}  // namespace

namespace macGL {

void Fail(const char* what) noexcept
{
    const EGLint code = eglGetError();
    if (code == EGL_SUCCESS)
        std::snprintf(errorText.data(), errorText.size(), "%s", what);
    else
        std::snprintf(errorText.data(), errorText.size(), "%s (EGL error 0x%04X)", what,
                      static_cast<unsigned>(code));
}

DesktopGLScope::DesktopGLScope() noexcept : callers_(eglQueryAPI())
{
    eglBindAPI(EGL_OPENGL_API);
}

DesktopGLScope::~DesktopGLScope()
{
    eglBindAPI(callers_);
}

bool ReleaseCurrent() noexcept
{
    const EGLDisplay display = eglGetCurrentDisplay();
    return display == EGL_NO_DISPLAY ||
           eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

}  // namespace macGL

extern "C" {

AGLPixelFormat aglChoosePixelFormat(const void*, GLint, const GLint* attributes)
{
    macGL::channelBits bits;
    if (!ReadAttributes(attributes, bits)) {
        macGL::Fail("an attribute of the pixel format is not known");
        return nullptr;
    }
    const AGLPixelFormatRecord format = macGL::ChooseFormat(bits);
    return format.config ? new (std::nothrow) AGLPixelFormatRecord(format) : nullptr;
}

void aglDestroyPixelFormat(AGLPixelFormat format)
{
    delete format;
}

AGLContext aglCreateContext(AGLPixelFormat format, AGLContext share)
{
    if (!format) {
        macGL::Fail("a context needs a pixel format");
        return nullptr;
    }
    constexpr EGLint kVersion[] = {EGL_CONTEXT_MAJOR_VERSION, 2, EGL_CONTEXT_MINOR_VERSION, 1,
                                   EGL_NONE};
    const macGL::DesktopGLScope desktopGL;
    const EGLContext handle = eglCreateContext(format->display, format->config,
                                               share ? share->handle : EGL_NO_CONTEXT, kVersion);
    if (handle == EGL_NO_CONTEXT) {
        macGL::Fail("EGL refuses an OpenGL 2.1 context");
        return nullptr;
    }
    auto* context = new (std::nothrow)
        AGLContextRecord{format->display, format->config, handle, EGL_NO_SURFACE, liveContexts};
    if (context)
        liveContexts = context;
    else
        eglDestroyContext(format->display, handle);
    return context;
}

GLboolean aglDestroyContext(AGLContext context)
{
    const macGL::DesktopGLScope desktopGL;
    if (!context || (IsCurrent(context) && !macGL::ReleaseCurrent()) ||
        !eglDestroyContext(context->display, context->handle)) {
        macGL::Fail("the OpenGL context cannot be destroyed");
        return GL_FALSE;
    }
    if (context->surface != EGL_NO_SURFACE) eglDestroySurface(context->display, context->surface);
    Unlink(context);
    delete context;
    return GL_TRUE;
}

GLboolean aglSetDrawable(AGLContext context, AGLDrawable drawable)
{
    if (!context || !drawable) {
        macGL::Fail("a drawable needs a context and a window");
        return GL_FALSE;
    }
    if (!NeedsSurface(context->display)) return GL_TRUE;
    const EGLint size[] = {EGL_WIDTH, drawable->width, EGL_HEIGHT, drawable->height, EGL_NONE};
    const EGLSurface surface = eglCreatePbufferSurface(context->display, context->config, size);
    if (surface == EGL_NO_SURFACE) {
        macGL::Fail("EGL refuses an off-screen surface");
        return GL_FALSE;
    }
    const EGLSurface former = std::exchange(context->surface, surface);
    if (former != EGL_NO_SURFACE) eglDestroySurface(context->display, former);
    return GL_TRUE;
}

GLboolean aglSetCurrentContext(AGLContext context)
{
    const macGL::DesktopGLScope desktopGL;
    const bool done = context ? eglMakeCurrent(context->display, context->surface, context->surface,
                                               context->handle)
                              : macGL::ReleaseCurrent();
    if (!done) {
        macGL::Fail("the OpenGL context cannot be made current");
        return GL_FALSE;
    }
    return GL_TRUE;
}

AGLContext aglGetCurrentContext(void)
{
    const macGL::DesktopGLScope desktopGL;
    AGLContext context = liveContexts;
    while (context && !IsCurrent(context)) context = context->next;
    return context;
}

NSWindowRef NSWindowCreate(double, double, double width, double height, unsigned, unsigned, int)
{
    return new (std::nothrow) NSWindowRecord{{static_cast<int>(width), static_cast<int>(height)}};
}

AGLDrawable NSWindowGraphicsPort(NSWindowRef window)
{
    return window ? &window->port : nullptr;
}

void NSWindowRelease(NSWindowRef window)
{
    delete window;
}

const char* macGLError(void)
{
    return errorText.data();
}

}  // extern "C"
