// KAL_Orv.h: the one function that the module exports.
#pragma once

#include "host_api.h"

/// Runs one command of the host. No exception leaves it, and the GL context that was current at the
/// call is current again afterwards. A value thrown by a handler, whichever it was, comes back as
/// PF_Err_BAD_CALLBACK_PARAM.
extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(
    PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
    PF_LayerDef* output, void* extra);
