// cgl.cpp: whatever context is current, of any maker.

#include <EGL/egl.h>

#include <memory>
#include <vector>

#include "internal.h"

struct CGLContextRecord {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLSurface draw = EGL_NO_SURFACE, read = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;

    bool operator==(const CGLContextRecord&) const = default;
};

namespace {

constexpr int kNoError = 0;
constexpr int kRefused = 1;

/// Records are looked up, never freed: one for each context and pair of surfaces ever seen current.
CGLContextObj Remember(const CGLContextRecord& seen)
{
    static std::vector<std::unique_ptr<CGLContextRecord>> known;
    for (const auto& each : known)
        if (*each == seen) return each.get();
    known.push_back(std::make_unique<CGLContextRecord>(seen));
    return known.back().get();
}

/// Releases the caller's kind of context and desktop GL's, which are one kind to most EGLs only.
bool ReleaseAll()
{
    const bool callers = macGL::ReleaseCurrent();
    const macGL::DesktopGLScope desktopGL;
    return macGL::ReleaseCurrent() && callers;
}

}  // namespace

extern "C" {

CGLContextObj CGLGetCurrentContext(void)
try {
    // EGL tells of the client API that the caller has bound: it is the caller's context that
    // counts.
    const EGLContext context = eglGetCurrentContext();
    if (context == EGL_NO_CONTEXT) return nullptr;
    return Remember({eglGetCurrentDisplay(), eglGetCurrentSurface(EGL_DRAW),
                     eglGetCurrentSurface(EGL_READ), context});
} catch (...) {
    macGL::Fail("no memory to remember the current context");
    return nullptr;
}

int CGLSetCurrentContext(CGLContextObj context)
{
    const bool done =
        context ? eglMakeCurrent(context->display, context->draw, context->read, context->context)
                : ReleaseAll();
    if (done) return kNoError;
    macGL::Fail("the former context cannot be made current again");
    return kRefused;
}

}  // extern "C"
