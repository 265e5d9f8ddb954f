// compCamera.h: asks the host for the composition's camera and lights.
#pragma once

#include "host_api.h"

#include "camera/camData.h"

/// Fills `camera` for the frame's own time. `composition3D`: "Camera mode" is "3D (composition)";
/// in 2D the default camera is kept (identity, centred on the layer at the host's default
/// distance). A field that is not written keeps its value. A 3D camera or light with values that
/// are not finite, or a zoom that is not above 0, gives PF_Err_BAD_CALLBACK_PARAM. Returns the
/// first host error; throws PF_Err_BAD_CALLBACK_PARAM when a suite is missing. Gives back all that
/// it takes.
PF_Err CompCamera(PF_InData* in_data, bool composition3D, camData* camera);

/// The same at layer time `t` (in_data->time_scale; a negative one counts as 0). Sets the whole
/// default matrix itself.
PF_Err CompCameraT(PF_InData* in_data, bool composition3D, camData* camera, A_long t);
