// The built program at work: pictures, resuming, interrupts, figures.
#include <csignal>
#include <fstream>
#include <regex>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/runProgram.h"
#include "image/imageFile.h"
#include "image/wholeFile.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

/// A layer of half-transparent red over nothing.
std::string SolidScene(int width, int height, int frames)
{
    return fmt::format(
        R"({{"fr": 25, "ip": 0, "op": {2}, "w": {0}, "h": {1}, "layers": [
            {{"ty": 1, "ind": 1, "nm": "red", "sw": {0}, "sh": {1}, "sc": "#ff0000", "ip": 0,
              "op": {2}, "ks": {{"o": {{"k": 40}}}}}}]}})",
        width, height, frames);
}

image ReadPicture(const fs::path& file)
{
    std::string data;
    if (!ReadWholeFile(file, 1U << 24, data)) return {};
    return DecodeImage({reinterpret_cast<const std::uint8_t*>(data.data()), data.size()}, file);
}

std::size_t CountFiles(const fs::path& folder)
{
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

nlohmann::json ReadJson(const fs::path& file)
{
    std::ifstream in(file);
    return nlohmann::json::parse(in);
}

class RenderProgram : public testing::Test {
protected:
    programResult Render(const std::string& scene, std::vector<std::string> more)
    {
        more.insert(more.begin(), {"render", scene});
        return RunOrv(more, output_.path());
    }
    fs::path Output(const std::string& name) const { return output_.path() / name; }

    TemporaryFolder scenes_, output_;
};

TEST_F(RenderProgram, WritesTheSceneFramesByDefault)
{
    const programResult result = Render(scenes_.Write("box.json", SolidScene(8, 4, 2)), {});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(CountFiles(output_.path()), 2U);
    for (const char* name : {"box.0000.png", "box.0001.png"}) {
        const image picture = ReadPicture(Output(name));
        ASSERT_EQ(picture.width, 8);
        ASSERT_EQ(picture.height, 4);
        for (int x = 0; x < 8; ++x)  // alpha, red, green, blue; 0.4 * 255 = 102
            EXPECT_EQ(std::vector(picture.row(3) + 4 * x, picture.row(3) + 4 * x + 4),
                      (std::vector<std::uint8_t>{102, 255, 0, 0}));
    }
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 2) << result.err;
}

TEST_F(RenderProgram, OverridesDepthSizeAndFrames)
{
    const std::string scene = scenes_.Write("box.json", SolidScene(9, 5, 3));
    const programResult result =
        Render(scene, {"-o", "new/folder/f.%02d.png", "--depth", "16", "--downsample", "2x3",
                       "--frames", "2-1", "--quiet"});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(CountFiles(Output("new/folder")), 2U);
    const pictureInfo info = ProbePicture(Output("new/folder/f.02.png"));
    EXPECT_EQ(info.width, 5);   // ceil(9 / 2)
    EXPECT_EQ(info.height, 2);  // ceil(5 / 3)
    EXPECT_EQ(info.depth, 16);
}

TEST_F(RenderProgram, ALayerAloneKeepsItsOwnAlpha)
{
    const std::string scene = scenes_.Write("box.json", SolidScene(8, 4, 2));
    ASSERT_EQ(Render(scene, {"--layer", "red", "--frames", "0", "-o", "one.png"}).code, 0);
    EXPECT_EQ(ReadPicture(Output("one.png")).row(0)[0], 255);
}

TEST_F(RenderProgram, ResumeSkipsWholePicturesAndRendersTheOthers)
{
    const std::string scene = scenes_.Write("box.json", SolidScene(8, 4, 4));
    ASSERT_EQ(Render(scene, {"-o", "f.#.png"}).code, 0);
    fs::remove(Output("f.0.png"));
    fs::resize_file(Output("f.1.png"), fs::file_size(Output("f.1.png")) / 2);
    WritePng(image(3, 3, 8), Output("f.2.png"));
    const auto before = fs::last_write_time(Output("f.3.png"));

    const programResult result =
        Render(scene, {"-o", "f.#.png", "--resume", "--stats", "stats.json"});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(fs::last_write_time(Output("f.3.png")), before);
    for (int frame = 0; frame < 4; ++frame)
        EXPECT_EQ(ReadPicture(Output(fmt::format("f.{}.png", frame))).width, 8) << frame;
    std::vector<std::string> results;
    const auto stats = ReadJson(Output("stats.json"));
    for (const auto& each : stats["frames"]) results.push_back(each["result"]);
    EXPECT_EQ(results, (std::vector<std::string>{"rendered", "rendered", "rendered", "skipped"}));
    for (const char* name : {"f.1.png", "f.2.png"})
        EXPECT_NE(result.err.find(std::string(name) + " is not a whole picture"),
                  std::string::npos);
}

