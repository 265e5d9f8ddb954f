#include "cli/exitCodes.h"

#include <fmt/format.h>

namespace orv {

std::string ExitCodeHelp()
{
    std::string text = "Exit codes:\n";
    for (const exitCodeRow& row : kExitCodes)
        text += fmt::format("  {:<5} {}\n", row.code, row.meaning);
    text += fmt::format("  {}+N interrupted by signal N; finished frames are whole\n",
                        kInterruptedBase);
    return text;
}

}  // namespace orv
