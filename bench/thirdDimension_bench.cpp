// thirdDimension_bench: 1920 x 1080 frames in the composition's 3D view through the module, and
// what a cell of the mesh takes in memory and time.
//
// Frame/plain is the same band in the "2D" view. The CPU column counts all threads of the process,
// GL's too.
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <numbers>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "geometry/extrusion.h"
#include "geometry/meshBuilder.h"
#include "geometry/ordering.h"
#include "gl/meshVertices.h"
#include "stage.h"

namespace {

using namespace orv;

/// In front of the frame's middle, at the distance from which a pixel of the layer is one of the
/// frame.
constexpr double kDistance = kWidth * 50.0 / 36.0;
const ::vec3 kEye{kWidth / 2.0, kHeight / 2.0, kDistance};

/// One of each type.
const std::string kFourLights = R"(,
    {"ty": 14, "ind": 4, "ip": 0, "op": 100, "ks": {"p": {"k": [960, 100, -800]}},
     "kal": {"light": {"type": "point", "color": [1, 0.8, 0.6]}}},
    {"ty": 14, "ind": 5, "ip": 0, "op": 100,
     "ks": {"p": {"k": [200, 100, -900]}, "a": {"k": [700, 300, 0]}},
     "kal": {"light": {"type": "spot", "coneAngle": 60, "coneFeather": 50}}},
    {"ty": 14, "ind": 6, "ip": 0, "op": 100,
     "ks": {"p": {"k": [1700, 0, -900]}, "a": {"k": [960, 540, 0]}},
     "kal": {"light": {"type": "parallel", "intensity": 50}}},
    {"ty": 14, "ind": 7, "ip": 0, "op": 100, "ks": {},
     "kal": {"light": {"type": "ambient", "intensity": 30}}})";

waveScene Lit()
{
    return {.values = R"({"ix": 279, "v": {"k": 2}}, {"ix": 255, "v": {"k": 1}}, )",
            .layers = kFourLights};
}

/// Thickness of 30 pixels in so many slices. 1: the faces alone.
waveScene LitSlices(int slices)
{
    waveScene scene = Lit();
    scene.values += fmt::format(
        R"({{"ix": 250, "v": {{"k": 30}}}}, {{"ix": 251, "v": {{"k": {}}}}}, )", slices);
    return scene;
}

/// The post pass takes 40 taps of each pixel for every whole pixel of blur but one; they lie within
/// 0.4 times the blur.
waveScene LitOutOfFocus(double blur)
{
    // In focus at half the distance a picture in the view's middle is encoded as 1 / 2 pi.
    constexpr double shaderScale = 0.74 * 2.0 * std::numbers::pi;
    waveScene scene = Lit();
    scene.layers += fmt::format(
        R"(, {{"ty": 13, "ind": 8, "ip": 0, "op": 100, "pe": {{"k": {0}}},
           "ks": {{"p": {{"k": [{1}, {2}, -{0}]}}}},
           "kal": {{"dof": 1, "focusDistance": {3}, "aperture": {4}, "blurLevel": 100}}}})",
        kDistance, kWidth / 2, kHeight / 2, kDistance / 2.0, blur * shaderScale);
    return scene;
}

void Frame(benchmark::State& state, const waveScene& scene)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage stage(plugin, scene, 8);
    frameMesh mesh;
    stage.Geometry(mesh);
    benchmark::DoNotOptimize(stage.RunEffect(0));
    for (auto _ : state) benchmark::DoNotOptimize(stage.RunEffect(0));
    state.counters["cells"] = static_cast<double>(mesh.cells.cells.size());
}

/// The samples of the wave, and the settings that make its cells.
struct waveShape {
    ribbonSamples ribbon;
    meshSettings settings;

    explicit waveShape(int slices)
    {
        PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
        frameMesh mesh;
        Stage(plugin, LitSlices(slices), 8).Geometry(mesh);
        ribbon = mesh.shape.ribbon;
        settings.sizes = mesh.sizes;
        settings.extrusion = 30.0;
        settings.extrusionLayers = slices;
    }

    /// What is sorted afterwards.
    [[nodiscard]] std::vector<quad> Cells() const
    {
        const int steps = static_cast<int>(ribbon.posA.size()) - 1;
        std::vector<quad> cells;
        cells.reserve(static_cast<std::size_t>(CountCells(steps, 0, settings).drawn));
        depthRange range;
        AppendStrips(BaseCells(ribbon, settings), settings.subSampling, kEye, cells, range);
        AppendSlices(cells, settings.extrusionLayers);
        return cells;
    }
};

