// layerTransform.h: places the mesh lists by the "3D geometry" values.
#pragma once

#include <span>

#include "geometry/meshSettings.h"

/// Moves by -anchor, scales, turns about z, y, x, moves to position; in double, stored as float.
void TransformPoints(std::span<point3> points, const transformSettings& transform);
/// The rotation alone. Lengths are kept.
void TransformNormals(std::span<point3> normals, const transformSettings& transform);
