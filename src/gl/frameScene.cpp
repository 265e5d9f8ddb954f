#include "gl/frameScene.h"

#include <algorithm>

double EyeDistance2D(int denX, float zoom)
{
    // Half of the depth range: beyond it the layer's plane itself would be cut away.
    constexpr double kFarthest = 50000.0;
    return std::min(std::max(3000.0 / denX, static_cast<double>(zoom)), kFarthest);
}
