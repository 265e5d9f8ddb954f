// spatialPath.h: positions that move along a curve between two key frames.
#pragma once

#include <array>

namespace orv {

/// A point of up to four components; unused ones are 0.
using spatialPoint = std::array<double, 4>;

/// Cubic with absolute control points.
struct spatialCurve {
    spatialPoint start{}, startControl{}, endControl{}, end{};
};

/// The point at `fraction` of the curve's length, to within 0.01 px. Below 0 and above 1 it goes
/// on straight along the tangent at that end. A curve of length 0 gives its start.
spatialPoint PointAlong(const spatialCurve& curve, double fraction);

}  // namespace orv
