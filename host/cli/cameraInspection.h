// cameraInspection.h: `orv inspect --camera`: the camera record that the effect reads at a frame,
// and the GL matrices derived from it.
#pragma once

#include "cli/effectProbe.h"

namespace orv {

/// Prints it, as text or as one JSON object. Throws failure.
void InspectCamera(const probeOptions& options, bool asJson);

}  // namespace orv
