#include "cli/interrupt.h"

#include <atomic>
#include <csignal>

namespace orv {
namespace {

std::atomic<int> noted{0};
static_assert(std::atomic<int>::is_always_lock_free, "written in a signal handler");

extern "C" void NoteSignal(int number)
{
    noted = number;
}

void NoteOnce(int number)
{
    struct sigaction action = {};
    action.sa_handler = NoteSignal;
    // Reset on delivery: the second signal does what it does to any program. Restart: a frame on
    // its way to a file or to ffmpeg gets there whole. The constants are unsigned, the field is
    // not.
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

}  // namespace

InterruptGuard::InterruptGuard()
{
    noted = 0;
    for (const int number : {SIGINT, SIGTERM}) NoteOnce(number);
}

InterruptGuard::~InterruptGuard()
{
    for (const int number : {SIGINT, SIGTERM}) std::signal(number, SIG_DFL);
}

int InterruptGuard::signal() noexcept
{
    return noted;
}

}  // namespace orv
