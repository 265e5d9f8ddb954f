// A GL context of its own is current from the first frame on.
#include "mac_gl.h"
#include "moduleEntry.h"

namespace {

AGLContext MakeContext()
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

}  // namespace

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    static AGLContext context = nullptr;
    if (cmd == PF_Cmd_RENDER) {
        if (context == nullptr) context = MakeContext();
        aglSetCurrentContext(context);
    }
    return plain::Run(cmd, with);
}
