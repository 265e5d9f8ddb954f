// maskShape.h: mask paths as polygons.
#pragma once

#include <vector>

#include "scene/property.h"

namespace orv {

/// The corners of a closed path, its curves cut into chords that stay within 0.02 px of them (for
/// curves that bend by up to 28,000 px; wilder ones get 1024 chords). `scaleX` and `scaleY` take
/// mask coordinates to pixels. Points beyond 1e100 or that are no
/// numbers are left out.
std::vector<vec2> FlattenClosedPath(const maskPath& path, double scaleX, double scaleY);

/// Cuts away what lies outside 0..width, 0..height. Inside, every point keeps its winding number.
std::vector<vec2> CutToPicture(std::vector<vec2> polygon, double width, double height);

}  // namespace orv
