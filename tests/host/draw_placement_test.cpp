// Where pixels land, and how they blend.
#include <gtest/gtest.h>

#include <numbers>

#include "draw/canvas.h"
#include "draw/placement.h"
#include "host/image_bytes.h"

namespace orv {
namespace {

planeMatrix Shift(double x, double y)
{
    planeMatrix plane;
    plane.m[2] = {x, y, 1.0};
    return plane;
}

image DrawnOnce(const image& picture, const planeMatrix& placement, int width, int height,
                double opacity = 1.0)
{
    canvas target(width, height);
    DrawPlaced(picture, placement, opacity, target);
    return ToImage(target, picture.depth);
}

/// Noise without fully transparent pixels, whose colour no canvas keeps.
image VisibleNoise(int width, int height, int depth)
{
    image picture = Noise(width, height, depth, 11);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (depth == 16 && picture.row16(y)[4 * x] == 0) picture.row16(y)[4 * x] = 1;
            if (depth == 8 && picture.row(y)[4 * x] == 0) picture.row(y)[4 * x] = 1;
        }
    }
    return picture;
}

/// `source` moved by whole pixels, transparent where it does not reach.
image Moved(const image& source, int dx, int dy, int width, int height)
{
    image result(width, height, source.depth);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (x < dx || y < dy || x >= dx + source.width || y >= dy + source.height) continue;
            const std::size_t bytes = source.pixelBytes();
            std::copy_n(source.row(y - dy) + bytes * static_cast<std::size_t>(x - dx), bytes,
                        result.row(y) + bytes * static_cast<std::size_t>(x));
        }
    }
    return result;
}

class AtDepth : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Depths, AtDepth, testing::Values(8, 16));

TEST_P(AtDepth, WholePixelShiftsChangeNothing)
{
    const image picture = VisibleNoise(150, 90, GetParam());
    for (const auto& [dx, dy] : {std::pair(0, 0), {3, 2}, {-4, 1}, {145, -88}, {400, 0}}) {
        EXPECT_EQ(DrawnOnce(picture, Shift(dx, dy), 150, 90), Moved(picture, dx, dy, 150, 90))
            << dx << ", " << dy;
    }
}

TEST_P(AtDepth, AThreeDLayerLandsOnItselfThroughTheDefaultCamera)
{
    const image picture = VisibleNoise(150, 90, GetParam());
    const composition comp;
    for (const auto& [width, height] : {std::pair(150, 90), {1921, 1081}}) {
        const auto placement =
            ProjectedPlacement(matrix4{}, ViewAt(comp, width, height, 0.0), width, height);
        ASSERT_TRUE(placement);
        EXPECT_EQ(DrawnOnce(picture, *placement, 150, 90), picture) << width;
    }
}

TEST_P(AtDepth, AQuarterTurnMovesPixelsExactly)
{
    // Clockwise about the origin: (x, y) goes to (-y, x); moved back in by the height.
    const image picture = VisibleNoise(40, 30, GetParam());
    const double c = std::cos(std::numbers::pi / 2), s = std::sin(std::numbers::pi / 2);
    planeMatrix turn;
    turn.m = {{{c, s, 0}, {-s, c, 0}, {30, 0, 1}}};
    image expected(30, 40, GetParam());
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 40; ++x) {
            const std::size_t bytes = picture.pixelBytes();
            std::copy_n(picture.row(y) + bytes * static_cast<std::size_t>(x), bytes,
                        expected.row(x) + bytes * static_cast<std::size_t>(29 - y));
        }
    }
    EXPECT_EQ(DrawnOnce(picture, turn, 30, 40), expected);
}

TEST(Placement, HalfAPixelSharesBetweenNeighboursAndWithTransparency)
{
    // red, green, shifted by half a pixel: half red; red and green in equal parts; half green
    const image picture = Row(16, {32768, 32768, 0, 0, 32768, 0, 32768, 0});
    EXPECT_EQ(
        DrawnOnce(picture, Shift(0.5, 0.0), 4, 1),
        Row(16, {16384, 32768, 0, 0, 32768, 16384, 16384, 0, 16384, 0, 32768, 0, 0, 0, 0, 0}));
}

