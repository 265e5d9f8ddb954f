#include "plugin/command.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <stdexcept>

#include <fmt/format.h>

#include "plugin/worldOperations.h"

namespace orv {

namespace {

struct commandName {
    PF_Cmd cmd;
    std::string_view name;
};
constexpr std::array kCommandNames{
    commandName{PF_Cmd_ABOUT, "ABOUT"},
    commandName{PF_Cmd_GLOBAL_SETUP, "GLOBAL_SETUP"},
    commandName{PF_Cmd_GLOBAL_SETDOWN, "GLOBAL_SETDOWN"},
    commandName{PF_Cmd_PARAMS_SETUP, "PARAMS_SETUP"},
    commandName{PF_Cmd_SEQUENCE_SETUP, "SEQUENCE_SETUP"},
    commandName{PF_Cmd_SEQUENCE_RESETUP, "SEQUENCE_RESETUP"},
    commandName{PF_Cmd_SEQUENCE_FLATTEN, "SEQUENCE_FLATTEN"},
    commandName{PF_Cmd_SEQUENCE_SETDOWN, "SEQUENCE_SETDOWN"},
    commandName{PF_Cmd_FRAME_SETUP, "FRAME_SETUP"},
    commandName{PF_Cmd_RENDER, "RENDER"},
    commandName{PF_Cmd_FRAME_SETDOWN, "FRAME_SETDOWN"},
    commandName{PF_Cmd_USER_CHANGED_PARAM, "USER_CHANGED_PARAM"},
    commandName{PF_Cmd_UPDATE_PARAMS_UI, "UPDATE_PARAMS_UI"},
    commandName{PF_Cmd_QUERY_DYNAMIC_FLAGS, "QUERY_DYNAMIC_FLAGS"},
};

/// The handle that the effect leaves in a field, if it is one of the host's.
PF_Handle TakeOver(HostSession& session, PF_Handle handle, const char* field)
{
    if (handle == nullptr || session.handles.Contains(handle)) return handle;
    (void)session.BreakRule(fmt::format("{} holds a handle that is not the host's", field));
    return nullptr;
}

/// Takes handles and flags over. What a set-down leaves in its field is not kept, so that it shows
/// as not given back.
void TakeOver(HostSession& session, PF_Cmd cmd, CommandRecords& records)
{
    const PF_OutData& out = records.out_data();
    const auto taken = [&](PF_Cmd last, PF_Handle handle, const char* field) {
        return cmd == last ? nullptr : TakeOver(session, handle, field);
    };
    session.globalData = taken(PF_Cmd_GLOBAL_SETDOWN, out.global_data, "global_data");
    effectInstance* instance = records.context().instance;
    if (instance == nullptr) {
        session.globalFlags = out.out_flags;
        session.globalFlags2 = out.out_flags2;
        return;
    }
    instance->sequenceData = taken(PF_Cmd_SEQUENCE_SETDOWN, out.sequence_data, "sequence_data");
    instance->frameData = taken(PF_Cmd_FRAME_SETDOWN, out.frame_data, "frame_data");
    instance->flags = out.out_flags;
    instance->flags2 = out.out_flags2;
}

std::string MessageOf(const PF_OutData& out)
{
    const char* end = std::find(out.return_msg, out.return_msg + sizeof out.return_msg, '\0');
    return {out.return_msg, end};
}

void CheckMemory(HostSession& session, PF_Cmd cmd, const CommandRecords& records)
{
    if (const std::string damage = records.Damage(); !damage.empty()) {
        (void)session.BreakRule(damage);
    }
    if (const std::string damage = session.worlds.DamagedPadding(); !damage.empty()) {
        (void)session.BreakRule(damage);
    }
    for (const void* handle : session.ledger.OutOfPlace(loanKind::handle, {})) {
        if (!session.handles.IsIntact(static_cast<PF_Handle>(const_cast<void*>(handle)))) {
            (void)session.BreakRule("something was written behind the end of a handle's memory");
        }
    }
    const hostWorld* output = records.outputWorld();
    if (cmd == PF_Cmd_RENDER && output != nullptr && !ChannelsInRange(*output)) {
        (void)session.BreakRule("a 16-bit channel of the output is above 32768");
    }
}

/// Frees what the effect should have given back.
void Reclaim(HostSession& session, const std::vector<const void*>& kept)
{
    for (const void* world : session.ledger.OutOfPlace(loanKind::world, kept)) {
        session.worlds.FreeAt(world);
    }
    for (const void* handle : session.ledger.OutOfPlace(loanKind::handle, kept)) {
        session.handles.Free(static_cast<PF_Handle>(const_cast<void*>(handle)));
    }
    session.ledger.ForgetAllBut(kept);
    session.references = {};
}

/// The call itself, timed, with the session current.
void Call(HostSession& session, CommandRecords& records, const commandCall& call,
          commandOutcome& outcome)
{
    ++session.counters.commands;
    if (records.context().cmd == PF_Cmd_RENDER) ++session.counters.renders;
    const auto started = std::chrono::steady_clock::now();
    const CurrentSessionScope current(session, records.context());
    try {
        outcome.result =
            call(records.in_data(), records.out_data(), records.params(), records.output());
    } catch (...) {
        outcome.thrown = std::current_exception();
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - started;
    session.counters.effectSeconds += took.count();
}

}  // namespace

std::string CommandName(PF_Cmd cmd)
{
    const auto named = std::ranges::find(kCommandNames, cmd, &commandName::cmd);
    return named != kCommandNames.end() ? std::string(named->name) : fmt::format("command {}", cmd);
}

commandOutcome RunCommand(HostSession& session, PF_Cmd cmd, CommandRecords& records,
                          const commandCall& call)
{
    if (session.command != nullptr) {
        throw std::logic_error("a command was sent while another one runs");
    }
    records.context().cmd = cmd;
    records.context().wanted.reset();
    records.Prepare();
    commandOutcome outcome;
    Call(session, records, call, outcome);

    TakeOver(session, cmd, records);
    CheckMemory(session, cmd, records);
    outcome.message = MessageOf(records.out_data());
    outcome.wanted = records.context().wanted;
    outcome.faults = session.TakeBrokenRules();
    const std::vector<const void*> kept = session.HandlesInPlace();
    for (const std::string& leak : session.ledger.Report(kept)) {
        outcome.faults.push_back("not given back: " + leak);
    }
    Reclaim(session, kept);
    if (const std::exception_ptr postponed = session.TakePostponed()) {
        std::rethrow_exception(postponed);
    }
    return outcome;
}

}  // namespace orv
