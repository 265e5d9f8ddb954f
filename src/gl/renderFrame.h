// renderFrame.h: one frame, from the command's records to its output, of one instant or of many.
// The stages that a frame with motion blur shares with one without; what differs is where the
// instants come from.
#pragma once

#include <functional>
#include <vector>

#include "host_api.h"

#include "gl/frameScene.h"
#include "gl/renderHost.h"

/// What is known of a frame before its instants. Borrowed.
struct frameSource {
    const renderHost& host;
    const frameSettings& settings;
    const frameTextures& textures;
    const paramSnapshot& values;  ///< of the command's own parameters
    const camData& camera;        ///< at the frame's own time
};

/// Appends the frame's instants, at least one, complete but for their lists. Returns the host's
/// first error, or its abort code.
using instantReader = std::function<PF_Err(const frameSource&, std::vector<frameInstant>&)>;

/// Renders the frame. One instant is drawn as it is; of several the average is shown. Conditions
/// and errors as for Render.
PF_Err RenderInstants(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                      PF_LayerDef* output, const instantReader& readInstants);

/// Samples the masks at layer time `time` and lays the mesh of `instant`, whose values are set.
/// Without a source image there is nothing to lay. Errors as for BuildShape, its reason in the
/// return message.
PF_Err LayInstant(const frameSource& source, A_long time, frameInstant& instant);
