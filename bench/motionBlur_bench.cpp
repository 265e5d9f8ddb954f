// motionBlur_bench: a 1920 x 1080 frame of 16 samples through the module, by turns with the same
// frame without motion blur.
//
// `sample` of the counters is a sixteenth of a blurred frame; `single` a frame without motion blur,
// and `copy` one without a mask: what the host and the module do around any frame. A sample costs
// its geometry, its draw and its place in the sum: less than a single frame does.
#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "draw/sceneRenderer.h"
#include "plugin/pluginEffectRunner.h"
#include "scene/loader.h"

namespace {

using namespace orv;

constexpr int kWidth = 1920, kHeight = 1080, kSamples = 16;

/// A band of 1600 x 160 along a wave that turns about itself.
const std::string kPlain = R"({"ix": 37, "v": {"k": [{"t": 0, "s": [0]},
    {"t": 10, "s": [720]}]}}, )";
/// The same with thickness, in the composition's light.
const std::string kLitExtruded = kPlain + R"({"ix": 250, "v": {"k": 30}},
    {"ix": 251, "v": {"k": 10}}, {"ix": 255, "v": {"k": 1}}, {"ix": 279, "v": {"k": 2}}, )";

std::string SceneText(const std::string& values, int mask, bool blurred)
{
    constexpr const char* layers = R"(
        {{"ty": 1, "ind": 1, "nm": "ribbon", "mb": true, "sw": 1920, "sh": 1080, "sc": "#000000",
          "ip": 0, "op": 100, "ks": {{}}, "masksProperties": [{{"mode": "n", "pt": {{"k": {{"c": false,
            "v": [[160, 540], [700, 300], [1220, 780], [1760, 540]],
            "i": [[0, 0], [-180, 0], [-180, 0], [-160, 80]],
            "o": [[160, -80], [180, 0], [180, 0], [0, 0]]}}}}}}],
          "ef": [{{"ty": 5, "mn": "KAL_Orv", "ef": [{}{{"ix": 29, "v": {{"k": {}}}}},
            {{"ix": 35, "v": {{"k": 1}}}}, {{"ix": 2, "v": {{"k": 2}}}}]}}]}},
        {{"ty": 1, "ind": 2, "nm": "band", "sw": 1600, "sh": 160, "sc": "#d03020", "hd": true,
          "ip": 0, "op": 100, "ks": {{}}}},
        {{"ty": 14, "ind": 3, "ip": 0, "op": 100, "ks": {{"p": {{"k": [960, 100, -800]}}}},
          "kal": {{"light": {{"type": "point"}}}}}},
        {{"ty": 14, "ind": 4, "ip": 0, "op": 100, "ks": {{}},
          "kal": {{"light": {{"type": "ambient", "intensity": 40}}}}}})";
    const std::string blur =
        blurred ? fmt::format(R"("mb": {{"sa": 180, "sp": 0, "spf": {}}}, )", kSamples) : "";
    return fmt::format(
        R"({{"fr": 25, "ip": 0, "op": 100, "w": 1920, "h": 1080, {}"layers": [{}]}})", blur,
        fmt::format(fmt::runtime(layers), values, mask));
}

/// A scene with the module loaded and the effect's input drawn.
class Stage {
public:
    Stage(PluginHost& plugin, const std::string& scene)
        : plugin_(plugin),
          scene_(LoadSceneText(scene, "bench.json", {false, false, {plugin.declaration()}},
                               [](const std::string&) {})),
          runner_(plugin),
          renderer_(scene_, kQuality, runner_),
          input_(kWidth, kHeight, kQuality.depth)
    {
    }

    double Seconds()
    {
        const composition& comp = scene_.compositions.front();
        const effectFrame frame{{&scene_, &comp, kWidth, kHeight},
                                &comp.layers.front(),
                                0,
                                3.0,
                                kQuality,
                                &renderer_.images()};
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(plugin_.Render(frame, input_));
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }

private:
    static constexpr renderQuality kQuality{1, 1, 8};

    PluginHost& plugin_;
    project scene_;
    PluginEffectRunner runner_;
    SceneRenderer renderer_;
    image input_;
};

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void BlurredFrame(benchmark::State& state, const std::string& values)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage blurred(plugin, SceneText(values, 1, true));
    Stage single(plugin, SceneText(values, 1, false));
    Stage copy(plugin, SceneText(values, 0, false));
    for (Stage* stage : {&blurred, &single, &copy}) (void)stage->Seconds();

    // By turns, so that whatever else the machine does meets all alike.
    std::vector<double> blurredTimes, singleTimes, copyTimes;
    for (auto _ : state) {
        blurredTimes.push_back(blurred.Seconds());
        singleTimes.push_back(single.Seconds());
        copyTimes.push_back(copy.Seconds());
    }
    const double sample = Median(blurredTimes) / kSamples;
    state.counters["sample_ms"] = 1000.0 * sample;
    state.counters["single_ms"] = 1000.0 * Median(singleTimes);
    state.counters["copy_ms"] = 1000.0 * Median(copyTimes);
    state.counters["ratio"] = sample / Median(singleTimes);
}

BENCHMARK_CAPTURE(BlurredFrame, plain, kPlain)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(8);
BENCHMARK_CAPTURE(BlurredFrame, litExtruded, kLitExtruded)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(8);

}  // namespace

BENCHMARK_MAIN();
