// ownContext.h: a GL context of a module's own.
#pragma once

#include "mac_gl.h"

/// Null where there is no GL. The caller's to destroy.
inline AGLContext MakeContext()
{
    constexpr GLint kAttributes[] = {AGL_RGBA, AGL_NONE};
    const AGLPixelFormat format = aglChoosePixelFormat(nullptr, 0, kAttributes);
    if (format == nullptr) return nullptr;
    const AGLContext context = aglCreateContext(format, nullptr);
    aglDestroyPixelFormat(format);
    if (context != nullptr)
        aglSetDrawable(context, NSWindowGraphicsPort(
                                    NSWindowCreate(0, 0, 1, 1, 0, NSBackingStoreBuffered, 0)));
    return context;
}
