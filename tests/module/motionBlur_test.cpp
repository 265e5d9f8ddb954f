// Frames with motion blur through the whole chain, against single frames of the same scene. The
// stage: a layer of 160 x 96, a picture of 80 x 32 in four flat quarters, laid along a straight
// mask.
#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>

#include <gtest/gtest.h>

#include <fmt/format.h>

#include "module/rig.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

const std::string kMask = PolygonMask({{24, 48}, {104, 48}}, false);
const std::string kSourceAndMask = Value(2, "2") + Value(29, "1");

image Quarters()
{
    constexpr argb kColors[2][2] = {{{255, 255, 40, 0}, {255, 0, 230, 20}},
                                    {{255, 30, 0, 240}, {255, 250, 250, 250}}};
    image picture(80, 32, 8);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 80; ++x) SetPixel(picture, x, y, kColors[y / 16][x / 40]);
    return picture;
}

/// A value that runs evenly from `from` at frame 0 to `to` at frame 10.
std::string Runs(const std::string& from, const std::string& to)
{
    return fmt::format(R"([{{"t": 0, "s": {}}}, {{"t": 10, "s": {}}}])", from, to);
}

/// A camera that sees the layer's plane pixel for pixel, looking straight at it.
std::string Camera(const std::string& position, const std::string& lens = "")
{
    return fmt::format(R"(, {{"ty": 13, "ind": 8, "ip": 0, "op": 20, "pe": {{"k": 400}},
        "ks": {{"p": {{"k": {}}}}}, "kal": {{{}}}}})",
                       position, lens);
}

/// Ambient light, the only kind whose effect is the same everywhere.
std::string Light(const std::string& properties)
{
    return fmt::format(R"(, {{"ty": 14, "ind": 9, "ip": 0, "op": 20, "ks": {{}},
        "kal": {{"light": {{"type": "ambient", {}}}}}}})",
                       properties);
}

struct blurCase {
    const char* name;
    std::string values;  ///< besides source and mask
    std::string layers{};
    std::string masks = kMask;
    double angle = 360, phase = 0;  ///< degrees
    int samples = 3;
    int depth = 8;
    /// The picture with depth of field is laid over nothing by its own alpha.
    bool overNothing = false;

    /// `blurred`: the composition's switch; the layer's own is on in any case.
    [[nodiscard]] std::string json(bool blurred) const
    {
        ribbonScene scene{.w = 160, .h = 96, .sourceW = 80, .sourceH = 32, .depth = depth};
        scene.masks = masks;
        scene.values = kSourceAndMask + values;
        scene.moreLayers = layers;
        scene.onLayer = R"("mb": true, )";
        if (blurred)
            scene.top =
                fmt::format(R"(, "mb": {{"sa": {}, "sp": {}, "spf": {}}})", angle, phase, samples);
        return scene.json();
    }
    /// The instants that a frame at `t` shows.
    [[nodiscard]] std::vector<double> instants(double t) const
    {
        std::vector<double> times;
        for (int j = 0; j < samples; ++j)
            times.push_back(t + (angle + phase) / 360.0 * (samples - 1 - j) / (samples - 1));
        return times;
    }
};

image Blurred(const blurCase& c, double t)
{
    return Rig(c.json(true), {{"source.png", Quarters()}}).Layer("ribbon", t);
}

std::vector<image> Singles(const blurCase& c, const std::vector<double>& times)
{
    Rig rig(c.json(false), {{"source.png", Quarters()}});
    std::vector<image> frames;
    for (const double t : times) frames.push_back(rig.Layer("ribbon", t));
    return frames;
}

/// Colours multiplied by alpha, in 1/255.
using premultiplied = std::array<double, 4>;
premultiplied At(const image& picture, int x, int y)
{
    const argb p = PixelAt(picture, x, y);
    const double one = picture.depth == 16 ? 32768.0 : 255.0;
    const double alpha = p.a / one;
    return {alpha * 255, alpha * p.r / one * 255, alpha * p.g / one * 255, alpha * p.b / one * 255};
}

