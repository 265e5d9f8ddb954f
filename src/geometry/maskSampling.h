// maskSampling.h: how many samples the ribbon has, and where along source and mask each lies.
// Pure: a path is known by the lengths of its segments and by the points that the host evaluates.
// Lengths and path points: layer pixels at the preview resolution, as the host gives them.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "geometry/meshSettings.h"
#include "geometry/records.h"

/// A path's segments, measured. The lists have one entry per segment.
struct pathLengths {
    std::vector<double> length;   ///< finite, at least 0
    std::vector<double> through;  ///< sum of the lengths up to and including this segment
    std::vector<double> reach;    ///< the same with kEmptySegment for a length of 0; rises strictly
    double total = 0.0;
    bool open = false;

    [[nodiscard]] int segments() const { return static_cast<int>(length.size()); }
};

/// What a segment of length 0 counts when a sample is looked up, so that it can hold one.
inline constexpr double kEmptySegment = 1e-6;

/// Takes lengths as the host reports them; what is no length counts as 0.
pathLengths MakePathLengths(std::vector<double> lengths, bool open);

/// Number of mesh steps N along the source: odd, 3..4097. The ribbon has N + 1 samples.
int MeshStepCount(const meshSettings& settings);

/// N + 1 placements, evenly along the source.
std::vector<propS> PlaceEvenly(int steps);

/// N + 1 placements with the same number of samples on each segment of `reference`, which has at
/// least one. The texture is taken at the sample's share of the reference's length.
std::vector<propS> PlaceOnSegments(int steps, const pathLengths& reference);

/// Where on a path a sample is evaluated.
struct pathPlace {
    int seg = 0;
    double local = 0.0;    ///< 0..1 inside the segment; beyond on an overhang
    double pathPos = 0.0;  ///< 0 at the first vertex, 1 at the end; beyond on an overhang
};

/// A sample that was placed on segments of a reference; a segment that `path` lacks is its end.
pathPlace PlaceBySegment(const propS& prop, const pathLengths& path);

/// A sample at fraction `sourceFrac` of the source, placed by start and end point, source width
/// and stretch. `path` has at least one segment.
pathPlace PlaceByLength(double sourceFrac, const pathLengths& path, const meshSettings& settings);

/// What the host evaluates at arc length `length[seg] * local`.
struct pathPoint {
    double x = 0.0, y = 0.0, dx = 0.0, dy = 0.0;
};

/// A point of the ribbon's spine.
struct pathSample {
    double x = 0.0, y = 0.0;
    double normalX = 0.0,
           normalY = 0.0;  ///< unit length in the layer's plane; zero without tangent
    pathPlace place;
};

/// Carries a sample beyond an end of an open path straight on, and turns its tangent by a quarter.
pathSample MakePathSample(const pathPlace& place, const pathPoint& point, const pathLengths& path);
