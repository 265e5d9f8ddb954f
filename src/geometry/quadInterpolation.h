// quadInterpolation.h: cells between cells. Pure; blends in double, stores floats. Normals are
// blended like positions and not normalised.
#pragma once

#include "geometry/records.h"

/// The strip of `q` from fraction `u` to fraction `v` of the way from edge A to edge B. Depth and
/// face are those of `q`.
quad Interpolate(const quad& q, double u, double v);

/// The cell at fraction `t` of the way from `a` to `b`, corner by corner, depth and face too.
quad InterpolateZ(const quad& a, const quad& b, double t);
