// Does not come back from the set-up of its parameters.
#include <unistd.h>

#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    while (cmd == PF_Cmd_PARAMS_SETUP) (void)pause();
    return plain::Run(cmd, with);
}
