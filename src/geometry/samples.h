// samples.h: a frame's mesh as lists of samples, before any cell is made.
#pragma once

#include <vector>

#include "geometry/records.h"

/// The ribbon's sample lists, after the layer transform. All have N + 1 entries for N mesh steps,
/// but in flat mode `normal`, `z` and `pathPos` are empty. Every number is finite.
struct ribbonSamples {
    std::vector<propS> props;
    std::vector<point3> texA, texB, posA, posB, normal;
    std::vector<double> z, pathPos;
    bool operator==(const ribbonSamples&) const = default;  ///< exact; a NaN differs
};

/// The contour's sample lists, all of one size; empty without a contour.
struct contourSamples {
    std::vector<point3> front, back;
    std::vector<double> pathPos;
    std::vector<point3> tex;  ///< x texel, y texel on edge A, y texel on edge B
    bool operator==(const contourSamples&) const = default;  ///< exact; a NaN differs
};

struct frameShape {
    bool flat = true;  ///< "Mask" names no mask of the layer: one strip along texA/posA, texB/posB
    ribbonSamples ribbon;
    contourSamples contour;
    bool operator==(const frameShape&) const = default;
};
