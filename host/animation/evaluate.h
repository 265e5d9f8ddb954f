// evaluate.h: values, paths, transforms and cameras of a project at an instant.
// `t` is a frame number of the composition that holds the layer; it may be fractional.
// Matrices are 4 x 4, points are row vectors (p' = p * M), row 3 is the translation. World axes: x
// right, y down, z into the screen; pixels of the composition at full resolution.
#pragma once

#include <array>
#include <optional>
#include <span>

#include "scene/model.h"

namespace orv {

struct matrix4 {
    std::array<std::array<double, 4>, 4> m{
        {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    bool operator==(const matrix4&) const = default;
};
matrix4 operator*(const matrix4& a, const matrix4& b);
/// Nullopt when the matrix cannot be inverted.
std::optional<matrix4> Inverse(const matrix4& m);
vec3 TransformPoint(const vec3& p, const matrix4& m);

/// The value at `t`; a missing component is taken from `fallback`, which also sets the count.
std::vector<double> Evaluate(const property& value, double t, std::span<const double> fallback);
double EvaluateScalar(const property& value, double t, double fallback);
vec3 EvaluateVector(const property& value, double t, const vec3& fallback);
vec3 EvaluateOrientation(const property& value, double t);  ///< degrees; slerp between keys
maskPath EvaluatePath(const pathProperty& value, double t);
/// Never mixes: the value of the last key at or before `t`.
double EvaluateHeld(const property& value, double t, double fallback);

/// Layer time in frames, and back. `t` in all other functions stays composition time: key frames
/// do not move with a layer's start or stretch. A stretch may be negative.
double LayerTime(const layer& l, double t);
double CompositionTime(const layer& l, double layerTime);
/// ip <= t < op, within 0.001 frame.
bool Shows(const layer& l, double t);

matrix4 LayerMatrix(const layer& l, double t);                        ///< without the parents
matrix4 WorldMatrix(const composition& c, const layer& l, double t);  ///< cameras and lights too
double Opacity(const layer& l, double t);                             ///< 0..1

/// The first camera that is not hidden and shows at `t`; null when there is none.
const layer* ActiveCamera(const composition& c, double t);
double DefaultCameraDistance(int compositionWidth);

struct cameraView {
    matrix4 world;      ///< layer to world, rows of length 1
    double zoom = 0.0;  ///< pixels
};
/// The active camera, else the default one of a composition of that size.
cameraView ViewAt(const composition& c, int width, int height, double t);

/// Time of the shown composition's frame for a precomposition layer.
double PrecompositionTime(const layer& l, double t, double frameRate);

}  // namespace orv
