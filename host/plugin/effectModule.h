// effectModule.h: an effect between its global set-up and set-down: its commands, its instances,
// and what is said about them.
#pragma once

#include <set>
#include <string>

#include "plugin/command.h"
#include "plugin/hostSession.h"

namespace orv {

/// Every command goes through here. Broken rules and leaks are thrown as failure(plugin) once the
/// command has ended; messages with result 0 are warned about once each.
class EffectModule {
public:
    /// Sends nothing yet. `name` serves until the effect registers under another.
    EffectModule(PF_EntryPoint entry, std::string name, pluginOptions options);

    /// GLOBAL_SETUP and PARAMS_SETUP. Throws failure(plugin), or failure(gl) when the set-up failed
    /// and there is no GL to be had at all.
    void SetUp();
    /// SEQUENCE_SETDOWN for every instance, GLOBAL_SETDOWN. Goes on after a failure; throws the
    /// first one.
    void Close();

    /// Sends a command.
    commandOutcome Run(PF_Cmd cmd, CommandRecords& records);
    /// Runs `use` in a command's place. An exception of its own comes back in the outcome.
    commandOutcome RunInPlaceOf(PF_Cmd cmd, CommandRecords& records, const commandCall& use);

    /// The instance for a frame's effect; nothing is sent.
    effectInstance& FindOrMake(const effectFrame& frame);
    /// Null when there is none yet.
    [[nodiscard]] const effectInstance* Find(const effectFrame& frame) const;
    /// The same, after SEQUENCE_SETUP. Throws failure(frame) when the effect refuses it.
    effectInstance& Ensure(const effectFrame& frame);

    /// The exception for a command that the effect answered with an error.
    [[noreturn]] void ThrowFrameFailure(const effectFrame& frame, PF_Cmd cmd,
                                        const commandOutcome& outcome) const;

    [[nodiscard]] HostSession& session() { return session_; }
    [[nodiscard]] const HostSession& session() const { return session_; }
    [[nodiscard]] std::string name() const;

private:
    void SetUpParams();
    void SetDown(effectInstance& instance);
    void SetDownModule();
    commandOutcome RunWithoutFrame(PF_Cmd cmd, effectInstance* instance);
    void NoteLife(PF_Cmd cmd, const commandOutcome& outcome, effectInstance* instance);
    void ThrowFaults(PF_Cmd cmd, const commandOutcome& outcome, const effectFrame* frame) const;
    void Warn(PF_Cmd cmd, const commandOutcome& outcome);
    [[noreturn]] void Refuse(PF_Cmd cmd, const commandOutcome& outcome) const;

    HostSession session_;
    PF_EntryPoint entry_;
    std::string givenName_;
    bool setUp_ = false;  ///< GLOBAL_SETUP was answered with 0
    std::set<std::string> warned_;
};

}  // namespace orv
