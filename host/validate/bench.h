// bench.h: one module and one scene with an instance of it, for a validation test.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "draw/sceneRenderer.h"
#include "plugin/pluginEffectRunner.h"
#include "plugin/pluginHost.h"
#include "scene/loader.h"
#include "validate/sceneSketch.h"

namespace orv {

/// Loads the module and asks what it declares; scenes follow. One bench at a time.
class ValidationBench {
public:
    /// Throws what PluginHost does.
    explicit ValidationBench(const std::string& module, pluginOptions options = {});
    ~ValidationBench();
    ValidationBench(const ValidationBench&) = delete;
    ValidationBench& operator=(const ValidationBench&) = delete;

    /// Puts a scene on the bench and returns its number, from 0; instances of the one before stay
    /// known to the host, as those of another composition would. Throws failure(scene).
    std::size_t Show(const sceneSketch& sketch);
    /// Puts the scene of that number on the bench again, with the instance as it was left.
    void ShowAgain(std::size_t number);
    /// Changes the layer "effect" of the scene on the bench, as its user would: the instance stays.
    void Edit(const std::function<void(layer&)>& change);
    /// Resolution and depth for what follows; the scene's own at first.
    void SetQuality(const renderQuality& quality);

    /// The layer's output at composition time `t` (frames), through every command of a frame.
    image Render(double t = 0.0);
    /// The instance at that time, for commands sent one by one. Borrows from the bench.
    [[nodiscard]] effectFrame Frame(double t = 0.0) const;
    /// What the instance is given to draw on at the frame: the layer's pixels with their masks.
    [[nodiscard]] image Input() const;
    /// A transparent image of the output's size and depth.
    [[nodiscard]] image EmptyOutput() const;

    [[nodiscard]] PluginHost& host() { return *host_; }
    [[nodiscard]] const effectDeclaration& declaration() const { return host_->declaration(); }
    [[nodiscard]] const project& scene() const { return *scenes_.at(shown_); }
    [[nodiscard]] const layer& owner() const;
    /// Messages of the effect with result 0, and what loading the scenes warned of.
    [[nodiscard]] const std::vector<std::string>& warnings() const { return warnings_; }

    /// Told of the commands of every bench; see pluginOptions. For the last words of a process.
    static void OnEveryCommand(commandObserver observe);

private:
    std::vector<std::string> warnings_;
    std::unique_ptr<PluginHost> host_;
    std::vector<std::unique_ptr<project>> scenes_;  ///< instances are known by their composition
    std::size_t shown_ = 0;
    std::unique_ptr<PluginEffectRunner> runner_;
    std::unique_ptr<SceneRenderer> renderer_;
    renderQuality quality_;
};

}  // namespace orv
