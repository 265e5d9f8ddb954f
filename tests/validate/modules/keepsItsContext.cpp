// A GL context of its own is current from the first frame on.
#include "moduleEntry.h"
#include "ownContext.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    static AGLContext context = nullptr;
    if (cmd == PF_Cmd_RENDER) {
        if (context == nullptr) context = MakeContext();
        aglSetCurrentContext(context);
    }
    return plain::Run(cmd, with);
}
