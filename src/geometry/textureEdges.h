// textureEdges.h: which texels lie on the two long borders of the ribbon.
#pragma once

#include <span>
#include <vector>

#include "geometry/maskSampling.h"
#include "geometry/meshSettings.h"
#include "geometry/records.h"

/// One entry per sample in both. z is 1, or the fraction inside the curve's segment; laying the
/// ribbon on a mask replaces it by the position along the mask.
struct textureEdges {
    std::vector<point3> a, b;
};

/// The whole source, turned by settings.rotation.
textureEdges SourceEdges(std::span<const propS> props, const meshSettings& settings);

/// A band along a curve drawn on the source, "Source radius" of the source's height wide.
textureEdges CurveEdges(std::span<const pathSample> curve, const meshSettings& settings);