TEST_F(RenderProgram, StatsTellWhatARunTook)
{
    const std::string scene = scenes_.Write("box.json", SolidScene(64, 64, 3));
    ASSERT_EQ(Render(scene, {"--stats", "s.json"}).code, 0);
    const auto stats = ReadJson(Output("s.json"));
    EXPECT_EQ(stats["exitCode"], 0);
    EXPECT_EQ(stats["width"], 64);
    EXPECT_EQ(stats["uploads"], 0);
    EXPECT_FALSE(stats["gl"]["renderer"].get<std::string>().empty());
    EXPECT_GT(stats["peakMemoryBytes"].get<double>(), 1e6);
    ASSERT_EQ(stats["frames"].size(), 3U);
    EXPECT_GT(stats["frames"][0]["load"].get<double>(), 0.0);
    EXPECT_EQ(stats["frames"][1]["load"], 0.0);
    for (const auto& frame : stats["frames"])
        EXPECT_GE(frame["total"].get<double>(), frame["draw"].get<double>() +
                                                    frame["effect"].get<double>() +
                                                    frame["write"].get<double>());
}

TEST_F(RenderProgram, AnInterruptLeavesOnlyWholeFrames)
{
    const std::string scene = scenes_.Write("long.json", SolidScene(64, 64, 100000));
    for (const int signal : {SIGINT, SIGTERM}) {
        const TemporaryFolder folder;
        const programResult result = RunOrvUntil({"render", scene, "-o", "f.######.png"},
                                                 folder.path(), "f.000003.png", signal);
        EXPECT_EQ(result.code, 128 + signal) << result.err;
        EXPECT_LT(CountFiles(folder.path()), 100000U);
        for (const auto& file : fs::directory_iterator(folder.path()))
            EXPECT_EQ(ProbePicture(file.path()).width, 64) << file.path();
    }
}

TEST_F(RenderProgram, ALeakInTheEffectIsNoSuccess)
{
    const std::string scene = scenes_.Write("leak.json", R"({"fr": 25, "ip": 0, "op": 2, "w": 8,
        "h": 4, "layers": [{"ty": 1, "nm": "red", "sw": 8, "sh": 4, "sc": "#ff0000", "ip": 0,
        "op": 2, "ks": {}, "ef": [{"ty": 5, "mn": "leakyEffect", "ef": []}]}]})");
    const programResult result = Render(scene, {"--plugin", LEAKY_EFFECT});
    EXPECT_EQ(result.code, 4);
    EXPECT_NE(result.err.find("PF Handle Suite"), std::string::npos) << result.err;
}

/// A ribbon of the band along a straight mask; the band is a composition in which a box moves 5
/// pixels a frame.
constexpr const char* kRibbonScene = R"({"fr": 25, "ip": 0, "op": 10, "w": 96, "h": 48,
    "assets": [{"id": "band", "layers": [
      {"ty": 1, "nm": "box", "sw": 10, "sh": 12, "sc": "#ffffff", "ip": 0, "op": 10,
       "ks": {"p": {"k": [{"t": 0, "s": [5, 2]}, {"t": 9, "s": [50, 2]}]}}},
      {"ty": 1, "nm": "ground", "sw": 80, "sh": 16, "sc": "#3050a0", "ip": 0, "op": 10,
       "ks": {}}]}],
    "layers": [
      {"ty": 1, "ind": 1, "nm": "ribbon", "sw": 96, "sh": 48, "sc": "#204060", "ip": 0, "op": 10,
       "ks": {}, "masksProperties": [{"mode": "n", "pt": {"k": {"c": false,
         "v": [[8, 24], [88, 24]], "i": [[0, 0], [0, 0]], "o": [[0, 0], [0, 0]]}}}],
       "ef": [{"ty": 5, "mn": "KAL_Orv", "ef": [{"ix": 29, "v": {"k": 1}},
         {"ix": 2, "v": {"k": 2}}]}]},
      {"ty": 0, "ind": 2, "nm": "moving", "refId": "band", "w": 80, "h": 16, "hd": true, "ip": 0,
       "op": 10, "ks": {}},
      {"ty": 1, "ind": 3, "nm": "still", "sw": 80, "sh": 16, "sc": "#f08020", "hd": true, "ip": 0,
       "op": 10, "ks": {}}]})";

