// Has a table of commands and looks in it for every number.
#include <cstdlib>

#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    if (cmd < PF_Cmd_ABOUT || cmd > PF_Cmd_QUERY_DYNAMIC_FLAGS) std::abort();
    return plain::Run(cmd, with);
}
