#include "cli/renderRun.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include <fmt/format.h>

#include "cli/console.h"
#include "cli/exitCodes.h"
#include "cli/frameRun.h"
#include "cli/frameWork.h"
#include "cli/interrupt.h"
#include "cli/renderSession.h"
#include "cli/stats.h"
#include "cli/workerRun.h"
#include "image/video.h"

namespace orv {
namespace {

bool Interrupted()
{
    return InterruptGuard::signal() != 0;
}

/// Renders in this process.
class OwnRun final : public FrameRun {
public:
    OwnRun(const renderOptions& options, Console& console)
        : options_(options),
          console_(console),
          session_(options, {.warn = [&console](const std::string& text) { console.Warn(text); },
                             .interrupted = Interrupted,
                             .pluginLoaded = {},
                             .observe = {}})
    {
    }

    [[nodiscard]] const runStart& start() const override { return session_.start(); }

    /// Renders and closes the plug-in, which tells what it left behind.
    int Run(std::vector<frameStats>& figures) override
    {
        int code = 0;
        const auto note = [&](const failure& problem) {
            console_.Error(problem.what());
            code = ExitCode(problem.kind());
        };
        try {
            session_.Prepare();
            code = RenderFrames(figures);
        } catch (const failure& problem) {
            note(problem);
        }
        try {
            session_.Close();
        } catch (const failure& problem) {
            note(problem);
        }
        return code;
    }

private:
    /// 0, or 1 when a frame failed. An interrupt ends it early. Throws what ends the whole run.
    int RenderFrames(std::vector<frameStats>& figures)
    {
        FrameOutput output(options_.output, start().format);
        FrameWork work(options_, session_, &output);
        int code = 0;
        console_.StartFrames(start().frames.size());
        for (const int frame : start().frames) {
            if (Interrupted()) return code;
            const frameAnswer answer = work.Do(frame);
            figures.push_back(answer.figures);
            if (Interrupted() && !answer.problem.empty()) return code;
            if (Tell(answer, console_)) continue;
            code = ExitCode(failureKind::frame);
            if (!options_.keepGoing) return code;
        }
        output.Finish();
        return code;
    }

    const renderOptions& options_;
    Console& console_;
    RenderSession session_;
};

/// Returns the exit code.
int TellInterrupt(Console& console)
{
    console.Error(fmt::format("interrupted by signal {}", InterruptGuard::signal()));
    return kInterruptedBase + InterruptGuard::signal();
}

/// Null when it was interrupted before it could start.
std::unique_ptr<FrameRun> StartRun(const renderOptions& options, Console& console)
{
    if (options.workers) return StartWorkers(options, console);
    return std::make_unique<OwnRun>(options, console);
}

void PrepareOutput(const renderOptions& options, Console& console)
{
    PrepareFolder(options.output.folder);
    if (!options.stats.empty())
        PrepareFolder(std::filesystem::path(options.stats).parent_path().string());
    if (options.output.kind == outputKind::video && !VideoKeepsAlpha(FrameFile(options.output, 0)))
        console.Note("this video format keeps no alpha: pictures are put over black");
}

renderStats StatsOf(const renderOptions& options, const runStart& start)
{
    renderStats stats;
    stats.scene = options.scene;
    stats.composition = start.composition;
    stats.width = start.format.width;
    stats.height = start.format.height;
    stats.depth = start.format.depth;
    stats.glRenderer = start.glRenderer;
    stats.glVersion = start.glVersion;
    stats.loadPlugin = start.pluginSeconds;
    stats.loadScene = start.sceneSeconds;
    return stats;
}

}  // namespace

int RunRender(const renderOptions& options)
{
    const InterruptGuard interrupts;
    Console console(stderr, StderrIsTerminal(), options.quiet);
    const std::unique_ptr<FrameRun> run = StartRun(options, console);
    if (!run) return TellInterrupt(console);
    PrepareOutput(options, console);

    renderStats stats = StatsOf(options, run->start());
    stats.exitCode = run->Run(stats.frames);
    if (Interrupted()) stats.exitCode = TellInterrupt(console);
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
