#include "animation/easing.h"

#include <cmath>
#include <vector>

namespace orv {
namespace {

/// One coordinate of the cubic from 0 to 1 with the inner control values a and b.
double CubicAt(double a, double b, double u)
{
    const double rest = 1.0 - u;
    return 3.0 * u * rest * rest * a + 3.0 * u * u * rest * b + u * u * u;
}

double CubicSlopeAt(double a, double b, double u)
{
    const double rest = 1.0 - u;
    return 3.0 * rest * rest * a + 6.0 * u * rest * (b - a) + 3.0 * u * u * (1.0 - b);
}

/// u with |X(u) - p| <= 1e-9, for a and b within 0..1, where X rises. Newton steps, and halving
/// wherever a step would leave the bracket (flat places of the curve).
double SolveForX(double a, double b, double p)
{
    constexpr double kTolerance = 1e-9;
    constexpr int kMostSteps = 200;  // halving alone needs about 60
    double low = 0.0, high = 1.0, u = p;
    for (int step = 0; step < kMostSteps; ++step) {
        const double error = CubicAt(a, b, u) - p;
        if (std::abs(error) <= kTolerance) break;
        (error < 0.0 ? low : high) = u;
        const double slope = CubicSlopeAt(a, b, u);
        const double next = u - error / slope;
        u = slope > 0.0 && next > low && next < high ? next : 0.5 * (low + high);
    }
    return u;
}

double EntryOf(const std::vector<double>& entries, std::size_t component)
{
    return component < entries.size() ? entries[component] : entries.front();
}

bool Given(const easeHandle& handle)
{
    return !handle.x.empty() && !handle.y.empty();
}

}  // namespace

double EasedFraction(const easeHandle& out, const easeHandle& in, std::size_t component, double p)
{
    if (!Given(out) || !Given(in)) return p;
    const double outX = EntryOf(out.x, component), outY = EntryOf(out.y, component);
    const double inX = EntryOf(in.x, component), inY = EntryOf(in.y, component);
    if (outX == outY && inX == inY) return p;
    return CubicAt(outY, inY, SolveForX(outX, inX, p));
}

}  // namespace orv
