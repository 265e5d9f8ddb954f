#include "plugin/pluginHost.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "plugin/effectModule.h"
#include "plugin/module.h"

namespace orv {

namespace {

/// Instances come and go without a look at their parameters.
bool CarriesParams(PF_Cmd cmd)
{
    return cmd != PF_Cmd_SEQUENCE_SETUP && cmd != PF_Cmd_SEQUENCE_RESETUP &&
           cmd != PF_Cmd_SEQUENCE_FLATTEN && cmd != PF_Cmd_SEQUENCE_SETDOWN;
}

effectDeclaration Declare(const EffectModule& module)
{
    effectDeclaration declaration{module.name(), module.name(),
                                  module.session().params.declarations()};
    for (char& each : declaration.displayName) {
        if (each == '_') each = ' ';
    }
    return declaration;
}

}  // namespace

struct PluginHost::state {
    state(PF_EntryPoint entry, const std::string& name, pluginOptions options)
        : module(entry, name, std::move(options))
    {
    }

    EffectModule module;
    effectDeclaration declaration;

    /// Like EffectModule::Run, but an error of the effect's fails the frame.
    commandOutcome RunOrFail(PF_Cmd cmd, CommandRecords& records, const effectFrame& frame)
    {
        commandOutcome outcome = module.Run(cmd, records);
        if (outcome.result != PF_Err_NONE && !outcome.wanted) {
            module.ThrowFrameFailure(frame, cmd, outcome);
        }
        return outcome;
    }

    /// Attempts a command again as long as it wants own pixels that only other effects can draw:
    /// they are drawn between two tries.
    void RunTries(CommandRecords& records, const effectFrame& frame,
                  const std::function<commandOutcome()>& attempt)
    {
        constexpr int kMostTries = 16;  // more instants than a render has layer parameters
        HostSession& session = module.session();
        for (int tries = 0; tries < kMostTries; ++tries) {
            if (tries > 0) records.ClearOutput();
            const commandOutcome outcome = attempt();
            if (!outcome.wanted) return;
            const auto [of, t] = *outcome.wanted;
            records.context().Hold(session.layerWorlds.Get(session.worlds, frame, *of, t));
        }
        throw failure(failureKind::frame,
                      fmt::format("{} on layer \"{}\": asks for the pixels of too many layers",
                                  module.name(), frame.owner->name));
    }

    image RenderTries(CommandRecords& records, const effectFrame& frame)
    {
        RunTries(records, frame, [&] { return RunOrFail(PF_Cmd_RENDER, records, frame); });
        return ToImage(*records.outputWorld());
    }

    /// FRAME_SETUP, RENDER, FRAME_SETDOWN: the last one even after a failure.
    image RenderFrame(CommandRecords& records, const effectFrame& frame)
    {
        RunOrFail(PF_Cmd_FRAME_SETUP, records, frame);
        image picture;
        try {
            picture = RenderTries(records, frame);
        } catch (...) {
            EndFrameQuietly(records);
            throw;
        }
        RunOrFail(PF_Cmd_FRAME_SETDOWN, records, frame);
        return picture;
    }

