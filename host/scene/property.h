// property.h: animated values as a scene file gives them. Times are frames of the composition that
// holds the layer. Evaluated by animation/evaluate.h.
#pragma once

#include <optional>
#include <vector>

namespace orv {

struct vec2 {
    double x = 0.0, y = 0.0;
    bool operator==(const vec2&) const = default;
};
struct vec3 {
    double x = 0.0, y = 0.0, z = 0.0;
    bool operator==(const vec3&) const = default;
};

/// One side of an easing curve: an entry per component, a missing one means the first; x within
/// 0..1. Empty: no handle, which makes the interval linear.
struct easeHandle {
    std::vector<double> x, y;
};

struct keyFrame {
    double t = 0.0;
    std::vector<double> start;  ///< empty only on the last key of an old file
    std::vector<double> end;    ///< old files; else empty
    bool hold = false;
    easeHandle out, in;
    std::vector<double> toTangent, tiTangent;  ///< spatial; both or neither
};

/// A vector of 1 to 4 numbers over time. With keys, `constant` is unused.
struct property {
    std::vector<double> constant;
    std::vector<keyFrame> keys;  ///< ascending t; empty: constant
    [[nodiscard]] bool animated() const { return keys.size() > 1; }
};

/// Control points are relative to their vertex. The three lists have one size.
struct maskPath {
    bool closed = false;
    std::vector<vec2> vertex, in, out;
    bool operator==(const maskPath&) const = default;
};

struct pathKeyFrame {
    double t = 0.0;
    std::optional<maskPath> start, end;
    bool hold = false;
    easeHandle out, in;
};

struct pathProperty {
    maskPath constant;
    std::vector<pathKeyFrame> keys;
    [[nodiscard]] bool animated() const { return keys.size() > 1; }
};

}  // namespace orv