void SetCellCounters(benchmark::State& state, std::size_t cells)
{
    state.counters["cells"] = static_cast<double>(cells);
    state.counters["s_per_cell"] = benchmark::Counter(
        static_cast<double>(cells),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BuildCells(benchmark::State& state)
{
    const waveShape shape(static_cast<int>(state.range(0)));
    std::size_t cells = 0;
    for (auto _ : state) {
        const std::vector<quad> list = shape.Cells();
        cells = list.size();
        benchmark::DoNotOptimize(list.data());
    }
    SetCellCounters(state, cells);
}

void SortList(benchmark::State& state)
{
    const std::vector<quad> unsorted = waveShape(static_cast<int>(state.range(0))).Cells();
    std::vector<quad> list;
    for (auto _ : state) {
        state.PauseTiming();
        list = unsorted;
        state.ResumeTiming();
        SortCells(list);
    }
    SetCellCounters(state, unsorted.size());
}

/// What the processor does of a draw before GL has it: both draws of the list, in chunks.
void FillVertices(benchmark::State& state)
{
    std::vector<quad> cells = waveShape(static_cast<int>(state.range(0))).Cells();
    SortCells(cells);
    const std::span<const quad> all(cells);
    std::vector<meshVertex> vertices;
    for (auto _ : state) {
        for (int draw = 0; draw < 2; ++draw) {
            for (std::size_t first = 0; first < all.size(); first += kChunkCells) {
                const std::size_t count = std::min(kChunkCells, all.size() - first);
                FillCellVertices(all.subspan(first, count), all.size(), true, vertices);
                benchmark::DoNotOptimize(vertices.data());
            }
        }
    }
    SetCellCounters(state, cells.size());
}

/// Most bytes that the process held since the last call of Reset, which gives back what is free.
class PeakMemory {
public:
    static void Reset()
    {
        malloc_trim(0);
        std::ofstream file("/proc/self/clear_refs");
        if (!(file << "5" << std::flush)) throw std::runtime_error("cannot reset the peak");
    }
    static double Bytes()
    {
        std::ifstream file("/proc/self/status");
        for (std::string word; file >> word;) {
            double kibibytes = 0.0;
            if (word == "VmHWM:" && file >> kibibytes) return 1024.0 * kibibytes;
        }
        throw std::runtime_error("the system does not tell the peak");
    }
};

template <class Work>
double PeakOf(Work&& work)
{
    PeakMemory::Reset();
    work();
    return PeakMemory::Bytes();
}

/// The list and its sorting, by size and by peak.
void ListMemory(benchmark::State& state)
{
    const waveShape shape(static_cast<int>(state.range(0)));
    const int steps = static_cast<int>(shape.ribbon.posA.size()) - 1;
    const auto cells = static_cast<double>(CountCells(steps, 0, shape.settings).drawn);
    double bytes = 0.0;
    for (auto _ : state) {
        const double before = PeakOf([] {});
        bytes = PeakOf([&] {
                    std::vector<quad> list = shape.Cells();
                    SortCells(list);
                    benchmark::DoNotOptimize(list.data());
                }) -
                before;
    }
    state.counters["cells"] = cells;
    state.counters["cell_bytes"] = sizeof(quad);
    state.counters["vertex_bytes"] = 4 * sizeof(meshVertex);
    state.counters["peak_per_cell"] = bytes / cells;
}

/// Cells that a frame has with slices and not without, against what its peak grows by: list,
/// sorting, vertices and GL.
void FrameMemory(benchmark::State& state)
{
    PluginHost plugin(ORV_BENCH_PLUGIN, pluginOptions{});
    Stage few(plugin, LitSlices(1), 8);
    Stage many(plugin, LitSlices(static_cast<int>(state.range(0))), 8);
    frameMesh fewCells, manyCells;
    few.Geometry(fewCells);
    many.Geometry(manyCells);
    const auto more = static_cast<double>(manyCells.cells.cells.size()) -
                      static_cast<double>(fewCells.cells.cells.size());
    fewCells = manyCells = {};
    benchmark::DoNotOptimize(few.RunEffect(0));
    double bytes = 0.0;
    for (auto _ : state) {
        const double before = PeakOf([&] { benchmark::DoNotOptimize(few.RunEffect(0)); });
        bytes = PeakOf([&] { benchmark::DoNotOptimize(many.RunEffect(0)); }) - before;
    }
    state.counters["cells"] = more;
    state.counters["peak_per_cell"] = bytes / more;
}

void AsFrame(benchmark::internal::Benchmark* bench)
{
    bench->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
}

BENCHMARK_CAPTURE(Frame, plain, waveScene{})->Apply(AsFrame);
BENCHMARK_CAPTURE(Frame, lit, Lit())->Apply(AsFrame);
BENCHMARK_CAPTURE(Frame, faces, LitSlices(1))->Apply(AsFrame);
BENCHMARK_CAPTURE(Frame, slices100, LitSlices(100))->Apply(AsFrame);
BENCHMARK_CAPTURE(Frame, blur20, LitOutOfFocus(20.0))->Apply(AsFrame);
BENCHMARK_CAPTURE(Frame, blurReach20, LitOutOfFocus(50.0))->Apply(AsFrame)->Iterations(1);
BENCHMARK(BuildCells)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(SortList)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(FillVertices)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(ListMemory)->Arg(1000)->Iterations(1);
BENCHMARK(FrameMemory)->Arg(100)->Arg(300)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
