// stillPictures.h: own pixels that do not change over time, prepared once for a rendering.
#pragma once

#include <map>
#include <utility>

#include "image/image.h"
#include "plugin/layerImages.h"
#include "scene/model.h"

namespace orv {

/// At the rendering's resolution and depth. What it hands out stays where it is until it goes.
class StillPictures {
public:
    explicit StillPictures(const renderQuality& quality) : quality_(quality) {}

    const image& Asset(const imageAsset& asset);
    const image& Solid(const layer& solid);
    const image& Transparent(int fullWidth, int fullHeight);

    [[nodiscard]] int PreviewWidth(int full) const { return Divided(full, quality_.divisorX); }
    [[nodiscard]] int PreviewHeight(int full) const { return Divided(full, quality_.divisorY); }

private:
    static int Divided(int size, int divisor) { return (size + divisor - 1) / divisor; }

    renderQuality quality_;
    std::map<const imageAsset*, image> assets_;
    std::map<const layer*, image> solids_;
    std::map<std::pair<int, int>, image> transparent_;
};

}  // namespace orv
