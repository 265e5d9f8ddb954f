// textureSizeChoice.h: lets "Allow maximum texture size" take effect before frames are rendered.
#pragma once

#include "plugin/layerImages.h"
#include "plugin/pluginHost.h"
#include "scene/model.h"

namespace orv {

/// The effect makes its render targets anew only when it is told that a user has changed the box.
/// So an instance of the project that has it on at `t` is told, once all are set up; one is enough,
/// since all share the targets, and it must have a mask, since the effect does nothing without one.
/// Its script then switches the box on in all others. Returns whether there was one. Throws
/// failure.
bool TellMaximumTextureSize(PluginHost& plugin, const project& scene, const renderQuality& quality,
                            double t);

}  // namespace orv
