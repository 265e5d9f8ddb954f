// frame_bench: one 1920 x 1080 frame through the module, the host's drawing around it, and a bare
// GL program that does the least such a frame needs.
//
// The module is a black box here. What its stages take follows from differences:
//   new source - repeated          upload, with the preparation of the source picture
//   geometry                       measured by itself, through the geometry library
//   repeated - geometry - no mask  draw, post pass, read-back
#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "bareGl.h"
#include "draw/sceneRenderer.h"
#include "geometry/frameMesh.h"
#include "plugin/pluginEffectRunner.h"
#include "scene/loader.h"

namespace {

using namespace orv;

constexpr int kWidth = 1920, kHeight = 1080;

/// A wave across the frame with a band of 1600 x 160 along it. `mask` 0 turns the effect into a
/// copy; `source` is the property of the parameter that names the band.
std::string SceneText(int mask, const std::string& source)
{
    constexpr const char* layers = R"(
        {{"ty": 1, "ind": 1, "nm": "ribbon", "sw": 1920, "sh": 1080, "sc": "#000000", "ip": 0,
          "op": 100, "ks": {{}}, "masksProperties": [{{"mode": "n", "pt": {{"k": {{"c": false,
            "v": [[160, 540], [700, 300], [1220, 780], [1760, 540]],
            "i": [[0, 0], [-180, 0], [-180, 0], [-160, 80]],
            "o": [[160, -80], [180, 0], [180, 0], [0, 0]]}}}}}}],
          "ef": [{{"ty": 5, "mn": "KAL_Orv", "ef": [{{"ix": 29, "v": {{"k": {}}}}},
            {{"ix": 35, "v": {{"k": 1}}}}, {{"ix": 2, "v": {}}}]}}]}},
        {{"ty": 1, "ind": 2, "nm": "band", "sw": 1600, "sh": 160, "sc": "#d03020", "hd": true,
          "ip": 0, "op": 100, "ks": {{}}}},
        {{"ty": 1, "ind": 3, "nm": "other band", "sw": 1600, "sh": 160, "sc": "#20d030",
          "hd": true, "ip": 0, "op": 100, "ks": {{}}}})";
    return fmt::format(R"({{"fr": 25, "ip": 0, "op": 100, "w": 1920, "h": 1080, "layers": [{}]}})",
                       fmt::format(fmt::runtime(layers), mask, source));
}

const std::string kStillSource = R"({"k": 2})";
/// Another band each frame.
std::string ChangingSource()
{
    std::string keys;
    for (int t = 0; t < 100; ++t)
        keys += fmt::format(R"({}{{"t": {}, "s": [{}], "h": 1}})", t > 0 ? ", " : "", t, 2 + t % 2);
    return fmt::format(R"({{"k": [{}]}})", keys);
}

std::unique_ptr<PluginHost> LoadPlugin()
{
    return std::make_unique<PluginHost>(ORV_BENCH_PLUGIN, pluginOptions{});
}

/// A scene with the module loaded and the effect's input drawn.
class Stage {
public:
    Stage(int mask, const std::string& source, int depth)
        : plugin_(LoadPlugin()),
          scene_(LoadSceneText(SceneText(mask, source), "bench.json",
                               {false, false, {plugin_->declaration()}},
                               [](const std::string&) {})),
          quality_{1, 1, depth},
          runner_(*plugin_),
          renderer_(scene_, quality_, runner_),
          input_(kWidth, kHeight, depth)
    {
    }

    image RunEffect(int frame) { return plugin_->Render(Frame(frame), input_); }
    image DrawScene(int frame)
    {
        return renderer_.RenderComposition(scene_.compositions[0], frame);
    }
    const drawTimes& times() const { return renderer_.times(); }
    image Band() { return renderer_.images().OwnPixels(Shown(), Layer(1), 0.0); }

