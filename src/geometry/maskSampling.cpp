#include "geometry/maskSampling.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/vec3.h"

namespace {

constexpr int kFewestSteps = 3, kMostSteps = 4097;
constexpr double kPercent = 0.01;

double SaneLength(double length)
{
    return length > 0.0 ? std::min(length, kFarthest) : 0.0;
}

/// Steps that one side of the source asks for. A scale above 100 % adds none.
double StepsAlong(int size, double definitionPercent, double scale)
{
    return std::trunc(size * definitionPercent * std::min(1.0, scale) * kPercent);
}

/// Pixels of the source that run along the mask.
int SourceLength(const meshSettings& settings)
{
    const bool upright = settings.rotation == kRotation0 || settings.rotation == kRotation180;
    return upright ? settings.sizes.sourceWidth : settings.sizes.sourceHeight;
}

/// Fraction of the path's length at which a sample lies, before a closed path wraps it.
double TargetFraction(double sourceFrac, const pathLengths& path, const meshSettings& settings)
{
    const double start = settings.startPointPercent;
    if (settings.stretchAlongPath) {
        return sourceFrac * (settings.endPointPercent - start) * kPercent + start * kPercent;
    }
    // On a path of no length the source's own length cannot be laid out.
    if (path.total <= 0.0) return start * kPercent;
    const double size = SourceLength(settings);
    const double scale = settings.sourceScaleXPercent;
    double t = sourceFrac * (scale * size * kPercent / path.total) + start * kPercent;
    if (path.open && settings.relativeToSource) {
        t += (scale * start * kPercent * size * -kPercent) / path.total;
    }
    return t;
}

/// The segment that holds fraction `t` of the path, and the fraction inside it.
pathPlace Locate(double t, const pathLengths& path)
{
    const auto found = path.total > 0.0
                           ? std::lower_bound(path.reach.begin(), path.reach.end(), t * path.total)
                           : path.reach.end();
    if (found == path.reach.end()) return {path.segments() - 1, t, 0.0};
    const auto seg = found - path.reach.begin();
    const double length = path.length[static_cast<std::size_t>(seg)];
    const double counted = length > 0.0 ? length : kEmptySegment;
    const double local = (t - (*found - counted) / path.total) * (path.total / counted);
    return {static_cast<int>(seg), Bounded(local), 0.0};
}

double PathPosition(const pathPlace& place, const pathLengths& path)
{
    if (path.total <= 0.0) return 0.0;
    const auto seg = static_cast<std::size_t>(place.seg);
    return Bounded((path.through[seg] + path.length[seg] * (place.local - 1.0)) / path.total);
}

}  // namespace

pathLengths MakePathLengths(std::vector<double> lengths, bool open)
{
    pathLengths path;
    path.open = open;
    path.length = std::move(lengths);
    path.through.reserve(path.length.size());
    path.reach.reserve(path.length.size());
    double reach = 0.0;
    for (double& length : path.length) {
        length = SaneLength(length);
        path.total += length;
        reach += length > 0.0 ? length : kEmptySegment;
        path.through.push_back(path.total);
        path.reach.push_back(reach);
    }
    return path;
}

int MeshStepCount(const meshSettings& settings)
{
    const frameSizes& sizes = settings.sizes;
    const double steps = std::max(
        StepsAlong(sizes.sourceWidth, settings.meshDefinitionPercent,
                   settings.sourceScaleXPercent * kPercent),
        StepsAlong(sizes.sourceHeight, settings.meshDefinitionPercent, settings.sourceScaleY));
    if (!(steps >= 2.0)) return kFewestSteps;
    if (steps >= kMostSteps) return kMostSteps;
    return static_cast<int>(steps) | 1;
}

std::vector<propS> PlaceEvenly(int steps)
{
    std::vector<propS> props;
    props.reserve(static_cast<std::size_t>(steps) + 1);
    for (int s = 0; s <= steps; ++s) {
        const double frac = static_cast<double>(s) / steps;
        props.push_back({frac, frac, 0});
    }
    return props;
}

std::vector<propS> PlaceOnSegments(int steps, const pathLengths& reference)
{
    std::vector<propS> props = PlaceEvenly(steps);
    for (int s = 0; s <= steps; ++s) {
        const double x = static_cast<double>(reference.segments()) * s / steps;
        int seg = static_cast<int>(std::floor(x));
        double frac = x - std::floor(x);
        if (seg >= reference.segments()) {
            seg = reference.segments() - 1;
            frac = 1.0;
        }
        propS& prop = props[static_cast<std::size_t>(s)];
        prop.seg = seg;
        prop.segFrac = frac;
        if (reference.total > 0.0) {
            const auto at = static_cast<std::size_t>(seg);
            const double before = seg > 0 ? reference.through[at - 1] : 0.0;
            prop.pathFrac = (frac * reference.length[at] + before) / reference.total;
        }
    }
    return props;
}

pathPlace PlaceBySegment(const propS& prop, const pathLengths& path)
{
    pathPlace place{prop.seg, prop.segFrac, 0.0};
    if (place.seg >= path.segments()) place = {path.segments() - 1, 1.0, 0.0};
    place.pathPos = PathPosition(place, path);
    return place;
}

pathPlace PlaceByLength(double sourceFrac, const pathLengths& path, const meshSettings& settings)
{
    double t = Bounded(TargetFraction(sourceFrac, path, settings));
    if (!path.open) t = std::fmod(t + 1000.0, 1.0);
    pathPlace place = Locate(t, path);
    place.pathPos = PathPosition(place, path);
    return place;
}

pathSample MakePathSample(const pathPlace& place, const pathPoint& point, const pathLengths& path)
{
    pathSample sample{Bounded(point.x), Bounded(point.y), 0.0, 0.0, place};
    const double speed = std::hypot(point.dx, point.dy);
    if (!(speed > 0.0) || !std::isfinite(speed)) return sample;

    const double tangentX = point.dx / speed, tangentY = point.dy / speed;
    double beyond = 0.0;  // pixels past the end, against the path before its start
    if (path.open && place.pathPos > 1.0) beyond = path.total * (place.local - 1.0);
    if (path.open && place.pathPos < 0.0) beyond = place.pathPos * path.total;
    sample.x = Bounded(sample.x + tangentX * beyond);
    sample.y = Bounded(sample.y + tangentY * beyond);
    sample.normalX = -tangentY;
    sample.normalY = tangentX;
    return sample;
}
