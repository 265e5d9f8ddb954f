#include "geometry/sourceCrop.h"

#include <algorithm>
#include <cmath>

namespace {

/// Moves an edge by `percent` of `size`; the sum is truncated, whatever the value asked for.
A_long MoveEdge(A_long edge, double percent, int size)
{
    constexpr double kFarthest = 1.0e6;
    const double moved = edge + percent * 0.01 * size;
    if (std::isnan(moved)) return edge;
    return static_cast<A_long>(std::clamp(moved, -kFarthest, kFarthest));
}

bool Usable(int size)
{
    return size >= kSmallestSource && size <= kLargestSource;
}

}  // namespace

cropRect CropSource(const PF_Rect& extent, int width, int height, double leftPercent,
                    double rightPercent, double topPercent, double bottomPercent)
{
    cropRect crop;
    crop.rect.left = MoveEdge(extent.left, leftPercent, width);
    crop.rect.right = MoveEdge(extent.right, -rightPercent, width);
    crop.rect.top = MoveEdge(extent.top, topPercent, height);
    crop.rect.bottom = MoveEdge(extent.bottom, -bottomPercent, height);
    crop.width = crop.rect.right - crop.rect.left;
    crop.height = crop.rect.bottom - crop.rect.top;
    crop.usable = Usable(crop.width) && Usable(crop.height);
    return crop;
}
