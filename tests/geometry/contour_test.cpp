#include "geometry/contour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kRounding = 1e-9;
constexpr float kPixelRounding = 1e-4f;

void ExpectPoint(const point3& p, float x, float y, float z)
{
    EXPECT_NEAR(p.x, x, kPixelRounding);
    EXPECT_NEAR(p.y, y, kPixelRounding);
    EXPECT_NEAR(p.z, z, kPixelRounding);
}

/// Four steps along x from 0 to 400, 100 wide, on the second half of the mask.
ribbonSamples FourSteps()
{
    ribbonSamples ribbon;
    for (int s = 0; s <= 4; ++s) {
        const float x = 100.0f * static_cast<float>(s);
        const double pathPos = 0.5 + 0.125 * s;
        ribbon.posA.push_back({x, 0, 0});
        ribbon.posB.push_back({x, 100, 0});
        ribbon.texA.push_back({x / 2, 0, static_cast<float>(pathPos)});
        ribbon.texB.push_back({x / 2, 80, static_cast<float>(pathPos)});
        ribbon.normal.push_back({0, 0, 1});
        ribbon.pathPos.push_back(pathPos);
    }
    return ribbon;
}

TEST(ContourSpacing, PacksSamplesTowardsTheEnds)
{
    meshSettings settings;
    settings.contourDefinitionPercent = 40.0;
    const double density = ContourDensity(10.0, settings);
    EXPECT_DOUBLE_EQ(density, 4.0);
    EXPECT_EQ(ContourSampleCount(density), 4u);
    // (3 - 2u) u^2 at quarters: 0, 10/64, 1/2, 54/64 of 10 px.
    EXPECT_NEAR(ContourArc(0, density, 10.0), 0.0, kRounding);
    EXPECT_NEAR(ContourArc(1, density, 10.0), 1.5625, kRounding);
    EXPECT_NEAR(ContourArc(2, density, 10.0), 5.0, kRounding);
    EXPECT_NEAR(ContourArc(3, density, 10.0), 8.4375, kRounding);
}

