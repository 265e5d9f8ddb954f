// The third dimension through the whole chain. The stage: a layer of 160 x 96 before a camera that
// sees its plane pixel for pixel, and a picture of 80 x 32 laid along the straight mask from
// (40, 48) to (120, 48): it covers the pixels x 40..119, y 32..63.
#include <cmath>

#include <gtest/gtest.h>

#include <fmt/format.h>

#include "module/rig.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

constexpr int kMiddleY = 48;
const std::string kStraightMask = PolygonMask({{40, 48}, {120, 48}}, false);
const std::string kIn3D = Value(2, "2") + Value(29, "1") + Value(279, "2");

image Halves(const argb& left, const argb& right)
{
    image picture(80, 32, 8);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 80; ++x) SetPixel(picture, x, y, x < 40 ? left : right);
    return picture;
}
image Flat(const argb& color)
{
    return Halves(color, color);
}
constexpr argb kWhite{255, 255, 255, 255}, kBlack{255, 0, 0, 0};

std::string Camera(const std::string& lens = "")
{
    return fmt::format(R"(, {{"ty": 13, "ind": 8, "ip": 0, "op": 10, "pe": {{"k": 400}},
        "ks": {{"p": {{"k": [80, 48, -400]}}}}, "kal": {{{}}}}})",
                       lens);
}

/// `place`: fields of the transform; `light`: fields of the light.
std::string Light(const std::string& place, const std::string& light)
{
    return fmt::format(R"(, {{"ty": 14, "ip": 0, "op": 10, "ks": {{{}}},
        "kal": {{"light": {{{}}}}}}})",
                       place, light);
}

ribbonScene Stage(const std::string& values, const std::string& layers, int depth = 8)
{
    ribbonScene scene{.w = 160, .h = 96, .sourceW = 80, .sourceH = 32, .depth = depth};
    scene.masks = kStraightMask;
    scene.values = kIn3D + values;
    scene.moreLayers = layers;
    return scene;
}

void ExpectNear(const argb& actual, const argb& expected, int tolerance)
{
    EXPECT_EQ(actual.a, expected.a);
    EXPECT_NEAR(actual.r, expected.r, tolerance);
    EXPECT_NEAR(actual.g, expected.g, tolerance);
    EXPECT_NEAR(actual.b, expected.b, tolerance);
}

}  // namespace

struct faceCase {
    const char* name;
    int cameraMode;
    bool lit, thick;
    bool sourceInFront;  ///< the source faces the viewer of a ribbon without twist
};
class TwoFaces : public testing::TestWithParam<faceCase> {};

TEST_P(TwoFaces, ShowTheirOwnPictures)
{
    const faceCase& c = GetParam();
    const argb source{255, 200, 100, 50}, back{255, 0, 192, 255};
    const std::string backLayer =
        R"(, {"ty": 1, "ind": 3, "nm": "back", "sw": 80, "sh": 32, "sc": "#00c0ff", "hd": true, "ip": 0, "op": 10, "ks": {}})";
    // Material 50 x 0.0128 = 0.64, times 0.2 of the scene and 1 of the light.
    const std::string light = Light("", R"("type": "ambient")");
    const double gain = c.lit ? 0.64 * 1.2 : 1.0;
    for (const bool turned : {false, true}) {
        ribbonScene scene = Stage("", Camera() + backLayer + light);
        scene.values = Value(2, "2") + Value(29, "1") + Value(16, "3") + Value(257, "50") +
                       Value(279, std::to_string(c.cameraMode)) + Value(255, c.lit ? "1" : "0") +
                       Value(251, c.thick ? "1" : "0") + Value(37, turned ? "180" : "0") +
                       Value(36, turned ? "180" : "0");
        const image out = Rig(scene.json(), {{"source.png", Flat(source)}}).Layer("ribbon");
        const argb& seen = c.sourceInFront != turned ? source : back;
        const auto dimmed = [&](int v) { return static_cast<int>(std::lround(v * gain)); };
        SCOPED_TRACE(turned ? "turned by half a turn" : "as it is");
        for (const int x : {50, 110})
            ExpectNear(PixelAt(out, x, kMiddleY),
                       {255, dimmed(seen.r), dimmed(seen.g), dimmed(seen.b)}, 1);
    }
}
const faceCase kWays[] = {
    {"UnlitBand", 2, false, true, true},       {"LitBand", 2, true, true, true},
    {"UnlitSheet", 2, false, false, true},     {"LitSheet", 2, true, false, true},
    {"FlatViewOfABand", 1, false, true, true}, {"FlatViewOfASheet", 1, false, false, false}};
