#include "validate/commandTrial.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <fmt/format.h>

#include "validate/abuse.h"
#include "validate/callContract.h"
#include "validate/frameCheck.h"

namespace orv {
namespace {

constexpr std::array kInstanceCommands{
    triedCommand{"ABOUT", PF_Cmd_ABOUT},
    triedCommand{"SEQUENCE_SETUP", PF_Cmd_SEQUENCE_SETUP},
    triedCommand{"SEQUENCE_RESETUP", PF_Cmd_SEQUENCE_RESETUP},
    triedCommand{"SEQUENCE_RESETUP from elsewhere", PF_Cmd_SEQUENCE_RESETUP, oldRecord::foreign},
    triedCommand{"SEQUENCE_RESETUP without memory", PF_Cmd_SEQUENCE_RESETUP,
                 oldRecord::withoutMemory},
    triedCommand{"SEQUENCE_FLATTEN", PF_Cmd_SEQUENCE_FLATTEN},
    triedCommand{"FRAME_SETUP", PF_Cmd_FRAME_SETUP},
    triedCommand{"FRAME_SETDOWN", PF_Cmd_FRAME_SETDOWN},
    triedCommand{"QUERY_DYNAMIC_FLAGS", PF_Cmd_QUERY_DYNAMIC_FLAGS},
    triedCommand{"UPDATE_PARAMS_UI", PF_Cmd_UPDATE_PARAMS_UI},
    triedCommand{"USER_CHANGED_PARAM", PF_Cmd_USER_CHANGED_PARAM},
    triedCommand{"SEQUENCE_SETDOWN", PF_Cmd_SEQUENCE_SETDOWN},
};

bool IsOfFrame(PF_Cmd cmd)
{
    return cmd == PF_Cmd_FRAME_SETUP || cmd == PF_Cmd_RENDER || cmd == PF_Cmd_FRAME_SETDOWN;
}

bool IsOfSequence(PF_Cmd cmd)
{
    return cmd == PF_Cmd_SEQUENCE_SETUP || cmd == PF_Cmd_SEQUENCE_RESETUP ||
           cmd == PF_Cmd_SEQUENCE_FLATTEN;
}

/// The same scene with its composition's motion blur off.
sceneSketch WithoutBlur(sceneSketch sketch)
{
    sketch.top.clear();
    return sketch;
}

}  // namespace

std::span<const triedCommand> InstanceCommands()
{
    return kInstanceCommands;
}

pluginOptions TrialOptions(const callGate& gate)
{
    pluginOptions options;
    options.runScript = NoteScript;
    options.gate = gate;
    return options;
}

// ---- outcomes

bool trialOutcome::met() const
{
    return !gate.failedCall.empty() || (gate.abortOn != 0 && gate.abortChecks >= gate.abortOn);
}

std::string trialOutcome::call() const
{
    return gate.abortOn != 0 ? "abort" : gate.failedCall;
}

PF_Err trialOutcome::code() const
{
    if (gate.abortOn != 0) return PF_Interrupt_CANCEL;
    return gate.missingSuite.empty() ? gate.code : PF_Err{PF_Err_BAD_CALLBACK_PARAM};
}

bool trialOutcome::MayAnswer(PF_Cmd cmd) const
{
    if (answer == code()) return true;
    return IsKnownResult(answer) && answer != PF_Interrupt_CANCEL &&
           MayFollow(consequence::otherCode, cmd, call());
}

std::string trialOutcome::hostsPart() const
{
    if (gate.abortOn != 0)
        return fmt::format("abort answered {} at check {}", code(), gate.abortOn);
    if (!gate.missingSuite.empty()) return fmt::format("there is no \"{}\"", gate.missingSuite);
    if (!gate.refusedCall.empty())
        return fmt::format("every {} failed with {}", gate.refusedCall, gate.code);
    if (gate.failedCall.empty())
        return fmt::format("call {} fails with {}", gate.failOn, gate.code);
    return fmt::format("{}, call {}, failed with {}", gate.failedCall, gate.failOn, gate.code);
}

// ---- the trial

CommandTrial::CommandTrial(ValidationBench& bench, Checks& checks, const sceneSketch& sketch,
                           const triedCommand& command)
    : bench_(bench), checks_(checks), sketch_(sketch), command_(command)
{
    bench_.Show(sketch_);
}

PF_Err CommandTrial::SendPlainly(PF_Cmd cmd)
{
    const effectFrame frame = bench_.Frame(time());
    std::string message;
    if (!IsOfFrame(cmd)) return bench_.host().Send(cmd, &frame, nullptr, nullptr, message);
    const image input = bench_.Input();
    image output = bench_.EmptyOutput();
    return bench_.host().Send(cmd, &frame, &input, &output, message);
}

void CommandTrial::LearnFrames()
{
    bench_.Show(WithoutBlur(sketch_));
    for (turn_ = 0; turn_ < 2; ++turn_) unblurred_[turn_] = bench_.Render(time());
    bench_.Show(sketch_);
    for (turn_ = 0; turn_ < 2; ++turn_) frames_[turn_] = bench_.Render(time());
    turn_ = 0;
}

bool CommandTrial::Learn()
{
    LearnFrames();
    // From the second round on everything that an instance keeps is there.
    for (int round = 0; round < 2; ++round)
        for (turn_ = 0; turn_ < 2; ++turn_)
            if (!LearnTurn()) return false;
    turn_ = 1;
    return true;
}

bool CommandTrial::LearnTurn()
{
    notes_[turn_] = {};
    Prepare();
    usual_[turn_] = Send({.failedCall = {}, .missingSuite = {}, .log = &notes_[turn_]});
    const trialOutcome& usual = usual_[turn_];
    const bool good = usual.answer == PF_Err_NONE && usual.fault.empty();
    if (!checks_.That(good, "{} as it is: answer {} {}", command_.name, usual.answer, usual.fault))
        return false;
    goodRecords_.Add(usual.work.record);
    Finish(usual);
    CheckNextFrame(usual);
    return true;
}

std::int64_t CommandTrial::calls() const
{
    return std::max(usual_[0].gate.made, usual_[1].gate.made);
}

std::int64_t CommandTrial::abortChecks() const
{
    return std::max(usual_[0].gate.abortChecks, usual_[1].gate.abortChecks);
}

callLog CommandTrial::notes() const
{
    callLog both = notes_[0];
    both.calls.insert(both.calls.end(), notes_[1].calls.begin(), notes_[1].calls.end());
    both.suites.insert(both.suites.end(), notes_[1].suites.begin(), notes_[1].suites.end());
    return both;
}

bool CommandTrial::UsuallyMeets(const callGate& gate) const
{
    const callGate& usual = usual_[turn_].gate;
    const callLog& notes = notes_[turn_];
    if (gate.abortOn != 0) return gate.abortOn <= usual.abortChecks;
    if (!gate.missingSuite.empty()) return std::ranges::count(notes.suites, gate.missingSuite) > 0;
    if (!gate.refusedCall.empty()) return std::ranges::count(notes.calls, gate.refusedCall) > 0;
    return gate.failOn <= usual.made;
}

/// The other frame than the last time, so that nothing kept is right; what only the same one meets
/// is tried after a look at the other.
void CommandTrial::ChooseTurn(const callGate& gate)
{
    turn_ = 1 - turn_;
    if (UsuallyMeets(gate)) return;
    (void)bench_.Render(time());
    turn_ = 1 - turn_;
}

bool CommandTrial::Try(const callGate& gate)
{
    ChooseTurn(gate);
    checks_.Doing("{}, {}", command_.name, trialOutcome{.gate = gate}.hostsPart());
    Prepare();
    const trialOutcome outcome = Send(gate);
    JudgeAnswer(outcome);
    Finish(outcome);
    CheckNextFrame(outcome);
    return outcome.met();
}

void CommandTrial::Prepare()
{
    const PF_Cmd cmd = command_.cmd;
    const bool elsewhere = command_.record != oldRecord::own;
    if (cmd == PF_Cmd_UPDATE_PARAMS_UI) {
        // Controls are as declared in a new instance only.
        SendPlainly(PF_Cmd_SEQUENCE_SETDOWN);
        bench_.Show(sketch_);
        SendPlainly(PF_Cmd_SEQUENCE_SETUP);
    }
    if (cmd == PF_Cmd_SEQUENCE_SETUP || elsewhere) SendPlainly(PF_Cmd_SEQUENCE_SETDOWN);
    if (elsewhere) {
        constexpr std::size_t kBytes = 400;
        const std::vector<std::uint8_t> bytes(
            command_.record == oldRecord::foreign ? kBytes : std::size_t{0}, 0xA5);
        bench_.host().ReplaceSequenceData(bench_.Frame(time()), bytes);
    }
    if (cmd == PF_Cmd_RENDER || cmd == PF_Cmd_FRAME_SETDOWN) SendPlainly(PF_Cmd_FRAME_SETUP);
}

trialOutcome CommandTrial::Send(const callGate& gate)
{
    PluginHost& host = bench_.host();
    const effectFrame frame = bench_.Frame(time());
    trialOutcome outcome;
    commandWork& work = outcome.work;
    const image input = bench_.Input();
    work.output = bench_.EmptyOutput();
    work.flagsBefore = host.Flags(frame);
    const bool ofFrame = IsOfFrame(command_.cmd);
    host.gate() = gate;
    try {
        const ScriptListener listener(work.scripts);
        outcome.answer = host.Send(command_.cmd, &frame, ofFrame ? &input : nullptr,
                                   ofFrame ? &work.output : nullptr, work.message);
    } catch (const failure& problem) {
        outcome.fault = problem.what();
    }
    outcome.gate = std::exchange(host.gate(), {});
    work.controls = host.Controls(frame);
    work.flags = host.Flags(frame);
    work.record = host.SequenceData(frame);
    if (command_.cmd == PF_Cmd_FRAME_SETUP && outcome.answer == PF_Err_NONE)
        host.WithFrame(frame, input, [&](PF_InData& in, PF_OutData&, PF_ParamDef**) {
            work.frameData = in.frame_data != nullptr;
        });
    return outcome;
}

void CommandTrial::Finish(const trialOutcome& outcome)
{
    const bool failed = outcome.answer != PF_Err_NONE || !outcome.fault.empty();
    const PF_Cmd cmd = command_.cmd;
    if (cmd == PF_Cmd_RENDER || (cmd == PF_Cmd_FRAME_SETUP && !failed))
        SendPlainly(PF_Cmd_FRAME_SETDOWN);
    // What was flattened is set up again before it is used.
    if (cmd == PF_Cmd_SEQUENCE_FLATTEN) SendPlainly(PF_Cmd_SEQUENCE_RESETUP);
    // As the host does with an instance that refuses to live.
    if (failed && (cmd == PF_Cmd_SEQUENCE_SETUP || cmd == PF_Cmd_SEQUENCE_RESETUP))
        SendPlainly(PF_Cmd_SEQUENCE_SETDOWN);
}

// ---- what has to be right

std::string CommandTrial::WorkNotDone(const trialOutcome& outcome)
{
    std::string other = WorkDifference(command_.cmd, outcome.work, usual_[turn_].work);
    if (!other.empty() || !IsOfSequence(command_.cmd)) return other;
    return RecordDifference(outcome);
}

/// What a record counts may have moved on since the good runs: when it is another, one more of them
/// tells whether it still is.
std::string CommandTrial::RecordDifference(const trialOutcome& outcome)
{
    if (goodRecords_.Difference(outcome.work.record).empty()) return {};
    Finish(outcome);
    Prepare();
    goodRecords_.Add(Send({}).work.record);
    return goodRecords_.Difference(outcome.work.record);
}

void CommandTrial::JudgeAnswer(const trialOutcome& outcome)
{
    const std::string call = outcome.call();
    const PF_Cmd cmd = command_.cmd;
    checks_.That(outcome.met(), "{}: {}, and the command, which usually comes to that, does not",
                 command_.name, outcome.hostsPart());
    // A set-down that has no suite cannot give its handle back.
    const bool helpless = IsSetDown(cmd) && call == "AcquireSuite";
    if (!outcome.fault.empty()) {
        checks_.That(helpless, "{} while {}", outcome.fault, outcome.hostsPart());
        return;
    }
    if (outcome.answer != PF_Err_NONE) {
        checks_.That(outcome.met() && outcome.MayAnswer(cmd), "{}: {}, and the answer is {}",
                     command_.name, outcome.hostsPart(), outcome.answer);
        return;
    }
    if (call == "abort") {
        checks_.That(false, "{}: {}, and the answer is 0", command_.name, outcome.hostsPart());
        return;
    }
    JudgeWork(outcome);
}

void CommandTrial::JudgeWork(const trialOutcome& outcome)
{
    const std::string call = outcome.call(), notDone = WorkNotDone(outcome);
    const auto may = [&](consequence what) { return MayFollow(what, command_.cmd, call); };
    const bool right =
        notDone.empty() ||
        (may(consequence::withoutBlur) && outcome.work.output == unblurred_[turn_]) ||
        may(consequence::controlStays) || may(consequence::noRecord) || may(consequence::noText);
    checks_.That(right, "{}: {}, and the answer is 0 with another result: {}", command_.name,
                 outcome.hostsPart(), notDone);
}

void CommandTrial::CheckNextFrame(const trialOutcome& outcome)
{
    const auto render = [&] {
        image picture;
        Attempt(checks_, fmt::format("the frame after {}, {}", command_.name, outcome.hostsPart()),
                [&] { picture = bench_.Render(time()); });
        return picture;
    };
    image next = render();
    if (outcome.answer == PF_Err_NONE && next == bench_.EmptyOutput() &&
        MayFollow(consequence::noRecord, command_.cmd, outcome.gate.failedCall)) {
        SendPlainly(PF_Cmd_SEQUENCE_SETDOWN);
        next = render();
    }
    checks_.That(next == frames_[turn_], "{}: {}, and the frame after it differs: {}",
                 command_.name, outcome.hostsPart(), Difference(next, frames_[turn_]));
}

}  // namespace orv