double Difference(const premultiplied& a, const premultiplied& b)
{
    double largest = 0.0;
    for (std::size_t c = 0; c < 4; ++c) largest = std::max(largest, std::abs(a[c] - b[c]));
    return largest;
}

struct worstPixel {
    double difference = 0.0;
    int x = 0, y = 0;

    void Take(double each, int u, int v)
    {
        if (each > difference) *this = {each, u, v};
    }
};
std::ostream& operator<<(std::ostream& out, const worstPixel& worst)
{
    return out << worst.difference << " at " << worst.x << ", " << worst.y;
}

premultiplied Average(const std::vector<image>& frames, int x, int y)
{
    premultiplied sum{};
    for (const image& frame : frames) {
        const premultiplied pixel = At(frame, x, y);
        for (std::size_t c = 0; c < 4; ++c) sum[c] += pixel[c] / static_cast<double>(frames.size());
    }
    return sum;
}

/// What smoothing meets around a pixel: nothing to do, one straight edge, or more than that.
enum class surroundings { flat, straight, corner };

surroundings Around(const std::vector<image>& frames, int x, int y)
{
    constexpr int kReach = 4;
    bool rowsAlike = true, columnsAlike = true;
    for (const image& frame : frames)
        for (int v = std::max(0, y - kReach); v <= std::min(frame.height - 1, y + kReach); ++v)
            for (int u = std::max(0, x - kReach); u <= std::min(frame.width - 1, x + kReach); ++u) {
                const premultiplied pixel = At(frame, u, v);
                rowsAlike &= pixel == At(frame, u, y);
                columnsAlike &= pixel == At(frame, x, v);
            }
    if (rowsAlike && columnsAlike) return surroundings::flat;
    return rowsAlike || columnsAlike ? surroundings::straight : surroundings::corner;
}

const std::string kMovingPosition = Value(269, Runs("[80, 48, 0]", "[320, 48, 0]"));
const std::string kLit = Value(279, "2") + Value(255, "1");

}  // namespace

class AverageOfFrames : public testing::TestWithParam<blurCase> {};

TEST_P(AverageOfFrames, IsWhatABlurredFrameShows)
{
    constexpr double kTime = 1.0;
    const std::vector<image> frames = Singles(GetParam(), GetParam().instants(kTime));
    const image blurred = Blurred(GetParam(), kTime);
    worstPixel flatWorst, straightWorst, cornerWorst;
    int exact = 0, mixed = 0;
    for (int y = 0; y < blurred.height; ++y)
        for (int x = 0; x < blurred.width; ++x) {
            premultiplied expected = Average(frames, x, y);
            if (GetParam().overNothing)
                for (std::size_t c : {3U, 2U, 1U, 0U}) expected[c] *= expected[0] / 255.0;
            const double difference = Difference(At(blurred, x, y), expected);
            switch (Around(frames, x, y)) {
                case surroundings::flat:
                    flatWorst.Take(difference, x, y);
                    if (expected[0] > 0.0) ++exact;
                    if (Difference(expected, At(frames.back(), x, y)) > 20.0) ++mixed;
                    break;
                case surroundings::straight:
                    straightWorst.Take(difference, x, y);
                    break;
                case surroundings::corner:
                    cornerWorst.Take(difference, x, y);
                    break;
            }
        }
    // Alpha and straight colour are each rounded once on their way out.
    EXPECT_LE(flatWorst.difference, 1.0) << flatWorst;
    // Samples are smoothed one by one, then their average is: edges come out softer, corners more.
    EXPECT_LE(straightWorst.difference, 24.0) << straightWorst;
    EXPECT_LE(cornerWorst.difference, 64.0) << cornerWorst;
    // Or nothing has been compared.
    EXPECT_GT(exact, 200);
    EXPECT_GT(mixed, 50);
}
const blurCase kMotions[] = {
    {"Position", kMovingPosition},
    {.name = "PositionDeep", .values = kMovingPosition, .angle = 720, .samples = 5, .depth = 16},
    {.name = "BeforeTheFrame",
     .values = Value(269, Runs("[80, 48, 0]", "[1040, 48, 0]")),
     .angle = 90,
     .phase = -180},
    {.name = "Mask",
     .values = "",
     .masks = R"({"nm": "path", "mode": "n", "pt": {"k": )" +
              Runs(R"([{"c": false, "v": [[24, 32], [104, 32]], "i": [[0, 0], [0, 0]],
                                    "o": [[0, 0], [0, 0]]}])",
                   R"([{"c": false, "v": [[264, 32], [344, 32]], "i": [[0, 0], [0, 0]],
                                    "o": [[0, 0], [0, 0]]}])") +
              "}}"},
    // Of three samples one has a path; the picture lies flat in the others.
    {.name = "MaskThatDisappears",
     .values = "",
     .masks = R"({"nm": "path", "mode": "n", "pt": {"k": [
                     {"t": 0, "h": 1, "s": [{"c": false, "v": [[24, 40], [104, 40]],
                      "i": [[0, 0], [0, 0]], "o": [[0, 0], [0, 0]]}]},
                     {"t": 1.25, "h": 1, "s": [{"c": false, "v": [[24, 40]], "i": [[0, 0]],
                      "o": [[0, 0]]}]}]}})"},
    {"CameraAlone", Value(279, "2"), Camera(Runs("[80, 48, -400]", "[-160, 48, -400]"))},
    // In focus everywhere: two passes, but the same picture.
    {.name = "DepthOfField",
     .values = Value(279, "2"),
     .layers = Camera(Runs("[80, 48, -400]", "[-160, 48, -400]"),
                      R"("dof": 1, "focusDistance": 400, "aperture": 50)"),
     .overNothing = true},
    {"LightThatGoesOut", kMovingPosition + kLit,
     Light(R"("intensity": {"k": [{"t": 0, "h": 1, "s": [50]}, {"t": 1.75, "s": [0]}]})")},
    {"ColourOfALight", kMovingPosition + kLit,
     Light(R"("color": {"k": [{"t": 0, "h": 1, "s": [1, 0.2, 0]},
                                          {"t": 1.25, "h": 1, "s": [0, 0.6, 1]}]})")}};
