#include <utility>

#include "Util/AEGP_SuiteHandler.h"
#include "Util/firstError.h"
#include "Util/guards.h"
#include "Util/returnMessage.h"
#include "entry/commands.h"
#include "entry/records.h"
#include "gl/GL_base.h"

using namespace AESDK_OpenGL;

namespace {

/// Without "Allow maximum texture size" half of what GL can do is used.
constexpr int kDefaultDivisor = 2;

PF_Err EnsureRenderTargets(const commandCall& call)
{
    const AESDK_OpenGL_Err err = AESDK_OpenGL_InitResources(S_EffectCommonData, kDefaultDivisor);
    return err == Ok ? PF_Err_NONE : FailWithMessage(call.in_data, call.out_data, ReportError(err));
}

/// Gives the instance a fresh record in a new handle. A handle that does not lock is given back and
/// leaves the instance without a record: its frames are then not drawn.
PF_Err CreateRecord(const PF_HandleSuite2& handles, const commandCall& call)
{
    GlobalData* global = GlobalRecord(call.in_data.global_data);
    if (global == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    HostHandle handle(handles, sizeof(SequenceData));
    if (handle.error() != PF_Err_NONE) return handle.error();

    HandleLock lock(handles, handle.get());
    if (lock.memory() != nullptr) {
        ConstructSequenceRecord(lock.memory(), *global);
        call.out_data.sequence_data = handle.release();
    }
    return PF_Err_NONE;
}

/// Puts a fresh record in the place of the one that the host handed in, whose content is not read:
/// it may come from a saved project.
PF_Err ReplaceRecord(const PF_HandleSuite2& handles, const commandCall& call)
{
    GlobalData* global = GlobalRecord(call.in_data.global_data);
    if (global == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    HostHandle handle(handles, sizeof(SequenceData));
    if (handle.get() == nullptr) return PF_Err_NONE;  // the old one serves on

    HandleLock lock(handles, handle.get());
    if (lock.memory() == nullptr) {
        handles.host_unlock_handle(handle.get());
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    ConstructSequenceRecord(lock.memory(), *global);
    call.out_data.sequence_data = handle.release();
    DisposeSequenceHandle(handles, std::exchange(call.in_data.sequence_data, nullptr));
    return PF_Err_NONE;
}

}  // namespace

PF_Err SequenceSetup(const commandCall& call)
{
    AEGP_SuiteHandler suites(call.in_data.pica_basicP);
    return FirstError{}
        .then([&] { return CreateRecord(suites.HandleSuite2(), call); })
        .then([&] { return EnsureRenderTargets(call); })
        .code();
}

namespace {

/// The handle's memory is gone, so there is no record to replace: as for a new instance.
PF_Err StartAnew(const commandCall& call)
{
    // Taken before there is a second handle: then the old one can be given back for certain.
    AEGP_SuiteHandler suites(call.in_data.pica_basicP);
    const PF_HandleSuite2& handles = suites.HandleSuite2();
    const PF_Err err = SequenceSetup(call);
    if (call.out_data.sequence_data != call.in_data.sequence_data) {
        DisposeSequenceHandle(handles, std::exchange(call.in_data.sequence_data, nullptr));
    }
    return err;
}

}  // namespace

PF_Err SequenceResetup(const commandCall& call)
{
    const PF_Handle old = call.in_data.sequence_data;
    PF_Err err = PF_Err_NONE;
    if (old != nullptr && *old == nullptr) {
        err = StartAnew(call);
    } else if (old != nullptr) {
        AEGP_SuiteHandler suites(call.in_data.pica_basicP);
        err = ReplaceRecord(suites.HandleSuite2(), call);
    }
    const PF_Err targetsErr = EnsureRenderTargets(call);
    return targetsErr == PF_Err_NONE ? err : targetsErr;
}

PF_Err SequenceSetdown(const commandCall& call)
{
    if (call.in_data.sequence_data != nullptr) {
        // The record goes even if the host has no suite by which its handle can be given back.
        DestroySequenceRecord(call.in_data.sequence_data);
        AEGP_SuiteHandler suites(call.in_data.pica_basicP);
        DisposeSequenceHandle(suites.HandleSuite2(), call.in_data.sequence_data);
    }
    call.in_data.sequence_data = call.out_data.sequence_data = nullptr;
    if (GlobalData* global = GlobalRecord(call.in_data.global_data)) GiveSlotBack(*global);
    return PF_Err_NONE;
}
