#include "cli/renderRun.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <new>
#include <span>
#include <utility>

#include <fmt/format.h>

#include "cli/console.h"
#include "cli/exitCodes.h"
#include "cli/frameOutput.h"
#include "cli/glInfo.h"
#include "cli/interrupt.h"
#include "cli/pluginPath.h"
#include "cli/sceneChoice.h"
#include "cli/stats.h"
#include "cli/targetLimit.h"
#include "cli/textureSizeChoice.h"
#include "draw/sceneRenderer.h"
#include "plugin/pluginEffectRunner.h"
#include "plugin/pluginHost.h"
#include "scene/loader.h"
#include "script/scriptProcess.h"

namespace orv {
namespace {

class Stopwatch {
public:
    /// Seconds since the last call, or since the start.
    double lap()
    {
        const auto now = std::chrono::steady_clock::now();
        return std::chrono::duration<double>(now - std::exchange(last_, now)).count();
    }

private:
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

/// What is rendered, chosen from the scene.
struct renderTask {
    const composition* comp = nullptr;
    const layer* onlyLayer = nullptr;  ///< null: the whole composition
    std::vector<int> frames;
    renderQuality quality;
    pictureFormat format;
};

bool Interrupted()
{
    return InterruptGuard::signal() != 0;
}

void OverrideScene(project& scene, const renderOptions& options,
                   const effectDeclaration& declaration)
{
    if (options.depth) scene.depth = *options.depth;
    if (options.downsample) {
        scene.downsampleX = (*options.downsample)[0];
        scene.downsampleY = (*options.downsample)[1];
    }
    for (composition& comp : scene.compositions) {
        motionBlurSettings& blur = comp.motionBlur;
        blur.enabled = options.motionBlur.value_or(blur.enabled);
        blur.shutterAngle = options.shutterAngle.value_or(blur.shutterAngle);
        blur.shutterPhase = options.shutterPhase.value_or(blur.shutterPhase);
        blur.samples = options.motionBlurSamples.value_or(blur.samples);
    }
    ApplySets(scene, declaration, options.sets);
}

std::vector<int> ChooseFrames(const project& scene, const renderOptions& options)
{
    const frameRange all{scene.firstFrame, scene.endFrame - 1, 1};
    std::vector<int> frames =
        ExpandFrames(options.frames.empty() ? std::span(&all, 1) : std::span(options.frames),
                     scene.firstFrame, scene.endFrame);
    const outputPattern& output = options.output;
    if (frames.size() > 1 && !output.numbered() && output.kind != outputKind::video)
        throw failure(failureKind::usage,
                      fmt::format("output '{}' needs a frame number (#### or %04d) for {} frames",
                                  FrameFile(output, 0), frames.size()));
    return frames;
}

renderTask ChooseTask(const project& scene, const renderOptions& options)
{
    renderTask task;
    task.comp = options.composition ? &ChooseComposition(scene, *options.composition)
                                    : &scene.compositions.front();
    if (options.layer) task.onlyLayer = &ChooseLayer(*task.comp, *options.layer);
    task.frames = ChooseFrames(scene, options);
    task.quality = {scene.downsampleX, scene.downsampleY, scene.depth};

    const auto preview = [](int size, int divisor) { return (size + divisor - 1) / divisor; };
    const int width = task.onlyLayer ? task.onlyLayer->width : task.comp->width;
    const int height = task.onlyLayer ? task.onlyLayer->height : task.comp->height;
    task.format = {.width = preview(width, scene.downsampleX),
                   .height = preview(height, scene.downsampleY),
                   .depth = scene.depth,
                   .exr = options.exr,
                   .frameRate = scene.frameRate};
    return task;
}

/// Renders the frames of a task one after the other and keeps their figures.
class FrameLoop {
public:
    FrameLoop(const renderTask& task, const renderOptions& options, SceneRenderer& renderer,
              const PluginHost& plugin, Console& console, renderStats& stats)
        : task_(task),
          options_(options),
          renderer_(renderer),
          plugin_(plugin),
          console_(console),
          stats_(stats),
          output_(options.output, task.format)
    {
    }

    /// 0, or 1 when a frame failed. An interrupt ends it early. Throws what ends the whole run.
    int Run()
    {
        int code = 0;
        console_.StartFrames(task_.frames.size());
        for (const int frame : task_.frames) {
            if (Interrupted()) return code;
            if (TryFrame(frame)) continue;
            if (Interrupted()) return code;
            code = ExitCode(failureKind::frame);
            if (!options_.keepGoing) return code;
        }
        output_.Finish();
        return code;
    }

private:
    /// False when the frame failed, which has been told.
    bool TryFrame(int frame)
    {
        frameStats figures{.frame = frame, .load = std::exchange(loadToCharge_, 0.0)};
        Stopwatch whole;
        std::string problem;
        try {
            const std::string what =
                IsThere(frame, figures) ? "is there already" : RenderAndWrite(frame, figures);
            figures.total = whole.lap();
            console_.FrameDone(frame, what, figures.total);
        } catch (const failure& reason) {
            if (reason.kind() != failureKind::frame) throw;
            problem = reason.what();
        } catch (const std::bad_alloc&) {
            problem = "out of memory";
        }
        if (!problem.empty()) {
            figures.result = frameResult::failed;
            figures.total = whole.lap();
            if (!Interrupted()) console_.Error(fmt::format("frame {}: {}", frame, problem));
        }
        stats_.frames.push_back(figures);
        return problem.empty();
    }