TEST(ContourSpacing, CountsEveryWholeNumberBelowTheDensity)
{
    EXPECT_EQ(ContourSampleCount(0.0), 0u);
    EXPECT_EQ(ContourSampleCount(0.3), 1u);
    EXPECT_EQ(ContourSampleCount(4.01), 5u);
    EXPECT_EQ(ContourSampleCount(-3.0), 0u);
    EXPECT_EQ(ContourSampleCount(std::numeric_limits<double>::quiet_NaN()), 0u);
    EXPECT_LE(ContourSampleCount(std::numeric_limits<double>::infinity()), 1'000'000'000u);
}

TEST(ContourPoint, StaysAPixelInsideTheLayer)
{
    const frameSizes sizes{.viewWidth = 100, .viewHeight = 50};
    EXPECT_EQ(ContourPoint(25, 10, sizes), (point3{0.25f, 0.2f, 0.25f}));
    EXPECT_EQ(ContourPoint(-5, 60, sizes), (point3{0.01f, 0.98f, 0.01f}));
    // Where there is no room for a border, the point is still one of the layer.
    const point3 tiny = ContourPoint(std::nan(""), 3, {.viewWidth = 1, .viewHeight = 0});
    EXPECT_EQ(tiny, (point3{1, 1, 1}));
}

TEST(Contour, FollowsTheRibbonAndItsDepth)
{
    meshSettings settings;
    settings.extrusion = 20.0;
    settings.scaleEnd = 3.0;
    settings.scaleMaskEnd = 0.5;
    // u 0.625 is halfway between samples 2 and 3, v 0.25 a quarter from A to B. The source's scale
    // there: (1 - cos 45 degrees) / 2 = 0.1464466 of the way from 1 to 3. The path position 0.8125
    // gives (1 - cos 112.5 degrees) / 2 = 0.6913417 of the way from 1 to 0.5.
    const contourSamples contour = LayContour({{0.625f, 0.25f, 0.625f}}, FourSteps(), settings);
    ASSERT_EQ(contour.front.size(), 1u);
    const float depth = 10.0f * (1 + 2 * 0.1464466f) * (1 - 0.5f * 0.6913417f);
    ExpectPoint(contour.front[0], 250, 25, depth);
    ExpectPoint(contour.back[0], 250, 25, -depth);
    EXPECT_NEAR(contour.pathPos[0], 0.8125, kRounding);
    ExpectPoint(contour.tex[0], 125, 0, 80);
}

TEST(Contour, ReachesBothEndsOfTheRibbon)
{
    const contourSamples contour = LayContour({{0, 0, 0}, {1, 1, 1}}, FourSteps(), {});
    EXPECT_EQ(contour.front[0].x, 0.0f);
    EXPECT_EQ(contour.front[1].x, 400.0f);
    EXPECT_TRUE(LayContour({{0, 0, 0}}, {}, {}).front.empty());
}

std::vector<float> Spread(const std::vector<float>& columns)
{
    std::vector<point3> tex;
    for (const float x : columns) tex.push_back({x, 0, 0});
    SpreadTextureRuns(tex);
    std::vector<float> spread;
    for (const point3& t : tex) spread.push_back(t.x);
    return spread;
}

TEST(TextureRuns, AlternateBetweenTheirOwnColumnAndTheNext)
{
    using columns = std::vector<float>;
    EXPECT_EQ(Spread({1, 2, 3}), (columns{1, 2, 3}));
    // A run from an odd index keeps its own x on odd entries.
    EXPECT_EQ(Spread({1, 5, 5, 5, 9}), (columns{1, 5, 9, 5, 9}));
    // From an even index its first entry is rewritten, and odd ones follow it.
    EXPECT_EQ(Spread({5, 5, 5, 9, 1}), (columns{9, 9, 9, 9, 1}));
    EXPECT_EQ(Spread({1, 5, 5, 9, 9, 9, 2}), (columns{1, 5, 9, 9, 2, 9, 2}));
    EXPECT_EQ(Spread({1, 5, 5}), (columns{1, 5, 5})) << "a run at the end stays";
}

/// A wall from z 2 (front) to z -2 over the given corners of the layer.
contourSamples WallOver(const std::vector<point3>& corners)
{
    contourSamples contour;
    for (const point3& p : corners) {
        contour.front.push_back({p.x, p.y, 2});
        contour.back.push_back({p.x, p.y, -2});
        contour.pathPos.push_back(static_cast<double>(p.x) / 100);
        contour.tex.push_back({p.x, 3, 7});
    }
    return contour;
}

TEST(WallCells, StandBetweenFrontAndBack)
{
    const std::vector<quad> cells = WallCells(WallOver({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}));
    ASSERT_EQ(cells.size(), 2u);
    EXPECT_EQ(cells[0].pos[0], (point3{0, 0, 2}));
    EXPECT_EQ(cells[0].pos[1], (point3{10, 0, 2}));
    EXPECT_EQ(cells[0].pos[2], (point3{10, 0, -2}));
    EXPECT_EQ(cells[0].pos[3], (point3{0, 0, -2}));
    EXPECT_EQ(cells[0].tex[0], (point3{0, 3, 0}));
    EXPECT_EQ(cells[0].tex[2], (point3{10, 7, 0.1f}));
    EXPECT_EQ(cells[0].face, 2.0);
}

TEST(WallCells, CornersTakeTheNormalOfTheirSample)
{
    // A closed square of 10 px. With D = (0, 0, -4) and a run r, c = D x r = (4 r.y, -4 r.x, 0).
    const std::vector<quad> cells =
        WallCells(WallOver({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}}));
    ASSERT_EQ(cells.size(), 4u);
    // Sample 0: the repeated last sample lies on it, so only the run (10, 0) counts: -(0, -40).
    const point3 first{0, 40, 0};
    // Sample 1: runs (10, 0) and (0, 10): -((0, -40) + (40, 0)).
    const point3 second{-40, 40, 0};
    // Sample 2: runs (0, 10) and (-10, 0): -((40, 0) + (0, 40)).
    const point3 third{-40, -40, 0};
    EXPECT_EQ(cells[0].norm[0], first);
    EXPECT_EQ(cells[0].norm[1], second);
    EXPECT_EQ(cells[0].norm[2], second);
    EXPECT_EQ(cells[0].norm[3], first);
    EXPECT_EQ(cells[1].norm[3], second);
    EXPECT_EQ(cells[1].norm[2], third);
    // The last cell is shaded as the first.
    EXPECT_EQ(cells[3].norm[0], first);
    EXPECT_EQ(cells[3].norm[2], second);
}

TEST(WallCells, TwoSamplesMakeOneFlatCell)
{
    const std::vector<quad> cells = WallCells(WallOver({{0, 0, 0}, {0, 10, 0}}));
    ASSERT_EQ(cells.size(), 1u);
    for (const point3& normal : cells[0].norm) EXPECT_EQ(normal, (point3{-40, 0, 0}));
    EXPECT_TRUE(WallCells(WallOver({{0, 0, 0}})).empty());
    EXPECT_TRUE(WallCells({}).empty());
}

}  // namespace
