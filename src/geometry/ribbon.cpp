#include "geometry/ribbon.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

#include "geometry/profiles.h"
#include "geometry/vec3.h"

namespace {

constexpr double kPi = std::numbers::pi;

/// Half the ribbon's width before any scale along it, in full-resolution pixels.
double BaseHalfWidth(bool onCurve, const meshSettings& settings)
{
    const frameSizes& sizes = settings.sizes;
    const bool upright = settings.rotation == kRotation0 || settings.rotation == kRotation180;
    const double across = upright ? sizes.sourceHeight * 0.5 * settings.sourceScaleY * sizes.denX
                                  : sizes.sourceWidth * 0.5 * settings.sourceScaleY * sizes.denY;
    return onCurve ? across * settings.sourceRadius : across;
}

/// Half the width and half the height of a cross-section of half length `radius`.
struct crossSection {
    crossSection(double radius, double twist)
    {
        // A quarter turn has no width at all; its rounded cosine would leave one of random sign.
        constexpr double kRoundedZero = 1e-12;
        const double cosine = std::cos(twist);
        if (std::abs(cosine) > kRoundedZero) width = static_cast<float>(radius * cosine);
        height = static_cast<float>(radius * std::sin(twist));
    }
    float width = 0.0f, height = 0.0f;
};

/// Square to the tangent and to the cross-section; zero where that has no width.
point3 RibbonNormal(const pathSample& sample, double twist, double width)
{
    double lean = std::fmod(twist + kPi / 2.0 + 2.0 * kPi, kPi);
    if (lean == 0.0) lean = kPi;
    const double flat = std::cos(lean) * width;
    const vec3 normal{-sample.normalX * flat, -sample.normalY * flat, std::sin(lean) * width};
    const double length = std::hypot(normal.x, normal.y, normal.z);
    return length != 0.0 ? (normal * (1.0 / length)).narrow() : normal.narrow();
}

/// Lays sample `s`, whose texture points are there, and appends its other entries.
void LaySample(std::size_t s, double sourceFrac, const pathSample& sample, double baseHalfWidth,
               const meshSettings& settings, ribbonSamples& ribbon)
{
    const pathPlace& place = sample.place;
    const double twist = TwistAt(sourceFrac, place.pathPos, settings);
    const double radius =
        baseHalfWidth * ScaleAlong(sourceFrac, settings.scaleStart, settings.scaleEnd) *
        ScaleAlong(place.pathPos, settings.scaleMaskStart, settings.scaleMaskEnd) *
        VertexScaleAt(place, settings);
    const crossSection section(radius, twist);
    const double width = static_cast<double>(section.width);

    // B is A mirrored at the mask point.
    const double x = sample.x * settings.sizes.denX, y = sample.y * settings.sizes.denY;
    const point3 a = vec3{x - sample.normalX * width, y - sample.normalY * width,
                          static_cast<double>(section.height)}
                         .narrow();
    const vec3 middle{x, y, 0.0};
    ribbon.posA.push_back(a);
    ribbon.posB.push_back((middle * 2.0 - a).narrow());
    ribbon.normal.push_back(RibbonNormal(sample, twist, width));
    ribbon.z.push_back(VertexZAt(place, settings));
    ribbon.pathPos.push_back(place.pathPos);
    ribbon.texA[s].z = ribbon.texB[s].z = static_cast<float>(place.pathPos);
}

void LiftByVertexZ(ribbonSamples& ribbon)
{
    for (std::size_t s = 0; s < ribbon.z.size(); ++s) {
        const auto lift = [&](point3& p) {
            p.z = static_cast<float>(static_cast<double>(p.z) - ribbon.z[s]);
        };
        lift(ribbon.posA[s]);
        lift(ribbon.posB[s]);
    }
}

/// A fraction of `steps`, towards 0; inside 0..steps whatever was asked for.
int StepAt(double fraction, int steps)
{
    const double at = fraction * steps;
    if (!(at > 0.0)) return 0;
    return at >= steps ? steps : static_cast<int>(at);
}

vec3 MiddleAt(const ribbonSamples& ribbon, int s)
{
    const auto at = static_cast<std::size_t>(s);
    return (vec3(ribbon.posA[at]) + vec3(ribbon.posB[at])) * 0.5;
}

/// Puts sample `s` `steps` strides `stride` away from sample `from`.
void RunOn(ribbonSamples& ribbon, int from, int s, const vec3& stride, int steps)
{
    const auto source = static_cast<std::size_t>(from), target = static_cast<std::size_t>(s);
    ribbon.posA[target] = (vec3(ribbon.posA[source]) + stride * steps).narrow();
    ribbon.posB[target] = (vec3(ribbon.posB[source]) + stride * steps).narrow();
    if (!ribbon.normal.empty()) ribbon.normal[target] = ribbon.normal[source];
}

void BoundPoints(std::vector<point3>& points)
{
    for (point3& p : points) {
        const vec3 bounded{Bounded(static_cast<double>(p.x)), Bounded(static_cast<double>(p.y)),
                           Bounded(static_cast<double>(p.z))};
        p = bounded.narrow();
    }
}

}  // namespace

