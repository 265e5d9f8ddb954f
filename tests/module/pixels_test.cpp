// Small frames through the whole chain, with expectations worked out by hand. The usual stage: a
// layer of 64 x 48, a picture of 40 x 16, and a straight open mask from (12, 24) to (52, 24): laid
// along it the picture covers the pixels x 12..51, y 16..31.
#include <cmath>

#include <gtest/gtest.h>

#include "module/rig.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

constexpr int kLeft = 12, kTop = 16, kWidth = 40, kHeight = 16;
const std::string kStraightMask = PolygonMask({{12, 24}, {52, 24}}, false);
const std::string kSourceAndMask = Value(2, "2") + Value(29, "1");

image Flat(int w, int h, int depth, const argb& color)
{
    image picture(w, h, depth);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) SetPixel(picture, x, y, color);
    return picture;
}

/// Four flat quarters: red, green over blue, white.
image Quarters(int w, int h, int depth)
{
    const int one = depth == 16 ? 32768 : 255;
    image picture(w, h, depth);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const bool right = x >= w / 2, lower = y >= h / 2;
            const argb colors[2][2] = {{{one, one, 0, 0}, {one, 0, one, 0}},
                                       {{one, 0, 0, one}, {one, one, one, one}}};
            SetPixel(picture, x, y, colors[lower][right]);
        }
    return picture;
}

class Depths : public testing::TestWithParam<int> {};

TEST_P(Depths, WithoutAMaskTheInputComesThroughByteForByte)
{
    ribbonScene scene{.color = "#3a7fc1", .masks = kStraightMask, .values = Value(2, "2")};
    scene.depth = GetParam();
    Rig rig(scene.json(), {{"source.png", Quarters(kWidth, kHeight, 8)}});
    const image out = rig.Layer("ribbon");
    const int scale = GetParam() == 16 ? 32768 : 255;
    const auto channel = [&](int v) { return static_cast<int>(std::lround(v * scale / 255.0)); };
    ASSERT_EQ(out.width, 64);
    ASSERT_EQ(out.height, 48);
    EXPECT_EQ(out, Flat(64, 48, GetParam(), {scale, channel(0x3a), channel(0x7f), channel(0xc1)}));
}

TEST_P(Depths, AStraightMaskReproducesThePicture)
{
    ribbonScene scene{.masks = kStraightMask, .values = kSourceAndMask};
    scene.depth = GetParam();
    const int one = GetParam() == 16 ? 32768 : 255;
    Rig rig(scene.json(), {{"source.png", Quarters(kWidth, kHeight, 8)}});
    const image out = rig.Layer("ribbon");

    // Two pixels from every edge the smoothing has nothing to do: the colours must be exact, and
    // upright.
    const image expected = Quarters(kWidth, kHeight, GetParam());
    for (int y = 2; y < kHeight - 2; ++y)
        for (int x = 2; x < kWidth - 2; ++x) {
            if (std::abs(x - kWidth / 2) < 2 || std::abs(y - kHeight / 2) < 2) continue;
            ASSERT_EQ(PixelAt(out, kLeft + x, kTop + y), PixelAt(expected, x, y)) << x << ", " << y;
        }
    // Nothing outside, and an alpha of exactly one inside.
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x) {
            const bool near =
                x >= kLeft - 2 && x < kLeft + kWidth + 2 && y >= kTop - 2 && y < kTop + kHeight + 2;
            if (near) continue;
            ASSERT_EQ(PixelAt(out, x, y).a, 0) << x << ", " << y;
        }
    EXPECT_EQ(PixelAt(out, 20, 20).a, one);
}

INSTANTIATE_TEST_SUITE_P(BitsPerChannel, Depths, testing::Values(8, 16));

TEST(Pixels, ASixteenBitGradientKeepsItsSteps)
{
    // Steps of 1/32768 along 400 pixels: 8 bits anywhere in the chain would leave a handful of
    // values.
    constexpr int kSteps = 400;
    image gradient(kSteps, 16, 16);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < kSteps; ++x)
            SetPixel(gradient, x, y, {32768, 16000 + x, 16000 + x, 16000 + x});
    ribbonScene scene{.w = 440, .h = 48, .sourceW = kSteps, .sourceH = 16, .depth = 16};
    scene.masks = PolygonMask({{20, 24}, {420, 24}}, false);
    scene.values = kSourceAndMask;
    Rig rig(scene.json(), {{"source.png", gradient}});
    const image out = rig.Layer("ribbon");
    int distinct = 0, last = -1;
    for (int x = 3; x < kSteps - 3; ++x) {
        const argb pixel = PixelAt(out, 20 + x, 24);
        ASSERT_NEAR(pixel.r, 16000 + x, 1) << x;
        ASSERT_EQ(pixel.a, 32768) << x;
        distinct += pixel.r != last;
        last = pixel.r;
    }
    EXPECT_GT(distinct, 256);
}

