// easing.h: how far a value has come between two key frames.
#pragma once

#include <cstddef>

#include "scene/property.h"

namespace orv {

/// The share of the way from a key's value to the next key's at time fraction `p` (0..1), for one
/// component. The curve is the cubic from (0, 0) to (1, 1) with the handles as control points; it
/// is solved for its x to within 1e-9. The result may leave 0..1. Without both handles it is `p`.
double EasedFraction(const easeHandle& out, const easeHandle& in, std::size_t component, double p);

}  // namespace orv
