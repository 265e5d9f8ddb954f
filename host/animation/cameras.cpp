#include <algorithm>

#include "animation/evaluate.h"

namespace orv {

const layer* ActiveCamera(const composition& c, double t)
{
    const auto found = std::ranges::find_if(c.layers, [t](const layer& l) {
        return l.type == layerType::camera && !l.hidden && Shows(l, t);
    });
    return found == c.layers.end() ? nullptr : &*found;
}

double DefaultCameraDistance(int compositionWidth)
{
    return compositionWidth * 50.0 / 36.0;
}

cameraView ViewAt(const composition& c, int width, int height, double t)
{
    const double distance = DefaultCameraDistance(width);
    if (const layer* camera = ActiveCamera(c, t)) {
        return {WorldMatrix(c, *camera, t), EvaluateScalar(camera->camera.zoom, t, distance)};
    }
    matrix4 world;
    world.m[3] = {width / 2.0, height / 2.0, -distance, 1.0};
    return {world, distance};
}

}  // namespace orv
