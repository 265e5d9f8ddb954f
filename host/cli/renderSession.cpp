#include "cli/renderSession.h"

#include "cli/glInfo.h"
#include "cli/pluginPath.h"
#include "cli/textureSizeChoice.h"
#include "scene/loader.h"
#include "script/scriptProcess.h"

namespace orv {
namespace {

pluginOptions HostOptions(const sessionSinks& sinks)
{
    pluginOptions options;
    options.warn = sinks.warn;
    options.interrupted = sinks.interrupted;
    options.runScript = ScriptsThrough(ScriptProgramPath());
    options.observe = sinks.observe;
    return options;
}

}  // namespace

// The scene's values are checked against what the plug-in declares, so that comes first.
RenderSession::RenderSession(const renderOptions& options, const sessionSinks& sinks)
    : options_(options), plugin_(PluginPath(options.plugin), HostOptions(sinks))
{
    start_.pluginSeconds = loading_.lap();
    if (sinks.pluginLoaded) sinks.pluginLoaded();
    scene_ = LoadScene(options.scene,
                       {options.allowOutside, options.strict, {plugin_.declaration()}}, sinks.warn);
    OverrideScene(scene_, options, plugin_.declaration());
    start_.sceneSeconds = loading_.lap();

    task_ = ChooseTask(scene_, options);
    start_.composition = task_.comp->id;
    start_.frames = task_.frames;
    start_.format = task_.format;
    if (options.stats.empty()) return;
    const glInfo gl = QueryGl();
    start_.glRenderer = gl.renderer;
    start_.glVersion = gl.version;
}

void RenderSession::Prepare()
{
    const bool maximum =
        TellMaximumTextureSize(plugin_, scene_, task_.quality, task_.frames.front());
    limited_.emplace(effects_, plugin_.declaration(), maximum);
    renderer_.emplace(scene_, task_.quality,
                      options_.allowTruncated ? static_cast<EffectRunner&>(effects_) : *limited_);
}

image RenderSession::Render(int frame, frameStats& figures)
{
    const std::int64_t uploadsBefore = plugin_.counters().sourceCopies;
    image picture = task_.onlyLayer ? renderer_->RenderLayer(*task_.comp, *task_.onlyLayer, frame)
                                    : renderer_->RenderComposition(*task_.comp, frame);
    figures.uploads = plugin_.counters().sourceCopies - uploadsBefore;
    figures.effect = renderer_->times().effectSeconds;
    figures.draw = renderer_->times().drawSeconds;
    return picture;
}

void RenderSession::Close()
{
    renderer_.reset();
    plugin_.Close();
}

}  // namespace orv