TEST(Placement, TwoHalfTransparentLayersBlend)
{
    canvas target(1, 1);
    DrawPlaced(Row(16, {16384, 32768, 0, 0}), Shift(0, 0), 1.0, target);
    DrawPlaced(Row(16, {32768, 0, 32768, 0}), Shift(0, 0), 0.5, target);
    // alpha 0.5 + 0.5 x 0.5; red 0.25/0.75, green 0.5/0.75
    EXPECT_EQ(ToImage(target, 16), Row(16, {24576, 10923, 21845, 0}));
    // the same in 8 bits: 191.25, 85, 170
    EXPECT_EQ(ToImage(target, 8), Row(8, {191, 85, 170, 0}));
}

TEST(Placement, APlaneWithoutAreaIsNotDrawn)
{
    planeMatrix flat;
    flat.m[0] = {0, 0, 0};
    EXPECT_EQ(DrawnOnce(Row(8, {255, 1, 2, 3}), flat, 3, 3), image(3, 3, 8));
}

// ------------------------------------------------------------------ perspective

/// Where a point of the layer appears.
vec2 Seen(const planeMatrix& plane, double x, double y)
{
    std::array<double, 3> p{};
    for (std::size_t c = 0; c < 3; ++c) {
        p[c] = x * plane.m[0][c] + y * plane.m[1][c] + plane.m[2][c];
    }
    return {p[0] / p[2], p[1] / p[2]};
}

/// A composition of 360 x 200: the default camera stands 500 px before it.
planeMatrix ThroughDefaultCamera(const matrix4& world)
{
    const composition comp;
    const auto placement = ProjectedPlacement(world, ViewAt(comp, 360, 200, 0.0), 360, 200);
    EXPECT_TRUE(placement);
    return placement.value_or(planeMatrix{});
}

TEST(Placement, TwiceAsFarIsHalfAsLarge)
{
    matrix4 world;
    world.m[3] = {0, 0, 500, 1};
    const vec2 corner = Seen(ThroughDefaultCamera(world), 0, 0);
    EXPECT_NEAR(corner.x, 90.0, 1e-9) << "half the distance from the middle";
    EXPECT_NEAR(corner.y, 50.0, 1e-9);
}

TEST(Placement, PreviewPixelsAreWholeCells)
{
    // A point of the layer at (80, 60) that goes to (100, 40), at divisors 4 and 2.
    const planeMatrix half = AtPreview(Shift(20.0, -20.0), 4, 2);
    const vec2 seen = Seen(half, 20.0, 30.0);
    EXPECT_DOUBLE_EQ(seen.x, 25.0);
    EXPECT_DOUBLE_EQ(seen.y, 20.0);
}

/// A white layer of 400 x 2000 as a floor 50 px below the camera's axis, from 750 px behind the
/// camera to 1250 px before it: y of the layer runs along z.
image Floor(int divisor)
{
    matrix4 world;
    world.m[1] = {0, 0, 1, 0};
    world.m[2] = {0, -1, 0, 0};
    world.m[3] = {-20, 150, -1250, 1};
    image white(400 / divisor, 2000 / divisor, 8);
    std::fill(white.bytes.begin(), white.bytes.end(), std::uint8_t{255});
    return DrawnOnce(white, AtPreview(ThroughDefaultCamera(world), divisor, divisor), 360 / divisor,
                     200 / divisor);
}

TEST(Placement, WhatLiesBehindTheCameraIsNotDrawn)
{
    for (const int divisor : {1, 2}) {
        const image seen = Floor(divisor);
        // Its far edge is seen at y = 100 + 500 x 50/1250 = 120; all of the bottom is floor.
        const auto alphaAt = [&](int x, int y) { return seen.row(y / divisor)[4 * (x / divisor)]; };
        for (int x = 0; x < 360; x += 20) {
            EXPECT_EQ(alphaAt(x, 60), 0) << x << ": a floor behind us would appear here";
            EXPECT_EQ(alphaAt(x, 114), 0) << x;
            EXPECT_EQ(alphaAt(x, 196), 255) << x;
        }
        EXPECT_EQ(alphaAt(180, 126), 255);
        EXPECT_EQ(alphaAt(40, 126), 0) << "far away it is narrow: 180 - 200 x 500/1250 = 100";
    }
}

}  // namespace
}  // namespace orv
