#include "validate/testReport.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace orv {
namespace {

using json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 5> kStateNames{"passed", "failed", "crashed", "timed out",
                                                      "skipped"};

testState StateCalled(const std::string& name)
{
    const auto found = std::ranges::find(kStateNames, name);
    if (found == kStateNames.end()) throw std::runtime_error("no such state: " + name);
    return static_cast<testState>(found - kStateNames.begin());
}

}  // namespace

std::string_view StateName(testState state)
{
    return kStateNames.at(static_cast<std::size_t>(state));
}

std::string ReportText(const testReport& report)
{
    json figures = json::object();
    for (const auto& [name, value] : report.figures) figures[name] = value;
    const json all = {{"name", report.name},
                      {"level", report.level},
                      {"state", StateName(report.state)},
                      {"checks", report.checks},
                      {"failed", report.failed},
                      {"failures", report.failures},
                      {"reason", report.reason},
                      {"figures", std::move(figures)},
                      {"seconds", report.seconds}};
    return all.dump(-1, ' ', false, json::error_handler_t::replace);
}

testReport ReadReport(std::string_view text)
try {
    const json all = json::parse(text);
    testReport report{.name = all.at("name"),
                      .level = all.at("level"),
                      .state = StateCalled(all.at("state")),
                      .checks = all.at("checks"),
                      .failed = all.at("failed"),
                      .failures = all.at("failures"),
                      .reason = all.at("reason"),
                      .figures = {},
                      .seconds = all.at("seconds")};
    for (const auto& [name, value] : all.at("figures").items())
        report.figures.emplace_back(name, value);
    return report;
} catch (const json::exception& problem) {
    throw std::runtime_error(problem.what());
}

}  // namespace orv
