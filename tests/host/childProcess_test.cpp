// Programs that are started, and ended with all that they started.
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "image/childProcess.h"
#include "support/caseName.h"

namespace orv {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

/// Whether the process is gone, or will be before a generous while has passed: one that was killed
/// stays until its new parent has reaped it.
bool IsGone(pid_t process)
{
    for (int i = 0; i < 3000; ++i) {
        if (::kill(process, 0) != 0 && errno == ESRCH) return true;
        std::this_thread::sleep_for(milliseconds(10));
    }
    return false;
}

struct endCase {
    const char* name;
    const char* script;
    milliseconds limit;
    childEnd end;
};
class ChildEnd : public testing::TestWithParam<endCase> {};
TEST_P(ChildEnd, IsToldAndNothingOfTheGroupStays)
{
    // The script's own child outlives it unless it is ended with the group.
    ChildProcess program({"sh", "-c", std::string("sleep 1000 & echo $!; ") + GetParam().script});
    const childEnd end = program.EndWithin(GetParam().limit);
    EXPECT_EQ(end.timedOut, GetParam().end.timedOut);
    EXPECT_EQ(end.exitCode, GetParam().end.exitCode);
    EXPECT_EQ(end.signal, GetParam().end.signal);
    if (program.Output().empty()) return;  // stopped before it could start one
    EXPECT_TRUE(IsGone(std::stoi(program.Output())));
}
const endCase kEnds[] = {
    {"Well", "exit 0", minutes(1), {}},
    {"WithCode", "exit 7", minutes(1), {.exitCode = 7}},
    {"BySignal", "kill -SEGV $$", minutes(1), {.signal = SIGSEGV}},
    {"TooLate", "wait", milliseconds(300), {.timedOut = true, .signal = SIGKILL}}};
INSTANTIATE_TEST_SUITE_P(Ends, ChildEnd, testing::ValuesIn(kEnds), caseName{});

TEST(SignalNames, AreThoseOfTheShell)
{
    EXPECT_EQ(SignalName(SIGSEGV), "SIGSEGV");
    EXPECT_EQ(SignalName(SIGKILL), "SIGKILL");
}

}  // namespace
}  // namespace orv
