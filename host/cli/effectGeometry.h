// effectGeometry.h: what the effect would draw at a frame, from its own geometry code on this
// host's answers. The only place where the host calls anything of the effect but its entry;
// rendering never does.
#pragma once

#include "camera/viewMatrices.h"
#include "cli/effectProbe.h"
#include "geometry/frameMesh.h"

namespace orv {

struct effectGeometry {
    frameMesh mesh;
    viewSize view;             ///< of the layer, and of the viewport it is drawn into
    double contourColor[3]{};  ///< red, green, blue, 0..1
};

/// The matrices that the effect gives to GL. Row vectors: clip = point * modelView * projection.
struct glMatrices {
    A_Matrix4 projection, modelView;
};

/// Throws failure(frame) with the effect's reason.
effectGeometry ReadGeometry(EffectProbe& probe);

glMatrices MatricesOf(const effectGeometry& geometry);

}  // namespace orv
