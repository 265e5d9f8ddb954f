// The plain effect as a module: nothing is wrong with it.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    return plain::Run(cmd, with);
}
