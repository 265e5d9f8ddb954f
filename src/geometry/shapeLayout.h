// shapeLayout.h: from what the paths told to the mesh's sample lists. Pure.
#pragma once

#include "geometry/maskReadings.h"
#include "geometry/meshSettings.h"
#include "geometry/samples.h"

/// Lays texture edges, ribbon and contour, straightens the ends and applies the layer transform.
/// Whatever numbers come in, those that come out are finite.
frameShape LayShape(maskReadings readings, const meshSettings& settings);
