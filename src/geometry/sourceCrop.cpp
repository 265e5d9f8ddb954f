#include "geometry/sourceCrop.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

cropRect CropLayer(const PF_EffectWorld& layer, const paramSnapshot& values)
{
    const auto percent = [&](PF_ParamIndex index) { return static_cast<double>(values[index]); };
    return CropSource(layer.extent_hint, layer.width, layer.height, percent(kSourceCropLeft),
                      percent(kSourceCropRight), percent(kSourceCropTop),
                      percent(kSourceCropBottom));
}

A_long SourceTime(const paramSnapshot& values, A_long currentTime, A_long timeStep)
{
    if (values.popup(kSourceTimeMode) != kSourceTimeSelector) return currentTime;
    const double ticks = static_cast<double>(values[kSourceTime]) * timeStep;
    if (std::isnan(ticks)) return currentTime;
    using limits = std::numeric_limits<A_long>;
    return static_cast<A_long>(
        std::clamp(ticks, static_cast<double>(limits::min()), static_cast<double>(limits::max())));
}
