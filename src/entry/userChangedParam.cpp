#include "Util/AEGP_SuiteHandler.h"
#include "Util/firstError.h"
#include "Util/pluginID.h"
#include "Util/returnMessage.h"
#include "entry/commands.h"
#include "entry/syncScript.h"
#include "geometry/paramIndex.h"
#include "gl/GL_base.h"

using namespace AESDK_OpenGL;

namespace {

/// All of what GL can do is used when the box is on, half of it otherwise.
constexpr int kLargestDivisor = 2;

/// Makes the render targets, which all instances share, anew for the size that is now allowed.
PF_Err RebuildTargets(const commandCall& call, int allowMaximum)
{
    S_EffectCommonData.resourcesReady = 0;
    S_EffectCommonData.maxTextureSize = 0;
    (void)AESDK_OpenGL_ReleaseResources(S_EffectCommonData);
    const AESDK_OpenGL_Err err =
        AESDK_OpenGL_InitResources(S_EffectCommonData, kLargestDivisor - allowMaximum);
    return err == Ok ? PF_Err_NONE : FailWithMessage(call.in_data, call.out_data, ReportError(err));
}

PF_Err TellOtherInstances(const commandCall& call, bool allowMaximum)
{
    AEGP_SuiteHandler suites(call.in_data.pica_basicP);
    return suites.UtilitySuite13().AEGP_ExecuteScript(
        pluginID, MakeSyncScript(allowMaximum).c_str(), /*platform_encodingB=*/1, nullptr, nullptr);
}

}  // namespace

PF_Err UserChangedParam(const commandCall& call)
{
    if (call.params[kMask]->u.path_d.path_id == 0) return PF_Err_NONE;
    const bool allowMaximum = call.params[kAllowMaximumTextureSize]->u.bd.value == 1;
    return FirstError{}
        .then([&] { return RebuildTargets(call, allowMaximum ? 1 : 0); })
        .then([&] { return TellOtherInstances(call, allowMaximum); })
        .code();
}
