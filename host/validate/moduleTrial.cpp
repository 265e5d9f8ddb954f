#include "validate/moduleTrial.h"

#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>

#include <fmt/format.h>

#include "validate/callContract.h"
#include "validate/frameCheck.h"

namespace orv {
namespace {

constexpr std::string_view kSetUp = "the module's set-up", kSetDown = "the module's set-down";

/// GLOBAL_SETDOWN, with its answer and what it left out.
trialOutcome SendSetDown(PluginHost& host, const callGate& gate)
{
    trialOutcome outcome;
    std::string message;
    host.gate() = gate;
    try {
        outcome.answer = host.Send(PF_Cmd_GLOBAL_SETDOWN, nullptr, nullptr, nullptr, message);
    } catch (const failure& problem) {
        outcome.fault = problem.what();
    }
    outcome.gate = std::exchange(host.gate(), {});
    return outcome;
}

/// Whether the host tells a refusal: the module answered with an error and broke no rule.
bool IsRefusal(const std::string& text, PF_Err& answer)
{
    constexpr std::string_view kTold = "SETUP failed with error ";
    const std::size_t at = text.find(kTold);
    if (at == std::string::npos) return false;
    answer = std::stoi(text.substr(at + kTold.size()));
    return true;
}

/// The call that a gate made to fail, when the gate itself is gone; "" when it was not made.
std::string FailedCall(const callGate& gate, const callLog& notes)
{
    const auto made = static_cast<std::int64_t>(notes.calls.size());
    if (!gate.missingSuite.empty())
        return std::ranges::count(notes.suites, gate.missingSuite) > 0 ? "AcquireSuite" : "";
    if (!gate.refusedCall.empty())
        return std::ranges::count(notes.calls, gate.refusedCall) > 0 ? gate.refusedCall : "";
    return gate.failOn > 0 && gate.failOn <= made
               ? notes.calls[static_cast<std::size_t>(gate.failOn - 1)]
               : "";
}

bool SameDeclaration(const effectDeclaration& one, const effectDeclaration& other)
{
    const auto same = [](const paramDeclaration& a, const paramDeclaration& b) {
        return std::tie(a.id, a.kind, a.name, a.flags) == std::tie(b.id, b.kind, b.name, b.flags);
    };
    return one.matchName == other.matchName && std::ranges::equal(one.params, other.params, same);
}

}  // namespace

ModuleTrial::ModuleTrial(std::string module, Checks& checks)
    : module_(std::move(module)), checks_(checks)
{
}

image ModuleTrial::FrameUnder(ValidationBench& bench) const
{
    bench.Show(UsualSketch(bench.declaration()));
    return bench.Render();
}

bool ModuleTrial::Learn()
{
    callGate gate{.failedCall = {}, .missingSuite = {}, .log = &setUpNotes_};
    // From the second time on everything that a process keeps is there.
    for (int round = 0; round < 2; ++round) {
        setUpNotes_ = {};
        ValidationBench bench(module_, TrialOptions(gate));
        setUpGate_ = std::exchange(bench.host().gate(), {});
        declaration_ = bench.declaration();
        frame_ = FrameUnder(bench);
        bench.host().Close();
    }
    ValidationBench bench(module_, TrialOptions());
    gate.log = &setDownNotes_;
    const trialOutcome usual = SendSetDown(bench.host(), gate);
    setDownGate_ = usual.gate;
    return checks_.That(usual.answer == PF_Err_NONE && usual.fault.empty(),
                        "GLOBAL_SETDOWN as it is: answer {} {}", usual.answer, usual.fault);
}

void ModuleTrial::JudgeMet(std::string_view step, const trialOutcome& outcome)
{
    checks_.That(outcome.met(), "{}: {}, and the module, which usually comes to that, does not",
                 step, outcome.hostsPart());
}

void ModuleTrial::JudgeAnswer(std::string_view step, const trialOutcome& outcome)
{
    checks_.That(outcome.answer == PF_Err_NONE || outcome.MayAnswer(PF_Cmd_GLOBAL_SETUP),
                 "{}: {}, and the answer is {}", step, outcome.hostsPart(), outcome.answer);
}

void ModuleTrial::CheckFrame(ValidationBench& bench, std::string_view step,
                             const trialOutcome& outcome)
{
    const image frame = FrameUnder(bench);
    checks_.That(frame == frame_, "{}: {}, and a frame after it differs: {}", step,
                 outcome.hostsPart(), Difference(frame, frame_));
    bench.host().Close();
}

/// Without its record a module draws nothing or refuses its instances.
void ModuleTrial::CheckFrameWithoutRecord(ValidationBench& bench, const trialOutcome& outcome)
try {
    const image frame = FrameUnder(bench);
    checks_.That(frame == frame_ || frame == bench.EmptyOutput(),
                 "{}: {}, and a frame after it is another: {}", kSetUp, outcome.hostsPart(),
                 Difference(frame, frame_));
    bench.host().Close();
} catch (const failure& refused) {
    if (refused.kind() != failureKind::frame) throw;
}

void ModuleTrial::CheckUnderNewHost(std::string_view step, const trialOutcome& outcome)
{
    Attempt(checks_, fmt::format("a new host after {}: {}", step, outcome.hostsPart()), [&] {
        ValidationBench bench(module_, TrialOptions());
        CheckFrame(bench, step, outcome);
    });
}

bool ModuleTrial::TrySetUp(const callGate& gate)
{
    callLog notes;
    trialOutcome outcome{.gate = gate};
    outcome.gate.log = &notes;
    std::unique_ptr<ValidationBench> bench;
    checks_.Doing("{}, {}", kSetUp, outcome.hostsPart());
    std::string refusal;
    try {
        bench = std::make_unique<ValidationBench>(module_, TrialOptions(outcome.gate));
        outcome.gate = std::exchange(bench->host().gate(), {});
    } catch (const failure& problem) {
        refusal = problem.what();
        outcome.gate.failedCall = FailedCall(gate, notes);
    }
    JudgeMet(kSetUp, outcome);
    if (!refusal.empty() && !IsRefusal(refusal, outcome.answer))
        checks_.That(false, "{} while {}", refusal, outcome.hostsPart());
    else
        JudgeAnswer(kSetUp, outcome);
    if (bench) {
        checks_.That(SameDeclaration(bench->declaration(), declaration_) ||
                         MayFollow(consequence::noText, PF_Cmd_GLOBAL_SETUP, outcome.call()),
                     "{}: {}, and the answer is 0 with other parameters or another name", kSetUp,
                     outcome.hostsPart());
        Attempt(checks_, fmt::format("a frame after {}: {}", kSetUp, outcome.hostsPart()), [&] {
            if (MayFollow(consequence::noRecord, PF_Cmd_GLOBAL_SETUP, outcome.call()))
                CheckFrameWithoutRecord(*bench, outcome);
            else
                CheckFrame(*bench, kSetUp, outcome);
        });
        bench.reset();  // one host at a time
    }
    CheckUnderNewHost(kSetUp, outcome);
    return outcome.met();
}

bool ModuleTrial::TrySetDown(const callGate& gate)
{
    trialOutcome outcome{.gate = gate};
    checks_.Doing("{}, {}", kSetDown, outcome.hostsPart());
    {
        ValidationBench bench(module_, TrialOptions());
        outcome = SendSetDown(bench.host(), gate);
    }
    JudgeMet(kSetDown, outcome);
    // Without a suite the record's handle cannot be given back.
    if (!outcome.fault.empty() && outcome.call() != "AcquireSuite")
        checks_.That(false, "{} while {}", outcome.fault, outcome.hostsPart());
    else
        JudgeAnswer(kSetDown, outcome);
    CheckUnderNewHost(kSetDown, outcome);
    return outcome.met();
}

}  // namespace orv
