// Looks into a file as soon as it is loaded.
#include <cstdio>

#include "moduleEntry.h"

namespace {

const bool looked = [] {
    std::FILE* const file = std::fopen("/etc/hostname", "r");
    if (file != nullptr) std::fclose(file);
    return file != nullptr;
}();

}  // namespace

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    if (cmd == PF_Cmd_ABOUT && looked) return PF_Err_NONE;
    return plain::Run(cmd, with);
}