    bool IsThere(int frame, frameStats& figures)
    {
        if (!options_.resume) return false;
        switch (output_.Existing(frame)) {
            case existingPicture::none:
                return false;
            case existingPicture::whole:
                figures.result = frameResult::skipped;
                return true;
            case existingPicture::other:
                break;
        }
        console_.Note(fmt::format("{} is not a whole picture of {}x{} in this depth; rendering it",
                                  FrameFile(options_.output, frame), task_.format.width,
                                  task_.format.height));
        return false;
    }

    std::string RenderAndWrite(int frame, frameStats& figures)
    {
        const std::int64_t uploadsBefore = plugin_.counters().sourceCopies;
        const image picture = task_.onlyLayer
                                  ? renderer_.RenderLayer(*task_.comp, *task_.onlyLayer, frame)
                                  : renderer_.RenderComposition(*task_.comp, frame);
        figures.uploads = plugin_.counters().sourceCopies - uploadsBefore;
        figures.effect = renderer_.times().effectSeconds;
        figures.draw = renderer_.times().drawSeconds;

        Stopwatch writing;
        std::string file = output_.Write(picture, frame);
        figures.write = writing.lap();
        return file;
    }

    const renderTask& task_;
    const renderOptions& options_;
    SceneRenderer& renderer_;
    const PluginHost& plugin_;
    Console& console_;
    renderStats& stats_;
    FrameOutput output_;
    double loadToCharge_ = stats_.loadPlugin + stats_.loadScene;
};

/// Runs the loop and closes the plug-in, which tells what it left behind. Returns the exit code.
int RenderFrames(const renderTask& task, const renderOptions& options, const project& scene,
                 PluginHost& plugin, Console& console, renderStats& stats)
{
    int code = 0;
    const auto note = [&](const failure& problem) {
        console.Error(problem.what());
        code = ExitCode(problem.kind());
    };
    try {
        const bool maximum =
            TellMaximumTextureSize(plugin, scene, task.quality, task.frames.front());
        PluginEffectRunner effects(plugin);
        TargetLimitRunner limited(effects, plugin.declaration(), maximum);
        SceneRenderer renderer(
            scene, task.quality,
            options.allowTruncated ? static_cast<EffectRunner&>(effects) : limited);
        code = FrameLoop(task, options, renderer, plugin, console, stats).Run();
    } catch (const failure& problem) {
        note(problem);
    }
    try {
        plugin.Close();
    } catch (const failure& problem) {
        note(problem);
    }
    return code;
}

renderStats StartStats(const renderOptions& options, const renderTask& task)
{
    renderStats stats;
    stats.scene = options.scene;
    stats.composition = task.comp->id;
    stats.width = task.format.width;
    stats.height = task.format.height;
    stats.depth = task.format.depth;
    if (!options.stats.empty()) {
        const glInfo gl = QueryGl();
        stats.glRenderer = gl.renderer;
        stats.glVersion = gl.version;
    }
    return stats;
}

}  // namespace

int RunRender(const renderOptions& options)
{
    const InterruptGuard interrupts;
    Console console(stderr, StderrIsTerminal(), options.quiet);
    const warningSink warn = [&console](const std::string& text) { console.Warn(text); };
    Stopwatch loading;

    // The scene's values are checked against what the plug-in declares, so that comes first.
    pluginOptions hostOptions;
    hostOptions.warn = warn;
    hostOptions.interrupted = Interrupted;
    hostOptions.runScript = ScriptsThrough(ScriptProgramPath());
    PluginHost plugin(PluginPath(options.plugin), hostOptions);
    const double pluginSeconds = loading.lap();
    project scene = LoadScene(options.scene,
                              {options.allowOutside, options.strict, {plugin.declaration()}}, warn);
    OverrideScene(scene, options, plugin.declaration());
    const double sceneSeconds = loading.lap();

    const renderTask task = ChooseTask(scene, options);
    PrepareFolder(options.output.folder);
    if (!options.stats.empty())
        PrepareFolder(std::filesystem::path(options.stats).parent_path().string());
    if (options.output.kind == outputKind::video && !VideoKeepsAlpha(FrameFile(options.output, 0)))
        console.Note("this video format keeps no alpha: pictures are put over black");

    renderStats stats = StartStats(options, task);
    stats.loadPlugin = pluginSeconds;
    stats.loadScene = sceneSeconds;
    stats.exitCode = RenderFrames(task, options, scene, plugin, console, stats);
    if (Interrupted()) {
        stats.exitCode = kInterruptedBase + InterruptGuard::signal();
        console.Error(fmt::format("interrupted by signal {}", InterruptGuard::signal()));
    }
    if (options.stats.empty()) return stats.exitCode;
    try {
        WriteStats(stats, options.stats);
    } catch (const failure& error) {
        // What went wrong with the frames matters more.
        if (stats.exitCode == 0) throw;
        console.Error(error.what());
    }
    return stats.exitCode;
}

}  // namespace orv
