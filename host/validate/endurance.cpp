// Level 9: a long life. Nothing grows, and the caller's GL context stays as it was.
#include <array>

#include <fmt/format.h>

#include "validate/callerContext.h"
#include "validate/commandTrial.h"
#include "validate/flatness.h"
#include "validate/testTable.h"

namespace orv {
namespace {

/// Of a scene with ten frames; all get their turn.
double FrameOf(int step)
{
    constexpr int kFrames = 10, kStride = 7;
    return step * kStride % kFrames;
}

PF_Err SendPlainly(ValidationBench& bench, PF_Cmd cmd, double t)
{
    const effectFrame frame = bench.Frame(t);
    std::string message;
    return bench.host().Send(cmd, &frame, nullptr, nullptr, message);
}

// ---- nothing grows

void ManyFrames(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module, TrialOptions());
    bench.Show(EverythingSketch(bench.declaration()));
    CheckFlat(checks, "frames", setting.full ? 2000 : 300,
              [&](int step) { (void)bench.Render(FrameOf(step)); });
    bench.host().Close();
}

void ManySizes(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module, TrialOptions());
    sceneSketch sketch = EverythingSketch(bench.declaration());
    sketch.width = 200;
    bench.Show(sketch);
    CheckFlat(checks, "frames of changing size", setting.full ? 600 : 120, [&](int step) {
        bench.SetQuality({1 + step % 4, 1 + step / 2 % 4, step % 8 < 4 ? 8 : 16});
        (void)bench.Render(FrameOf(step));
    });
    bench.host().Close();
}

void ManyInstances(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module, TrialOptions());
    bench.Show(EverythingSketch(bench.declaration()));
    CheckFlat(checks, "instances", setting.full ? 400 : 100, [&](int step) {
        (void)bench.Render(FrameOf(step));
        checks.That(SendPlainly(bench, PF_Cmd_SEQUENCE_RESETUP, 0.0) == PF_Err_NONE,
                    "SEQUENCE_RESETUP of instance {} failed", step);
        (void)bench.Render(FrameOf(step + 1));
        checks.That(SendPlainly(bench, PF_Cmd_SEQUENCE_SETDOWN, 0.0) == PF_Err_NONE,
                    "SEQUENCE_SETDOWN of instance {} failed", step);
    });
    bench.host().Close();
}

/// What a frame that ends early leaves of its own memory and of GL, no ledger of the host tells.
void ManyFailures(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module, TrialOptions());
    CommandTrial frame(bench, checks, EverythingSketch(bench.declaration()), kTriedRender);
    if (!frame.Learn()) return;
    constexpr std::int64_t kStride = 97;  // far apart, and all in the end
    CheckFlat(checks, "frames that fail", setting.full ? 1000 : 150, [&](int step) {
        const std::int64_t call = 1 + step * kStride % frame.calls();
        (void)frame.Try({.failOn = call, .failedCall = {}, .missingSuite = {}});
        if (frame.abortChecks() == 0) return;
        const std::int64_t check = 1 + step % frame.abortChecks();
        (void)frame.Try({.failedCall = {}, .abortOn = check, .missingSuite = {}});
    });
    bench.host().Close();
}

/// GL drivers keep a little of every context for good.
constexpr growthLimits kSetUpLimits{
    .heapSettles = false, .heapBytes = 1 << 18, .residentBytes = 64 << 20};

void ManySetUps(const testSetting& setting, Checks& checks)
{
    const auto live = [&](int) {
        ValidationBench bench(setting.module, TrialOptions());
        bench.Show(EverythingSketch(bench.declaration()));
        (void)bench.Render(1.0);
        bench.host().Close();
    };
    CheckFlat(checks, "set-ups of the module", setting.full ? 80 : 20, live, kSetUpLimits);
}

// ---- the caller's context

/// Sends a command and checks the caller's context after it. What the command answers is another
/// test's concern.
class WatchedCommands {
public:
    WatchedCommands(Checks& checks, ValidationBench& bench, CallerContext& caller)
        : checks_(checks), bench_(bench), caller_(caller)
    {
    }

