// property.h: animated values as a scene file gives them. Times are frames of the composition that
// holds the layer. Evaluated by animation/evaluate.h.
#pragma once

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

/// The interval from this key to the next starts at `value` and ends at the next key's value. (Old
/// files write the end beside the start; the loader moves it to the key where it holds.)
struct keyFrame {
    double t = 0.0;
    std::vector<double> value;
    bool hold = false;
    easeHandle out, in;
    std::vector<double> toTangent, tiTangent;  ///< spatial; both or neither
};

/// A vector of up to 4 numbers over time; missing components take a default at evaluation. With
/// keys, `constant` is unused. The loader turns a single key into a constant.
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
    maskPath value;
    bool hold = false;
    easeHandle out, in;
};

struct pathProperty {
    maskPath constant;
    std::vector<pathKeyFrame> keys;
    [[nodiscard]] bool animated() const { return keys.size() > 1; }
};

}  // namespace orv
