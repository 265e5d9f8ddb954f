// layerWorlds.h: the own pixels of layers, as worlds for layer parameters.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "plugin/layerImages.h"
#include "plugin/worlds.h"

namespace orv {

struct effectFrame;

/// Equal bytes mean equal pixels.
using stateBytes = std::array<std::uint8_t, 16>;

/// A layer's own pixels. Effects must not write into it.
struct layerWorld {
    ownedWorld pixels;
    stateBytes state{};
    std::uint64_t checksum = 0;
};
using sharedLayerWorld = std::shared_ptr<const layerWorld>;

/// Keeps the worlds that were asked for last, so that a still source is not copied again for every
/// frame. While one is in use, the same layer in the same state is the same world: that is how an
/// effect tells that two parameters name one layer.
class LayerWorlds {
public:
    /// The pixels of layer `of` of the frame's composition at `t`. Asks the frame's images, which
    /// may run other effects: not while a command runs, unless NeedsEffects says no.
    sharedLayerWorld Get(WorldStore& store, const effectFrame& frame, const layer& of, double t);
    /// Whether Get would hand out pixels that are there already.
    [[nodiscard]] bool Knows(const effectFrame& frame, const layer& of, double t) const;

private:
    std::vector<sharedLayerWorld> kept_;  ///< oldest first
};

/// Digest of which layer it is and of all that its own pixels depend on at `t`.
stateBytes LayerState(const effectFrame& frame, const layer& of, double t);

/// Sides of a world at a preview divisor.
int AtDivisor(int fullSize, int divisor);

}  // namespace orv
