#include "animation/spatialPath.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orv {
namespace {

spatialPoint Difference(const spatialPoint& a, const spatialPoint& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2], a[3] - b[3]};
}

spatialPoint Offset(const spatialPoint& from, const spatialPoint& direction, double distance)
{
    spatialPoint result = from;
    for (std::size_t k = 0; k < result.size(); ++k) result[k] += direction[k] * distance;
    return result;
}

double Length(const spatialPoint& v)
{
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2] + v[3] * v[3]);
}

spatialPoint Weighted(const spatialCurve& c, const std::array<double, 4>& weights)
{
    spatialPoint sum{};
    for (std::size_t k = 0; k < sum.size(); ++k) {
        sum[k] = c.start[k] * weights[0] + c.startControl[k] * weights[1] +
                 c.endControl[k] * weights[2] + c.end[k] * weights[3];
    }
    return sum;
}

spatialPoint PositionAt(const spatialCurve& c, double u)
{
    const double rest = 1.0 - u;
    return Weighted(c, {rest * rest * rest, 3.0 * u * rest * rest, 3.0 * u * u * rest, u * u * u});
}

double SpeedAt(const spatialCurve& c, double u)
{
    const double rest = 1.0 - u;
    const double a = 3.0 * rest * rest, b = 6.0 * u * rest, d = 3.0 * u * u;
    return Length(Weighted(c, {-a, a - b, b - d, d}));
}

/// Gauss-Legendre with five nodes: exact for polynomials of degree 9.
double LengthBetween(const spatialCurve& c, double from, double to)
{
    constexpr double kNode[] = {0.5384693101056831, 0.9061798459386640};
    constexpr double kWeight[] = {0.4786286704993665, 0.2369268850561891};
    constexpr double kMiddleWeight = 0.5688888888888889;
    const double middle = 0.5 * (from + to), half = 0.5 * (to - from);
    double sum = kMiddleWeight * SpeedAt(c, middle);
    for (int k = 0; k < 2; ++k) {
        sum += kWeight[k] *
               (SpeedAt(c, middle - half * kNode[k]) + SpeedAt(c, middle + half * kNode[k]));
    }
    return sum * half;
}

/// A part of the curve whose length the five nodes give well enough.
struct measuredPart {
    double from = 0.0, to = 1.0;
    double lengthBefore = 0.0, length = 0.0;
};

/// Halves parts until both halves agree with the whole; only cusps need many steps.
void Measure(const spatialCurve& c, const measuredPart& part, double tolerance, int depth,
             std::vector<measuredPart>& parts)
{
    const double middle = 0.5 * (part.from + part.to);
    const double first = LengthBetween(c, part.from, middle);
    const double second = LengthBetween(c, middle, part.to);
    if (depth == 0 || std::abs(first + second - part.length) <= tolerance) {
        const double before = parts.empty() ? 0.0 : parts.back().lengthBefore + parts.back().length;
        parts.push_back({part.from, part.to, before, part.length});
        return;
    }
    Measure(c, {part.from, middle, 0.0, first}, tolerance, depth - 1, parts);
    Measure(c, {middle, part.to, 0.0, second}, tolerance, depth - 1, parts);
}

std::vector<measuredPart> MeasuredParts(const spatialCurve& c)
{
    // Far below the 0.01 px that is asked for; coarser only where numbers are so large that doubles
    // themselves are.
    const double whole = LengthBetween(c, 0.0, 1.0);
    const double tolerance = std::max(1e-6, 1e-13 * whole);
    std::vector<measuredPart> parts;
    constexpr int kMostHalvings = 30;
    Measure(c, {0.0, 1.0, 0.0, whole}, tolerance, kMostHalvings, parts);
    return parts;
}

/// The curve parameter at `distance` from the part's beginning, by halving: the length rises.
double ParameterAt(const spatialCurve& c, const measuredPart& part, double distance)
{
    double low = part.from, high = part.to;
    constexpr int kHalvings = 50;
    for (int step = 0; step < kHalvings; ++step) {
        const double middle = 0.5 * (low + high);
        (LengthBetween(c, part.from, middle) < distance ? low : high) = middle;
    }
    return 0.5 * (low + high);
}

/// Unit direction from `from` to the first of the other control points that differs from it.
spatialPoint EndDirection(const spatialPoint& from, const std::array<spatialPoint, 3>& others)
{
    for (const spatialPoint& other : others) {
        const spatialPoint way = Difference(other, from);
        const double length = Length(way);
        if (length > 0.0) return Offset({}, way, 1.0 / length);
    }
    return {};
}

}  // namespace

spatialPoint PointAlong(const spatialCurve& curve, double fraction)
{
    const std::vector<measuredPart> parts = MeasuredParts(curve);
    const double whole = parts.back().lengthBefore + parts.back().length;

    // Beyond the ends.
    if (fraction < 0.0) {
        const spatialPoint ahead =
            EndDirection(curve.start, {curve.startControl, curve.endControl, curve.end});
        return Offset(curve.start, ahead, fraction * whole);
    }
    if (fraction > 1.0) {
        const spatialPoint back =
            EndDirection(curve.end, {curve.endControl, curve.startControl, curve.start});
        return Offset(curve.end, back, (1.0 - fraction) * whole);
    }

    // On the curve.
    const double distance = fraction * whole;
    const auto after =
        std::upper_bound(parts.begin(), parts.end(), distance,
                         [](double d, const measuredPart& part) { return d < part.lengthBefore; });
    const measuredPart& part = *std::prev(after);
    return PositionAt(curve, ParameterAt(curve, part, distance - part.lengthBefore));
}

}  // namespace orv
