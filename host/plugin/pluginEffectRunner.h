// pluginEffectRunner.h: lets the scene renderer run a plug-in's effects.
#pragma once

#include "draw/sceneRenderer.h"
#include "plugin/pluginHost.h"

namespace orv {

/// Borrows the host, which must outlive it.
class PluginEffectRunner : public EffectRunner {
public:
    explicit PluginEffectRunner(PluginHost& host) : host_(host) {}

    image Run(const shownComposition& shown, const layer& owner, int effectIndex, double t,
              const renderQuality& quality, LayerImages& images, const image& input) override
    {
        return host_.Render({shown, &owner, effectIndex, t, quality, &images}, input);
    }

private:
    PluginHost& host_;
};

}  // namespace orv
