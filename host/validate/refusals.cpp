// Level 8: suites that are not there, calls that are always refused, and a user who stops.
#include <array>
#include <set>
#include <string>

#include "validate/caseChoice.h"
#include "validate/commandTrial.h"
#include "validate/moduleTrial.h"
#include "validate/testTable.h"

namespace orv {
namespace {

using names = std::set<std::string>;

names Once(const std::vector<std::string>& all)
{
    return {all.begin(), all.end()};
}

callGate WithoutSuite(const std::string& suite)
{
    return {.failedCall = {}, .missingSuite = suite};
}

callGate Refusing(const std::string& call)
{
    return {
        .code = PF_Err_OUT_OF_MEMORY, .failedCall = {}, .missingSuite = {}, .refusedCall = call};
}

callGate AbortingAt(std::int64_t check)
{
    return {.failedCall = {}, .abortOn = check, .missingSuite = {}};
}

/// Does `refuse` with every command, ready to be tried, in a scene that uses everything.
template <class Refuse>
void WithEveryCommand(const testSetting& setting, Checks& checks, Refuse&& refuse)
{
    ValidationBench bench(setting.module, TrialOptions());
    const sceneSketch sketch = EverythingSketch(bench.declaration());
    const auto with = [&](const triedCommand& command) {
        CommandTrial trial(bench, checks, sketch, command);
        if (trial.Learn()) refuse(trial);
    };
    for (const triedCommand& command : InstanceCommands()) with(command);
    with(kTriedRender);
    bench.host().Close();
}

void Suites(const testSetting& setting, Checks& checks)
{
    int refused = 0;
    ModuleTrial module(setting.module, checks);
    if (!module.Learn()) return;
    for (const std::string& suite : Once(module.setUpNotes().suites))
        refused += module.TrySetUp(WithoutSuite(suite)) ? 1 : 0;
    for (const std::string& suite : Once(module.setDownNotes().suites))
        refused += module.TrySetDown(WithoutSuite(suite)) ? 1 : 0;
    WithEveryCommand(setting, checks, [&](CommandTrial& trial) {
        for (const std::string& suite : Once(trial.notes().suites))
            refused += trial.Try(WithoutSuite(suite)) ? 1 : 0;
    });
    checks.Figure("suites refused", refused);
}

void Calls(const testSetting& setting, Checks& checks)
{
    int refused = 0;
    ModuleTrial module(setting.module, checks);
    if (!module.Learn()) return;
    for (const std::string& call : Once(module.setUpNotes().calls))
        refused += module.TrySetUp(Refusing(call)) ? 1 : 0;
    for (const std::string& call : Once(module.setDownNotes().calls))
        refused += module.TrySetDown(Refusing(call)) ? 1 : 0;
    WithEveryCommand(setting, checks, [&](CommandTrial& trial) {
        for (const std::string& call : Once(trial.notes().calls))
            refused += trial.Try(Refusing(call)) ? 1 : 0;
    });
    checks.Figure("functions refused", refused);
}

void Aborts(const testSetting& setting, Checks& checks)
{
    int tried = 0;
    const auto stop = [&](CommandTrial& trial) {
        for (const std::int64_t check : ChooseCases(trial.abortChecks(), setting))
            tried += trial.Try(AbortingAt(check)) ? 1 : 0;
    };
    WithEveryCommand(setting, checks, stop);

    // Without motion blur a frame takes another road.
    ValidationBench bench(setting.module, TrialOptions());
    sceneSketch still = EverythingSketch(bench.declaration());
    still.top.clear();
    CommandTrial frame(bench, checks, still, kTriedRender);
    if (!frame.Learn()) return;
    checks.That(frame.abortChecks() > 0, "RENDER never asks whether to stop");
    stop(frame);
    bench.host().Close();
    checks.Figure("aborts", tried);
}

constexpr std::array kTests{
    validationTest{"refusals.suites", 8, "A suite is missing, each in turn", 120, 300, Suites},
    validationTest{"refusals.calls", 8, "All calls of one function fail, each in turn", 120, 300,
                   Calls},
    validationTest{"refusals.aborts", 8, "The user stops at the k-th time that a command asks", 180,
                   900, Aborts},
};

}  // namespace

std::span<const validationTest> RefusalTests()
{
    return kTests;
}

}  // namespace orv
