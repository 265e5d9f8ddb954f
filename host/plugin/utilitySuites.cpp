// Registration, scripts, preferences and threads.
#include <atomic>
#include <mutex>
#include <vector>

#include "image/parallel.h"
#include "plugin/gatedCall.h"
#include "plugin/requests.h"
#include "plugin/suites.h"

namespace orv {

namespace {

PF_Err RegisterWithAEGP(HostSession& session, AEGP_GlobalRefcon, const A_char* plugin_name,
                        AEGP_PluginID* plugin_id)
{
    if (plugin_name == nullptr || plugin_id == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    static AEGP_PluginID registered = 0;
    session.registeredName = plugin_name;
    *plugin_id = ++registered;
    return PF_Err_NONE;
}

PF_Err CodeOf(scriptEnd end)
{
    switch (end) {
        case scriptEnd::done:
            return PF_Err_NONE;
        case scriptEnd::failed:
            return PF_Err_BAD_CALLBACK_PARAM;
        case scriptEnd::stopped:
            return PF_Err_INTERNAL_STRUCT_DAMAGED;
        case scriptEnd::outOfMemory:
            return PF_Err_OUT_OF_MEMORY;
    }
    return PF_Err_BAD_CALLBACK_PARAM;
}

/// Results and error texts are not handed out: effects learn the code, the user the text.
PF_Err ExecuteScript(HostSession& session, AEGP_PluginID, const A_char* script, A_Boolean,
                     AEGP_MemHandle* result, AEGP_MemHandle* error_string)
{
    if (result != nullptr) *result = nullptr;
    if (error_string != nullptr) *error_string = nullptr;
    const effectFrame* frame = session.command->frame;
    if (script == nullptr || frame == nullptr || !session.options.runScript) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const project& scene = *frame->shown.scene;
    const effectDeclaration declaration{session.registeredName, session.registeredName,
                                        session.params.declarations()};
    scriptOutcome outcome =
        session.options.runScript(script, session.scripted.Snapshot(scene, declaration, frame->t));
    if (!session.scripted.Take(scene, declaration, frame->t, outcome.assignments)) {
        outcome = {
            scriptEnd::failed, "the scripting engine set what the project does not have", {}};
    }
    if (outcome.end != scriptEnd::done && session.options.warn) {
        session.options.warn("script: " + outcome.message);
    }
    return CodeOf(outcome.end);
}

// ---- preferences

AEGP_PersistentBlobH ApplicationBlob()
{
    static AEGP_PersistentBlobH blob = NewToken<AEGP_PersistentBlobH>();
    return blob;
}

PF_Err GetApplicationBlob(HostSession&, AEGP_PersistentBlobH* blob)
{
    if (blob == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *blob = ApplicationBlob();
    return PF_Err_NONE;
}

PF_Err DoesKeyExist(HostSession& session, AEGP_PersistentBlobH blob, const A_char* section,
                    const A_char* key, A_Boolean* exists)
{
    if (blob != ApplicationBlob()) return RefuseForeign(session, "AEGP_DoesKeyExist", "blob");
    if (section == nullptr || key == nullptr || exists == nullptr) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    *exists = session.options.preferences.contains({section, key}) ? 1 : 0;
    return PF_Err_NONE;
}

PF_Err SetLong(HostSession& session, AEGP_PersistentBlobH blob, const A_char* section,
               const A_char* key, A_long value)
{
    if (blob != ApplicationBlob()) return RefuseForeign(session, "AEGP_SetLong", "blob");
    if (section == nullptr || key == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    session.options.preferences[{section, key}] = value;
    return PF_Err_NONE;
}

// ---- threads

using rowFunction = PF_Err (*)(void* refcon, A_long thread_index, A_long i, A_long iterations);

/// The result of the lowest iteration that failed; the others' order is not known.
class FirstFailure {
public:
    void Note(A_long iteration, PF_Err result)
    {
        const std::lock_guard lock(mutex_);
        if (result_ == PF_Err_NONE || iteration < iteration_) {
            iteration_ = iteration;
            result_ = result;
        }
        failed_ = true;
    }
    [[nodiscard]] bool any() const { return failed_; }
    [[nodiscard]] PF_Err result() const { return result_; }

private:
    std::mutex mutex_;
    std::atomic<bool> failed_ = false;
    A_long iteration_ = 0;
    PF_Err result_ = PF_Err_NONE;
};

PF_Err IterateGeneric(HostSession&, A_long iterations, void* refcon, rowFunction function)
{
    if (function == nullptr || iterations < 0) return PF_Err_BAD_CALLBACK_PARAM;
    constexpr int kLeastIterations = 16;  // for one worker
    FirstFailure failure;
    ParallelRows(iterations, kLeastIterations, [&](int worker, int begin, int end) {
        for (int i = begin; i < end && !failure.any(); ++i) {
            const PF_Err result = function(refcon, worker, i, iterations);
            if (result != PF_Err_NONE) failure.Note(i, result);
        }
    });
    return failure.result();
}

}  // namespace

const AEGP_UtilitySuite11 kUtilitySuite11{.AEGP_RegisterWithAEGP =
                                              gated<"AEGP_RegisterWithAEGP", &RegisterWithAEGP>};
const AEGP_UtilitySuite13 kUtilitySuite13{.AEGP_ExecuteScript =
                                              gated<"AEGP_ExecuteScript", &ExecuteScript>};

const AEGP_PersistentDataSuite3 kPersistentDataSuite3{
    .AEGP_GetApplicationBlob = gated<"AEGP_GetApplicationBlob", &GetApplicationBlob>,
    .AEGP_DoesKeyExist = gated<"AEGP_DoesKeyExist", &DoesKeyExist>,
    .AEGP_SetLong = gated<"AEGP_SetLong", &SetLong>};

const AEGP_IterateSuite1 kIterateSuite1{.AEGP_IterateGeneric =
                                            gated<"AEGP_IterateGeneric", &IterateGeneric>};

}  // namespace orv