    void Send(const std::string& name, PF_Cmd cmd, const callGate& gate = {})
    {
        const bool ofModule = cmd == PF_Cmd_ABOUT || cmd == PF_Cmd_GLOBAL_SETDOWN;
        const effectFrame frame = bench_.Frame(1.0);
        const image input = bench_.Input();
        image output = bench_.EmptyOutput();
        std::string message;
        bench_.host().gate() = gate;
        (void)bench_.host().Send(cmd, ofModule ? nullptr : &frame, ofModule ? nullptr : &input,
                                 ofModule ? nullptr : &output, message);
        bench_.host().gate() = {};
        Look(name);
    }
    void Look(const std::string& name)
    {
        const std::string disturbance = caller_.Disturbance();
        checks_.That(disturbance.empty(), "after {}: {}", name, disturbance);
    }

private:
    Checks& checks_;
    ValidationBench& bench_;
    CallerContext& caller_;
};

void SendEveryCommand(WatchedCommands& commands)
{
    commands.Send("ABOUT", PF_Cmd_ABOUT);
    commands.Send("SEQUENCE_SETUP", PF_Cmd_SEQUENCE_SETUP);
    for (int round = 0; round < 2; ++round) {
        commands.Send("QUERY_DYNAMIC_FLAGS", PF_Cmd_QUERY_DYNAMIC_FLAGS);
        commands.Send("FRAME_SETUP", PF_Cmd_FRAME_SETUP);
        commands.Send("RENDER", PF_Cmd_RENDER);
        for (const std::int64_t call : {5, 50, 500, 2000})
            commands.Send(fmt::format("a RENDER whose call {} fails", call), PF_Cmd_RENDER,
                          {.failOn = call, .failedCall = {}, .missingSuite = {}});
        commands.Send("a RENDER that is aborted", PF_Cmd_RENDER,
                      {.failedCall = {}, .abortOn = 1, .missingSuite = {}});
        commands.Send("FRAME_SETDOWN", PF_Cmd_FRAME_SETDOWN);
        commands.Send("UPDATE_PARAMS_UI", PF_Cmd_UPDATE_PARAMS_UI);
        commands.Send("USER_CHANGED_PARAM", PF_Cmd_USER_CHANGED_PARAM);
        commands.Send("SEQUENCE_FLATTEN", PF_Cmd_SEQUENCE_FLATTEN);
        commands.Send("SEQUENCE_RESETUP", PF_Cmd_SEQUENCE_RESETUP);
    }
    commands.Send("SEQUENCE_SETDOWN", PF_Cmd_SEQUENCE_SETDOWN);
    commands.Send("GLOBAL_SETDOWN", PF_Cmd_GLOBAL_SETDOWN);
}

void CallersContext(const testSetting& setting, Checks& checks)
{
    CallerContext caller;
    if (!caller.made()) Checks::Skip("there is no GL here for a context of the caller's own");
    for (const bool current : {true, false}) {
        if (!current) caller.StepAside();
        ValidationBench bench(setting.module, TrialOptions());
        bench.Show(EverythingSketch(bench.declaration()));
        WatchedCommands commands(checks, bench, caller);
        commands.Look("the module's set-up");
        SendEveryCommand(commands);
    }
}

constexpr std::array kTests{
    validationTest{"endurance.context", 9, "The caller's GL context is untouched by every command",
                   60, 60, CallersContext},
    validationTest{"endurance.frames", 9, "Memory and GL objects stay flat over many frames", 120,
                   600, ManyFrames},
    validationTest{"endurance.failures", 9, "The same over frames that fail or are stopped", 180,
                   900, ManyFailures},
    validationTest{"endurance.sizes", 9, "The same while sizes and depths change", 120, 600,
                   ManySizes},
    validationTest{"endurance.instances", 9, "The same over many instances", 120, 600,
                   ManyInstances},
    validationTest{"endurance.setUps", 9, "The same over many set-ups of the module", 120, 600,
                   ManySetUps},
};

}  // namespace

std::span<const validationTest> EnduranceTests()
{
    return kTests;
}

}  // namespace orv
