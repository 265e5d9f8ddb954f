// sceneRenderer.h: draws a project's compositions.
#pragma once

#include <memory>
#include <optional>

#include "image/image.h"
#include "plugin/effectRunner.h"
#include "plugin/layerImages.h"
#include "scene/errors.h"
#include "scene/model.h"

namespace orv {

/// Seconds of the last Render... call, nested compositions included; they do not overlap.
struct drawTimes {
    double effectSeconds = 0.0, drawSeconds = 0.0;
};

/// Not thread safe; holds what may be re-used from frame to frame.
class SceneRenderer {
public:
    SceneRenderer(const project& scene, renderQuality quality, EffectRunner& effects);
    ~SceneRenderer();
    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    /// The composition's picture at frame time `t`, ceil(w/x) x ceil(h/y), straight alpha.
    /// Throws failure(frame) when something cannot be drawn.
    image RenderComposition(const composition& comp, double t);
    /// That layer's output alone, at the layer's size, before opacity and transform.
    image RenderLayer(const composition& comp, const layer& l, double t);

    [[nodiscard]] const drawTimes& times() const;
    [[nodiscard]] LayerImages& images();

private:
    struct state;
    std::unique_ptr<state> state_;
};

}  // namespace orv
