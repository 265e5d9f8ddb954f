// The options of `orv render`, read and checked before anything is loaded.
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "cli/commandTable.h"
#include "cli/exitCodes.h"
#include "cli/renderRun.h"
#include "image/video.h"
#include "scene/errors.h"

namespace orv {
namespace {

constexpr int kMaxDivisor = 8;
constexpr int kMostJobs = 256;
constexpr std::uint64_t kLeastMemory = std::uint64_t{64} << 20;  // less does not start

constexpr const char* kDetails =
    "Frames: 7, 0-47, 0-100x5 (every fifth), 47-0 (backwards), 1,3,8-9.\n"
    "\n"
    "Output: PATTERN holds the frame number as #### or %04d, its extension chooses the format;\n"
    "missing folders are made, files appear whole or not at all.\n"
    "  .png              8 or 16 bits as the scene's depth, straight alpha\n"
    "  .exr              half or float, premultiplied; values as the scene has them, 0..1, "
    "without\n"
    "                    a transfer function\n"
    "  .mov .webm        video with alpha (ProRes 4444, VP9)\n"
    "  .mp4 .gif         video (H.264, over black; GIF)\n"
    "Videos need the program ffmpeg. One that was interrupted plays and keeps .partial in its "
    "name.\n"
    "\n"
    "Worker processes: a frame whose process crashes, or takes too long or too much memory, fails "
    "with\n"
    "the reason, another process takes its place and the run goes on. A video ends there.\n"
    "\n"
    "--set puts a value into every instance of the effect, or into those on LAYER (name or ind):\n"
    "  sliders a number, angles degrees, checkboxes on or off, popups a number from 1 or the\n"
    "  choice's text, colors r,g,b[,a] (0..1) or #rrggbb[aa], 3D points x,y,z in pixels, layers\n"
    "  and masks a number or a name, 0 for none. 'orv params' lists the parameters.\n"
    "\n"
    "Examples:\n"
    "  orv render scene.json\n"
    "  orv render scene.json -o out/f.####.exr --depth 16 --downsample 2 --frames 0-9\n"
    "  orv render scene.json -o out/f.%04d.png --resume --continue --stats out/stats.json\n"
    "  orv render scene.json -o banner.mp4 --set 'Twist at mask end=180' --set Mask@ribbon=1\n"
    "  orv render scene.json --layer ribbon --frames 12 -o ribbon.png\n";

/// The options as written. An empty text was written too, say for a variable that is not set.
struct rawOptions {
    std::optional<std::string> output, frames, composition, layer, downsample, motionBlur, exr;
    int depth = 0;
    std::vector<std::string> sets;
    bool isolate = false;
    std::optional<int> jobs;
    std::optional<double> frameTimeout;
    std::optional<std::uint64_t> memoryLimit;
    renderOptions render;
};

[[noreturn]] void Refuse(const std::string& reason)
{
    throw failure(failureKind::usage, reason);
}

/// "N" or "NxM".
std::array<int, 2> ParseDownsample(const std::string& text)
{
    std::array<int, 2> divisor{};
    const char* const end = text.data() + text.size();
    const auto first = std::from_chars(text.data(), end, divisor[0]);
    const char* rest = first.ptr;
    divisor[1] = divisor[0];
    bool read = first.ec == std::errc{};
    if (read && rest != end && *rest == 'x') {
        const auto second = std::from_chars(rest + 1, end, divisor[1]);
        read = second.ec == std::errc{};
        rest = second.ptr;
    }
    const auto outside = [](int d) { return d < 1 || d > kMaxDivisor; };
    if (!read || rest != end || outside(divisor[0]) || outside(divisor[1]))
        Refuse(
            fmt::format("--downsample: '{}' is neither N nor NxM with 1 to {}", text, kMaxDivisor));
    return divisor;
}

void CheckTogether(const renderOptions& options, bool exrGiven)
{
    const bool video = options.output.kind == outputKind::video;
    if (exrGiven && options.output.kind != outputKind::exr) Refuse("--exr needs an .exr output");
    if (video && options.resume) Refuse("--resume needs pictures: a video is written in one go");
    if (video && options.keepGoing)
        Refuse("--continue needs pictures: a video cannot leave a frame out");
}

/// Each of these options asks for workers: only a process can be stopped.
std::optional<workerOptions> ReadWorkers(const rawOptions& raw)
{
    if (!raw.isolate && !raw.jobs && !raw.frameTimeout && !raw.memoryLimit) return std::nullopt;
    workerOptions workers;
    workers.jobs = raw.jobs.value_or(workers.jobs);
    workers.frameTimeout = raw.frameTimeout;
    workers.memoryLimit = raw.memoryLimit.value_or(workers.memoryLimit);
    if (workers.memoryLimit < kLeastMemory)
        Refuse(fmt::format("--memory-limit: {} bytes are less than {} MB", workers.memoryLimit,
                           kLeastMemory >> 20));
    return workers;
}

renderOptions ReadOptions(const rawOptions& raw)
{
    renderOptions options = raw.render;
    options.output =
        raw.output ? ParseOutputPattern(*raw.output) : DefaultOutputPattern(options.scene);
    if (raw.frames) options.frames = ParseFrameList(*raw.frames);
    options.composition = raw.composition;
    options.layer = raw.layer;
    if (raw.depth != 0) options.depth = raw.depth;
    if (raw.downsample) options.downsample = ParseDownsample(*raw.downsample);
    if (raw.motionBlur) options.motionBlur = raw.motionBlur == "on";
    if (raw.exr == "float") options.exr = exrPixel::full;
    for (const std::string& text : raw.sets) options.sets.push_back(ParseSet(text));
    options.workers = ReadWorkers(raw);
    CheckTogether(options, raw.exr.has_value());
    return options;
}

/// CLI11's range lets pass what is not a number.
CLI::Validator Number(double low, double high)
{
    CLI::Validator range = CLI::Range(low, high);
    return CLI::Validator(
        [=](std::string& text) {
            std::string problem = range(text);
            if (problem.empty() && std::isnan(std::stod(text)))
                problem = fmt::format("{} is not a number", text);
            return problem;
        },
        range.get_description());
}

void AddWorkerOptions(CLI::App& command, rawOptions& raw)
{
    const std::string group = "Options for worker processes, each of which asks for them";
    command.add_flag("--isolate", raw.isolate, "Render in a process of its own, as --jobs 1")
        ->group(group);
    command.add_option("--jobs", raw.jobs, "Render in so many processes at once")
        ->check(CLI::Range(1, kMostJobs))
        ->group(group);
    command
        .add_option("--frame-timeout", raw.frameTimeout,
                    "Seconds that a frame may take; loading may take 30, or as long if that is "
                    "more")
        ->check(Number(0.01, 1e6))
        ->group(group);
    command
        .add_option("--memory-limit", raw.memoryLimit,
                    "Memory that a process may take, such as 512M; default 4G")
        ->transform(CLI::AsSizeValue(false))
        ->group(group);
}

/// Declares all options. They are read into the result.
std::shared_ptr<rawOptions> AddOptions(CLI::App& command)
{
    auto raw = std::make_shared<rawOptions>();
    renderOptions& render = raw->render;
    command.add_option("SCENE", render.scene, "Scene file")->required();
    const auto addText = [&command](const char* name, std::optional<std::string>& target,
                                    const char* help) {
        const auto note = [&target](const std::string& text) { target = text; };
        return command.add_option_function<std::string>(name, note, help);
    };
    addText("-o,--output", raw->output, "PATTERN; default SCENENAME.####.png");
    addText("--frames", raw->frames, "Frames; default: all of the scene");
    addText("--comp", raw->composition, "Id of a composition; default: the main one");
    addText("--layer", raw->layer,
            "Name or ind of a layer: its output alone, at its size, before opacity and transform");
    command.add_option("--depth", raw->depth, "Bits per channel")->check(CLI::IsMember({8, 16}));
    addText("--downsample", raw->downsample, "Preview divisor N or NxM, 1 to 8");
    command.add_option("--set", raw->sets, "NAME|INDEX[@LAYER]=VALUE, again and again")
        ->allow_extra_args(false);
    addText("--motion-blur", raw->motionBlur, "Overrides the scene's switch")
        ->check(CLI::IsMember({"on", "off"}));
    command
        .add_option("--shutter-angle", render.shutterAngle,
                    "Degrees, 0 to 720; overrides the scene's")
        ->check(Number(0.0, 720.0));
    command
        .add_option("--shutter-phase", render.shutterPhase,
                    "Degrees, -360 to 360; overrides the scene's")
        ->check(Number(-360.0, 360.0));
    command
        .add_option("--mb-samples", render.motionBlurSamples,
                    "Samples a frame, 2 to 64; overrides the scene's")
        ->check(CLI::Range(2, 64));
    addText("--exr", raw->exr, "Channels of .exr files; default half")
        ->check(CLI::IsMember({"half", "float"}));
    command.add_flag("--strict", render.strict, "Make each warning about the scene an error");
    command.add_flag("--allow-outside", render.allowOutside,
                     "Let the scene name pictures outside its folder");
    command.add_flag("--allow-truncated", render.allowTruncated,
                     "Cut frames off that are larger than the largest render target");
    command.add_flag("--resume", render.resume,
                     "Skip frames whose file is there with the right size and depth");
    command.add_flag("--continue", render.keepGoing, "Go on after a frame that failed");
    command.add_option("--plugin", render.plugin,
                       "Effect module; default: KAL_Orv.so beside this program");
    command.add_option("--stats", render.stats, "Write figures of the run to this JSON file");
    command.add_flag("--quiet", render.quiet, "No progress, only warnings and errors");
    AddWorkerOptions(command, *raw);
    command.footer(kDetails + ("\n" + ExitCodeHelp()));
    return raw;
}

/// The words from which the same options are read again.
std::vector<std::string> Words(const CLI::App& command)
{
    std::vector<std::string> words, positionals{"--"};
    for (const CLI::Option* each : command.get_options()) {
        const std::string name = each->get_name();
        const bool isFlag = each->get_expected_max() == 0;
        for (const std::string& value : each->results()) {
            if (each->get_positional()) {
                positionals.push_back(value);
                continue;
            }
            // A flag's value can only be in its own word, an option's empty one only in the next.
            words.push_back(isFlag ? name + "=" + value : name);
            if (!isFlag) words.push_back(value);
        }
    }
    words.insert(words.end(), positionals.begin(), positionals.end());
    return words;
}

}  // namespace

std::function<int()> SetUpRender(CLI::App& command)
{
    const auto raw = AddOptions(command);
    return [raw, &command] {
        renderOptions options = ReadOptions(*raw);
        if (options.workers) options.workers->arguments = Words(command);
        return RunRender(options);
    };
}

std::function<int()> SetUpRenderWorker(CLI::App& command)
{
    const auto raw = AddOptions(command);
    return [raw] { return RunRenderWorker(ReadOptions(*raw)); };
}

}  // namespace orv
