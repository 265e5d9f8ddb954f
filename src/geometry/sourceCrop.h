// sourceCrop.h: which part of a layer's image becomes the source texture, and when it is read.
#pragma once

#include "host_api.h"

#include "geometry/paramSnapshot.h"

/// A crop rectangle in pixels of the image it was taken from. `usable`: both sides lie in
/// kSmallestSource..kLargestSource; otherwise the frame has no source image.
struct cropRect {
    PF_Rect rect{};
    int width = 0, height = 0;
    bool usable = false;
};

inline constexpr int kSmallestSource = 4;
inline constexpr int kLargestSource = 30003;

/// Moves each edge of `extent` inwards by a percentage of the image's `width` or `height`, towards
/// zero to a whole pixel. A crop of 0 leaves its edge where it is. Crops that meet or cross give a
/// size of 0 or less, not usable.
cropRect CropSource(const PF_Rect& extent, int width, int height, double leftPercent,
                    double rightPercent, double topPercent, double bottomPercent);

/// The part of `layer` that the "Source crop" values leave.
cropRect CropLayer(const PF_EffectWorld& layer, const paramSnapshot& values);

/// Layer time at which a chosen source layer is read: now, or at "Selector" the frame that "Source
/// time" counts, cut to whole ticks and kept within what a time can hold.
A_long SourceTime(const paramSnapshot& values, A_long currentTime, A_long timeStep);
