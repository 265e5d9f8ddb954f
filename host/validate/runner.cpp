#include "validate/runner.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

#include <fmt/format.h>

#include "image/childProcess.h"
#include "scene/errors.h"
#include "validate/addressSanitizer.h"
#include "validate/protocol.h"

namespace orv {
namespace {

using std::chrono::duration;
using std::chrono::steady_clock;

#if ORV_ADDRESS_SANITIZER
constexpr double kSlowness = 6.0;  // of a program with sanitizers
#else
constexpr double kSlowness = 1.0;
#endif

bool IsFull(const validationTest& test, const testSetting& setting)
{
    return test.level <= setting.strictness;
}

duration<double> LimitOf(const validationTest& test, const validationPlan& plan)
{
    const int seconds = IsFull(test, plan.setting) ? test.fullSeconds : test.seconds;
    return duration<double>(seconds * plan.patience * kSlowness);
}

/// Until it ends, its time is up or it is to stop; then its whole group is ended.
childEnd Watch(ChildProcess& program, duration<double> limit, const std::function<bool()>& stop)
{
    constexpr std::chrono::milliseconds kNap(2);
    const auto end = steady_clock::now() + limit;
    bool timedOut = false;
    while (!timedOut && program.IsRunning()) {
        std::this_thread::sleep_for(kNap);
        timedOut = steady_clock::now() > end || stop();
    }
    childEnd how = program.EndNow();
    how.timedOut = timedOut;
    return how;
}

/// The part of the output that tells what the test was doing; "" when it had not said.
std::string LastWords(const std::string& output)
{
    const std::string words = output.substr(0, kActivityBytes);
    const std::size_t last = words.find_last_not_of(std::string_view(" \n\0", 3));
    return last == std::string::npos ? "" : words.substr(0, last + 1);
}

/// The last lines of what it printed as errors.
std::vector<std::string> LastErrors(const std::string& errors)
{
    constexpr std::size_t kLines = 8;
    std::vector<std::string> lines;
    for (std::size_t from = 0; from < errors.size();) {
        const std::size_t end = std::min(errors.find('\n', from), errors.size());
        if (end > from) lines.push_back(errors.substr(from, end - from));
        from = end + 1;
    }
    if (lines.size() > kLines) lines.erase(lines.begin(), lines.end() - kLines);
    return lines;
}

/// A report for a test that gave none.
testReport Lost(testState state, const std::string& how, const ChildProcess& program)
{
    const std::string words = LastWords(program.Output());
    testReport report;
    report.state = state;
    report.failed = 1;
    report.failures = LastErrors(program.Errors());
    report.reason = words.empty() ? how : fmt::format("{}; last: {}", how, words);
    return report;
}

testReport ReportOf(const ChildProcess& program, const childEnd& end, duration<double> limit)
{
    if (end.timedOut)
        return Lost(testState::timedOut, fmt::format("stopped after {:g} s", limit.count()),
                    program);
    if (end.signal != 0) return Lost(testState::crashed, SignalName(end.signal), program);
    if (end.exitCode != 0)
        return Lost(testState::crashed, fmt::format("ended with code {}", end.exitCode), program);
    const std::string output = program.Output();
    try {
        return ReadReport(std::string_view(output).substr(std::min(output.size(), kActivityBytes)));
    } catch (const std::runtime_error&) {
        return Lost(testState::crashed, "ended without a report", program);
    }
}

}  // namespace

std::vector<validationTest> ChosenTests(int strictness, const std::string& only)
{
    std::vector<validationTest> tests = AllTests();
    std::erase_if(tests, [&](const validationTest& test) {
        const std::string_view firstWord = test.name.substr(0, test.name.find('.'));
        if (!only.empty()) return only != test.name && only != firstWord;
        return test.level > strictness && strictness < kAllLevelsFrom;
    });
    return tests;
}

testReport RunApart(const validationTest& test, const validationPlan& plan,
                    const std::function<bool()>& stop)
try {
    const auto start = steady_clock::now();
    const duration<double> limit = LimitOf(test, plan);
    ChildProcess program({plan.program, "--test", std::string(test.name), "--plugin",
                          plan.setting.module, "--strictness",
                          std::to_string(plan.setting.strictness), "--seed",
                          std::to_string(plan.setting.seed)});
    testReport report = ReportOf(program, Watch(program, limit, stop), limit);
    report.name = test.name;
    report.level = test.level;
    report.seconds = duration<double>(steady_clock::now() - start).count();
    return report;
} catch (const std::system_error& problem) {
    throw failure(failureKind::frame,
                  fmt::format("{}: cannot be started: {}", plan.program, problem.code().message()));
}

std::string CheckProgramPath()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path() / "orv-check";
}

}  // namespace orv
