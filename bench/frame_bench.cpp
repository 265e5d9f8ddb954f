// frame_bench: one 1920 x 1080 frame through the module, the host's drawing around it, and a bare
// GL program that does the least such a frame needs.
//
// The module is a black box here. What its stages take follows from differences:
//   new source - repeated          upload, with the preparation of the source picture
//   geometry                       measured by itself, through the geometry library
//   repeated - geometry - no mask  draw, post pass, read-back
#include <chrono>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "bareGl.h"
#include "stage.h"

namespace {

using namespace orv;

/// Another band each frame.
std::string ChangingSource()
{
    std::string keys;
    for (int t = 0; t < 100; ++t)
        keys += fmt::format(R"({}{{"t": {}, "s": [{}], "h": 1}})", t > 0 ? ", " : "", t, 2 + t % 2);
    return fmt::format(R"({{"k": [{}]}})", keys);
}

void RunModule(benchmark::State& state, const waveScene& scene)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage stage(plugin, scene, static_cast<int>(state.range(0)));
    int frame = 0;
    benchmark::DoNotOptimize(stage.RunEffect(0));
    for (auto _ : state) {
        frame = (frame + 1) % 100;
        benchmark::DoNotOptimize(stage.RunEffect(frame));
    }
}

void ModuleRepeated(benchmark::State& state)
{
    RunModule(state, {});
}

void ModuleNewSource(benchmark::State& state)
{
    RunModule(state, {.source = ChangingSource()});
}

void ModuleNoMask(benchmark::State& state)
{
    RunModule(state, {.mask = 0});
}

void Geometry(benchmark::State& state)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage stage(plugin, {}, 8);
    frameMesh mesh;
    for (auto _ : state) stage.Geometry(mesh);
    state.counters["cells"] = static_cast<double>(mesh.cells.cells.size());
}

void HostDrawing(benchmark::State& state)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage stage(plugin, {}, static_cast<int>(state.range(0)));
    double drawing = 0.0;
    benchmark::DoNotOptimize(stage.DrawScene(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(stage.DrawScene(0));
        drawing += stage.times().drawSeconds;
    }
    state.counters["draw_ms"] =
        benchmark::Counter(1000.0 * drawing, benchmark::Counter::kAvgIterations);
}

void BareProgram(benchmark::State& state)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage stage(plugin, {}, 8);
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

/// Both by turns, so that whatever else the machine does meets both alike.
void ModuleAgainstBareProgram(benchmark::State& state)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage stage(plugin, {}, 8);
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

BENCHMARK(ModuleRepeated)
    ->Arg(8)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(ModuleNewSource)
    ->Arg(8)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(ModuleNoMask)
    ->Arg(8)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(Geometry)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(HostDrawing)
    ->Arg(8)
    ->Arg(16)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(BareProgram)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(ModuleAgainstBareProgram)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Iterations(40);

}  // namespace

BENCHMARK_MAIN();
