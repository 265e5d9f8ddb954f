// pathGeometry.h: the shape of a mask as segments that can be measured and walked by arc length.
// Lengths and positions are in the units of the points given in.
#pragma once

#include <array>
#include <vector>

#include "scene/property.h"

namespace orv {

/// A cubic: start, its control point, the end's control point, end.
using pathSegment = std::array<vec2, 4>;

struct pathOutline {
    bool open = true;
    std::vector<pathSegment> segments;
};

/// Segment j runs from vertex j to the next, a closed path's last one back to vertex 0. Points are
/// divided by the preview divisors. A path of 0 or 1 vertices is open and has no segments.
pathOutline MakeOutline(const maskPath& path, double divisorX, double divisorY);

/// A segment made ready for arc lengths: measured to within 1e-5 and a relative 1e-12.
class SegmentMeasure {
public:
    explicit SegmentMeasure(const pathSegment& segment);

    [[nodiscard]] double length() const { return length_; }

    struct point {
        vec2 position;
        /// Derivative of the position by arc length: length 1, or zero where the whole segment is
        /// one point. Where the parametrisation stands still (a control point on its vertex) it is
        /// the limit towards that place.
        vec2 direction;
    };
    /// The point at an arc length from the start; clamped to 0..length.
    [[nodiscard]] point At(double arcLength) const;

private:
    /// An interval of the parameter short enough for one quadrature.
    struct piece {
        double from, to;    ///< parameter
        double lengthFrom;  ///< arc length at `from`
    };

    void Measure(double from, double to, double whole, double tolerance, int depth);
    [[nodiscard]] double ParameterAt(double arcLength) const;
    [[nodiscard]] vec2 Direction(double u) const;

    pathSegment segment_;
    bool straight_ = false;  ///< both control points on their vertices
    double extent_ = 0.0;    ///< size of the control polygon
    double length_ = 0.0;
    std::vector<piece> pieces_;
};

}  // namespace orv
