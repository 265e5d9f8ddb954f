// runner.h: runs validation tests, each in an orv-check of its own.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "validate/testReport.h"
#include "validate/testTable.h"

namespace orv {

/// How far a run goes: which tests, and how long each may take.
struct validationPlan {
    testSetting setting;
    std::string program;    ///< orv-check
    double patience = 1.0;  ///< multiplies the time limits
};

/// The tests of a strictness; with a name, that test or all tests of that first word, whatever the
/// strictness. None when nothing bears the name.
std::vector<validationTest> ChosenTests(int strictness, const std::string& only);

/// Runs one test and tells how it ended. `stop` is asked all the time: once it answers true the
/// test is ended, and its report says timed out. Throws failure(frame) when orv-check cannot be
/// started.
testReport RunApart(const validationTest& test, const validationPlan& plan,
                    const std::function<bool()>& stop);

/// orv-check in the folder of this executable.
std::string CheckProgramPath();

}  // namespace orv