ribbonSamples LayRibbon(std::vector<propS> props, textureEdges edges,
                        std::span<const pathSample> path, bool onCurve,
                        const meshSettings& settings)
{
    ribbonSamples ribbon;
    ribbon.props = std::move(props);
    ribbon.texA = std::move(edges.a);
    ribbon.texB = std::move(edges.b);
    for (auto* list : {&ribbon.posA, &ribbon.posB, &ribbon.normal}) list->reserve(path.size());
    for (auto* list : {&ribbon.z, &ribbon.pathPos}) list->reserve(path.size());

    const double baseHalfWidth = BaseHalfWidth(onCurve, settings);
    const double steps = static_cast<double>(path.size()) - 1.0;
    for (std::size_t s = 0; s < path.size(); ++s) {
        LaySample(s, static_cast<double>(s) / steps, path[s], baseHalfWidth, settings, ribbon);
    }
    LiftByVertexZ(ribbon);
    return ribbon;
}

ribbonSamples LayFlat(std::vector<propS> props, textureEdges edges, const meshSettings& settings)
{
    const frameSizes& sizes = settings.sizes;
    const double left =
        (sizes.viewWidth - sizes.sourceWidth * settings.sourceScaleXPercent * 0.01) * 0.5;
    const double top = (sizes.viewHeight - sizes.sourceHeight * settings.sourceScaleY) * 0.5;
    const auto lay = [&](const std::vector<point3>& texture) {
        std::vector<point3> positions;
        positions.reserve(texture.size());
        for (const point3& t : texture) {
            positions.push_back(vec3{sizes.denX * (static_cast<double>(t.x) + left),
                                     sizes.denY * (static_cast<double>(t.y) + top), 0.0}
                                    .narrow());
        }
        return positions;
    };
    ribbonSamples ribbon;
    ribbon.posA = lay(edges.a);
    ribbon.posB = lay(edges.b);
    ribbon.props = std::move(props);
    ribbon.texA = std::move(edges.a);
    ribbon.texB = std::move(edges.b);
    return ribbon;
}

void StraightenEnds(ribbonSamples& ribbon, const meshSettings& settings)
{
    const double start = settings.undistortedStart, end = settings.undistortedEnd;
    if (start == 0.0 && !(end < 1.0)) return;

    const int steps = static_cast<int>(ribbon.posA.size()) - 1;
    const int first = std::min(StepAt(start, steps), steps - 1);
    const int last = std::max({StepAt(end, steps), 1, first + 1});
    const vec3 startStride = MiddleAt(ribbon, first) - MiddleAt(ribbon, first + 1);
    const vec3 endStride = MiddleAt(ribbon, last) - MiddleAt(ribbon, last - 1);
    for (int s = 0; s < first; ++s) RunOn(ribbon, first, s, startStride, first - s);
    for (int s = last + 1; s <= steps; ++s) RunOn(ribbon, last, s, endStride, s - last);
}

void BoundSamples(ribbonSamples& ribbon)
{
    for (auto* list : {&ribbon.texA, &ribbon.texB, &ribbon.posA, &ribbon.posB, &ribbon.normal}) {
        BoundPoints(*list);
    }
    for (auto* list : {&ribbon.z, &ribbon.pathPos}) {
        for (double& value : *list) value = Bounded(value);
    }
}
