// rotation.h: rotations as matrices and as quaternions, in the conventions of evaluate.h. A
// positive turn about z is clockwise on the screen. Angles are degrees.
#pragma once

#include "animation/evaluate.h"

namespace orv {

matrix4 RotationX(double degrees);
matrix4 RotationY(double degrees);
matrix4 RotationZ(double degrees);

/// Rz * Ry * Rx: what an orientation and what the three rotations of a layer stand for.
matrix4 RotationZYX(const vec3& degrees);

/// The orientation on the shorter arc from `from` to `to`; fractions outside 0..1 go on beyond the
/// ends. 0 and 1 give `from` and `to` as they are, others angles within -180..180.
vec3 MixOrientations(const vec3& from, const vec3& to, double fraction);

}  // namespace orv
