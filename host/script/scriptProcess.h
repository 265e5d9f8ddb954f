// scriptProcess.h: runs scripts in a child process, for AEGP_ExecuteScript.
#pragma once

#include <string>

#include "plugin/scriptRunner.h"

namespace orv {

/// Runs each script in a fresh process of the program `file`, with 5 seconds and 64 MB for it. A
/// script that takes more is ended; nothing that it set counts then.
scriptRunner ScriptsThrough(const std::string& file);

/// `orv-script` beside the running program.
std::string ScriptProgramPath();

}  // namespace orv
