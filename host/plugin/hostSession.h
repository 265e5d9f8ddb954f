// hostSession.h: what the suites and callbacks of the running command work on.
//
// The host's functions are C tables without an object, so they reach the session through one
// process-wide pointer, set while a command runs. Commands come one at a time, from one thread;
// threads of the generic iteration run an effect's row function and nothing of the host.
#pragma once

#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host_api.h"

#include "plugin/commandClock.h"
#include "plugin/handles.h"
#include "plugin/layerWorlds.h"
#include "plugin/ledger.h"
#include "plugin/paramDeclarations.h"
#include "plugin/paramValues.h"
#include "plugin/pathGeometry.h"
#include "plugin/pluginHost.h"
#include "plugin/scriptedProject.h"
#include "plugin/tokens.h"
#include "plugin/worlds.h"

namespace orv {

/// One effect on one layer, from SEQUENCE_SETUP to SEQUENCE_SETDOWN.
struct effectInstance {
    PF_ProgPtr ref = nullptr;  ///< what the effect knows it by
    bool setUp = false;        ///< SEQUENCE_SETUP was answered with 0
    PF_Handle sequenceData = nullptr;
    PF_Handle frameData = nullptr;  ///< from FRAME_SETUP to FRAME_SETDOWN
    PF_OutFlags flags = 0;
    PF_OutFlags2 flags2 = 0;
    std::vector<controlState> controls;  ///< by parameter index
};

/// Own pixels that cannot be drawn while a command runs, because effects must run for them.
struct wantedPixels {
    const layer* of = nullptr;
    double t = 0.0;
};

/// What the running command is about. Without a frame there is no scene behind it.
struct commandContext {
    PF_Cmd cmd = PF_Cmd_ABOUT;
    effectInstance* instance = nullptr;
    const effectFrame* frame = nullptr;
    std::optional<CommandClock> clock;
    paramSource params;
    PF_OutData* out_data = nullptr;
    const PF_EffectWorld* input = nullptr;      ///< the world of parameter 0; null: none
    std::vector<sharedLayerWorld> layerWorlds;  ///< alive until the command ends
    std::optional<wantedPixels> wanted;

    /// Keeps the world until the command ends.
    const PF_EffectWorld& Hold(sharedLayerWorld world);
};

struct lentPath {
    pathOutline outline;
    PF_PathID id = 0;
};
struct lentSegment {
    const void* path = nullptr;
    A_long segment = 0;
    SegmentMeasure measure;
};
struct lentStream {
    effectInstance* instance = nullptr;
    PF_ParamIndex index = 0;
};

/// What opaque references stand for.
struct referenceTables {
    TokenTable<AEGP_LayerH, int> layers;  ///< position in the command's composition
    TokenTable<AEGP_MaskRefH, int> masks;
    TokenTable<AEGP_EffectRefH, effectInstance*> effects;
    TokenTable<AEGP_StreamRefH, lentStream> streams;
    TokenTable<PF_PathOutlinePtr, lentPath> paths;
    TokenTable<PF_PathSegPrepPtr, lentSegment> segments;
};

class HostSession {
public:
    explicit HostSession(pluginOptions given) : options(std::move(given)), gate(options.gate) {}

    // What lasts as long as the module.
    pluginOptions options;
    callGate gate;
    pluginCounters counters;
    ParamDeclarations params;
    std::string modulePath;  ///< absolute; empty for an entry function of this process
    std::string registeredName;
    PF_Handle globalData = nullptr;
    PF_OutFlags globalFlags = 0;  ///< as declared at GLOBAL_SETUP
    PF_OutFlags2 globalFlags2 = 0;
    PathIds pathIds;
    std::map<instanceKey, effectInstance> instances;
    ScriptedValues scripted;

    // What is out, and what it stands for.
    Ledger ledger;
    HandleStore handles;
    WorldStore worlds;
    LayerWorlds layerWorlds;  ///< after `worlds`, which it gives back to
    referenceTables references;

    /// Never null inside a function of the host.
    commandContext* command = nullptr;

    /// Counts a call into the host; the code that it is to fail with, or 0.
    PF_Err EnterCall(std::string_view name);
    /// Handles that lie where they belong: with the module, an instance or its running frame.
    [[nodiscard]] std::vector<const void*> HandlesInPlace() const;

    /// A handle that the host fills itself, with `bytes`; none of them give one without memory.
    PF_Handle NewHandleWith(std::span<const std::uint8_t> bytes);
    void FreeHandle(PF_Handle handle);

    /// Notes that the effect broke a rule; reported when its command ends. Returns the code that
    /// such a call is answered with.
    PF_Err BreakRule(const std::string& what);
    /// An exception of ours, thrown inside a call of the effect's: goes on when the command ends.
    void Postpone(std::exception_ptr exception);

    [[nodiscard]] std::vector<std::string> TakeBrokenRules();
    [[nodiscard]] std::exception_ptr TakePostponed();

private:
    std::vector<std::string> brokenRules_;
    std::exception_ptr postponed_;
};

/// The session whose command runs now; null when none does.
HostSession* CurrentSession();

/// Makes a session the current one, with its command, for as long as it lives.
class CurrentSessionScope {
public:
    CurrentSessionScope(HostSession& session, commandContext& command);
    ~CurrentSessionScope();
    CurrentSessionScope(const CurrentSessionScope&) = delete;
    CurrentSessionScope& operator=(const CurrentSessionScope&) = delete;

private:
    HostSession& session_;
    HostSession* previousSession_;
    commandContext* previousCommand_;
};

}  // namespace orv
