// At the module's set-down its record stays where it is.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    return cmd == PF_Cmd_GLOBAL_SETDOWN ? PF_Err_NONE : plain::Run(cmd, with);
}