INSTANTIATE_TEST_SUITE_P(Motions, AverageOfFrames, testing::ValuesIn(kMotions), caseName{});

class StillFrames : public testing::TestWithParam<blurCase> {};

TEST_P(StillFrames, AreThePicturesOfTheSingleRender)
{
    const image blurred = Blurred(GetParam(), 1.0);
    EXPECT_EQ(blurred, Singles(GetParam(), {1.0}).front());
    EXPECT_NE(PixelAt(blurred, 64, 48).a, 0);
}
const std::string kTwisted = Value(37, "160.5") + Value(19, "-30.25") +
                             Value(254, "[0.2, 0.4, 0.6]") + Value(7, "130.3") +
                             Value(276, "33.125");
const blurCase kScenes[] = {
    {"Flat", kTwisted},
    {.name = "Deep", .values = kTwisted, .depth = 16},
    {"LitAndExtruded", kTwisted + kLit + Value(250, "12") + Value(251, "4"),
     Light(R"("color": [0.3, 1, 0.5])")},
    {"DepthOfField", kTwisted + Value(279, "2"),
     Camera("[80, 48, -400]", R"("dof": 1, "focusDistance": 300, "aperture": 30)")}};
INSTANTIATE_TEST_SUITE_P(Scenes, StillFrames, testing::ValuesIn(kScenes), caseName{});

TEST(MotionBlur, MotionLateInTheListsIsSeen)
{
    // Only the mask's last vertex moves: hundreds of samples before it stand still.
    const blurCase c{.name = "LateMotion",
                     .values = Value(35, "1"),
                     .masks = R"({"nm": "path", "mode": "n", "pt": {"k": )" +
                              Runs(R"([{"c": false, "v": [[24, 48], [64, 48], [104, 48]],
                           "i": [[0, 0], [0, 0], [0, 0]], "o": [[0, 0], [0, 0], [0, 0]]}])",
                                   R"([{"c": false, "v": [[24, 48], [64, 48], [264, 48]],
                           "i": [[0, 0], [0, 0], [0, 0]], "o": [[0, 0], [0, 0], [0, 0]]}])") +
                              "}}"};
    const std::vector<image> frames = Singles(c, {1.0, 1.5, 2.0});
    const image blurred = Blurred(c, 1.0);
    for (int x = 40; x < 60; ++x)
        EXPECT_EQ(PixelAt(blurred, x, 40), PixelAt(frames[0], x, 40)) << x;
    // The ribbon's end reaches x = 120, 128 and 136.
    EXPECT_NEAR(PixelAt(blurred, 124, 44).a, 170, 1);
    EXPECT_NEAR(PixelAt(blurred, 132, 44).a, 85, 1);
}

