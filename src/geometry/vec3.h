// vec3.h: double-precision vectors to compute with, and bounds for numbers from outside.
#pragma once

#include <algorithm>
#include <cmath>

#include "geometry/records.h"

/// A point3 while it is being computed; results are narrowed once, when they are stored.
struct vec3 {
    double x = 0.0, y = 0.0, z = 0.0;

    vec3() = default;
    vec3(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    // Implicit: widening loses nothing.
    vec3(const point3& p)
        : x(static_cast<double>(p.x)), y(static_cast<double>(p.y)), z(static_cast<double>(p.z))
    {
    }
    [[nodiscard]] point3 narrow() const
    {
        return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    }

    friend vec3 operator+(const vec3& a, const vec3& b)
    {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend vec3 operator-(const vec3& a, const vec3& b)
    {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend vec3 operator-(const vec3& a) { return {-a.x, -a.y, -a.z}; }
    friend vec3 operator*(const vec3& a, double factor)
    {
        return {a.x * factor, a.y * factor, a.z * factor};
    }
};

inline vec3 Cross(const vec3& a, const vec3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// (1 - w) * a + w * b.
inline vec3 Blend(const vec3& a, const vec3& b, double w)
{
    return b * w + a * (1.0 - w);
}

/// No coordinate, length or fraction of ours is larger: far beyond what can be seen, and its
/// square still fits a float.
inline constexpr double kFarthest = 1.0e9;

/// `value` within +-kFarthest; a NaN becomes 0.
inline double Bounded(double value)
{
    return std::isnan(value) ? 0.0 : std::clamp(value, -kFarthest, kFarthest);
}
