#include "support/inputLimits.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>

// Only programs under a sanitizer have it.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace orv {
namespace {

constexpr rlim_t kMostMemory = rlim_t{2} << 30U;

/// Ready to be written by a signal handler.
char running[512];

bool UnderSanitizer()
{
    return __sanitizer_set_death_callback != nullptr;
}

void Write(const char* text)
{
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text, std::strlen(text));
}

void OnAlarm(int)
{
    Write("took too long: ");
    WriteInput();
    _exit(1);
}

}  // namespace

void WriteInput()
{
    Write(running);
}

bool CallAtSanitizersEnd(void (*callback)())
{
    if (!UnderSanitizer()) return false;
    __sanitizer_set_death_callback(callback);
    return true;
}

InputLimits::InputLimits()
{
    struct sigaction action {};
    action.sa_handler = OnAlarm;
    sigaction(SIGALRM, &action, &alarm_);
    getrlimit(RLIMIT_DATA, &memory_);
    if (UnderSanitizer()) return;
    const rlimit limit{kMostMemory, memory_.rlim_max};
    setrlimit(RLIMIT_DATA, &limit);
}

InputLimits::~InputLimits()
{
    alarm(0);
    sigaction(SIGALRM, &alarm_, nullptr);
    setrlimit(RLIMIT_DATA, &memory_);
}

void InputLimits::Next(const std::string& name)
{
    std::snprintf(running, sizeof running, "while running %s\n", name.c_str());
    alarm(UnderSanitizer() ? 60 : 10);
}

}  // namespace orv
