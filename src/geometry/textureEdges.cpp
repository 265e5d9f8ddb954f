#include "geometry/textureEdges.h"

#include <utility>

#include "geometry/vec3.h"

namespace {

/// Borders of a source of size w x h at fraction p of its run along the mask.
std::pair<vec3, vec3> EdgesAt(double p, double w, double h, int rotation)
{
    switch (rotation) {
        case kRotation90:
            return {{0, (1 - p) * h, 1}, {w, (1 - p) * h, 1}};
        case kRotation180:
            return {{(1 - p) * w, h, 1}, {(1 - p) * w, 0, 1}};
        case kRotation270:
            return {{w, p * h, 1}, {0, p * h, 1}};
        default:
            return {{w * p, 0, 1}, {w * p, h, 1}};
    }
}

}  // namespace

textureEdges SourceEdges(std::span<const propS> props, const meshSettings& settings)
{
    textureEdges edges;
    edges.a.reserve(props.size());
    edges.b.reserve(props.size());
    for (const propS& prop : props) {
        const auto [a, b] = EdgesAt(prop.pathFrac, settings.sizes.sourceWidth,
                                    settings.sizes.sourceHeight, settings.rotation);
        edges.a.push_back(a.narrow());
        edges.b.push_back(b.narrow());
    }
    return edges;
}

textureEdges CurveEdges(std::span<const pathSample> curve, const meshSettings& settings)
{
    const double radius = settings.sourceRadius * settings.sizes.sourceHeight * 0.5;
    textureEdges edges;
    edges.a.reserve(curve.size());
    edges.b.reserve(curve.size());
    for (const pathSample& sample : curve) {
        const vec3 middle{sample.x, sample.y, sample.place.local};
        const vec3 across = vec3{sample.normalX, sample.normalY, 0.0} * radius;
        edges.a.push_back((middle - across).narrow());
        edges.b.push_back((middle + across).narrow());
    }
    return edges;
}
