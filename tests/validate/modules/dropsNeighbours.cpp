// What all instances share goes with the first of them that ends, until another one begins.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    static bool isThere = false;
    if (cmd == PF_Cmd_SEQUENCE_SETUP || cmd == PF_Cmd_SEQUENCE_RESETUP) isThere = true;
    if (cmd == PF_Cmd_SEQUENCE_SETDOWN) isThere = false;
    if (cmd == PF_Cmd_RENDER && with.params != nullptr && !isThere)
        with.params[plain::kPath]->u.path_d.path_id = 0;
    return plain::Run(cmd, with);
}
