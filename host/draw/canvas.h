// canvas.h: the picture while layers are laid on it.
#pragma once

#include <vector>

#include "image/image.h"

namespace orv {

/// Floats, colours multiplied by alpha, full scale 1; alpha, red, green, blue. Transparent black at
/// first.
struct canvas {
    int width = 0, height = 0;
    std::vector<float> argb;  ///< rows top to bottom, packed

    canvas(int w, int h)
        : width(w), height(h), argb(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 4)
    {
    }
    [[nodiscard]] float* at(int x, int y)
    {
        return argb.data() + (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                              static_cast<std::size_t>(x)) *
                                 4;
    }
    [[nodiscard]] const float* at(int x, int y) const
    {
        return const_cast<canvas*>(this)->at(x, y);
    }
};

/// Straight alpha at that depth, to the nearest. Where alpha becomes 0 the colour is black.
image ToImage(const canvas& source, int depth);

}  // namespace orv