TEST_F(RenderProgram, AStillSourceIsUploadedOnce)
{
    const std::string scene = scenes_.Write("ribbon.json", kRibbonScene);
    const auto uploads = [&](const char* source) {
        EXPECT_EQ(Render(scene, {"--set", source, "--stats", "s.json"}).code, 0);
        return ReadJson(Output("s.json"))["uploads"].get<int>();
    };
    EXPECT_EQ(uploads("Source=still"), 1);
    EXPECT_EQ(uploads("Source=none"), 1) << "the layer itself";
    EXPECT_EQ(uploads("Source=moving"), 10);
}

TEST_F(RenderProgram, AMovingSourceIsRightInAnyOrderOfFrames)
{
    const std::string scene = scenes_.Write("ribbon.json", kRibbonScene);
    ASSERT_EQ(Render(scene, {"--frames", "0", "-o", "first.#.png"}).code, 0);
    ASSERT_EQ(Render(scene, {"--frames", "7", "-o", "first.#.png"}).code, 0);
    ASSERT_EQ(Render(scene, {"--frames", "0,7,0", "-o", "mixed.#.png"}).code, 0);
    const image at0 = ReadPicture(Output("first.0.png")), at7 = ReadPicture(Output("first.7.png"));
    EXPECT_FALSE(at0 == at7);
    EXPECT_EQ(ReadPicture(Output("mixed.0.png")), at0);
    EXPECT_EQ(ReadPicture(Output("mixed.7.png")), at7);
}

/// Three frames; in the middle one the effect's layer is far larger than any render target.
constexpr const char* kTooLargeOnce = R"({"fr": 25, "ip": 0, "op": 3, "w": 8, "h": 4, "layers": [
    {"ty": 1, "ind": 1, "nm": "huge", "sw": 30000, "sh": 4, "sc": "#00ff00", "ip": 1, "op": 2,
     "ks": {}, "masksProperties": [{"mode": "n", "pt": {"k": {"c": false, "v": [[0, 2], [8, 2]],
       "i": [[0, 0], [0, 0]], "o": [[0, 0], [0, 0]]}}}],
     "ef": [{"ty": 5, "mn": "KAL_Orv", "ef": [{"ix": 29, "v": {"k": 1}}, {"ix": 2, "v": {"k": 2}}]}]},
    {"ty": 1, "ind": 2, "nm": "band", "sw": 8, "sh": 4, "sc": "#0000ff", "hd": true, "ip": 0,
     "op": 3, "ks": {}}]})";

TEST_F(RenderProgram, AFailedFrameEndsTheRunUnlessItIsToContinue)
{
    const std::string scene = scenes_.Write("huge.json", kTooLargeOnce);
    const programResult stopped = Render(scene, {"-o", "a.#.png"});
    EXPECT_EQ(stopped.code, 1);
    EXPECT_NE(stopped.err.find("error: frame 1: layer 'huge': a frame of 30000x4 does not fit"),
              std::string::npos)
        << stopped.err;
    EXPECT_TRUE(fs::exists(Output("a.0.png")));
    EXPECT_EQ(CountFiles(output_.path()), 1U);

    const programResult continued = Render(scene, {"-o", "b.#.png", "--continue"});
    EXPECT_EQ(continued.code, 1);
    EXPECT_TRUE(fs::exists(Output("b.0.png")) && fs::exists(Output("b.2.png")));
    EXPECT_FALSE(fs::exists(Output("b.1.png")));
}

TEST_F(RenderProgram, TruncatedFramesMayBeAskedFor)
{
    const std::string scene = scenes_.Write("huge.json", kTooLargeOnce);
    const std::string refused = Render(scene, {"-o", "a.#.png"}).err;
    const programResult truncated = Render(scene, {"-o", "b.#.png", "--allow-truncated"});
    EXPECT_EQ(truncated.code, 0);
    EXPECT_TRUE(fs::exists(Output("b.1.png")));

    // The effect warns with its largest texture edge, halved; its largest target has that edge.
    const std::regex limit("largest render target, ([0-9]+)x"),
        warning("texture size \\(([0-9]+)x");
    std::smatch inLimit, inWarning;
    ASSERT_TRUE(std::regex_search(refused, inLimit, limit)) << refused;
    ASSERT_TRUE(std::regex_search(truncated.err, inWarning, warning)) << truncated.err;
    EXPECT_EQ(inLimit[1], inWarning[1]);
}

}  // namespace
}  // namespace orv
