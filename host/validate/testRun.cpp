#include "validate/testRun.h"

#include <chrono>
#include <exception>

namespace orv {

testReport RunTest(const validationTest& test, const testSetting& setting, Checks& checks)
{
    testReport report;
    report.name = test.name;
    report.level = test.level;
    const auto start = std::chrono::steady_clock::now();
    try {
        test.run(setting, checks);
    } catch (const testSkipped& why) {
        report.state = testState::skipped;
        report.reason = why.what();
    } catch (const std::exception& problem) {
        checks.That(false, "{}", problem.what());
    }
    report.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (checks.made() == 0 && report.reason.empty()) checks.That(false, "nothing was checked");
    report.checks = checks.made();
    report.failed = checks.failed();
    report.failures = checks.failures();
    report.figures = checks.figures();
    if (report.failed > 0)
        report.state = testState::failed;
    else if (report.reason.empty())
        report.state = testState::passed;
    return report;
}

}  // namespace orv