    void Geometry(frameMesh& mesh)
    {
        plugin_->WithFrame(Frame(0), input_,
                           [&](PF_InData& in_data, PF_OutData&, PF_ParamDef* params[]) {
                               std::string reason;
                               if (BuildFrameMesh(in_data, params, mesh, reason) != PF_Err_NONE)
                                   throw std::runtime_error("no mesh: " + reason);
                           });
    }

private:
    const layer& Layer(std::size_t position) const
    {
        return scene_.compositions[0].layers[position];
    }
    shownComposition Shown() const { return {&scene_, &scene_.compositions[0], kWidth, kHeight}; }
    effectFrame Frame(int frame)
    {
        return {Shown(), &Layer(0), 0, static_cast<double>(frame), quality_, &renderer_.images()};
    }

    std::unique_ptr<PluginHost> plugin_;
    project scene_;
    renderQuality quality_;
    PluginEffectRunner runner_;
    SceneRenderer renderer_;
    image input_;
};

void RunModule(benchmark::State& state, int mask, const std::string& source)
{
    Stage stage(mask, source, static_cast<int>(state.range(0)));
    int frame = 0;
    benchmark::DoNotOptimize(stage.RunEffect(0));
    for (auto _ : state) {
        frame = (frame + 1) % 100;
        benchmark::DoNotOptimize(stage.RunEffect(frame));
    }
}

void ModuleRepeated(benchmark::State& state)
{
    RunModule(state, 1, kStillSource);
}

void ModuleNewSource(benchmark::State& state)
{
    RunModule(state, 1, ChangingSource());
}

void ModuleNoMask(benchmark::State& state)
{
    RunModule(state, 0, kStillSource);
}

void Geometry(benchmark::State& state)
{
    Stage stage(1, kStillSource, 8);
    frameMesh mesh;
    for (auto _ : state) stage.Geometry(mesh);
    state.counters["cells"] = static_cast<double>(mesh.cells.cells.size());
}

void HostDrawing(benchmark::State& state)
{
    Stage stage(1, kStillSource, static_cast<int>(state.range(0)));
    double drawing = 0.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(stage.DrawScene(0));
        drawing += stage.times().drawSeconds;
    }
    state.counters["draw_ms"] =
        benchmark::Counter(1000.0 * drawing, benchmark::Counter::kAvgIterations);
}

void BareProgram(benchmark::State& state)
{
    Stage stage(1, kStillSource, 8);
    frameMesh mesh;
    stage.Geometry(mesh);
    BareGl bare(kWidth, kHeight, stage.Band(), mesh.cells.cells);
    bare.Frame(true);
    bareGlSeconds sum;
    for (auto _ : state) {
        const bareGlSeconds each = bare.Frame(true);
        sum.upload += each.upload;
        sum.draw += each.draw;
        sum.post += each.post;
        sum.readBack += each.readBack;
    }
    const auto average = [&](double seconds) {
        return benchmark::Counter(1000.0 * seconds, benchmark::Counter::kAvgIterations);
    };
    state.counters["upload_ms"] = average(sum.upload);
    state.counters["draw_ms"] = average(sum.draw);
    state.counters["post_ms"] = average(sum.post);
    state.counters["read_ms"] = average(sum.readBack);
}

double Median(std::vector<double>& values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Both by turns, so that whatever else the machine does meets both alike.
void ModuleAgainstBareProgram(benchmark::State& state)
{
    Stage stage(1, kStillSource, 8);
    frameMesh mesh;
    stage.Geometry(mesh);
    BareGl bare(kWidth, kHeight, stage.Band(), mesh.cells.cells);
    bare.Frame(false);
    benchmark::DoNotOptimize(stage.RunEffect(0));

    const auto seconds = [](auto&& work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    std::vector<double> module, bareTimes, ratios;
    for (auto _ : state) {
        module.push_back(seconds([&] { benchmark::DoNotOptimize(stage.RunEffect(0)); }));
        bareTimes.push_back(seconds([&] { bare.Frame(false); }));
        ratios.push_back(module.back() / bareTimes.back());
    }
    state.counters["module_ms"] = 1000.0 * Median(module);
    state.counters["bare_ms"] = 1000.0 * Median(bareTimes);
    state.counters["ratio"] = Median(ratios);
}

BENCHMARK(ModuleRepeated)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ModuleNewSource)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ModuleNoMask)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Geometry)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(HostDrawing)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BareProgram)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ModuleAgainstBareProgram)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(40);

}  // namespace

BENCHMARK_MAIN();
