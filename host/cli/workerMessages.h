// workerMessages.h: what passes between `orv render` and its worker processes.
//
// To the worker: frame numbers, one a line; the end of the input means that there are no more.
// From the worker: one JSON object a line. A frame's answer may be followed by the bytes of its
// picture, as many as it says.
//
// A worker may have run wild, so nothing that it sends is taken for granted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/frameWork.h"

namespace orv {

struct commandMessage {
    std::string command;  ///< as a commandObserver is told
    bool answered = false;
};
struct warningMessage {
    std::string text;
};
struct pluginLoadedMessage {};
struct readyMessage {
    runStart start;
};
struct frameMessage {
    frameAnswer answer;
};
/// The run cannot go on.
struct failureMessage {
    failureKind kind;
    std::string text;
};
/// All is given back; the worker ends.
struct closedMessage {};

using workerMessage = std::variant<commandMessage, warningMessage, pluginLoadedMessage,
                                   readyMessage, frameMessage, failureMessage, closedMessage>;

/// The line, with its end; a frame's picture goes after it.
std::string MessageLine(const workerMessage& message);

/// Takes messages apart as their bytes come in.
class MessageReader {
public:
    void Append(std::string_view bytes) { pending_ += bytes; }
    /// The next whole message; none: more bytes are needed. Throws std::runtime_error for what
    /// cannot be one, or for a picture of another size than the `start` before it promised.
    std::optional<workerMessage> Next();

private:
    std::string pending_;
    std::optional<frameAnswer> unfinished_;  ///< its picture is not whole
    pictureFormat format_;
};

}  // namespace orv
