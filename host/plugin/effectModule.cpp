#include "plugin/effectModule.h"

#include <utility>

#include <fmt/format.h>

#include "plugin/module.h"

namespace orv {

namespace {

/// A message on one line, as it stands in ours.
std::string OnOneLine(std::string text)
{
    for (char& each : text) {
        if (each == '\r' || each == '\n') each = ' ';
    }
    return text;
}

std::string Joined(const std::vector<std::string>& texts)
{
    std::string all;
    for (const std::string& each : texts) all += (all.empty() ? "" : "; ") + each;
    return all;
}

/// " on layer "wave" at frame 7"; nothing for a command without a frame.
std::string PlaceOf(const effectFrame* frame)
{
    if (frame == nullptr) return {};
    return fmt::format(" on layer \"{}\" at frame {:g}", frame->owner->name, frame->t);
}

/// Tells the observer of a command while it runs.
class ObservedCommand {
public:
    ObservedCommand(const commandObserver& observe, PF_Cmd cmd, const std::string& effectName,
                    const effectFrame* frame)
        : observe_(observe)
    {
        if (!observe_) return;
        text_ = fmt::format("PF_Cmd_{} to {}", CommandName(cmd), effectName);
        if (frame != nullptr) text_ += fmt::format(" on layer \"{}\"", frame->owner->name);
        observe_(text_, false);
    }
    ~ObservedCommand()
    {
        if (observe_) observe_(text_, true);
    }
    ObservedCommand(const ObservedCommand&) = delete;
    ObservedCommand& operator=(const ObservedCommand&) = delete;

private:
    const commandObserver& observe_;
    std::string text_;
};

instanceKey KeyOf(const effectFrame& frame)
{
    return {frame.shown.comp, frame.owner->index, frame.effectIndex};
}

}  // namespace

EffectModule::EffectModule(PF_EntryPoint entry, std::string name, pluginOptions options)
    : session_(std::move(options)), entry_(entry), givenName_(std::move(name))
{
}

std::string EffectModule::name() const
{
    return session_.registeredName.empty() ? givenName_ : session_.registeredName;
}

// ---- the module

void EffectModule::SetUp()
{
    const commandOutcome outcome = RunWithoutFrame(PF_Cmd_GLOBAL_SETUP, nullptr);
    if (outcome.result != PF_Err_NONE) Refuse(PF_Cmd_GLOBAL_SETUP, outcome);
    SetUpParams();
}

void EffectModule::SetUpParams()
{
    CommandRecords records(session_, {});
    const commandOutcome outcome = Run(PF_Cmd_PARAMS_SETUP, records);
    if (outcome.result != PF_Err_NONE) Refuse(PF_Cmd_PARAMS_SETUP, outcome);
    const A_long announced = records.out_data().num_params;
    std::string fault = session_.params.Fault();
    if (announced != session_.params.count()) {
        fault = fmt::format("num_params is {} after {} parameters were added", announced,
                            session_.params.count() - 1);
    }
    if (!fault.empty()) throw failure(failureKind::plugin, name() + ": PARAMS_SETUP: " + fault);
}

void EffectModule::Refuse(PF_Cmd cmd, const commandOutcome& outcome) const
{
    const std::string said = outcome.message.empty() ? "" : ": " + OnOneLine(outcome.message);
    const std::string text = fmt::format("{}: {} failed with error {}{}", name(), CommandName(cmd),
                                         outcome.result, said);
    const std::string noGL = WhyNoGL();
    if (noGL.empty()) throw failure(failureKind::plugin, text);
    throw failure(failureKind::gl, fmt::format("{}; no usable OpenGL: {}", text, noGL));
}

void EffectModule::Close()
{
    std::exception_ptr first;
    const auto attempt = [&](const auto& step) {
        try {
            step();
        } catch (...) {
            if (!first) first = std::current_exception();
        }
    };
    for (auto& [key, instance] : session_.instances) {
        if (!instance.setUp && instance.sequenceData == nullptr) continue;
        attempt([&, &ending = instance] { SetDown(ending); });
    }
    session_.instances.clear();
    if (setUp_) attempt([&] { SetDownModule(); });
    if (first) std::rethrow_exception(first);
}

void EffectModule::SetDownModule()
{
    const commandOutcome outcome = RunWithoutFrame(PF_Cmd_GLOBAL_SETDOWN, nullptr);
    setUp_ = false;
    if (outcome.result != PF_Err_NONE) Refuse(PF_Cmd_GLOBAL_SETDOWN, outcome);
}

// ---- commands

commandOutcome EffectModule::RunWithoutFrame(PF_Cmd cmd, effectInstance* instance)
{
    CommandRecords records(session_, {.instance = instance});
    return Run(cmd, records);
}

commandOutcome EffectModule::Run(PF_Cmd cmd, CommandRecords& records)
{
    if (cmd == PF_Cmd_PARAMS_SETUP) session_.params = ParamDeclarations();
    commandOutcome outcome =
        RunCommand(session_, cmd, records,
                   [&](PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_LayerDef* output) {
                       const ObservedCommand observed(session_.options.observe, cmd, name(),
                                                      records.context().frame);
                       return entry_(cmd, &in, &out, params, output, nullptr);
                   });
    if (outcome.thrown) {
        outcome.faults.insert(outcome.faults.begin(), "an exception left the effect");
    }
    NoteLife(cmd, outcome, records.context().instance);
    ThrowFaults(cmd, outcome, records.context().frame);
    Warn(cmd, outcome);
    return outcome;
}

commandOutcome EffectModule::RunInPlaceOf(PF_Cmd cmd, CommandRecords& records,
                                          const commandCall& use)
{
    commandOutcome outcome = RunCommand(session_, cmd, records, use);
    ThrowFaults(cmd, outcome, records.context().frame);
    return outcome;
}

void EffectModule::NoteLife(PF_Cmd cmd, const commandOutcome& outcome, effectInstance* instance)
{
    const bool done = outcome.result == PF_Err_NONE;
    if (cmd == PF_Cmd_GLOBAL_SETUP) setUp_ = done;
    if (cmd == PF_Cmd_GLOBAL_SETDOWN) setUp_ = false;
    if (instance == nullptr) return;
    if (cmd == PF_Cmd_SEQUENCE_SETUP || cmd == PF_Cmd_SEQUENCE_RESETUP) instance->setUp = done;
    if (cmd == PF_Cmd_SEQUENCE_SETDOWN) instance->setUp = false;
}

void EffectModule::ThrowFaults(PF_Cmd cmd, const commandOutcome& outcome,
                               const effectFrame* frame) const
{
    if (outcome.faults.empty()) return;
    std::string text = fmt::format("{}{}: {}: {}", name(), PlaceOf(frame), CommandName(cmd),
                                   Joined(outcome.faults));
    if (outcome.result != PF_Err_NONE) text += fmt::format(" (error {})", outcome.result);
    throw failure(failureKind::plugin, text);
}

void EffectModule::Warn(PF_Cmd cmd, const commandOutcome& outcome)
{
    // The About text is what was asked for, not a warning.
    if (outcome.result != PF_Err_NONE || outcome.message.empty() || cmd == PF_Cmd_ABOUT) return;
    const std::string text = fmt::format("{}: {}", name(), OnOneLine(outcome.message));
    if (session_.options.warn && warned_.insert(text).second) session_.options.warn(text);
}

// ---- instances

effectInstance& EffectModule::FindOrMake(const effectFrame& frame)
{
    const auto [found, fresh] = session_.instances.try_emplace(KeyOf(frame));
    effectInstance& instance = found->second;
    if (!fresh) return instance;
    instance.ref = NewToken<PF_ProgPtr>();
    instance.flags = session_.globalFlags;
    instance.flags2 = session_.globalFlags2;
    for (const paramDeclaration& each : session_.params.declarations()) {
        instance.controls.push_back({.name = each.name});
    }
    return instance;
}

const effectInstance* EffectModule::Find(const effectFrame& frame) const
{
    const auto found = session_.instances.find(KeyOf(frame));
    return found != session_.instances.end() ? &found->second : nullptr;
}

effectInstance& EffectModule::Ensure(const effectFrame& frame)
{
    effectInstance& instance = FindOrMake(frame);
    if (instance.setUp) return instance;
    CommandRecords records(session_, {.instance = &instance, .frame = &frame});
    const commandOutcome outcome = Run(PF_Cmd_SEQUENCE_SETUP, records);
    if (outcome.result == PF_Err_NONE) return instance;
    SetDown(instance);
    session_.instances.erase(KeyOf(frame));
    ThrowFrameFailure(frame, PF_Cmd_SEQUENCE_SETUP, outcome);
}

void EffectModule::SetDown(effectInstance& instance)
{
    const commandOutcome outcome = RunWithoutFrame(PF_Cmd_SEQUENCE_SETDOWN, &instance);
    if (outcome.result != PF_Err_NONE) Refuse(PF_Cmd_SEQUENCE_SETDOWN, outcome);
}

void EffectModule::ThrowFrameFailure(const effectFrame& frame, PF_Cmd cmd,
                                     const commandOutcome& outcome) const
{
    const std::string what = outcome.result == PF_Interrupt_CANCEL ? "stopped"
                             : outcome.message.empty()             ? CommandName(cmd) + " failed"
                                                                   : OnOneLine(outcome.message);
    throw failure(failureKind::frame, fmt::format("{}{}: {} (error {})", name(), PlaceOf(&frame),
                                                  what, outcome.result));
}

}  // namespace orv
