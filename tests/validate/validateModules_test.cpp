// The validator against modules with one fault each: every one fails at the level of its fault and
// at none below.
#include <cstdlib>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "validate/runner.h"

namespace orv {
namespace {

struct badModule {
    const char* name;  ///< of modules/
    int level;
};
constexpr badModule kBadModules[] = {
    {"exportsMore", 1},     {"readsAtLoad", 1},        {"losesGlobalRecord", 2},
    {"repeatsDiskId", 2},   {"changesInput", 3},       {"exceedsChannels", 3},
    {"overrunsOddRows", 3}, {"packsRows", 3},          {"failsWithoutSegments", 4},
    {"refusesNoMask", 4},   {"dropsNeighbours", 5},    {"trustsRecords", 5},
    {"lagsBehind", 6},      {"leavesLastRow", 6},      {"hidesFrameErrors", 7},
    {"losesWorlds", 7},     {"swallowsPathErrors", 7}, {"ignoresAborts", 8},
    {"trustsSuites", 8},    {"growsWithFrames", 9},    {"keepsItsContext", 9},
    {"leavesTextures", 9},  {"crashesAtUnknown", 10},  {"trustsOutput", 10},
};

std::string BuildFolder()
{
    const char* const folder = std::getenv("ORV_BINARY_DIR");
    return folder != nullptr ? folder : ".";
}

/// With every case of the module's level and of those below.
testReport ReportOn(const validationTest& test, const badModule& module)
{
    validationPlan plan;
    plan.setting.module = fmt::format("{}/testModules/{}.so", BuildFolder(), module.name);
    plan.setting.strictness = module.level;
    plan.program = BuildFolder() + "/orv-check";
    return RunApart(test, plan, [] { return false; });
}

std::string TextOf(const testReport& report)
{
    return fmt::format("{} {}: {} {}", report.name, StateName(report.state), report.reason,
                       fmt::join(report.failures, "\n"));
}

class BadModules : public testing::TestWithParam<badModule> {};

TEST_P(BadModules, FailAtTheirOwnLevelAndAtNoneBelow)
{
    bool failed = false;
    for (const validationTest& test : AllTests()) {
        if (test.level > GetParam().level) break;
        const testReport report = ReportOn(test, GetParam());
        const bool good = report.state == testState::passed || report.state == testState::skipped;
        if (test.level < GetParam().level) {
            EXPECT_TRUE(good) << TextOf(report);
        }
        failed = failed || (test.level == GetParam().level && !good);
        if (failed) break;
    }
    EXPECT_TRUE(failed) << "level " << GetParam().level << " finds nothing wrong";
}
INSTANTIATE_TEST_SUITE_P(Modules, BadModules, testing::ValuesIn(kBadModules),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace orv
