// runProgram.h: runs the built `orv` as a user would.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/tempFolder.h"

namespace orv {

struct programResult {
    int code = 0;  ///< exit code; minus the signal's number when one ended it
    std::string out, err;
};

/// Runs `orv` with these arguments in `folder` and waits for its end.
programResult RunOrv(const std::vector<std::string>& arguments,
                     const std::filesystem::path& folder = ".");

/// The same, and sends `signal` as soon as `file` exists in `folder`; never when the program ends
/// before.
programResult RunOrvUntil(const std::vector<std::string>& arguments,
                          const std::filesystem::path& folder, const std::string& file, int signal);

/// The same, and calls `meanwhile` with the program's process number as soon as it runs.
programResult RunOrvWhile(const std::vector<std::string>& arguments,
                          const std::filesystem::path& folder,
                          const std::function<void(pid_t)>& meanwhile);

using TemporaryFolder = TempFolder;

}  // namespace orv
