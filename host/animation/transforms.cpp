#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "animation/evaluate.h"
#include "animation/rotation.h"

namespace orv {
namespace {

// Exporters write 29.0000011811942 for frame 29.
constexpr double kFrameTolerance = 0.001;

matrix4 Translation(const vec3& v)
{
    matrix4 result;
    result.m[3] = {v.x, v.y, v.z, 1.0};
    return result;
}

matrix4 Scaling(const vec3& percent)
{
    matrix4 result;
    result.m[0][0] = percent.x / 100.0;
    result.m[1][1] = percent.y / 100.0;
    result.m[2][2] = percent.z / 100.0;
    return result;
}

vec3 PositionOf(const transformProps& p, double t)
{
    if (!p.split) return EvaluateVector(p.position, t, {});
    return {EvaluateScalar(p.positionX, t, 0.0), EvaluateScalar(p.positionY, t, 0.0),
            EvaluateScalar(p.positionZ, t, 0.0)};
}

/// The three rotations, then the orientation.
matrix4 Turned(const transformProps& p, double t)
{
    return RotationZYX({EvaluateScalar(p.rotationX, t, 0.0), EvaluateScalar(p.rotationY, t, 0.0),
                        EvaluateScalar(p.rotation, t, 0.0)}) *
           RotationZYX(EvaluateOrientation(p.orientation, t));
}

matrix4 FlatMatrix(const transformProps& p, double t)
{
    vec3 anchor = EvaluateVector(p.anchor, t, {});
    vec3 scale = EvaluateVector(p.scale, t, {100.0, 100.0, 100.0});
    vec3 position = PositionOf(p, t);
    anchor.z = position.z = 0.0;
    scale.z = 100.0;
    return Translation({-anchor.x, -anchor.y, 0.0}) * Scaling(scale) *
           RotationZ(EvaluateScalar(p.rotation, t, 0.0)) * Translation(position);
}

matrix4 SpatialMatrix(const transformProps& p, double t)
{
    const vec3 anchor = EvaluateVector(p.anchor, t, {});
    return Translation({-anchor.x, -anchor.y, -anchor.z}) *
           Scaling(EvaluateVector(p.scale, t, {100.0, 100.0, 100.0})) * Turned(p, t) *
           Translation(PositionOf(p, t));
}

bool LooksAtPoint(const layer& l)
{
    if (!l.transform.anchorGiven) return false;
    return l.type == layerType::camera || l.light.type == lightType::spot ||
           l.light.type == lightType::parallel;
}

/// Rx(-phi) * Ry(psi), whose row 2 points from `position` to `target`.
matrix4 LookingAt(const vec3& position, const vec3& target)
{
    const vec3 d{target.x - position.x, target.y - position.y, target.z - position.z};
    const double level = std::hypot(d.x, d.z);
    if (std::hypot(level, d.y) == 0.0) return {};
    constexpr double kDegrees = 180.0 / std::numbers::pi;
    return RotationX(-std::atan2(d.y, level) * kDegrees) *
           RotationY(std::atan2(d.x, d.z) * kDegrees);
}

bool IsViewer(const layer& l)
{
    return l.type == layerType::camera || l.type == layerType::light;
}

matrix4 ViewerMatrix(const layer& l, double t)
{
    const vec3 position = PositionOf(l.transform, t);
    matrix4 turned = Turned(l.transform, t);
    if (LooksAtPoint(l)) {
        turned = turned * LookingAt(position, EvaluateVector(l.transform.anchor, t, {}));
    }
    return turned * Translation(position);
}

void ScaleAxesToUnit(matrix4& world)
{
    for (std::size_t row = 0; row < 3; ++row) {
        const double length = std::hypot(world.m[row][0], world.m[row][1], world.m[row][2]);
        if (length == 0.0) continue;
        for (std::size_t k = 0; k < 3; ++k) world.m[row][k] /= length;
    }
}

}  // namespace

double LayerTime(const layer& l, double t)
{
    return (t - l.start) / l.stretch;
}

double CompositionTime(const layer& l, double layerTime)
{
    return l.start + l.stretch * layerTime;
}

bool Shows(const layer& l, double t)
{
    return t >= l.ip - kFrameTolerance && t < l.op - kFrameTolerance;
}

double PrecompositionTime(const layer& l, double t, double frameRate)
{
    return l.timeRemap ? EvaluateScalar(*l.timeRemap, t, 0.0) * frameRate : LayerTime(l, t);
}

double Opacity(const layer& l, double t)
{
    return std::clamp(EvaluateScalar(l.transform.opacity, t, 100.0) / 100.0, 0.0, 1.0);
}

matrix4 LayerMatrix(const layer& l, double t)
{
    if (IsViewer(l)) return ViewerMatrix(l, t);
    return l.threeD ? SpatialMatrix(l.transform, t) : FlatMatrix(l.transform, t);
}

matrix4 WorldMatrix(const composition& c, const layer& l, double t)
{
    // A loop, not recursion: a scene may chain thousands of parents.
    std::vector<const layer*> chain{&l};
    while (chain.back()->parent >= 0) {
        chain.push_back(&c.layers[static_cast<std::size_t>(chain.back()->parent)]);
    }
    matrix4 world;
    for (auto each = chain.rbegin(); each != chain.rend(); ++each) {
        world = LayerMatrix(**each, t) * world;
        if (IsViewer(**each)) ScaleAxesToUnit(world);
    }
    return world;
}

}  // namespace orv
