// exitCodes.h: what the exit code of `orv` says. One table serves the program, --help and the
// tests.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "scene/errors.h"

namespace orv {

struct exitCodeRow {
    int code;
    std::string_view meaning;
};

inline constexpr std::array kExitCodes{
    exitCodeRow{0, "every frame is there"},
    exitCodeRow{1, "a frame failed to render"},
    exitCodeRow{2, "wrong usage"},
    exitCodeRow{3, "the scene, or a file that it names, is refused"},
    exitCodeRow{4, "the plug-in cannot be loaded or breaks its contract"},
    exitCodeRow{5, "no usable OpenGL"},
    exitCodeRow{6, "output cannot be written"},
};
inline constexpr int kInterruptedBase = 128;  ///< plus the number of the signal

constexpr int ExitCode(failureKind kind)
{
    return static_cast<int>(kind);
}

/// The table as --help prints it.
std::string ExitCodeHelp();

}  // namespace orv