TEST(MotionBlur, ManySamplesLeaveTheMiddleOpaque)
{
    // 64 weights add up to one where the ribbon is all the time.
    const blurCase c{.name = "Many", .values = kMovingPosition, .samples = 64, .depth = 16};
    const image blurred = Blurred(c, 1.0);
    EXPECT_EQ(PixelAt(blurred, 78, 40), (argb{32768, 32768, 5140, 0}));
}

TEST(MotionBlur, FramesDoNotDependOnEachOther)
{
    const blurCase c{"Order", kMovingPosition + Value(279, "2"),
                     Camera(Runs("[80, 48, -400]", "[-80, 48, -380]"),
                            R"("dof": 1, "focusDistance": 300, "aperture": 30)")};
    Rig rig(c.json(true), {{"source.png", Quarters()}});
    std::vector<image> first;
    for (const double t : {0.0, 1.0, 2.0}) first.push_back(rig.Layer("ribbon", t));
    EXPECT_NE(first[0], first[1]);
    for (const std::size_t t : {2U, 0U, 1U})
        EXPECT_EQ(rig.Layer("ribbon", static_cast<double>(t)), first[t]) << t;
}

/// A way to end a frame early: at the k-th of the calls that `made` counts.
struct endingCase {
    const char* name;
    std::int64_t callGate::*at;
    std::int64_t callGate::*made;
    std::int64_t stride;  ///< from one tried call to the next
};
class EndedFrames : public testing::TestWithParam<endingCase> {};

TEST_P(EndedFrames, LeaveNothingBehind)
{
    const endingCase& ending = GetParam();
    const blurCase c{"Ending", kMovingPosition + Value(17, "1")};
    Rig rig(c.json(true), {{"source.png", Quarters()}});
    callGate& gate = rig.host().gate();
    (void)rig.Layer("ribbon", 1.0);
    gate = {};
    const image whole = rig.Layer("ribbon", 1.0);
    const std::int64_t made = gate.*ending.made;
    int ends = 0, readsFailed = 0;
    for (std::int64_t k = 1; k <= made; k += ending.stride) {
        gate = {};
        gate.*ending.at = k;
        bool ended = false;
        // A failed release of the frame's end may come too late to change anything.
        try {
            (void)rig.Layer("ribbon", 1.0);
        } catch (const failure& fault) {
            // Any other kind would be a leak or a broken rule.
            EXPECT_EQ(fault.kind(), failureKind::frame) << fault.what();
            ended = true;
            ++ends;
        }
        const std::string call = gate.failedCall;
        // A sample whose values or masks are not known is not drawn with what is known.
        if (call == "AEGP_GetNewEffectStreamByIndex" || call == "AEGP_GetNewStreamValue" ||
            call == "PF_CheckoutPath") {
            EXPECT_TRUE(ended) << "call " << k << ", " << call;
            ++readsFailed;
        }
        gate = {};
        ASSERT_EQ(rig.Layer("ribbon", 1.0), whole) << "after call " << k << ", " << call;
    }
    EXPECT_GT(ends, 8);
    if (ending.at == &callGate::failOn) {
        EXPECT_GT(readsFailed, 20);
    }
}
const endingCase kWays[] = {{"FailingCalls", &callGate::failOn, &callGate::made, 41},
                            {"Aborts", &callGate::abortOn, &callGate::abortChecks, 1}};
INSTANTIATE_TEST_SUITE_P(Ways, EndedFrames, testing::ValuesIn(kWays), caseName{});

}  // namespace orv::test
