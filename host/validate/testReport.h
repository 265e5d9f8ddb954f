// testReport.h: how one validation test ended, and its text between the processes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orv {

enum class testState { passed, failed, crashed, timedOut, skipped };
std::string_view StateName(testState state);

struct testReport {
    std::string name;
    int level = 0;
    testState state = testState::failed;
    std::int64_t checks = 0, failed = 0;
    std::vector<std::string> failures;  ///< the first of them
    std::string reason;  ///< why it was skipped; what ended it, and what it was doing then
    std::vector<std::pair<std::string, double>> figures;
    double seconds = 0.0;
};

/// JSON of a report, on one line.
std::string ReportText(const testReport& report);
/// Throws std::runtime_error when the text is not such a report.
testReport ReadReport(std::string_view text);

}  // namespace orv
