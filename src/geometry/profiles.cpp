#include "geometry/profiles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTurn = 2.0 * kPi;

/// 0 at 0, 1 at 1, level at both.
double HalfWave(double x)
{
    return (1.0 - std::cos(x * kPi)) / 2.0;
}

template <class Values>
double BetweenVertices(const Values& values, const pathPlace& place, bool smooth)
{
    const auto last = static_cast<int>(values.size()) - 1;
    const auto at = [&](int vertex) {
        return static_cast<double>(values[static_cast<std::size_t>(std::clamp(vertex, 0, last))]);
    };
    const double w = smooth ? HalfWave(place.local) : place.local;
    return at(place.seg + 1) * w + at(place.seg) * (1.0 - w);
}

}  // namespace

double ScaleAlong(double at, double start, double end)
{
    if (at >= 0.5) {
        const double w = HalfWave(2.0 * at - 1.0);
        return w * end + (1.0 - w);
    }
    const double w = HalfWave(2.0 * at);
    return (1.0 - w) * start + w;
}

double TwistAt(double sourceFrac, double pathPos, const meshSettings& settings)
{
    // Each part is brought into one turn by itself, so that many turns of one lose no digits of
    // the other.
    double source =
        std::fmod(sourceFrac * settings.twistEnd + (1.0 - sourceFrac) * settings.twistStart, kTurn);
    source = std::fmod(source + kTurn + kPi, kTurn) - kPi;
    double mask = std::fmod(
        pathPos * settings.twistMaskEnd + (1.0 - pathPos) * settings.twistMaskStart, kTurn);
    mask = std::fmod(mask + kTurn + kPi, kTurn);
    const double sum = std::fmod(mask - kPi + source + kTurn, kTurn);
    return sum > kPi ? sum - kTurn : sum;
}

double VertexScaleAt(const pathPlace& place, const meshSettings& settings)
{
    return BetweenVertices(settings.vertexScale, place, settings.smoothScale);
}

double VertexZAt(const pathPlace& place, const meshSettings& settings)
{
    return BetweenVertices(settings.vertexZ, place, settings.smoothZ);
}
