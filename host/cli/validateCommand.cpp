// `orv validate`: whether a module keeps its contract, found out from outside.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/commandTable.h"
#include "cli/exitCodes.h"
#include "cli/interrupt.h"
#include "cli/pluginPath.h"
#include "validate/runner.h"

namespace orv {
namespace {

using json = nlohmann::ordered_json;

struct validateOptions {
    std::string plugin, only;
    int strictness = testSetting{}.strictness;
    std::uint64_t seed = testSetting{}.seed;
    double patience = 1.0;
    bool asJson = false, list = false;
};

bool Interrupted()
{
    return InterruptGuard::signal() != 0;
}

bool HasFailed(const testReport& report)
{
    return report.state != testState::passed && report.state != testState::skipped;
}

// ---- the whole of a run

struct validationResult {
    std::vector<testReport> reports;
    bool interrupted = false;

    [[nodiscard]] std::int64_t checks() const
    {
        std::int64_t all = 0;
        for (const testReport& each : reports) all += each.checks;
        return all;
    }
    [[nodiscard]] std::ptrdiff_t failed() const
    {
        return std::ranges::count_if(reports, HasFailed);
    }
    [[nodiscard]] std::ptrdiff_t skipped() const
    {
        return std::ranges::count(reports, testState::skipped, &testReport::state);
    }
    /// A run that checked nothing has not passed.
    [[nodiscard]] bool passed() const { return !interrupted && failed() == 0 && checks() > 0; }
    [[nodiscard]] std::string_view verdict() const
    {
        return interrupted ? "interrupted" : passed() ? "passed" : "failed";
    }
};

// ---- as lines

std::string Counted(std::int64_t count, std::string_view what)
{
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

/// What stands behind a test's name.
std::string DetailOf(const testReport& report)
{
    if (report.state == testState::skipped) return report.reason;
    const bool counted = report.state == testState::passed || report.state == testState::failed;
    std::string text = !counted ? report.reason
                       : report.failed > 0
                           ? fmt::format("{} of {}", report.failed, Counted(report.checks, "check"))
                           : Counted(report.checks, "check");
    text += fmt::format(", {:.1f} s", report.seconds);
    for (const auto& [name, value] : report.figures)
        text += fmt::format("; {} {:.6g}", name, value);
    return text;
}

void PrintReport(const testReport& report)
{
    fmt::print("{:<9}  {:<26}  {}\n", StateName(report.state), report.name, DetailOf(report));
    for (const std::string& text : report.failures) fmt::print("    {}\n", text);
    const auto kept = static_cast<std::int64_t>(report.failures.size());
    if (report.state == testState::failed && report.failed > kept)
        fmt::print("    and {} more\n", report.failed - kept);
    std::fflush(stdout);
}

void PrintVerdict(const validationResult& result, const validationPlan& plan)
{
    const auto tests = static_cast<std::int64_t>(result.reports.size());
    const std::string of = result.failed() > 0 ? fmt::format("{} of ", result.failed()) : "";
    const std::string skipped =
        result.skipped() > 0 ? fmt::format(", {} skipped", result.skipped()) : "";
    fmt::print("{}: {}{}{}, {} (strictness {}, seed {})\n", result.verdict(), of,
               Counted(tests, "test"), skipped, Counted(result.checks(), "check"),
               plan.setting.strictness, plan.setting.seed);
}

// ---- as JSON

void PrintJson(const validationResult& result, const validationPlan& plan)
{
    json tests = json::array();
    for (const testReport& each : result.reports) tests.push_back(json::parse(ReportText(each)));
    const json all = {{"plugin", plan.setting.module}, {"strictness", plan.setting.strictness},
                      {"seed", plan.setting.seed},     {"verdict", result.verdict()},
                      {"checks", result.checks()},     {"failed", result.failed()},
                      {"skipped", result.skipped()},   {"tests", std::move(tests)}};
    fmt::print("{}\n", all.dump(1, ' ', false, json::error_handler_t::replace));
}

// ---- the command

int List(const std::vector<validationTest>& tests)
{
    for (const validationTest& test : tests)
        fmt::print("{:>2}  {:<26}  {}\n", test.level, test.name, test.summary);
    return 0;
}

validationResult RunAll(const std::vector<validationTest>& tests, const validationPlan& plan,
                        bool tell)
{
    validationResult result;
    for (const validationTest& test : tests) {
        const testReport report = RunApart(test, plan, Interrupted);
        result.interrupted = Interrupted();
        if (result.interrupted) break;
        result.reports.push_back(report);
        if (tell) PrintReport(report);
    }
    return result;
}

int Validate(const validateOptions& options)
{
    const std::vector<validationTest> tests = ChosenTests(options.strictness, options.only);
    if (tests.empty())
        throw failure(
            failureKind::usage,
            fmt::format("there is no test '{}'; 'orv validate --list' lists them", options.only));
    if (options.list) return List(tests);

    validationPlan plan;
    plan.setting.module = PluginPath(options.plugin);
    plan.setting.strictness = options.strictness;
    plan.setting.seed = options.seed;
    plan.program = CheckProgramPath();
    plan.patience = options.patience;
    std::error_code error;
    if (!std::filesystem::exists(plan.setting.module, error))
        throw failure(failureKind::plugin, plan.setting.module + ": no such plug-in");

    const InterruptGuard guard;
    const validationResult result = RunAll(tests, plan, !options.asJson);
    if (options.asJson)
        PrintJson(result, plan);
    else
        PrintVerdict(result, plan);
    if (result.interrupted) return kInterruptedBase + InterruptGuard::signal();
    return result.passed() ? 0 : ExitCode(failureKind::plugin);
}

constexpr const char* kFooter =
    "Each test runs in a process of its own and ends as passed, failed, crashed, timed out or\n"
    "skipped. The last line is the verdict; the exit code is 0 when nothing failed, else 4.\n"
    "Up to strictness 4 only the levels within it run. From 5 on all ten levels run, those above\n"
    "the strictness with a sample of their cases.\n"
    "Levels: 1 loading, 2 answers, 3 pictures, 4 masks and sources, 5 lives of instances, 6 "
    "values,\n"
    "7 failing host calls, 8 refusals and aborts, 9 long runs, 10 abuse.\n"
    "\nExamples:\n"
    "  orv validate\n"
    "  orv validate --strictness 10 --seed 7\n"
    "  orv validate --plugin ./Effect.so --only pictures\n"
    "  orv validate --list\n";

}  // namespace

std::function<int()> SetUpValidate(CLI::App& command)
{
    const auto options = std::make_shared<validateOptions>();
    command.add_option("--plugin", options->plugin,
                       "Effect module; default: KAL_Orv.so beside this program");
    command
        .add_option("--strictness", options->strictness,
                    "1 (quick) to 10 (every case of every level)")
        ->check(CLI::Range(1, kLevels))
        ->capture_default_str();
    command.add_option("--seed", options->seed, "Of all that is random")->capture_default_str();
    command.add_option("--only", options->only,
                       "A test, or the first word of several, whatever the strictness");
    command
        .add_option("--patience", options->patience,
                    "Multiplies the tests' time limits, for slow machines")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    CLI::Option* const asJson =
        command.add_flag("--json", options->asJson, "Print one JSON document instead");
    command.add_flag("--list", options->list, "List level, name and summary of the tests")
        ->excludes(asJson);
    command.footer(kFooter);
    return [options] { return Validate(*options); };
}

}  // namespace orv
