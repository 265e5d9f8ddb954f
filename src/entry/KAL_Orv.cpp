#include "entry/KAL_Orv.h"

#include <array>

#include "entry/commands.h"
#include "gl/GL_base.h"

namespace {

struct commandRow {
    PF_Cmd cmd;
    PF_Err (*handle)(const commandCall& call);
    bool needsContext;  ///< the effect's GL context is made current first
};

/// Commands that are not listed do nothing and succeed.
constexpr std::array kCommands{
    commandRow{PF_Cmd_ABOUT, About, false},
    commandRow{PF_Cmd_GLOBAL_SETUP, GlobalSetup, false},
    commandRow{PF_Cmd_GLOBAL_SETDOWN, GlobalSetdown, true},
    commandRow{PF_Cmd_PARAMS_SETUP, ParamsSetup, false},
    commandRow{PF_Cmd_SEQUENCE_SETUP, SequenceSetup, true},
    commandRow{PF_Cmd_SEQUENCE_RESETUP, SequenceResetup, true},
    commandRow{PF_Cmd_SEQUENCE_SETDOWN, SequenceSetdown, true},
    commandRow{PF_Cmd_FRAME_SETUP, FrameSetup, false},
    commandRow{PF_Cmd_RENDER, RenderFrame, true},
    commandRow{PF_Cmd_USER_CHANGED_PARAM, UserChangedParam, true},
    commandRow{PF_Cmd_UPDATE_PARAMS_UI, UpdateParamsUI, false},
    commandRow{PF_Cmd_QUERY_DYNAMIC_FLAGS, QueryDynamicFlags, false},
};

PF_Err Dispatch(PF_Cmd cmd, const commandCall& call)
{
    for (const commandRow& row : kCommands) {
        if (row.cmd != cmd) continue;
        if (row.needsContext) AESDK_OpenGL::SetContext(AESDK_OpenGL::S_EffectCommonData.context);
        return row.handle(call);
    }
    return PF_Err_NONE;
}

}  // namespace

PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                      PF_LayerDef* output, void* /*extra*/)
{
    const AESDK_OpenGL::SaveRestoreOGLContext hostContext;  // restored however the command ends
    try {
        return Dispatch(cmd, {*in_data, *out_data, params, output});
    } catch (...) {
        return PF_Err_BAD_CALLBACK_PARAM;  // nothing is ever thrown into the host
    }
}
