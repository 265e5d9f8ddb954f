// command.h: sends one command and finds out what the effect left behind.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/commandRecords.h"

namespace orv {

/// "RENDER"; the number of a command without a name.
std::string CommandName(PF_Cmd cmd);

struct commandOutcome {
    PF_Err result = PF_Err_NONE;
    std::string message;              ///< return_msg as the effect wrote it
    std::vector<std::string> faults;  ///< rules broken and things not given back
    std::exception_ptr thrown;        ///< what left the call itself
    std::optional<wantedPixels> wanted;
};

/// What is called as the command: the effect's entry or a test in its place.
using commandCall =
    std::function<PF_Err(PF_InData&, PF_OutData&, PF_ParamDef* params[], PF_LayerDef* output)>;

/// Makes the session current, calls, takes handles and flags over, and checks everything that was
/// lent. What was not given back is freed, so that a fault is told once. An exception of the host's
/// own, thrown inside one of its functions, is thrown again when all that is done.
commandOutcome RunCommand(HostSession& session, PF_Cmd cmd, CommandRecords& records,
                          const commandCall& call);

}  // namespace orv
