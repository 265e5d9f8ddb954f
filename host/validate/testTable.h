// testTable.h: the tests of `orv validate`. Each level has a file of its own and one table there.
//
// Levels: 1 loading, 2 answers and parameters, 3 pictures, 4 masks and sources, 5 lives of
// instances, 6 values, 7 failing host calls, 8 refusals and aborts, 9 long runs, 10 abuse.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "validate/checks.h"

namespace orv {

inline constexpr int kLevels = 10;
/// From this strictness on every level runs, those above it with a sample of their cases.
inline constexpr int kAllLevelsFrom = 5;

struct testSetting {
    std::string module;  ///< path
    int strictness = 5;  ///< 1..10
    std::uint64_t seed = 1;
    bool full = false;  ///< every case, not a sample: the test's level is within the strictness
};

struct validationTest {
    std::string_view name;  ///< "pictures.sizes": unique, the first word being the level's
    int level;              ///< 1..10
    std::string_view summary;
    int seconds, fullSeconds;  ///< time limits on one slow core: with a sample, with every case
    /// Runs in a process of its own. What it throws is a failure of the test.
    void (*run)(const testSetting& setting, Checks& checks);
};

std::span<const validationTest> LoadingTests();    ///< level 1
std::span<const validationTest> AnswerTests();     ///< level 2
std::span<const validationTest> PictureTests();    ///< level 3
std::span<const validationTest> SourceTests();     ///< level 4
std::span<const validationTest> LifeTests();       ///< level 5
std::span<const validationTest> ValueTests();      ///< level 6
std::span<const validationTest> FailureTests();    ///< level 7
std::span<const validationTest> RefusalTests();    ///< level 8
std::span<const validationTest> EnduranceTests();  ///< level 9
std::span<const validationTest> AbuseTests();      ///< level 10

/// All of them, by level.
std::vector<validationTest> AllTests();

}  // namespace orv
