#include "animation/rotation.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv {
namespace {

constexpr double kRadians = std::numbers::pi / 180.0;

struct quaternion {
    double w = 1.0, x = 0.0, y = 0.0, z = 0.0;
};

quaternion operator*(const quaternion& a, const quaternion& b)
{
    return {a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z,
            a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
            a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
            a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w};
}

double Dot(const quaternion& a, const quaternion& b)
{
    return a.w * b.w + a.x * b.x + a.y * b.y + a.z * b.z;
}

struct cosineSine {
    double c = 1.0, s = 0.0;
};

/// Exact at quarter turns, so that a layer turned by one keeps its pixels on whole positions.
cosineSine TurnOf(double degrees)
{
    const double turn = std::remainder(degrees, 360.0);  // -180..180
    if (turn == 0.0) return {1.0, 0.0};
    if (turn == 90.0) return {0.0, 1.0};
    if (turn == -90.0) return {0.0, -1.0};
    if (std::abs(turn) == 180.0) return {-1.0, 0.0};
    return {std::cos(turn * kRadians), std::sin(turn * kRadians)};
}

/// Row vectors turn about z first; quaternion products apply the right factor first.
quaternion FromAngles(const vec3& degrees)
{
    const vec3 half{degrees.x * kRadians / 2.0, degrees.y * kRadians / 2.0,
                    degrees.z * kRadians / 2.0};
    const quaternion aboutX{std::cos(half.x), std::sin(half.x), 0.0, 0.0};
    const quaternion aboutY{std::cos(half.y), 0.0, std::sin(half.y), 0.0};
    const quaternion aboutZ{std::cos(half.z), 0.0, 0.0, std::sin(half.z)};
    return aboutX * aboutY * aboutZ;
}

/// Where the rotation takes the axes decides the angles: with M = Rz * Ry * Rx,
///   row 2 = (sy, -cy sx, cy cx),  column 0 = (cz cy, -sz cy, sy).
vec3 ToAngles(const quaternion& q)
{
    const double m00 = 1.0 - 2.0 * (q.y * q.y + q.z * q.z);
    const double m01 = 2.0 * (q.x * q.y + q.w * q.z);
    const double m10 = 2.0 * (q.x * q.y - q.w * q.z);
    const double m11 = 1.0 - 2.0 * (q.x * q.x + q.z * q.z);
    const double m20 = 2.0 * (q.x * q.z + q.w * q.y);
    const double m21 = 2.0 * (q.y * q.z - q.w * q.x);
    const double m22 = 1.0 - 2.0 * (q.x * q.x + q.y * q.y);

    const double y = std::atan2(m20, std::hypot(m00, m10));
    // Looking along x, the other two turn about one axis: all of it goes to z.
    constexpr double kGimbal = 1e-9;
    if (std::hypot(m00, m10) < kGimbal) return {0.0, y / kRadians, std::atan2(m01, m11) / kRadians};
    return {std::atan2(-m21, m22) / kRadians, y / kRadians, std::atan2(-m10, m00) / kRadians};
}

quaternion Slerp(const quaternion& from, quaternion to, double fraction)
{
    // q and -q are one rotation; the sign with the smaller angle is the shorter arc.
    double cosine = Dot(from, to);
    if (cosine < 0.0) {
        to = {-to.w, -to.x, -to.y, -to.z};
        cosine = -cosine;
    }
    const double angle = std::acos(std::min(cosine, 1.0));
    const double sine = std::sin(angle);
    if (sine == 0.0) return from;
    const double a = std::sin((1.0 - fraction) * angle) / sine;
    const double b = std::sin(fraction * angle) / sine;
    return {a * from.w + b * to.w, a * from.x + b * to.x, a * from.y + b * to.y,
            a * from.z + b * to.z};
}

}  // namespace

matrix4 RotationX(double degrees)
{
    const auto [c, s] = TurnOf(degrees);
    return {{{{1, 0, 0, 0}, {0, c, s, 0}, {0, -s, c, 0}, {0, 0, 0, 1}}}};
}

matrix4 RotationY(double degrees)
{
    const auto [c, s] = TurnOf(degrees);
    return {{{{c, 0, -s, 0}, {0, 1, 0, 0}, {s, 0, c, 0}, {0, 0, 0, 1}}}};
}

matrix4 RotationZ(double degrees)
{
    const auto [c, s] = TurnOf(degrees);
    return {{{{c, s, 0, 0}, {-s, c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}};
}

matrix4 RotationZYX(const vec3& degrees)
{
    return RotationZ(degrees.z) * RotationY(degrees.y) * RotationX(degrees.x);
}

vec3 MixOrientations(const vec3& from, const vec3& to, double fraction)
{
    if (fraction == 0.0 || from == to) return from;
    if (fraction == 1.0) return to;
    return ToAngles(Slerp(FromAngles(from), FromAngles(to), fraction));
}

}  // namespace orv
