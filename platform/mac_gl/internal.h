// internal.h: what the files of this folder share.
#pragma once

#include <EGL/egl.h>

#include "mac_gl.h"

struct AGLPixelFormatRecord {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
};

struct AGLContextRecord {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLContext handle = EGL_NO_CONTEXT;
    EGLSurface surface = EGL_NO_SURFACE;  ///< none where the display can do without
    AGLContextRecord* next = nullptr;     ///< of all contexts not yet destroyed
};

struct AGLDrawableRecord {
    int width = 0, height = 0;
};

struct NSWindowRecord {
    AGLDrawableRecord port;
};

namespace macGL {

/// Keeps `what` for macGLError(), with EGL's last error code when there is one.
void Fail(const char* what) noexcept;

/// Desktop GL as EGL's client API within a scope.
class DesktopGLScope {
public:
    DesktopGLScope() noexcept;
    ~DesktopGLScope();
    DesktopGLScope(const DesktopGLScope&) = delete;
    DesktopGLScope& operator=(const DesktopGLScope&) = delete;

private:
    EGLenum callers_;
};

/// Least bits a channel of a format.
struct channelBits {
    EGLint red = 0, green = 0, blue = 0, alpha = 0;
};

/// The initialised display that ORV_GL asks for, with a configuration of at least these bits; a
/// display of EGL_NO_DISPLAY and macGLError() when there is none.
AGLPixelFormatRecord ChooseFormat(const channelBits& bits) noexcept;

/// Whether a word stands in a list of extensions. A null list has none.
bool HasExtension(const char* list, const char* word) noexcept;

/// Releases whatever context is current on this thread. False when EGL refuses.
bool ReleaseCurrent() noexcept;

}  // namespace macGL
