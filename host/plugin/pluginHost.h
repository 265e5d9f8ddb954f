// pluginHost.h: loads effect modules, keeps their instances and sends them commands.
//
// What the effect may rely on stands in docs/host.md. The C tables that an effect calls carry no
// object, so one PluginHost at a time is "the" host of the process: the one whose command (or
// WithFrame) is running. Commands come one at a time, from one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "host_api.h"

#include "plugin/layerImages.h"
#include "plugin/scriptRunner.h"
#include "scene/errors.h"
#include "scene/paramDeclaration.h"

namespace orv {

/// Everything one frame of one effect is about.
struct effectFrame {
    shownComposition shown;
    const layer* owner = nullptr;  ///< the layer that bears the effect
    int effectIndex = 0;           ///< position in owner->effects
    double t = 0.0;                ///< composition time, frames; the frame's exact instant
    renderQuality quality;
    LayerImages* images = nullptr;
};

/// What an effect asked its host for, in that order.
struct callLog {
    std::vector<std::string> calls;   ///< names of callbacks and suite functions
    std::vector<std::string> suites;  ///< names of suites
};

/// Where calls into the host may be made to fail, for tests: every callback, suite function, suite
/// acquisition and release passes here.
struct callGate {
    std::int64_t made = 0;                         ///< calls so far
    std::int64_t failOn = 0;                       ///< this one fails (from 1); 0: none
    PF_Err code = PF_Err_INTERNAL_STRUCT_DAMAGED;  ///< what it returns
    std::string failedCall;                        ///< name of the function that was failed
    std::int64_t abortChecks = 0;                  ///< calls of `abort` so far
    std::int64_t abortOn = 0;   ///< from this one on `abort` answers PF_Interrupt_CANCEL; 0: never
    std::string missingSuite;   ///< a suite of this name cannot be acquired
    std::string refusedCall{};  ///< every call of this name fails, with `code`
    callLog* log = nullptr;     ///< filled as calls are made; borrowed
};

/// The host's preferences by section and key. In memory: nothing is read from or kept on disk.
using preferenceStore = std::map<std::pair<std::string, std::string>, std::int32_t>;

/// Told of every command, "PF_Cmd_RENDER to KAL_Orv on layer "wave"", before it is sent, and again
/// with `answered` when it is over. Must not throw.
using commandObserver = std::function<void(const std::string& command, bool answered)>;

struct pluginOptions {
    int apiMajor = 13;                  ///< version of the effect API that effects are told
    warningSink warn;                   ///< messages of effects with result 0, once each text
    std::function<bool()> interrupted;  ///< asked by `abort`; may be empty
    preferenceStore preferences;        ///< as an effect finds them at GLOBAL_SETUP
    scriptRunner runScript;             ///< empty: effects are told that there are no scripts
    commandObserver observe;            ///< may be empty
    callGate gate{};                    ///< as it stands at GLOBAL_SETUP
};

struct scriptChange;

/// How an effect wants one of its controls shown.
struct controlState {
    std::string name;
    bool disabled = false;  ///< greyed out
    bool hidden = false;
};

/// Figures of one process, for --stats.
struct pluginCounters {
    std::int64_t commands = 0, renders = 0;
    /// Pictures of layers that effects copied into worlds of their own: what they prepare for
    /// upload. The host sees no GL call, and an effect that keeps its textures copies nothing.
    std::int64_t sourceCopies = 0;
    double effectSeconds = 0.0;
};

/// One loaded module between its global set-up and set-down.
class PluginHost {
public:
    /// Loads the module, sends GLOBAL_SETUP and PARAMS_SETUP. Throws failure: plugin (cannot be
    /// loaded, no entry, wrong answers), gl (its set-up failed and no GL context can be made here
    /// either).
    PluginHost(const std::string& modulePath, pluginOptions options);
    /// The same for an entry function in this process, `name` being its match name until it
    /// registers under another: lets tests run parts of an effect without a module.
    PluginHost(PF_EntryPoint entry, const std::string& name, pluginOptions options);
    ~PluginHost();  ///< sets instances and module down, quietly
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    [[nodiscard]] const effectDeclaration& declaration() const;

    /// Runs the effect on `input` (the layer's pixels with masks and earlier effects, size of the
    /// layer at the rendering's resolution) and returns its output. Creates the instance on first
    /// use (SEQUENCE_SETUP), sends QUERY_DYNAMIC_FLAGS, FRAME_SETUP, RENDER, FRAME_SETDOWN. Throws
    /// failure: frame (the effect's error, with its message; an abort), plugin (leaks, wrong
    /// answers).
    image Render(const effectFrame& frame, const image& input);

    /// Sends one command as it is, nothing before or after it, and returns what the effect
    /// answered, with its message in `message`. `frame` may be null for commands without an
    /// instance, `input` and `output` for commands that draw nothing. The effect finds `output`'s
    /// bytes in its output world, and they are replaced by what it leaves there. Throws
    /// failure(plugin) for leaks and broken rules. For tests and for the panel.
    PF_Err Send(PF_Cmd cmd, const effectFrame* frame, const image* input, image* output,
                std::string& message);

    /// Calls `use` with the records of a RENDER of that frame, without sending the command; what
    /// the use leaves checked out is a leak, as after a command. Creates the instance on first use,
    /// as Render does. `use` is called again, from its beginning, when a layer's pixels that it
    /// checked out had to be drawn by other effects first.
    void WithFrame(const effectFrame& frame, const image& input,
                   const std::function<void(PF_InData&, PF_OutData&, PF_ParamDef* params[])>& use);

    /// Sends `cmd` with the records of that frame, after SEQUENCE_SETUP where that is due. For the
    /// commands that a user's doing causes; `input` may be null. Throws failure: frame (the
    /// effect's error, with its message), plugin.
    void Tell(PF_Cmd cmd, const effectFrame& frame, const image* input);

    /// Ends every instance (SEQUENCE_SETDOWN) and the module (GLOBAL_SETDOWN); throws
    /// failure(plugin) for what is left out. The destructor does the same quietly.
    void Close();

    /// Puts `bytes` where the instance's sequence data would be, as a project saved elsewhere
    /// would; no bytes give a handle whose memory is gone. What was there is freed unread.
    void ReplaceSequenceData(const effectFrame& frame, std::span<const std::uint8_t> bytes);
    /// What the instance's sequence data holds, as a project would keep it; empty when it has none.
    [[nodiscard]] std::vector<std::uint8_t> SequenceData(const effectFrame& frame) const;

    /// The instance's controls by parameter index, as it last asked for.
    [[nodiscard]] std::vector<controlState> Controls(const effectFrame& frame) const;
    /// Flags as the instance last declared them.
    [[nodiscard]] std::pair<PF_OutFlags, PF_OutFlags2> Flags(const effectFrame& frame) const;
    [[nodiscard]] const preferenceStore& preferences() const;

    /// What scripts have changed so far. Their values hold for every instance until the module is
    /// unloaded; no USER_CHANGED_PARAM follows from them.
    [[nodiscard]] const std::vector<scriptChange>& ScriptChanges() const;
    /// The value that an instance finds at the frame, scripts' values included, in the units of
    /// ValueAt; empty for groups.
    [[nodiscard]] std::vector<double> Value(const effectFrame& frame, int index) const;

    [[nodiscard]] callGate& gate();
    [[nodiscard]] const pluginCounters& counters() const;

private:
    struct state;
    std::unique_ptr<state> state_;
};

}  // namespace orv