TEST(Pixels, ATransparentPictureKeepsItsColours)
{
    // Half transparent orange: straight colours must come back, not darkened by their own alpha.
    ribbonScene scene{.masks = kStraightMask, .values = kSourceAndMask};
    Rig rig(scene.json(), {{"source.png", Flat(kWidth, kHeight, 8, {128, 240, 120, 20})}});
    const image out = rig.Layer("ribbon");
    const argb pixel = PixelAt(out, 32, 24);
    // 128 in, premultiplied and back: one step of 8 bits at half alpha is two steps of colour.
    EXPECT_NEAR(pixel.r, 240, 2);
    EXPECT_NEAR(pixel.g, 120, 2);
    EXPECT_NEAR(pixel.b, 20, 2);
}

TEST(Pixels, AMeshOfManyCellsIsDrawnWhole)
{
    // 161 steps, two faces, 100 strips: more cells than one vertex array holds. Cells come from the
    // middle outwards, so that the corners are in the last piece.
    ribbonScene scene{.w = 128, .h = 96, .sourceW = 80, .sourceH = 32};
    scene.masks = PolygonMask({{24, 48}, {104, 48}}, false);
    scene.values = kSourceAndMask + Value(17, "200") + Value(18, "100");
    const image picture = Quarters(80, 32, 8);
    Rig rig(scene.json(), {{"source.png", picture}});
    const image out = rig.Layer("ribbon");
    for (const int y : {2, 12, 20, 29})
        for (const int x : {2, 36, 44, 77})
            EXPECT_EQ(PixelAt(out, 24 + x, 32 + y), PixelAt(picture, x, y)) << x << ", " << y;
}

TEST(Pixels, HalfResolutionShowsTheSamePictureScaledDown)
{
    ribbonScene scene{.w = 128, .h = 96, .sourceW = 80, .sourceH = 32};
    scene.masks = PolygonMask({{24, 48}, {104, 48}}, false);
    scene.values = kSourceAndMask;
    Rig rig(scene.json(), {{"source.png", Quarters(80, 32, 8)}});
    rig.SetQuality({2, 2, 8});
    const image out = rig.Layer("ribbon");
    ASSERT_EQ(out.width, 64);
    ASSERT_EQ(out.height, 48);
    const image expected = Quarters(kWidth, kHeight, 8);
    for (int y : {4, 12})
        for (int x : {5, 12, 27, 35})
            EXPECT_EQ(PixelAt(out, kLeft + x, kTop + y), PixelAt(expected, x, y)) << x << ", " << y;
    EXPECT_EQ(PixelAt(out, 6, 24).a, 0);
    EXPECT_EQ(PixelAt(out, 32, 10).a, 0);
}

struct compositeCase {
    const char* name;
    int mode;
    argb inside, outside;
};
class CompositeMode : public testing::TestWithParam<compositeCase> {};

TEST_P(CompositeMode, LaysTheRibbonOverOrUnderTheLayer)
{
    ribbonScene scene{.color = "#204060", .masks = kStraightMask};
    scene.values = kSourceAndMask + Value(281, std::to_string(GetParam().mode));
    Rig rig(scene.json(), {{"source.png", Flat(kWidth, kHeight, 8, {255, 200, 100, 50})}});
    const image out = rig.Layer("ribbon");
    EXPECT_EQ(PixelAt(out, 32, 24), GetParam().inside);
    EXPECT_EQ(PixelAt(out, 4, 4), GetParam().outside);
}

const compositeCase kModes[] = {{"None", 1, {255, 200, 100, 50}, {0, 0, 0, 0}},
                                {"Over", 2, {255, 200, 100, 50}, {255, 0x20, 0x40, 0x60}},
                                {"Under", 3, {255, 0x20, 0x40, 0x60}, {255, 0x20, 0x40, 0x60}}};
INSTANTIATE_TEST_SUITE_P(Modes, CompositeMode, testing::ValuesIn(kModes), caseName{});

TEST(Pixels, TheSourceCropCutsThePictureAndShortensTheRibbon)
{
    // Half of the left gone: 20 pixels of green over white, from the mask's start.
    ribbonScene scene{.masks = kStraightMask, .values = kSourceAndMask + Value(9, "50")};
    Rig rig(scene.json(), {{"source.png", Quarters(kWidth, kHeight, 8)}});
    const image out = rig.Layer("ribbon");
    EXPECT_EQ(PixelAt(out, 20, 20), (argb{255, 0, 255, 0}));
    EXPECT_EQ(PixelAt(out, 20, 28), (argb{255, 255, 255, 255}));
    EXPECT_EQ(PixelAt(out, 40, 24).a, 0);
}

TEST(Pixels, TwoRendersOfOneFrameAreTheSameBytes)
{
    ribbonScene scene;
    scene.masks = PolygonMask({{8, 8}, {56, 40}, {8, 40}, {56, 8}}, true);
    scene.values = kSourceAndMask + Value(35, "1") + Value(37, "720");
    const auto render = [&] {
        Rig rig(scene.json(), {{"source.png", Flat(kWidth, kHeight, 8, {160, 250, 10, 99})}});
        return rig.Layer("ribbon");
    };
    EXPECT_EQ(render(), render());
}

}  // namespace
}  // namespace orv::test
