// `orv render` with the shutter's options: a red band that runs 40 pixels a frame to the right.
#include <fstream>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/runProgram.h"
#include "image/wholeFile.h"
#include "support/caseName.h"

namespace orv {
namespace {

constexpr const char* kOwnBlur = R"({"sa": 180, "sp": 0, "spf": 5})";

/// `blur`: what the scene says of motion blur, JSON.
std::string RunningBand(const std::string& blur = kOwnBlur, int sourceWidth = 40)
{
    return fmt::format(
        R"({{"fr": 25, "ip": 0, "op": 5, "w": 300, "h": 60, "mb": {}, "layers": [
  {{"ty": 1, "ind": 1, "nm": "band", "mb": true, "sw": 300, "sh": 60, "sc": "#000000", "ip": 0,
   "op": 5, "ks": {{}}, "masksProperties": [{{"mode": "n", "pt": {{"k": {{"c": false,
     "v": [[20, 30], [60, 30]], "i": [[0, 0], [0, 0]], "o": [[0, 0], [0, 0]]}}}}}}],
   "ef": [{{"ty": 5, "mn": "KAL_Orv", "ef": [{{"ix": 2, "v": {{"k": 2}}}},
     {{"ix": 29, "v": {{"k": 1}}}}, {{"ix": 269, "v": {{"k": [{{"t": 0, "s": [150, 30, 0]}},
       {{"t": 10, "s": [550, 30, 0]}}]}}}}]}}]}},
  {{"ty": 1, "ind": 2, "nm": "red", "hd": true, "sw": {}, "sh": 20, "sc": "#ff0000", "ip": 0,
   "op": 5, "ks": {{}}}}]}})",
        blur, sourceWidth);
}

struct shutterCase {
    const char* name;
    std::vector<std::string> options;
    const char* blur;  ///< of a scene that asks for the same
};
class Shutter : public testing::TestWithParam<shutterCase> {};

// What a shutter shows is tested with scenes' own; options need only mean the same.
TEST_P(Shutter, OptionsStandForTheScenesOwn)
{
    const TemporaryFolder folder;
    const auto frame = [&](const char* blur, const std::vector<std::string>& options) {
        std::vector<std::string> arguments{
            "render", folder.Write("band.json", RunningBand(blur)), "--frames", "2", "-o", "f.png"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const programResult result = RunOrv(arguments, folder.path());
        EXPECT_EQ(result.code, 0) << result.err;
        std::string bytes;
        EXPECT_TRUE(ReadWholeFile(folder.file("f.png"), 1U << 20, bytes));
        return bytes;
    };
    const std::string changed = frame(kOwnBlur, GetParam().options);
    EXPECT_EQ(changed, frame(GetParam().blur, {}));
    EXPECT_NE(changed, frame(kOwnBlur, {}));
}
const shutterCase kOptions[] = {
    {"Widest",
     {"--shutter-angle", "720", "--shutter-phase", "-360", "--mb-samples", "64"},
     R"({"sa": 720, "sp": -360, "spf": 64})"},
    {"PhaseAlone", {"--shutter-phase", "90"}, R"({"sa": 180, "sp": 90, "spf": 5})"},
    {"TooFewSamples", {"--mb-samples", "2"}, R"({"sa": 0, "sp": 0, "spf": 5})"},
    {"SwitchedOff",
     {"--motion-blur", "off", "--mb-samples", "64"},
     R"({"sa": 0, "sp": 0, "spf": 5})"}};
INSTANTIATE_TEST_SUITE_P(Options, Shutter, testing::ValuesIn(kOptions), caseName{});

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
    const std::string scene = folder.Write("band.json", RunningBand(kOwnBlur, 2000));
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
