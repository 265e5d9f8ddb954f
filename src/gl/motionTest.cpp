#include "gl/motionTest.h"

#include <algorithm>

namespace {

bool SameCamera(const A_Matrix4& a, const A_Matrix4& b)
{
    return std::equal(&a.mat[0][0], &a.mat[0][0] + 16, &b.mat[0][0]);
}

/// The "3D geometry" group from "Scale X" on, with "Camera mode" and the two points.
bool SamePlacement(const paramSnapshot& a, const paramSnapshot& b)
{
    const auto from = [](const paramSnapshot& values) { return values.value.begin() + kScaleX; };
    return a.anchor == b.anchor && a.position == b.position &&
           std::equal(from(a), from(a) + (kCameraMode - kScaleX + 1), from(b));
}

}  // namespace

bool FrameMoves(std::span<const frameInstant> samples)
{
    const frameInstant& last = samples.back();
    const bool sameMesh = std::all_of(samples.begin(), samples.end(), [&](const auto& sample) {
        return sample.shape == last.shape;
    });
    const bool samePlacement =
        std::adjacent_find(samples.begin(), samples.end(), [](const auto& a, const auto& b) {
            return !SamePlacement(a.values, b.values);
        }) == samples.end();
    return !sameMesh || !samePlacement ||
           !SameCamera(samples.front().camera.cameraMatrix, last.camera.cameraMatrix);
}
