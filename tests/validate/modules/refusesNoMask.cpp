// Without a mask it has nothing to draw along, and says that as an error.
#include <cstdio>

#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    const bool drawn = cmd == PF_Cmd_RENDER && with.params != nullptr;
    if (drawn && with.params[plain::kPath]->u.path_d.path_id == 0) {
        std::snprintf(with.out_data.return_msg, sizeof with.out_data.return_msg, "Choose a path");
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    return plain::Run(cmd, with);
}
