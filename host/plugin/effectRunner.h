// effectRunner.h: how drawing runs the effects of a layer without knowing plug-ins.
#pragma once

#include "image/image.h"
#include "plugin/layerImages.h"

namespace orv {

/// Runs effect `effectIndex` of `owner` at composition time `t` on `input`, the layer's pixels with
/// masks and earlier effects. Throws failure(frame) when the effect fails.
class EffectRunner {
public:
    EffectRunner() = default;
    virtual ~EffectRunner() = default;
    EffectRunner(const EffectRunner&) = delete;
    EffectRunner& operator=(const EffectRunner&) = delete;
    virtual image Run(const shownComposition& shown, const layer& owner, int effectIndex, double t,
                      const renderQuality& quality, LayerImages& images, const image& input) = 0;
};

}  // namespace orv
