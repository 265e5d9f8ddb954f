// pluginEffectRunner.h: runs effects through one loaded module.
#pragma once

#include "plugin/effectRunner.h"
#include "plugin/pluginHost.h"

namespace orv {

class PluginEffectRunner final : public EffectRunner {
public:
    /// Borrows `host`.
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
