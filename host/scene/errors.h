// errors.h: what can go wrong in the host, sorted by who has to act. The number is the exit code.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

namespace orv {

enum class failureKind {
    frame = 1,   ///< a frame could not be rendered; others may
    usage = 2,   ///< wrong command line
    scene = 3,   ///< the scene or a file of its is refused
    plugin = 4,  ///< the plug-in cannot be loaded or breaks its contract
    gl = 5,      ///< no usable OpenGL
    output = 6   ///< a picture or video cannot be written
};

/// The one exception that the host throws on purpose. The text is one line, complete, for the user.
class failure : public std::runtime_error {
public:
    failure(failureKind kind, const std::string& text) : std::runtime_error(text), kind_(kind) {}
    [[nodiscard]] failureKind kind() const noexcept { return kind_; }

private:
    failureKind kind_;
};

/// Takes warnings: one line each, without the word "warning".
using warningSink = std::function<void(const std::string&)>;

}  // namespace orv
