// Frames of one instance after each other, through the real module and host: textures are kept from
// frame to frame, and no picture may show it.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "module/rig.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

constexpr int kFrames = 14;

image Stripes(int w, int h, const argb& even, const argb& odd)
{
    image picture(w, h, 8);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) SetPixel(picture, x, y, x / 5 % 2 == 0 ? even : odd);
    }
    return picture;
}

const std::map<std::string, image> kPictures{
    {"source.png", Stripes(40, 16, {255, 220, 30, 60}, {128, 10, 200, 90})},
    {"other.png", Stripes(30, 24, {255, 20, 120, 250}, {255, 250, 250, 0})}};

/// Layers besides "ribbon" (1) and "source" (2): another picture (3), one too small to be a source
/// (4), a precomposition with a moving picture (5).
const std::string kMoreLayers = R"(,
 {"ty": 2, "ind": 3, "refId": "other", "hd": true, "ip": 0, "op": 14, "ks": {}},
 {"ty": 1, "ind": 4, "sw": 2, "sh": 2, "sc": "#ffffff", "hd": true, "ip": 0, "op": 14, "ks": {}},
 {"ty": 0, "ind": 5, "refId": "moving", "w": 36, "h": 20, "hd": true, "ip": 0, "op": 14, "ks": {}})";
const std::string kMoreAssets = R"({"id": "source", "w": 40, "h": 16, "p": "source.png"},
 {"id": "other", "w": 30, "h": 24, "p": "other.png"},
 {"id": "moving", "w": 36, "h": 20, "fr": 25, "layers": [
  {"ty": 2, "ind": 1, "refId": "other", "ip": 0, "op": 14,
   "ks": {"p": {"k": [{"t": 0, "s": [0, 10]}, {"t": 13, "s": [30, 10]}]}}}]}],)";

/// A value that jumps from frame to frame.
std::string Jumps(int index, const std::vector<int>& choices, std::mt19937& random)
{
    std::string keys;
    for (int t = 0; t < kFrames; ++t) {
        const int value = choices[random() % choices.size()];
        keys += (t == 0 ? "" : ", ") + std::string(R"({"t": )") + std::to_string(t) +
                R"(, "h": 1, "s": [)" + std::to_string(value) + "]}";
    }
    return R"({"ix": )" + std::to_string(index) + R"(, "v": {"k": [)" + keys + "]}}, ";
}

std::string WithAssets(std::string json)
{
    const std::string only = R"({"id": "source", "w": 40, "h": 16, "p": "source.png"}],)";
    const std::size_t at = json.find(only);
    if (at == std::string::npos) throw std::logic_error("the rig's scene has changed");
    return json.replace(at, only.size(), kMoreAssets);
}

/// A mask that cuts the layer itself down to a part that moves.
const std::string kMovingCut = R"({"nm": "cut", "mode": "a", "pt": {"k": [
 {"t": 0, "s": [{"c": true, "v": [[0, 0], [20, 0], [20, 40]], "i": [[0, 0], [0, 0], [0, 0]], "o": [[0, 0], [0, 0], [0, 0]]}]},
 {"t": 13, "s": [{"c": true, "v": [[9, 5], [64, 0], [64, 40]], "i": [[0, 0], [0, 0], [0, 0]], "o": [[0, 0], [0, 0], [0, 0]]}]}]}})";

struct orderCase {
    const char* name;
    int depth;
    std::vector<int> sources, backs, timeModes;
    std::string constants;
};
class FrameOrder : public testing::TestWithParam<orderCase> {};

