// profiles.h: how scale, twist and per-vertex values run along source and mask.
#pragma once

#include "geometry/maskSampling.h"
#include "geometry/meshSettings.h"

/// Scale at fraction `at` of a run: `start` at 0, eased along half a cosine wave to 1 in the
/// middle, and on to `end` at 1. Outside 0..1 the waves go on.
double ScaleAlong(double at, double start, double end);

/// Twist of a sample in radians, in -pi..pi: along the source plus along the mask.
double TwistAt(double sourceFrac, double pathPos, const meshSettings& settings);

/// Per-vertex values between the two vertices of the sample's segment. A segment's end is the next
/// vertex number, on the closing segment of a closed mask too; numbers above the last reuse it.
double VertexScaleAt(const pathPlace& place, const meshSettings& settings);
double VertexZAt(const pathPlace& place, const meshSettings& settings);  ///< pixels
