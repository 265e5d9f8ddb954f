#include <algorithm>
#include <cstddef>

#include "animation/easing.h"
#include "animation/evaluate.h"
#include "animation/keySpan.h"
#include "animation/rotation.h"
#include "animation/spatialPath.h"

namespace orv {
namespace {

/// `value` with as many components as `fallback`, missing ones from there.
std::vector<double> Completed(const std::vector<double>& value, std::span<const double> fallback)
{
    std::vector<double> result(fallback.begin(), fallback.end());
    std::copy_n(value.begin(), std::min(value.size(), result.size()), result.begin());
    return result;
}

bool IsSpatial(const keyFrame& key)
{
    const auto isZero = [](double x) { return x == 0.0; };
    return !key.toTangent.empty() && !key.tiTangent.empty() &&
           !(std::ranges::all_of(key.toTangent, isZero) &&
             std::ranges::all_of(key.tiTangent, isZero));
}

spatialPoint ToSpatial(const std::vector<double>& value)
{
    spatialPoint point{};
    std::copy_n(value.begin(), std::min(value.size(), point.size()), point.begin());
    return point;
}

spatialPoint Sum(const spatialPoint& a, const spatialPoint& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2], a[3] + b[3]};
}

std::vector<double> MixedAlongCurve(const keyFrame& key, const std::vector<double>& start,
                                    const std::vector<double>& end, double fraction)
{
    const spatialPoint from = ToSpatial(start), to = ToSpatial(end);
    const spatialPoint point = PointAlong(
        {from, Sum(from, ToSpatial(key.toTangent)), Sum(to, ToSpatial(key.tiTangent)), to},
        fraction);
    std::vector<double> result(start.size());
    std::copy_n(point.begin(), std::min(point.size(), result.size()), result.begin());
    return result;
}

std::vector<double> Mixed(const keyFrame& key, const std::vector<double>& start,
                          const std::vector<double>& end, double timeFraction)
{
    if (IsSpatial(key)) {
        return MixedAlongCurve(key, start, end, EasedFraction(key.out, key.in, 0, timeFraction));
    }
    std::vector<double> result(start.size());
    for (std::size_t k = 0; k < result.size(); ++k) {
        const double f = EasedFraction(key.out, key.in, k, timeFraction);
        result[k] = start[k] + (end[k] - start[k]) * f;
    }
    return result;
}

vec3 ToVector(const std::vector<double>& value)
{
    return {value[0], value[1], value[2]};
}

}  // namespace

std::vector<double> Evaluate(const property& value, double t, std::span<const double> fallback)
{
    if (value.keys.empty()) return Completed(value.constant, fallback);
    const keySpan span = SpanAt(value.keys, t);
    const keyFrame& key = value.keys[span.from];
    std::vector<double> start = Completed(key.value, fallback);
    if (!span.between) return start;
    return Mixed(key, start, Completed(value.keys[span.from + 1].value, fallback), span.fraction);
}

double EvaluateScalar(const property& value, double t, double fallback)
{
    if (value.keys.empty()) return value.constant.empty() ? fallback : value.constant.front();
    return Evaluate(value, t, std::span(&fallback, 1)).front();
}

vec3 EvaluateVector(const property& value, double t, const vec3& fallback)
{
    return ToVector(Evaluate(value, t, std::array{fallback.x, fallback.y, fallback.z}));
}

vec3 EvaluateOrientation(const property& value, double t)
{
    constexpr std::array<double, 3> kNone{};
    if (value.keys.empty()) return ToVector(Completed(value.constant, kNone));
    const keySpan span = SpanAt(value.keys, t);
    const keyFrame& key = value.keys[span.from];
    const vec3 start = ToVector(Completed(key.value, kNone));
    if (!span.between) return start;
    const vec3 end = ToVector(Completed(value.keys[span.from + 1].value, kNone));
    return MixOrientations(start, end, EasedFraction(key.out, key.in, 0, span.fraction));
}

double EvaluateHeld(const property& value, double t, double fallback)
{
    const std::vector<double>& held =
        value.keys.empty() ? value.constant : value.keys[SpanAt(value.keys, t).from].value;
    return held.empty() ? fallback : held.front();
}

}  // namespace orv
