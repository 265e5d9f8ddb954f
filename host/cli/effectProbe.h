// effectProbe.h: reaches one instance of the effect at one frame, for the commands that show what
// is there instead of rendering it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "image/image.h"
#include "plugin/pluginHost.h"
#include "scene/model.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace orv {

/// As written on the command line.
struct probeOptions {
    std::string scene, plugin;
    std::string composition, layer;  ///< "": the main one; the topmost layer with the effect
    int effect = 0;  ///< position among the layer's effects, from 1; 0: the first that fits
    std::optional<int> frame;  ///< none: the scene's first
    std::vector<std::string> sets;
    bool strict = false, allowOutside = false;
};

/// SCENE, --plugin, --strict and --allow-outside: the scene itself.
void AddSceneOptions(CLI::App& command, probeOptions& options);

/// --comp, --layer, --effect, --frame and --set: the instance and its frame.
std::vector<CLI::Option*> AddInstanceOptions(CLI::App& command, probeOptions& options);

class EffectProbe {
public:
    /// Loads plug-in and scene, and finds the instance. Throws failure: usage when the scene has
    /// nothing like what the options name, and whatever loading throws.
    explicit EffectProbe(const probeOptions& options, pluginOptions hostOptions = {});

    /// Draws what the effect is given at the frame, earlier effects and precompositions included,
    /// and calls `use` with it. Throws failure(frame), and what `use` throws.
    void Reach(const std::function<void(const effectFrame&, const image& input)>& use);

    /// Sets the plug-in down, which tells what it left behind.
    void Close() { plugin_.Close(); }

    [[nodiscard]] PluginHost& plugin() { return plugin_; }
    [[nodiscard]] const effectDeclaration& declaration() const { return plugin_.declaration(); }
    [[nodiscard]] const project& scene() const { return scene_; }
    [[nodiscard]] const composition& comp() const { return *comp_; }
    [[nodiscard]] const layer& owner() const { return *owner_; }
    [[nodiscard]] int effectIndex() const { return effectIndex_; }  ///< in owner().effects
    [[nodiscard]] const effect& instance() const
    {
        return owner_->effects[static_cast<std::size_t>(effectIndex_)];
    }
    [[nodiscard]] int frame() const { return frame_; }

private:
    PluginHost plugin_;
    project scene_;
    const composition* comp_ = nullptr;
    const layer* owner_ = nullptr;
    int effectIndex_ = 0;
    int frame_ = 0;
};

}  // namespace orv