INSTANTIATE_TEST_SUITE_P(Ways, TwoFaces, testing::ValuesIn(kWays), caseName{});

struct lightCase {
    const char* name;
    std::string place, light;
    argb left, right;  ///< on white at the pixels (60, 48) and (110, 48)
};
class LightTypes : public testing::TestWithParam<lightCase> {};

TEST_P(LightTypes, LightTheirSideInTheirColour)
{
    const lightCase& c = GetParam();
    const ribbonScene scene = Stage("", Camera() + Light(c.place, c.light));
    const image out = Rig(scene.json(), {{"source.png", Flat(kWhite)}}).Layer("ribbon");
    // The light stands over a pixel's corner, not its centre.
    ExpectNear(PixelAt(out, 60, kMiddleY), c.left, 1);
    ExpectNear(PixelAt(out, 110, kMiddleY), c.right, 1);
}

// Defaults: diffuse material 1.28, ambient material 1.28 times the ambient light, point and spot
// lights divided by 1.5, no highlights.
const std::string kAhead = R"("p": {"k": [60, 48, -100]}, "a": {"k": [60, 48, 0]})";
const std::string kBehind = R"("p": {"k": [60, 48, 100]}, "a": {"k": [60, 48, 0]})";
const std::string kParallel = R"("type": "parallel", "intensity": 50, "color": [1, 0.5, 0])";
const std::string kPoint = R"("type": "point", "color": [0, 1, 0])";
const std::string kSpot =
    R"("type": "spot", "color": [0, 0, 1], "coneAngle": 40, "coneFeather": 0)";
const lightCase kSides[] = {
    // 1.28 x 0.5 of each channel.
    {"Parallel", kAhead, kParallel, {255, 163, 82, 0}, {255, 163, 82, 0}},
    {"ParallelFromBehind", kBehind, kParallel, kBlack, kBlack},
    // 1.28 / 1.5; 50 pixels aside the cosine is 100 / hypot(100, 50) = 0.894.
    {"Point", kAhead, kPoint, {255, 0, 218, 0}, {255, 0, 195, 0}},
    {"PointFromBehind", kBehind, kPoint, kBlack, kBlack},
    // 50 pixels aside are 26.6 degrees, outside a cone of 20 to each side.
    {"Spot", kAhead, kSpot, {255, 0, 0, 218}, kBlack},
    {"SpotFromBehind", kBehind, kSpot, kBlack, kBlack},
    // Per channel 1.28 x c x (0.2 + c), c the colour by the intensity.
    {"Ambient",
     kBehind,
     R"("type": "ambient", "intensity": 50, "color": [1, 0.5, 0.25])",
     {255, 114, 37, 13},
     {255, 114, 37, 13}}};
INSTANTIATE_TEST_SUITE_P(Sides, LightTypes, testing::ValuesIn(kSides), caseName{});

TEST(Lights, SwitchedOffLeaveNoTrace)
{
    // All eight that GL has in frame 0, of which one is left in frame 1 and none in frame 2.
    const auto until = [](const char* type, int frame) {
        return Light(kAhead, fmt::format(R"("type": "{}", "intensity": {{"k": [
            {{"t": 0, "h": 1, "s": [60]}}, {{"t": {}, "s": [0]}}]}})",
                                         type, frame));
    };
    std::string lights = until("point", 2);
    for (const char* type : {"spot", "parallel", "ambient", "point", "spot", "ambient", "point"})
        lights += until(type, 1);
    const std::string scene = Stage("", Camera() + lights).json();
    const std::map<std::string, image> pictures{{"source.png", Flat({255, 120, 130, 140})}};
    // One module at a time: the frames by themselves come first.
    const image one = Rig(scene, pictures).Layer("ribbon", 1);
    const image none = Rig(scene, pictures).Layer("ribbon", 2);
    Rig rig(scene, pictures);
    EXPECT_NE(rig.Layer("ribbon", 0), one);
    EXPECT_EQ(rig.Layer("ribbon", 1), one);
    EXPECT_NE(one, none);
    (void)rig.Layer("ribbon", 0);
    EXPECT_EQ(rig.Layer("ribbon", 2), none);
    // Without any light the picture is shown as it is.
    EXPECT_EQ(PixelAt(none, 80, kMiddleY), (argb{255, 120, 130, 140}));
}

