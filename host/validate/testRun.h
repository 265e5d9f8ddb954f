// testRun.h: one validation test, run in this process.
#pragma once

#include "validate/testReport.h"
#include "validate/testTable.h"

namespace orv {

/// Runs the test with fresh `checks` and reports on it. What it throws is a failed check, but for
/// its skipping itself; one that checked nothing has failed.
testReport RunTest(const validationTest& test, const testSetting& setting, Checks& checks);

}  // namespace orv
