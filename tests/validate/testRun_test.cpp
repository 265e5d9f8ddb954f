// How a validation test's end is told.
#include "validate/testRun.h"

#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>

namespace orv {
namespace {

struct runCase {
    const char* name;
    void (*run)(const testSetting& setting, Checks& checks);
    testState state;
    const char* told;  ///< the first failure, or the reason
};
void PrintTo(const runCase& c, std::ostream* out)
{
    *out << c.name;
}

class Runs : public testing::TestWithParam<runCase> {};

TEST_P(Runs, AreToldAsTheyEnd)
{
    const validationTest test{"runs.case", 1, "", 1, 1, GetParam().run};
    Checks checks;
    const testReport report = RunTest(test, {}, checks);
    EXPECT_EQ(report.state, GetParam().state);
    EXPECT_EQ(report.failures.empty() ? report.reason : report.failures.front(), GetParam().told);
}
INSTANTIATE_TEST_SUITE_P(
    Ways, Runs,
    testing::Values(
        runCase{"Good", [](const testSetting&, Checks& checks) { checks.That(true, "never told"); },
                testState::passed, ""},
        runCase{"Nothing", [](const testSetting&, Checks&) {}, testState::failed,
                "nothing was checked"},
        runCase{"Skips", [](const testSetting&, Checks&) { Checks::Skip("no mask"); },
                testState::skipped, "no mask"},
        runCase{"FailsAndSkips",
                [](const testSetting&, Checks& checks) {
                    checks.That(false, "before");
                    Checks::Skip("no mask");
                },
                testState::failed, "before"},
        runCase{"Throws", [](const testSetting&, Checks&) { throw std::runtime_error("lost"); },
                testState::failed, "lost"}),
    [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace orv