namespace {

/// Pixels of the middle row that are neither the left half's white nor the right half's black.
int SoftPixels(const image& out)
{
    int soft = 0;
    for (int x = 60; x < 100; ++x) {
        const argb p = PixelAt(out, x, kMiddleY);
        if (p.r > 12 && p.r < 243) ++soft;
    }
    return soft;
}

image InFocusAt400(double away, int cameraMode = 2, int dof = 1)
{
    ribbonScene scene =
        Stage("", Camera(fmt::format(R"("dof": {}, "focusDistance": 400, "aperture": 200)", dof)));
    scene.values = Value(2, "2") + Value(29, "1") + Value(279, std::to_string(cameraMode)) +
                   Value(269, fmt::format("[80, 48, {}]", away));
    return Rig(scene.json(), {{"source.png", Halves(kWhite, kBlack)}}).Layer("ribbon");
}

}  // namespace

TEST(DepthOfField, GrowsWithTheDistanceFromTheFocus)
{
    const int sharp = SoftPixels(InFocusAt400(0));
    EXPECT_LE(sharp, 2);
    EXPECT_EQ(PixelAt(InFocusAt400(0), 60, kMiddleY), kWhite);
    // 100 pixels behind: (500 / 400 - 1) / 2 / pi x 200 / 0.74 x 0.4 = 4.3 pixels to each side.
    const int behind = SoftPixels(InFocusAt400(100)), farBehind = SoftPixels(InFocusAt400(200));
    EXPECT_GT(behind, sharp + 2);
    EXPECT_LE(behind, 9);
    EXPECT_GT(farBehind, behind + 2);
    EXPECT_LE(farBehind, 18);
    EXPECT_GT(SoftPixels(InFocusAt400(-100)), sharp + 2) << "before the focus too";
}

TEST(DepthOfField, IsIgnoredInTheFlatView)
{
    EXPECT_EQ(InFocusAt400(200, 1, 1), InFocusAt400(200, 1, 0));
    EXPECT_NE(InFocusAt400(200, 2, 1), InFocusAt400(200, 2, 0));
}

class OpaquePictures : public testing::TestWithParam<int> {};

TEST_P(OpaquePictures, HideWhatLiesBehindThem)
{
    // Two branches that cross in the middle: the picture's red half on the first, its blue half on
    // the second. Cells are drawn nearest first; were they taken for translucent ones, the farther
    // branch would come out over the nearer one.
    const int depth = GetParam(), one = depth == 16 ? 32768 : 255;
    for (const bool lit : {false, true})
        for (const bool redIsNear : {true, false}) {
            const std::string first = redIsNear ? "-60" : "60", second = redIsNear ? "60" : "-60";
            ribbonScene scene =
                Stage(Value(35, "1") + Value(43, first) + Value(44, first) + Value(45, second) +
                          Value(46, second) + Value(255, lit ? "1" : "0") + Value(257, "50"),
                      Camera() + Light("", R"("type": "ambient")"), depth);
            scene.masks = PolygonMask({{24, 20}, {136, 76}, {136, 20}, {24, 76}}, false);
            const image out =
                Rig(scene.json(), {{"source.png", Halves({255, 255, 0, 0}, {255, 0, 0, 255})}})
                    .Layer("ribbon");
            const int shade = lit ? static_cast<int>(std::lround(one * 0.64 * 1.2)) : one;
            const argb near = redIsNear ? argb{one, shade, 0, 0} : argb{one, 0, 0, shade};
            SCOPED_TRACE(fmt::format("lit {}, red near {}", lit, redIsNear));
            for (int y = 46; y <= 50; ++y)
                for (int x = 78; x <= 82; ++x) ExpectNear(PixelAt(out, x, y), near, 1);
        }
}
INSTANTIATE_TEST_SUITE_P(BitsPerChannel, OpaquePictures, testing::Values(8, 16));

}  // namespace orv::test
