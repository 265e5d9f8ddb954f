// renderSession.h: the plug-in and the scene of one `orv render`, loaded in this process.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/renderTask.h"
#include "cli/stats.h"
#include "cli/targetLimit.h"
#include "draw/sceneRenderer.h"
#include "plugin/pluginEffectRunner.h"
#include "plugin/pluginHost.h"

namespace orv {

/// Seconds since the last lap, or since the start.
class Stopwatch {
public:
    double lap()
    {
        const auto now = std::chrono::steady_clock::now();
        return std::chrono::duration<double>(now - std::exchange(last_, now)).count();
    }

private:
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

/// What is known once all is loaded.
struct runStart {
    std::string composition;  ///< its id
    std::vector<int> frames;
    pictureFormat format;
    double pluginSeconds = 0.0, sceneSeconds = 0.0;  ///< to load them
    std::string glRenderer, glVersion;               ///< "": not asked for
};

/// Whom a session tells what.
struct sessionSinks {
    warningSink warn;
    std::function<bool()> interrupted;   ///< asked by effects; may be empty
    std::function<void()> pluginLoaded;  ///< the scene comes next; may be empty
    commandObserver observe;             ///< may be empty
};

class RenderSession {
public:
    /// Loads the plug-in and the scene; borrows the options. Throws failure.
    RenderSession(const renderOptions& options, const sessionSinks& sinks);

    [[nodiscard]] const runStart& start() const { return start_; }
    /// What is due once before the first frame. Throws failure.
    void Prepare();
    /// Renders and fills in the figures of effects and drawing. Throws failure.
    image Render(int frame, frameStats& figures);
    /// Closes the plug-in. Throws failure(plugin) for what it left behind.
    void Close();

private:
    const renderOptions& options_;
    Stopwatch loading_;
    PluginHost plugin_;
    runStart start_;
    project scene_;
    renderTask task_;
    PluginEffectRunner effects_{plugin_};
    std::optional<TargetLimitRunner> limited_;
    std::optional<SceneRenderer> renderer_;
};

}  // namespace orv
