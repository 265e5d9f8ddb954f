#include "validate/callContract.h"

#include <algorithm>
#include <array>

namespace orv {
namespace {

constexpr PF_Cmd kEveryCommand = -1;

struct callRule {
    consequence allowed;
    PF_Cmd cmd;
    std::string_view call;
};

constexpr std::array kRules{
    // Null pointers and lengths are no codes. A missing suite is told by a code of its own.
    callRule{consequence::otherCode, kEveryCommand, "AcquireSuite"},
    callRule{consequence::otherCode, kEveryCommand, "host_new_handle"},
    callRule{consequence::otherCode, kEveryCommand, "host_lock_handle"},
    callRule{consequence::otherCode, kEveryCommand, "get_platform_data"},
    callRule{consequence::otherCode, kEveryCommand, "strcpy"},
    callRule{consequence::otherCode, kEveryCommand, "sprintf"},

    // An answer about motion blur that the host does not give counts as none.
    callRule{consequence::withoutBlur, PF_Cmd_RENDER, "AEGP_GetEffectLayer"},
    callRule{consequence::withoutBlur, PF_Cmd_RENDER, "AEGP_GetLayerParentComp"},
    callRule{consequence::withoutBlur, PF_Cmd_RENDER, "AEGP_GetLayerFlags"},
    callRule{consequence::withoutBlur, PF_Cmd_RENDER, "AEGP_GetCompFlags"},
    callRule{consequence::withoutBlur, PF_Cmd_RENDER, "AEGP_GetCompShutterAnglePhase"},
    callRule{consequence::withoutBlur, PF_Cmd_RENDER, "AEGP_GetCompSuggestedMotionBlurSamples"},

    // A control that cannot be reached is no reason to leave the others as they are.
    callRule{consequence::controlStays, PF_Cmd_UPDATE_PARAMS_UI, "AEGP_GetNewEffectStreamByIndex"},
    callRule{consequence::controlStays, PF_Cmd_UPDATE_PARAMS_UI, "AEGP_GetDynamicStreamFlags"},
    callRule{consequence::controlStays, PF_Cmd_UPDATE_PARAMS_UI, "AEGP_SetDynamicStreamFlag"},

    // The number that it answers may be a length: a failure cannot be told from one.
    callRule{consequence::noText, PF_Cmd_ABOUT, "sprintf"},
    // A parameter without its name works as it should. The module's steps stand as its set-up.
    callRule{consequence::noText, PF_Cmd_GLOBAL_SETUP, "strcpy"},

    // Without memory there is no record, and without one nothing is drawn.
    callRule{consequence::noRecord, PF_Cmd_GLOBAL_SETUP, "host_lock_handle"},
    callRule{consequence::noRecord, PF_Cmd_SEQUENCE_SETUP, "host_lock_handle"},
    callRule{consequence::noRecord, PF_Cmd_SEQUENCE_RESETUP, "host_lock_handle"},
    callRule{consequence::noRecord, PF_Cmd_SEQUENCE_RESETUP, "host_new_handle"},
};

}  // namespace

bool MayFollow(consequence what, PF_Cmd cmd, std::string_view call)
{
    return std::ranges::any_of(kRules, [&](const callRule& rule) {
        return rule.allowed == what && rule.call == call &&
               (rule.cmd == kEveryCommand || rule.cmd == cmd);
    });
}

bool IsSetDown(PF_Cmd cmd)
{
    return cmd == PF_Cmd_FRAME_SETDOWN || cmd == PF_Cmd_SEQUENCE_SETDOWN ||
           cmd == PF_Cmd_GLOBAL_SETDOWN;
}

}  // namespace orv
