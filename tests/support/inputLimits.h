// inputLimits.h: what no input may need, held against it. For tests and programs that try many.
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <string>

namespace orv {

/// While it lives, an input that takes over 10 s (a minute under sanitizers) ends the process with
/// exit code 1 and its name on stderr, and memory past 2 GB is not there: what asks for it gets
/// std::bad_alloc. (Not under sanitizers, which reserve far more than they use.) One at a time.
class InputLimits {
public:
    InputLimits();
    ~InputLimits();
    InputLimits(const InputLimits&) = delete;
    InputLimits& operator=(const InputLimits&) = delete;

    /// The time starts anew, for the input of that name.
    static void Next(const std::string& name);

private:
    rlimit memory_{};
    struct sigaction alarm_ {};
};

/// Writes which input is being tried to stderr. Safe in a signal handler.
void WriteInput();

/// Has `callback` called before a sanitizer ends the process. Returns whether there is one.
bool CallAtSanitizersEnd(void (*callback)());

}  // namespace orv
