// render.h: one frame without motion blur.
#pragma once

#include "host_api.h"

/// Renders the frame into `output`. The layer's GL context is current and both targets of the
/// instance's render level are cleared, A bound. Errors: the first host error, the host's abort
/// code, 512 with a GL message in out_data->return_msg, PF_Err_OUT_OF_MEMORY.
PF_Err Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);
