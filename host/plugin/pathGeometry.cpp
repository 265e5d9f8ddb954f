#include "plugin/pathGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orv {

namespace {

/// Of shorter vectors 1 / length is no number: they have no direction.
constexpr double kSmallest = std::numeric_limits<double>::min();

vec2 operator+(vec2 a, vec2 b)
{
    return {a.x + b.x, a.y + b.y};
}
vec2 operator-(vec2 a, vec2 b)
{
    return {a.x - b.x, a.y - b.y};
}
vec2 operator*(double f, vec2 v)
{
    return {f * v.x, f * v.y};
}
double Length(vec2 v)
{
    return std::hypot(v.x, v.y);
}

/// Derivatives of the cubic by its parameter, from differences of the control points, so that they
/// are exactly zero where control points coincide.
vec2 FirstDerivative(const pathSegment& s, double u)
{
    const double v = 1.0 - u;
    return 3.0 * (v * v * (s[1] - s[0]) + 2.0 * u * v * (s[2] - s[1]) + u * u * (s[3] - s[2]));
}
vec2 SecondDerivative(const pathSegment& s, double u)
{
    const vec2 first = (s[2] - s[1]) - (s[1] - s[0]);
    const vec2 last = (s[3] - s[2]) - (s[2] - s[1]);
    return 6.0 * ((1.0 - u) * first + u * last);
}
vec2 ThirdDerivative(const pathSegment& s)
{
    return 6.0 * (((s[3] - s[2]) - (s[2] - s[1])) - ((s[2] - s[1]) - (s[1] - s[0])));
}

vec2 PointAt(const pathSegment& s, double u)
{
    const double v = 1.0 - u;
    return v * v * v * s[0] + 3.0 * u * v * v * s[1] + 3.0 * u * u * v * s[2] + u * u * u * s[3];
}

/// Gauss-Legendre rule of 8 points on -1..1, the half of it: node, weight.
constexpr std::array<std::array<double, 2>, 4> kGauss{{{0.1834346424956498, 0.3626837833783620},
                                                       {0.5255324099163290, 0.3137066458778873},
                                                       {0.7966664774136267, 0.2223810344533745},
                                                       {0.9602898564975363, 0.1012285362903763}}};

double ArcLength(const pathSegment& s, double from, double to)
{
    const double half = 0.5 * (to - from), middle = 0.5 * (from + to);
    double sum = 0.0;
    for (const auto& [node, weight] : kGauss) {
        sum += weight * (Length(FirstDerivative(s, middle - half * node)) +
                         Length(FirstDerivative(s, middle + half * node)));
    }
    return half * sum;
}

}  // namespace

pathOutline MakeOutline(const maskPath& path, double divisorX, double divisorY)
{
    const std::size_t count = path.vertex.size();
    pathOutline outline;
    if (count < 2) return outline;
    outline.open = !path.closed;
    const auto scaled = [&](vec2 p) { return vec2{p.x / divisorX, p.y / divisorY}; };
    for (std::size_t j = 0; j + (outline.open ? 1 : 0) < count; ++j) {
        const std::size_t next = (j + 1) % count;
        outline.segments.push_back({scaled(path.vertex[j]), scaled(path.vertex[j] + path.out[j]),
                                    scaled(path.vertex[next] + path.in[next]),
                                    scaled(path.vertex[next])});
    }
    return outline;
}

SegmentMeasure::SegmentMeasure(const pathSegment& segment) : segment_(segment)
{
    for (std::size_t k = 1; k < 4; ++k) {
        extent_ = std::max(extent_, Length(segment[k] - segment[0]));
    }
    straight_ = segment[1] == segment[0] && segment[2] == segment[3];
    if (straight_) {
        length_ = extent_;
        return;
    }
    constexpr int kDeepest = 30;
    const double tolerance = 1e-7 + 1e-13 * extent_;
    Measure(0.0, 1.0, ArcLength(segment_, 0.0, 1.0), tolerance, kDeepest);
}

void SegmentMeasure::Measure(double from, double to, double whole, double tolerance, int depth)
{
    const double middle = 0.5 * (from + to);
    const double left = ArcLength(segment_, from, middle);
    const double right = ArcLength(segment_, middle, to);
    if (depth > 0 && std::abs(left + right - whole) > tolerance) {
        Measure(from, middle, left, tolerance, depth - 1);
        Measure(middle, to, right, tolerance, depth - 1);
        return;
    }
    pieces_.push_back({from, middle, length_});
    pieces_.push_back({middle, to, length_ + left});
    length_ += left + right;
}

SegmentMeasure::point SegmentMeasure::At(double arcLength) const
{
    if (straight_) {
        const vec2 chord = segment_[3] - segment_[0];
        if (!(length_ >= kSmallest)) return {segment_[0], {}};
        const double fraction = std::clamp(arcLength / length_, 0.0, 1.0);
        return {segment_[0] + fraction * chord, (1.0 / length_) * chord};
    }
    const double u = ParameterAt(arcLength);
    return {PointAt(segment_, u), Direction(u)};
}

double SegmentMeasure::ParameterAt(double arcLength) const
{
    if (!(arcLength > 0.0)) return 0.0;
    if (arcLength >= length_) return 1.0;
    const auto next =
        std::upper_bound(pieces_.begin(), pieces_.end(), arcLength,
                         [](double length, const piece& each) { return length < each.lengthFrom; });
    const piece& in = *std::prev(next);

    // Newton's method, kept inside a bracket: the speed may be zero at the piece's ends.
    double low = in.from, high = in.to, u = 0.5 * (low + high);
    const double enough = 1e-9 + 1e-13 * length_;
    constexpr int kMostSteps = 60;
    for (int step = 0; step < kMostSteps && high > low; ++step) {
        const double over = in.lengthFrom + ArcLength(segment_, in.from, u) - arcLength;
        if (std::abs(over) <= enough) break;
        (over > 0.0 ? high : low) = u;
        const double speed = Length(FirstDerivative(segment_, u));
        const double newton = speed > 0.0 ? u - over / speed : low;
        u = newton > low && newton < high ? newton : 0.5 * (low + high);
    }
    return u;
}

vec2 SegmentMeasure::Direction(double u) const
{
    const double negligible = 1e-9 * extent_;
    // Coming to rest at the end, the movement was against the second derivative.
    const double side = u < 1.0 ? 1.0 : -1.0;
    for (const vec2& candidate :
         {FirstDerivative(segment_, u), side * SecondDerivative(segment_, u),
          ThirdDerivative(segment_)}) {
        const double size = Length(candidate);
        if (size > negligible && size >= kSmallest) return (1.0 / size) * candidate;
    }
    return {};
}

}  // namespace orv
