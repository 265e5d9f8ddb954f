// stage.h: what the benchmarks of whole frames share: one scene with a few things to vary, and the
// module loaded into the host to render it.
#pragma once

#include <string>
#include <vector>

#include "draw/sceneRenderer.h"
#include "geometry/frameMesh.h"
#include "plugin/pluginEffectRunner.h"
#include "scene/loader.h"

namespace orv {

inline constexpr int kWidth = 1920, kHeight = 1080;

/// A wave across the frame with a band of 1600 x 160 along it.
struct waveScene {
    std::string values{};                ///< of the effect, as JSON, a comma after each
    std::string layers{};                ///< below the bands, as JSON, a comma before each
    std::string source = R"({"k": 2})";  ///< property: which band, 2 or 3
    int mask = 1;                        ///< 0 turns the effect into a copy of its input
    int blurSamples = 0;                 ///< of motion blur over half a frame; 0: none
};

/// The scene file: 100 frames.
std::string SceneText(const waveScene& scene);

/// A scene with the effect's input drawn. `plugin` must outlive it; several may share one.
class Stage {
public:
    Stage(PluginHost& plugin, const waveScene& scene, int depth);

    /// What the host asks of the module for one frame.
    image RunEffect(int frame);
    /// The host's picture of the frame, effect included.
    image DrawScene(int frame);
    /// What the first frame's geometry is. Throws std::runtime_error.
    void Geometry(frameMesh& mesh);
    /// The band's own pixels.
    image Band();
    /// Of the last DrawScene.
    [[nodiscard]] const drawTimes& times() const { return renderer_.times(); }

private:
    [[nodiscard]] shownComposition Shown() const;
    effectFrame Frame(int frame);

    PluginHost& plugin_;
    project scene_;
    renderQuality quality_;
    PluginEffectRunner runner_;
    SceneRenderer renderer_;
    image input_;
};

/// Of at least one value.
double Median(std::vector<double> values);

}  // namespace orv