    void EndFrameQuietly(CommandRecords& records)
    {
        try {
            (void)module.Run(PF_Cmd_FRAME_SETDOWN, records);
        } catch (const failure&) {
            // The render's own failure is the one to tell.
        }
    }
};

PluginHost::PluginHost(const std::string& modulePath, pluginOptions options)
{
    const loadedModule loaded = LoadModule(modulePath);
    const std::string name = std::filesystem::path(loaded.path).stem().string();
    state_ = std::make_unique<state>(loaded.entry, name, std::move(options));
    state_->module.session().modulePath = loaded.path;
    state_->module.SetUp();
    state_->declaration = Declare(state_->module);
}

PluginHost::PluginHost(PF_EntryPoint entry, const std::string& name, pluginOptions options)
    : state_(std::make_unique<state>(entry, name, std::move(options)))
{
    state_->module.SetUp();
    state_->declaration = Declare(state_->module);
}

PluginHost::~PluginHost()
{
    try {
        Close();
    } catch (const std::exception&) {
        // Whoever wants to know calls Close.
    }
}

const effectDeclaration& PluginHost::declaration() const
{
    return state_->declaration;
}

image PluginHost::Render(const effectFrame& frame, const image& input)
{
    effectInstance& instance = state_->module.Ensure(frame);
    CommandRecords records(state_->module.session(), {.instance = &instance,
                                                      .frame = &frame,
                                                      .withParams = true,
                                                      .input = &input,
                                                      .blankOutput = true});
    if ((instance.flags2 & PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS) != 0) {
        state_->RunOrFail(PF_Cmd_QUERY_DYNAMIC_FLAGS, records, frame);
    }
    return state_->RenderFrame(records, frame);
}

PF_Err PluginHost::Send(PF_Cmd cmd, const effectFrame* frame, const image* input, image* output,
                        std::string& message)
{
    effectInstance* instance = frame != nullptr ? &state_->module.FindOrMake(*frame) : nullptr;
    CommandRecords records(state_->module.session(), {.instance = instance,
                                                      .frame = frame,
                                                      .withParams = CarriesParams(cmd),
                                                      .input = input,
                                                      .output = output});
    const commandOutcome outcome = state_->module.Run(cmd, records);
    message = outcome.message;
    if (records.outputWorld() != nullptr) *output = ToImage(*records.outputWorld());
    return outcome.result;
}

void PluginHost::Tell(PF_Cmd cmd, const effectFrame& frame, const image* input)
{
    effectInstance& instance = state_->module.Ensure(frame);
    CommandRecords records(
        state_->module.session(),
        {.instance = &instance, .frame = &frame, .withParams = true, .input = input});
    state_->RunTries(records, frame, [&] { return state_->RunOrFail(cmd, records, frame); });
}

void PluginHost::WithFrame(
    const effectFrame& frame, const image& input,
    const std::function<void(PF_InData&, PF_OutData&, PF_ParamDef* params[])>& use)
{
    effectInstance& instance = state_->module.Ensure(frame);
    CommandRecords records(
        state_->module.session(),
        {.instance = &instance, .frame = &frame, .withParams = true, .input = &input});
    state_->RunTries(records, frame, [&] {
        const commandOutcome outcome = state_->module.RunInPlaceOf(
            PF_Cmd_RENDER, records,
            [&](PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_LayerDef*) -> PF_Err {
                use(in, out, params);
                return PF_Err_NONE;
            });
        if (outcome.thrown && !outcome.wanted) std::rethrow_exception(outcome.thrown);
        return outcome;
    });
}

void PluginHost::Close()
{
    state_->module.Close();
}

void PluginHost::ReplaceSequenceData(const effectFrame& frame, std::span<const std::uint8_t> bytes)
{
    HostSession& session = state_->module.session();
    effectInstance& instance = state_->module.FindOrMake(frame);
    if (PF_Handle old = std::exchange(instance.sequenceData, nullptr)) session.FreeHandle(old);
    instance.sequenceData = session.NewHandleWith(bytes);
}

std::vector<std::uint8_t> PluginHost::SequenceData(const effectFrame& frame) const
{
    const effectInstance* instance = state_->module.Find(frame);
    if (instance == nullptr || instance->sequenceData == nullptr) return {};
    const std::span<const std::uint8_t> content =
        state_->module.session().handles.Content(instance->sequenceData);
    return {content.begin(), content.end()};
}

std::vector<controlState> PluginHost::Controls(const effectFrame& frame) const
{
    const effectInstance* instance = state_->module.Find(frame);
    if (instance != nullptr) return instance->controls;
    std::vector<controlState> fresh;
    for (const paramDeclaration& each : state_->declaration.params) {
        fresh.push_back({.name = each.name});
    }
    return fresh;
}

const std::vector<scriptChange>& PluginHost::ScriptChanges() const
{
    return state_->module.session().scripted.changes();
}

std::vector<double> PluginHost::Value(const effectFrame& frame, int index) const
{
    const HostSession& session = state_->module.session();
    return ValueAt(ParamSourceOf(frame, session.scripted), session.params.declaration(index),
                   frame.t);
}

std::pair<PF_OutFlags, PF_OutFlags2> PluginHost::Flags(const effectFrame& frame) const
{
    const HostSession& session = state_->module.session();
    const effectInstance* instance = state_->module.Find(frame);
    if (instance == nullptr) return {session.globalFlags, session.globalFlags2};
    return {instance->flags, instance->flags2};
}

const preferenceStore& PluginHost::preferences() const
{
    return state_->module.session().options.preferences;
}

callGate& PluginHost::gate()
{
    return state_->module.session().gate;
}

const pluginCounters& PluginHost::counters() const
{
    return state_->module.session().counters;
}

}  // namespace orv
