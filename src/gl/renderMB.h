// renderMB.h: one frame with motion blur.
#pragma once

#include "host_api.h"

/// Renders the average of `samples` (at least 2) instants of the frame into `output`. They are
/// evenly spaced from `shutterFrames` frames after the frame's own time, where the first one is, to
/// that time; a negative value begins before it. Parameters, masks, camera and lights are the
/// samples' own; source pictures, light sliders and the texture of each face are the frame's. A
/// frame in which nothing moves is drawn once, as Render would at the first sample's time. As for
/// Render, the layer's GL context is current and both targets of the instance's render level are
/// cleared, A bound; errors are the same.
PF_Err RenderMB(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                PF_LayerDef* output, int samples, double shutterFrames);
