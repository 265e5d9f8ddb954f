// commands.h: what the entry does for each command of the host. A handler returns the command's
// result or throws a PF_Err; where the table in KAL_Orv.cpp says so, the effect's GL context has
// been made current before.
#pragma once

#include "host_api.h"

/// The arguments of one call of the entry, as the host passed them. `params` and `output` are null
/// for commands that have none.
struct commandCall {
    PF_InData& in_data;
    PF_OutData& out_data;
    PF_ParamDef** params;
    PF_LayerDef* output;
};

// globalCommands.cpp
PF_Err About(const commandCall& call);
PF_Err GlobalSetup(const commandCall& call);
PF_Err GlobalSetdown(const commandCall& call);

// paramsSetup.cpp
PF_Err ParamsSetup(const commandCall& call);

// sequenceCommands.cpp
PF_Err SequenceSetup(const commandCall& call);
PF_Err SequenceResetup(const commandCall& call);
PF_Err SequenceSetdown(const commandCall& call);

// frameCommands.cpp
PF_Err FrameSetup(const commandCall& call);
PF_Err RenderFrame(const commandCall& call);

// userChangedParam.cpp
PF_Err UserChangedParam(const commandCall& call);

// updateParamsUI.cpp
PF_Err UpdateParamsUI(const commandCall& call);

// dynamicFlags.cpp
PF_Err QueryDynamicFlags(const commandCall& call);
