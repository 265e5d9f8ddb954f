// maskCoverage.h: clipping of a layer's pixels by its masks.
#pragma once

#include <vector>

#include "image/image.h"
#include "scene/model.h"

namespace orv {

/// Coverage of one closed path in a picture of that size: 0..255, rows top to bottom, non-zero
/// winding, antialiased. Throws failure(frame) when there is no memory for it.
std::vector<std::uint8_t> PathCoverage(const maskPath& path, int width, int height, int divisorX,
                                       int divisorY);

/// Whether a path of that mode clips: closed, with at least two vertices, mode not none.
bool Clips(const mask& each, const maskPath& path);

/// Multiplies the alpha of `picture` (a layer's pixels at a preview resolution) by what the layer's
/// masks leave at `t`. Without a mask that clips nothing changes.
void ClipByMasks(const layer& l, double t, int divisorX, int divisorY, image& picture);

}  // namespace orv
