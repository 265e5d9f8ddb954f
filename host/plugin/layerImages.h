// layerImages.h: what effects ask the drawing side for. Implemented by draw/, called by plugin/.
#pragma once

#include <array>
#include <cstdint>

#include "image/image.h"
#include "scene/model.h"

namespace orv {

/// A composition as it is being shown: assets take the size of the layer that shows them.
struct shownComposition {
    const project* scene = nullptr;
    const composition* comp = nullptr;
    int width = 0, height = 0;  ///< full resolution
};

/// Resolution and depth of this rendering.
struct renderQuality {
    int divisorX = 1, divisorY = 1;  ///< worlds are ceil(size / divisor)
    int depth = 8;
};

class LayerImages {
public:
    LayerImages() = default;
    virtual ~LayerImages() = default;
    LayerImages(const LayerImages&) = delete;
    LayerImages& operator=(const LayerImages&) = delete;
    /// The layer's own pixels (no masks, effects, opacity, transform) at composition time `t`, at
    /// the rendering's resolution and depth; transparent outside its time or when it has none. The
    /// reference holds until the next call or the end of the frame.
    virtual const image& OwnPixels(const shownComposition& shown, const layer& l, double t) = 0;
    /// Whether OwnPixels would have to run effects there: a precomposition with effects inside that
    /// is not drawn yet in this frame. Commands come one at a time, so whoever is inside one must
    /// not call OwnPixels then, but end the command, call it outside, and send the command again.
    virtual bool NeedsEffects(const shownComposition& shown, const layer& l, double t)
    {
        static_cast<void>(shown), static_cast<void>(l), static_cast<void>(t);
        return false;
    }
    /// Digest of everything that OwnPixels depends on there; equal digests mean equal pixels.
    virtual std::array<std::uint8_t, 16> OwnPixelsState(const shownComposition& shown,
                                                        const layer& l, double t) = 0;
    /// Digest of the input of effect number `effectIndex` of the layer: own pixels, masks, earlier
    /// effects.
    virtual std::array<std::uint8_t, 16> InputState(const shownComposition& shown, const layer& l,
                                                    int effectIndex, double t) = 0;
};

}  // namespace orv
