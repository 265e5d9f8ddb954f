// Has a table of commands and looks in it for every number.
#include <csignal>

#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    if (cmd < PF_Cmd_ABOUT || cmd > PF_Cmd_QUERY_DYNAMIC_FLAGS) (void)std::raise(SIGSEGV);
    return plain::Run(cmd, with);
}
