// motionBlur_bench: a 1920 x 1080 frame of 16 samples through the module, by turns with the same
// frame without motion blur.
//
// `sample` of the counters is a sixteenth of a blurred frame; `single` a frame without motion blur,
// and `copy` one without a mask: what the host and the module do around any frame. A sample costs
// its geometry, its draw and its place in the sum: less than a single frame does.
#include <chrono>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "stage.h"

namespace {

using namespace orv;

constexpr int kSamples = 16;

/// A band that turns about itself.
const std::string kPlain = R"({"ix": 37, "v": {"k": [{"t": 0, "s": [0]},
    {"t": 10, "s": [720]}]}}, )";
/// The same with thickness, in the composition's light.
const std::string kLitExtruded = kPlain + R"({"ix": 250, "v": {"k": 30}},
    {"ix": 251, "v": {"k": 10}}, {"ix": 255, "v": {"k": 1}}, {"ix": 279, "v": {"k": 2}}, )";

const std::string kLights = R"(,
    {"ty": 14, "ind": 4, "ip": 0, "op": 100, "ks": {"p": {"k": [960, 100, -800]}},
     "kal": {"light": {"type": "point"}}},
    {"ty": 14, "ind": 5, "ip": 0, "op": 100, "ks": {},
     "kal": {"light": {"type": "ambient", "intensity": 40}}})";

double Seconds(Stage& stage)
{
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(stage.RunEffect(3));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BlurredFrame(benchmark::State& state, const std::string& values)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage blurred(plugin, {.values = values, .layers = kLights, .blurSamples = kSamples}, 8);
    Stage single(plugin, {.values = values, .layers = kLights}, 8);
    Stage copy(plugin, {.values = values, .layers = kLights, .mask = 0}, 8);
    for (Stage* stage : {&blurred, &single, &copy}) (void)Seconds(*stage);

    // By turns, so that whatever else the machine does meets all alike.
    std::vector<double> blurredTimes, singleTimes, copyTimes;
    for (auto _ : state) {
        blurredTimes.push_back(Seconds(blurred));
        singleTimes.push_back(Seconds(single));
        copyTimes.push_back(Seconds(copy));
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
