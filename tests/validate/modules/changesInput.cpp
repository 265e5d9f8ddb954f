// At 16 bits the input serves as scratch memory.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    const PF_Err err = plain::Run(cmd, with);
    if (cmd != PF_Cmd_RENDER || with.params == nullptr) return err;
    const PF_LayerDef& input = with.params[plain::kInput]->u.ld;
    if (input.data != nullptr && PF_WORLD_IS_DEEP(&input) != 0)
        static_cast<PF_Pixel16*>(input.data)->green ^= 1;
    return err;
}
