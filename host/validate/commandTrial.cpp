#include "validate/commandTrial.h"

#include <cstdint>
#include <tuple>
#include <utility>

#include <fmt/format.h>

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

bool SameControls(const std::vector<controlState>& one, const std::vector<controlState>& other)
{
    const auto same = [](const controlState& a, const controlState& b) {
        return std::tie(a.name, a.disabled, a.hidden) == std::tie(b.name, b.disabled, b.hidden);
    };
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), same);
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
    options.runScript = [](const std::string&, const scriptProject&) { return scriptOutcome{}; };
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
        for (turn_ = 0; turn_ < 2; ++turn_) {
            Prepare();
            usual_[turn_] = Send({.failedCall = {}, .missingSuite = {}, .log = &notes_});
            const trialOutcome& usual = usual_[turn_];
            const bool good = usual.answer == PF_Err_NONE && usual.fault.empty();
            if (!checks_.That(good, "{} as it is: answer {} {}", command_.name, usual.answer,
                              usual.fault))
                return false;
            Finish(usual);
            CheckNextFrame(usual);
        }
    turn_ = 0;
    return true;
}

bool CommandTrial::Try(const callGate& gate)
{
    turn_ = 1 - turn_;
    checks_.Doing("{}, {}", command_.name, trialOutcome{.gate = gate}.hostsPart());
    Prepare();
    const trialOutcome outcome = Send(gate);
    if (outcome.met()) JudgeAnswer(outcome);
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
    const image input = bench_.Input();
    outcome.output = bench_.EmptyOutput();
    const bool ofFrame = IsOfFrame(command_.cmd);
    std::string message;
    host.gate() = gate;
    try {
        outcome.answer = host.Send(command_.cmd, &frame, ofFrame ? &input : nullptr,
                                   ofFrame ? &outcome.output : nullptr, message);
    } catch (const failure& problem) {
        outcome.fault = problem.what();
    }
    outcome.gate = std::exchange(host.gate(), {});
    outcome.controls = host.Controls(frame);
    outcome.flags = host.Flags(frame);
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

std::string CommandTrial::WorkNotDone(const trialOutcome& outcome) const
{
    const trialOutcome& usual = usual_[turn_];
    if (command_.cmd == PF_Cmd_QUERY_DYNAMIC_FLAGS)
        return outcome.flags == usual.flags ? "" : "other flags";
    if (command_.cmd == PF_Cmd_UPDATE_PARAMS_UI)
        return SameControls(outcome.controls, usual.controls) ? "" : "other controls";
    return Difference(outcome.output, usual.output);
}

void CommandTrial::JudgeAnswer(const trialOutcome& outcome)
{
    const std::string call = outcome.call();
    const PF_Cmd cmd = command_.cmd;
    // A set-down that has no suite cannot give its handle back.
    const bool helpless = IsSetDown(cmd) && call == "AcquireSuite";
    if (!outcome.fault.empty()) {
        checks_.That(helpless, "{} while {}", outcome.fault, outcome.hostsPart());
        return;
    }
    if (outcome.answer != PF_Err_NONE) {
        checks_.That(
            outcome.answer == outcome.code() || MayFollow(consequence::otherCode, cmd, call),
            "{}: {}, and the answer is {}", command_.name, outcome.hostsPart(), outcome.answer);
        return;
    }
    if (call == "abort") {
        checks_.That(false, "{}: {}, and the answer is 0", command_.name, outcome.hostsPart());
        return;
    }
    const std::string notDone = WorkNotDone(outcome);
    const bool right =
        notDone.empty() ||
        (MayFollow(consequence::withoutBlur, cmd, call) && outcome.output == unblurred_[turn_]) ||
        MayFollow(consequence::controlStays, cmd, call);
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
