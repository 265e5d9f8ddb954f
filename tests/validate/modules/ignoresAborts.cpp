// Nobody is ever asked whether to stop.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    plain::care.asksForAbort = false;
    return plain::Run(cmd, with);
}
