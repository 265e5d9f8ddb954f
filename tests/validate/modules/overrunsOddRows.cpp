// Rows are written in pairs of pixels, so that an odd one ends a pixel too late.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    const PF_Err err = plain::Run(cmd, with);
    if (cmd != PF_Cmd_RENDER || with.output == nullptr || with.output->width % 2 == 0) return err;
    if (PF_WORLD_IS_DEEP(with.output) == 0)
        static_cast<PF_Pixel8*>(with.output->data)[with.output->width].alpha ^= 1;
    return err;
}
