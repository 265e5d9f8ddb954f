// polyline.h: masks of straight segments for tests of the geometry, measured and evaluated here
// instead of by a host.
#pragma once

#include <vector>

#include "geometry/maskReadings.h"
#include "geometry/maskSampling.h"
#include "geometry/meshSettings.h"

struct vertex2 {
    double x = 0.0, y = 0.0;
};

class Polyline {
public:
    Polyline(std::vector<vertex2> vertices, bool open);

    [[nodiscard]] const pathLengths& lengths() const { return lengths_; }

    /// Clamps to the segment, as hosts do; the derivative has length 1, or 0 on an empty segment.
    [[nodiscard]] pathPoint Evaluate(int seg, double arc) const;

    /// The samples of a mesh with `settings`, by source length or by segment.
    [[nodiscard]] std::vector<pathSample> Sample(const meshSettings& settings) const;

private:
    std::vector<vertex2> vertices_;
    pathLengths lengths_;
};

/// Readings of a frame whose "Mask" is `path`, without curve or contour.
maskReadings ReadingsOf(const Polyline& path, const meshSettings& settings);