/// What decides which image is in which texture jumps about.
std::string JumpingScene(const orderCase& c, std::mt19937& random)
{
    ribbonScene scene{.frames = kFrames, .depth = c.depth, .color = "#305090"};
    scene.masks = PolygonMask({{10, 30}, {54, 20}}, false) + ", " +
                  PolygonMask({{4, 4}, {30, 4}, {30, 12}}, true) + ", " + kMovingCut;
    scene.values = Value(29, "1") + Jumps(2, c.sources, random) + Jumps(16, c.backs, random) +
                   Jumps(252, {0, 2}, random) + Jumps(3, c.timeModes, random) + Value(4, "6") +
                   Value(37, "160") + c.constants;
    scene.moreLayers = kMoreLayers;
    return WithAssets(scene.json());
}

}  // namespace

TEST_P(FrameOrder, NeverChangesAPicture)
{
    const unsigned seed = 20;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string scene = JumpingScene(GetParam(), random);
    std::vector<image> alone;
    for (int t = 0; t < kFrames; ++t) alone.push_back(Rig(scene, kPictures).Layer("ribbon", t));

    Rig rig(scene, kPictures);
    for (int render = 0; render < 150; ++render) {
        const std::size_t t = random() % kFrames;
        ASSERT_EQ(rig.Layer("ribbon", static_cast<double>(t)), alone[t])
            << "frame " << t << ", render " << render;
    }
}
const orderCase kScenes[] = {{"Faces", 8, {2, 3, 4}, {0, 3, 4}, {1}, ""},
                             {"CroppedFaces", 16, {2, 3}, {0, 2, 3}, {1}, Value(9, "20")},
                             {"Times", 8, {5}, {0, 5}, {1, 2}, ""},
                             {"OwnLayer", 8, {0, 2}, {0, 5}, {1, 2}, Value(10, "30")}};
INSTANTIATE_TEST_SUITE_P(Scenes, FrameOrder, testing::ValuesIn(kScenes), caseName{});

/// A way to end a frame early: at the k-th of the calls that `made` counts.
struct endingCase {
    const char* name;
    std::int64_t callGate::*at;
    std::int64_t callGate::*made;
    int endsAtLeast;
};
class EarlyEnds : public testing::TestWithParam<endingCase> {};

TEST_P(EarlyEnds, LeaveTheNextFramesRight)
{
    const endingCase& c = GetParam();
    ribbonScene scene{.frames = kFrames, .depth = 16, .color = "#305090"};
    scene.masks = PolygonMask({{10, 30}, {54, 20}}, false);
    // The moving composition as source: each of the two frames reads and uploads. The coarsest
    // mesh, so that not all of the calls are about the path.
    scene.values =
        Value(2, "5") + Value(16, "3") + Value(29, "1") + Value(17, "1") + Value(281, "2");
    scene.moreLayers = kMoreLayers;
    Rig rig(WithAssets(scene.json()), kPictures);
    const image early = rig.Layer("ribbon", 3), late = rig.Layer("ribbon", 8);

    callGate& gate = rig.host().gate();
    int ends = 0;
    for (std::int64_t k = 1, made = 1; k <= made; ++k) {
        ASSERT_EQ(rig.Layer("ribbon", 8), late) << "before call " << k;
        gate = {};
        gate.*c.at = k;
        // Some failures change nothing: a release, or an answer that is optional.
        try {
            EXPECT_EQ(rig.Layer("ribbon", 3), early) << "call " << k << ", " << gate.failedCall;
        } catch (const failure& fault) {
            // Any other kind would be a leak or a broken rule.
            EXPECT_EQ(fault.kind(), failureKind::frame) << fault.what();
            ++ends;
        }
        const std::string call = gate.failedCall;
        gate = {};
        ASSERT_EQ(rig.Layer("ribbon", 3), early) << "after call " << k << ", " << call;
        made = gate.*c.made;
    }
    EXPECT_GE(ends, c.endsAtLeast);
}
const endingCase kWays[] = {{"FailingCalls", &callGate::failOn, &callGate::made, 50},
                            {"Aborts", &callGate::abortOn, &callGate::abortChecks, 6}};
INSTANTIATE_TEST_SUITE_P(Ways, EarlyEnds, testing::ValuesIn(kWays), caseName{});

}  // namespace orv::test
