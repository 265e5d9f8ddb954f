// Level 3: pictures of every size, depth and preview resolution. The host guards what lies around
// the rows and compares the inputs after each command; these tests bring the shapes.
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "validate/bench.h"
#include "validate/frameCheck.h"
#include "validate/testTable.h"

namespace orv {
namespace {

struct pictureSize {
    int width, height;
};
/// The first ones are the sample.
constexpr std::array kSizes{pictureSize{1, 1},     pictureSize{33, 31},  pictureSize{2, 1},
                            pictureSize{1, 3},     pictureSize{7, 5},    pictureSize{64, 48},
                            pictureSize{257, 3},   pictureSize{3, 257},  pictureSize{1023, 17},
                            pictureSize{17, 1021}, pictureSize{4096, 1}, pictureSize{1, 2160}};
constexpr std::size_t kSampleSizes = 2;
constexpr pictureSize kLarge{4096, 2160};
constexpr int kDepths[] = {8, 16};
constexpr int kLargestDivisor = 4;

/// UsualSketch in another size, its mask across the upper half, where the source is as large.
sceneSketch SketchOf(const effectDeclaration& declaration, const pictureSize& size)
{
    sceneSketch sketch = UsualSketch(declaration);
    sketch.width = size.width;
    sketch.height = size.height;
    const double w = size.width, h = size.height;
    sketch.sourceWidth = std::max(8, size.width);
    sketch.sourceHeight = std::max(8, size.height / 2);
    sketch.masks = {StraightMask({{w / 8, h / 4}, {w * 7 / 8, h / 3}}, false)};
    return sketch;
}

std::string Place(const pictureSize& size, const renderQuality& quality)
{
    return fmt::format("{} x {} at {} bits and 1/{} x 1/{}", size.width, size.height, quality.depth,
                       quality.divisorX, quality.divisorY);
}

void CheckAt(Checks& checks, ValidationBench& bench, const pictureSize& size,
             const renderQuality& quality)
{
    bench.SetQuality(quality);
    CheckFrame(checks, bench, Place(size, quality), 1.0);
}

/// Every pair of divisors; the sample has two.
std::vector<renderQuality> Qualities(int depth, bool full)
{
    std::vector<renderQuality> all;
    for (int y = 1; y <= kLargestDivisor; ++y)
        for (int x = 1; x <= kLargestDivisor; ++x)
            if (full || (x == 1 && y == 1) || (x == 2 && y == 3)) all.push_back({x, y, depth});
    return all;
}

void Sizes(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module);
    const std::size_t count = setting.full ? kSizes.size() : kSampleSizes;
    for (std::size_t k = 0; k < count; ++k) {
        bench.Show(SketchOf(bench.declaration(), kSizes[k]));
        for (const int depth : kDepths)
            for (const renderQuality& quality : Qualities(depth, setting.full))
                CheckAt(checks, bench, kSizes[k], quality);
    }
    bench.host().Close();
}

void Large(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module);
    bench.Show(SketchOf(bench.declaration(), kLarge));
    for (const int depth : kDepths)
        for (int divisor = 1; divisor <= kLargestDivisor; ++divisor)
            if (setting.full || divisor == kLargestDivisor)
                CheckAt(checks, bench, kLarge, {divisor, divisor, depth});
    bench.host().Close();
}

void EverythingAtOnce(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module);
    for (const pictureSize& size : {pictureSize{32, 32}, pictureSize{31, 33}, pictureSize{1, 1}}) {
        sceneSketch sketch = EverythingSketch(bench.declaration());
        sketch.width = size.width;
        sketch.height = size.height;
        bench.Show(sketch);
        for (const int depth : kDepths)
            for (const renderQuality& quality : Qualities(depth, setting.full))
                CheckAt(checks, bench, size, quality);
        if (!setting.full) break;
    }
    bench.host().Close();
}

// ---- one picture in both depths

/// Mean of each channel over all pixels, 0..1; colours count by their alpha.
std::array<double, 4> Means(const image& picture)
{
    std::array<double, 4> sums{};
    const auto add = [&](const auto* channels, double full) {
        const double alpha = channels[0] / full;
        sums[0] += alpha;
        for (std::size_t c = 1; c < 4; ++c) sums[c] += channels[c] / full * alpha;
    };
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const auto at = static_cast<std::size_t>(x) * 4;
            if (picture.depth == 16)
                add(picture.row16(y) + at, 32768.0);
            else
                add(picture.row(y) + at, 255.0);
        }
    }
    for (double& each : sums) each /= static_cast<double>(picture.width) * picture.height;
    return sums;
}

void Depths(const testSetting& setting, Checks& checks)
{
    // Rounding differs by less than a step of 8 bits; filters that look at single steps, by more.
    constexpr double kAllowed = 0.02;
    constexpr std::array<const char*, 4> kChannels{"alpha", "red", "green", "blue"};
    ValidationBench bench(setting.module);
    for (const sceneSketch& sketch :
         {SketchOf(bench.declaration(), {64, 48}), EverythingSketch(bench.declaration())}) {
        bench.Show(sketch);
        Attempt(checks, fmt::format("{} x {} in both depths", sketch.width, sketch.height), [&] {
            bench.SetQuality({1, 1, 8});
            const std::array<double, 4> shallow = Means(bench.Render(1.0));
            bench.SetQuality({1, 1, 16});
            const std::array<double, 4> deep = Means(bench.Render(1.0));
            for (std::size_t c = 0; c < shallow.size(); ++c)
                checks.That(std::abs(shallow[c] - deep[c]) <= kAllowed,
                            "{} x {}: mean {} is {:.3f} at 8 bits and {:.3f} at 16", sketch.width,
                            sketch.height, kChannels[c], shallow[c], deep[c]);
        });
    }
    bench.host().Close();
}

constexpr std::array kTests{
    validationTest{"pictures.sizes", 3, "Small, odd, wide and tall pictures in both depths", 60,
                   300, Sizes},
    validationTest{"pictures.large", 3, "4096 x 2160 pixels", 60, 300, Large},
    validationTest{"pictures.everything", 3, "All that the effect can do, at every resolution", 60,
                   300, EverythingAtOnce},
    validationTest{"pictures.depths", 3, "16 bits show what 8 bits show", 60, 60, Depths},
};

}  // namespace

std::span<const validationTest> PictureTests()
{
    return kTests;
}

}  // namespace orv
