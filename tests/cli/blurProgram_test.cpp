// `orv render` with the shutter's options: a red band that runs 40 pixels a frame to the right, and
// what its trail tells about the instants that were sampled.
#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/runProgram.h"
#include "image/imageFile.h"
#include "image/wholeFile.h"

namespace orv {
namespace {

constexpr int kWidth = 300, kSpeed = 40, kBandWidth = 40, kFrame = 2, kMiddleRow = 30;
/// Of the band's left end at `kFrame`.
constexpr int kStart = 20 + kFrame * kSpeed;

/// The scene's own shutter is open for half a frame, with 5 samples.
std::string RunningBand(int sourceWidth = kBandWidth)
{
    return fmt::format(
        R"({{"fr": 25, "ip": 0, "op": 5, "w": {0}, "h": 60, "mb": {{"sa": 180, "sp": 0, "spf": 5}},
 "layers": [
  {{"ty": 1, "ind": 1, "nm": "band", "mb": true, "sw": {0}, "sh": 60, "sc": "#000000", "ip": 0,
   "op": 5, "ks": {{}}, "masksProperties": [{{"mode": "n", "pt": {{"k": {{"c": false,
     "v": [[20, 30], [60, 30]], "i": [[0, 0], [0, 0]], "o": [[0, 0], [0, 0]]}}}}}}],
   "ef": [{{"ty": 5, "mn": "KAL_Orv", "ef": [{{"ix": 2, "v": {{"k": 2}}}},
     {{"ix": 29, "v": {{"k": 1}}}}, {{"ix": 269, "v": {{"k": [{{"t": 0, "s": [{1}, 30, 0]}},
       {{"t": 10, "s": [{2}, 30, 0]}}]}}}}]}}]}},
  {{"ty": 1, "ind": 2, "nm": "red", "hd": true, "sw": {3}, "sh": 20, "sc": "#ff0000", "ip": 0,
   "op": 5, "ks": {{}}}}]}})",
        kWidth, kWidth / 2, kWidth / 2 + 10 * kSpeed, sourceWidth);
}

struct shutterCase {
    const char* name;
    std::vector<std::string> options;
    int samples;    ///< that are expected; 1 without blur
    double frames;  ///< from the first of them to the frame's own time
};
void PrintTo(const shutterCase& c, std::ostream* out)
{
    *out << c.name;
}

/// Alpha at the middle of pixel `x`, by counting the samples that cover it.
double CoveredAlpha(const shutterCase& c, int x)
{
    int covering = 0;
    for (int j = 0; j < c.samples; ++j) {
        const double back = c.samples > 1 ? 1.0 - static_cast<double>(j) / (c.samples - 1) : 0.0;
        const double left = kStart + back * c.frames * kSpeed;
        if (x + 0.5 > left && x + 0.5 < left + kBandWidth) ++covering;
    }
    return 255.0 * covering / c.samples;
}

/// The most that CoveredAlpha changes in the pixels that smoothing looks at.
double Steepness(const shutterCase& c, int x)
{
    constexpr int kReach = 4;
    double low = 255.0, high = 0.0;
    for (int near = x - kReach; near <= x + kReach; ++near) {
        low = std::min(low, CoveredAlpha(c, near));
        high = std::max(high, CoveredAlpha(c, near));
    }
    return high - low;
}

class Shutter : public testing::TestWithParam<shutterCase> {};

TEST_P(Shutter, LeavesATrailOverTheInstantsThatItSees)
{
    const shutterCase& c = GetParam();
    const TemporaryFolder folder;
    std::vector<std::string> arguments{"render",   folder.Write("band.json", RunningBand()),
                                       "--frames", std::to_string(kFrame),
                                       "-o",       "f.png"};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    const programResult result = RunOrv(arguments, folder.path());
    ASSERT_EQ(result.code, 0) << result.err;

    std::string data;
    ASSERT_TRUE(ReadWholeFile(folder.path() / "f.png", 1U << 20, data));
    const image picture =
        DecodeImage({reinterpret_cast<const std::uint8_t*>(data.data()), data.size()}, "f.png");
    int compared = 0;
    for (int x = 0; x < kWidth; ++x) {
        // Where coverage jumps, smoothing spreads it; where it climbs evenly, it stays as it is.
        const double steepness = Steepness(c, x);
        if (steepness > 64.0) continue;
        ++compared;
        // An edge inside a pixel is worth a part of a sample, which is 4 of 255.
        EXPECT_NEAR(picture.row(kMiddleRow)[4 * x], CoveredAlpha(c, x), 6.0 + steepness / 4) << x;
    }
    EXPECT_GT(compared, kWidth * 9 / 10);
}
INSTANTIATE_TEST_SUITE_P(
    Options, Shutter,
    testing::Values(
        shutterCase{"Widest",
                    {"--shutter-angle", "720", "--shutter-phase", "0", "--mb-samples", "64"},
                    64,
                    2.0},
        shutterCase{"WidestPhases",
                    {"--shutter-angle", "720", "--shutter-phase", "-360", "--mb-samples", "64"},
                    64,
                    1.0},
        shutterCase{"BeforeTheFrame",
                    {"--shutter-angle", "0", "--shutter-phase", "-360", "--mb-samples", "64"},
                    64,
                    -1.0},
        shutterCase{"AngleAndPhaseCancel",
                    {"--shutter-angle", "180", "--shutter-phase", "-180", "--mb-samples", "64"},
                    1,
                    0.0},
        shutterCase{"TooFewSamples", {"--mb-samples", "2"}, 1, 0.0},
        shutterCase{"SwitchedOff", {"--motion-blur", "off", "--mb-samples", "64"}, 1, 0.0}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(ShutterOptions, MustBeNumbersInTheirRange)
{
    const std::vector<std::string> wrong[] = {
        {"--shutter-angle", "720.5"}, {"--shutter-angle", "nan"},  {"--shutter-angle", "inf"},
        {"--shutter-phase", "-361"},  {"--shutter-phase", "-nan"}, {"--mb-samples", "1"},
        {"--mb-samples", "65"},
    };
    const TemporaryFolder folder;
    const std::string scene = folder.Write("band.json", RunningBand());
    for (const std::vector<std::string>& each : wrong) {
        const programResult result = RunOrv(
            {"render", scene, "-o", "f.png", "--frames", "0", each[0], each[1]}, folder.path());
        EXPECT_EQ(result.code, 2) << each[0] << " " << each[1];
        EXPECT_NE(result.err.find(each[0]), std::string::npos) << result.err;
    }
}

TEST(ManySamples, OfAHeavyMeshAreNotHeldAtOnce)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "freed memory is kept back";
#endif
    const TemporaryFolder folder;
    const std::string scene = folder.Write("band.json", RunningBand(2000));
    const auto peak = [&](const char* samples) {
        const programResult result =
            RunOrv({"render",  scene,           "--frames",     "2",
                    "-o",      "f.png",         "--mb-samples", samples,
                    "--stats", "stats.json",    "--set",        "Mesh definition=100",
                    "--set",   "Camera mode=2", "--set",        "Stretch along path=on",
                    "--set",   "Extrusion=20",  "--set",        "Extrusion num layers=10"},
                   folder.path());
        EXPECT_EQ(result.code, 0) << result.err;
        std::ifstream stats(folder.path() / "stats.json");
        return nlohmann::json::parse(stats)["peakMemoryBytes"].get<double>() / 1e6;
    };
    // 44,000 cells of 160 bytes a sample: all of 64 samples would be 450 MB, their points are 40.
    EXPECT_LT(peak("64"), peak("3") + 150.0);
}

}  // namespace
}  // namespace orv
