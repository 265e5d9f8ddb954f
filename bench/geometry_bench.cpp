// geometry_bench: the mesh of one frame, without host and GL: 4097 steps along a closed mask of 100
// segments, both faces, cut into 10 strips.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>
#include <vector>

#include "geometry/maskSampling.h"
#include "geometry/meshBudget.h"
#include "geometry/meshBuilder.h"
#include "geometry/shapeLayout.h"

namespace {

constexpr int kSegments = 100;
constexpr double kEye[3] = {960, 540, 2667};

meshSettings Settings()
{
    meshSettings settings;
    settings.sizes = {
        .sourceWidth = 4096, .sourceHeight = 200, .viewWidth = 1920, .viewHeight = 1080};
    settings.meshDefinitionPercent = 100.0;
    settings.subSampling = 10;
    settings.stretchAlongPath = true;
    settings.twistEnd = 2.0;
    settings.scaleMaskEnd = 0.5;
    return settings;
}

/// A star around the middle of the frame, its corners `kSegments` vertices.
class Star {
public:
    Star()
    {
        std::vector<double> lengths;
        for (int i = 0; i < kSegments; ++i) {
            const point3 from = Vertex(i), to = Vertex(i + 1);
            lengths.push_back(
                std::hypot(static_cast<double>(to.x - from.x), static_cast<double>(to.y - from.y)));
        }
        lengths_ = MakePathLengths(std::move(lengths), false);
    }

    /// What the reader does with a host, the evaluation of a straight segment apart.
    [[nodiscard]] maskReadings Read(const meshSettings& settings) const
    {
        const int steps = MeshStepCount(settings);
        maskReadings readings;
        readings.props = PlaceEvenly(steps);
        readings.mask.reserve(readings.props.size());
        for (int s = 0; s <= steps; ++s) {
            const pathPlace place =
                PlaceByLength(static_cast<double>(s) / steps, lengths_, settings);
            readings.mask.push_back(MakePathSample(place, Evaluate(place), lengths_));
        }
        return readings;
    }

private:
    static point3 Vertex(int i)
    {
        const double angle = 2.0 * std::numbers::pi * i / kSegments;
        const double radius = i % 2 == 0 ? 450.0 : 380.0;
        return {static_cast<float>(960.0 + radius * std::cos(angle)),
                static_cast<float>(540.0 + radius * std::sin(angle)), 0.0f};
    }

    [[nodiscard]] pathPoint Evaluate(const pathPlace& place) const
    {
        const point3 from = Vertex(place.seg), to = Vertex(place.seg + 1);
        const double length = lengths_.length[static_cast<std::size_t>(place.seg)];
        const double dx = static_cast<double>(to.x - from.x) / length;
        const double dy = static_cast<double>(to.y - from.y) / length;
        const double arc = place.local * length;
        return {static_cast<double>(from.x) + dx * arc, static_cast<double>(from.y) + dy * arc, dx,
                dy};
    }

    pathLengths lengths_;
};

void BM_SampleAndLay(benchmark::State& state)
{
    const meshSettings settings = Settings();
    const Star star;
    for (auto _ : state) benchmark::DoNotOptimize(LayShape(star.Read(settings), settings));
}
BENCHMARK(BM_SampleAndLay)->Unit(benchmark::kMillisecond);

void BM_CutAndSort(benchmark::State& state)
{
    const meshSettings settings = Settings();
    const frameShape shape = LayShape(Star().Read(settings), settings);
    std::size_t cells = 0;
    for (auto _ : state) {
        const drawList list = BuildDrawList(shape, settings, kEye);
        cells = list.cells.size();
        benchmark::DoNotOptimize(list.cells.data());
    }
    state.counters["cells"] = static_cast<double>(cells);
}
BENCHMARK(BM_CutAndSort)->Unit(benchmark::kMillisecond);

void BM_WholeGeometry(benchmark::State& state)
{
    meshSettings settings = Settings();
    settings.extrusionLayers = static_cast<int>(state.range(0));
    const Star star;
    const cellCounts counts = CountCells(MeshStepCount(settings), 0, settings);
    for (auto _ : state) {
        const frameShape shape = LayShape(star.Read(settings), settings);
        benchmark::DoNotOptimize(BuildDrawList(shape, settings, kEye));
    }
    const auto cells = static_cast<double>(counts.drawn);
    state.counters["cells"] = cells;
    state.counters["bytes_per_cell"] = static_cast<double>(counts.bytes()) / cells;
    state.counters["s_per_cell"] = benchmark::Counter(
        cells, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_WholeGeometry)->ArgName("layers")->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
