// placement.h: where the pixels of a layer go.
#pragma once

#include <array>
#include <optional>

#include "animation/evaluate.h"
#include "draw/canvas.h"
#include "image/image.h"

namespace orv {

/// Takes points of the layer's plane to points of the composition: (x, y, 1) * m = (x', y', 1) * q.
/// What has q <= 0 lies behind the camera. A pixel's centre is at its index + 0.5.
struct planeMatrix {
    std::array<std::array<double, 3>, 3> m{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
};

/// A 2D layer: x and y of its world matrix.
planeMatrix FlatPlacement(const matrix4& world);

/// A 3D layer seen through `view` in a composition of that size. None when the view has no
/// direction to look in.
std::optional<planeMatrix> ProjectedPlacement(const matrix4& world, const cameraView& view,
                                              int width, int height);

/// The same between preview pixels on both sides.
planeMatrix AtPreview(const planeMatrix& full, int divisorX, int divisorY);

/// Lays `picture` over `target`, its alpha times `opacity`. Samples bilinearly, with transparency
/// around the picture; moved by whole pixels it comes through unchanged. A plane seen from its
/// edge is not drawn.
void DrawPlaced(const image& picture, const planeMatrix& placement, double opacity, canvas& target);

}  // namespace orv
