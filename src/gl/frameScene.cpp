#include "gl/frameScene.h"

drawList SortedCells(const frameInstant& instant)
{
    // Render space mirrors the host's z.
    const A_FpLong* const position = instant.camera.cameraMatrix.mat[3];
    const double eye[3] = {position[0], position[1], -position[2]};
    return BuildDrawList(instant.shape, instant.mesh, eye);
}
