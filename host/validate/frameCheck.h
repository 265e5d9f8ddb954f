// frameCheck.h: one frame of the instance on a bench, command by command, and what holds for every
// frame of every module.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "validate/bench.h"
#include "validate/checks.h"

namespace orv {

/// What a frame's commands gave.
struct sentFrame {
    PF_Err result = PF_Err_NONE;       ///< of the first command that failed
    std::string command{}, message{};  ///< that command's, empty without a failure
    image output;
};

/// Bytes that stand in the output before a RENDER; as 16-bit channels they are within range.
inline constexpr std::uint8_t kOneFill = 0x25, kOtherFill = 0x5A;

/// Sends the commands of a frame, SEQUENCE_SETUP before them where it is due. Throws what
/// PluginHost does for broken rules, after FRAME_SETDOWN.
sentFrame SendFrame(ValidationBench& bench, double t, std::uint8_t fill);

/// Whether a module may answer a frame with an error: some values it may refuse, saying why.
enum class refusal { never, withMessage };

/// Renders the frame twice, onto different pixels, and checks that both answers are one: the whole
/// output is written, from nothing but scene and time. The output; none when a check failed or the
/// frame was refused. `where` names the case in the texts.
std::optional<image> CheckFrame(Checks& checks, ValidationBench& bench, const std::string& where,
                                double t = 0.0, refusal may = refusal::never);

/// One check: the frame at `t` is this picture.
bool CheckPicture(Checks& checks, ValidationBench& bench, const std::string& where, double t,
                  const image& expected);

/// Runs the step, with `where` as what the test is doing; a failure that it throws is a failed
/// check. Returns whether nothing was thrown.
bool Attempt(Checks& checks, const std::string& where, const std::function<void()>& step);

/// "" for equal images; else where they first differ, in which values, and in how many pixels.
std::string Difference(const image& one, const image& other);

}  // namespace orv
