// drawOrder.h: which layers of a composition are drawn, and in which order.
#pragma once

#include <vector>

#include "plugin/layerImages.h"
#include "scene/model.h"

namespace orv {

/// Full-resolution size of the layer's own pixels: shape and text layers have the composition's.
struct pixelSize {
    int width = 0, height = 0;
};
pixelSize OwnSize(const shownComposition& shown, const layer& l);

/// The layers that are drawn at `t`, the one that is drawn first at the front: from the list's end
/// to its start, but 3D layers with none but 3D layers between them by the depth of their centres,
/// farthest first. Layers that are not drawn do not separate others.
std::vector<const layer*> DrawOrder(const shownComposition& shown, double t);

}  // namespace orv
