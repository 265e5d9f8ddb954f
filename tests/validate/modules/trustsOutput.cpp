// Takes it that the end of a frame comes with the frame's output.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    if (cmd == PF_Cmd_FRAME_SETDOWN && *static_cast<volatile A_long*>(&with.output->width) < 0)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    return plain::Run(cmd, with);
}
