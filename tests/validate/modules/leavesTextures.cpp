// Every frame leaves a texture in a GL context of the module's own.
#include <GL/gl.h>

#include "moduleEntry.h"
#include "ownContext.h"

namespace {

void LeaveTexture(AGLContext context)
{
    const CGLContextObj before = CGLGetCurrentContext();
    if (aglSetCurrentContext(context) != 0) {
        GLuint texture = 0;
        glGenTextures(1, &texture);
    }
    (void)CGLSetCurrentContext(before);
}

}  // namespace

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    static AGLContext context = nullptr;
    if (cmd == PF_Cmd_RENDER) {
        if (context == nullptr) context = MakeContext();
        if (context != nullptr) LeaveTexture(context);
    }
    if (cmd == PF_Cmd_GLOBAL_SETDOWN && context != nullptr) {
        (void)aglDestroyContext(context);
        context = nullptr;
    }
    return plain::Run(cmd, with);
}
