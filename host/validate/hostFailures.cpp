// Level 7: the k-th call into the host fails, for every k of every command.
#include <array>

#include "validate/caseChoice.h"
#include "validate/commandTrial.h"
#include "validate/moduleTrial.h"
#include "validate/testTable.h"

namespace orv {
namespace {

/// In turn a code that every effect has of its own, another one, and one that no effect can have.
PF_Err CodeFor(std::int64_t call)
{
    constexpr std::array<PF_Err, 3> kCodes{PF_Err_OUT_OF_MEMORY, PF_Err_INTERNAL_STRUCT_DAMAGED,
                                           7731};
    return kCodes[static_cast<std::size_t>(call) % kCodes.size()];
}

callGate FailingAt(std::int64_t call)
{
    return {.failOn = call, .code = CodeFor(call), .failedCall = {}, .missingSuite = {}};
}

/// How many calls were failed.
std::int64_t FailCalls(const testSetting& setting, Checks& checks, ValidationBench& bench,
                       const sceneSketch& sketch, const triedCommand& command)
{
    CommandTrial trial(bench, checks, sketch, command);
    if (!trial.Learn()) return 0;
    std::int64_t failed = 0;
    for (const std::int64_t call : ChooseCases(trial.calls(), setting))
        failed += trial.Try(FailingAt(call)) ? 1 : 0;
    return failed;
}

void Report(Checks& checks, std::int64_t failed)
{
    if (failed == 0 && checks.failed() == 0)
        Checks::Skip("the module calls nothing of its host here");
    checks.Figure("host calls failed", static_cast<double>(failed));
}

void FailInFrames(const testSetting& setting, Checks& checks, const sceneSketch& sketch)
{
    ValidationBench bench(setting.module, TrialOptions());
    const std::int64_t failed = FailCalls(setting, checks, bench, sketch, kTriedRender);
    bench.host().Close();
    Report(checks, failed);
}

effectDeclaration DeclarationOf(const std::string& module)
{
    return ValidationBench(module).declaration();
}

void BlurredFrames(const testSetting& setting, Checks& checks)
{
    sceneSketch sketch = EverythingSketch(DeclarationOf(setting.module));
    sketch.depth = 16;
    FailInFrames(setting, checks, sketch);
}

void StillFrames(const testSetting& setting, Checks& checks)
{
    sceneSketch sketch = EverythingSketch(DeclarationOf(setting.module));
    sketch.top.clear();
    FailInFrames(setting, checks, sketch);
}

void Instances(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module, TrialOptions());
    const sceneSketch sketch = EverythingSketch(bench.declaration());
    std::int64_t failed = 0;
    for (const triedCommand& command : InstanceCommands())
        failed += FailCalls(setting, checks, bench, sketch, command);
    bench.host().Close();
    Report(checks, failed);
}

void Modules(const testSetting& setting, Checks& checks)
{
    ModuleTrial trial(setting.module, checks);
    if (!trial.Learn()) return;
    std::int64_t failed = 0;
    for (const std::int64_t call : ChooseCases(trial.setUpCalls(), setting))
        failed += trial.TrySetUp(FailingAt(call)) ? 1 : 0;
    for (const std::int64_t call : ChooseCases(trial.setDownCalls(), setting))
        failed += trial.TrySetDown(FailingAt(call)) ? 1 : 0;
    Report(checks, failed);
}

constexpr std::array kTests{
    validationTest{"failures.module", 7, "A host call fails while the module is set up or down",
                   240, 900, Modules},
    validationTest{"failures.instance", 7,
                   "A host call fails in a command of an instance other than RENDER", 180, 900,
                   Instances},
    validationTest{"failures.frame", 7, "A host call fails in a frame", 120, 900, StillFrames},
    validationTest{"failures.blurredFrame", 7, "A host call fails in a frame with motion blur", 180,
                   1800, BlurredFrames},
};

}  // namespace

std::span<const validationTest> FailureTests()
{
    return kTests;
}

}  // namespace orv
