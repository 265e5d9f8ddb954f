#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "geometry/extrusion.h"
#include "geometry/meshBudget.h"
#include "geometry/meshBuilder.h"
#include "geometry/ordering.h"
#include "geometry/polyline.h"
#include "geometry/quadInterpolation.h"
#include "geometry/shapeLayout.h"

namespace {

bool SameCell(const quad& a, const quad& b)
{
    return std::equal(a.pos, a.pos + 4, b.pos) && std::equal(a.tex, a.tex + 4, b.tex) &&
           std::equal(a.norm, a.norm + 4, b.norm) && a.depth == b.depth && a.face == b.face;
}

/// Corners at x 0 (first sample) and 8 (next), edge A at y 0, edge B at y 4; other lists differ.
quad Cell()
{
    return {.pos = {{0, 0, 1}, {8, 0, 2}, {8, 4, 3}, {0, 4, 5}},
            .tex = {{10, 0, 0.25f}, {20, 0, 0.5f}, {20, 40, 0.5f}, {10, 40, 0.25f}},
            .norm = {{0, 0, 1}, {0, 1, 1}, {0, 1, 2}, {0, 0, 2}},
            .depth = 7.0,
            .face = 1.0};
}

/// Two steps of a flat ribbon along x, 10 apart, edge A at y -5, edge B at y 5.
ribbonSamples TwoSteps()
{
    ribbonSamples ribbon;
    for (int s = 0; s <= 2; ++s) {
        const float x = 10.0f * static_cast<float>(s);
        ribbon.posA.push_back({x, -5, 0});
        ribbon.posB.push_back({x, 5, 0});
        ribbon.texA.push_back({x, 0, x / 20});
        ribbon.texB.push_back({x, 8, x / 20});
        ribbon.normal.push_back({0, static_cast<float>(s), 1});
        ribbon.pathPos.push_back(static_cast<double>(x) / 20);
        ribbon.z.push_back(0);
    }
    return ribbon;
}

meshSettings Extruded(double extrusion, int layers)
{
    meshSettings settings;
    settings.extrusion = extrusion;
    settings.extrusionLayers = layers;
    return settings;
}

TEST(Interpolate, CutsAStripAcrossTheRibbon)
{
    const quad strip = Interpolate(Cell(), 0.25, 0.75);
    EXPECT_EQ(strip.pos[0], (point3{0, 1, 2}));
    EXPECT_EQ(strip.pos[1], (point3{8, 1, 2.25f}));
    EXPECT_EQ(strip.pos[2], (point3{8, 3, 2.75f}));
    EXPECT_EQ(strip.pos[3], (point3{0, 3, 4}));
    EXPECT_EQ(strip.tex[2], (point3{20, 30, 0.5f}));
    EXPECT_EQ(strip.norm[3], (point3{0, 0, 1.75f}));
    EXPECT_EQ(strip.depth, 7.0);
    EXPECT_EQ(strip.face, 1.0);
    EXPECT_TRUE(SameCell(Interpolate(Cell(), 0.0, 1.0), Cell()));
}

TEST(InterpolateZ, BlendsCornersDepthAndFace)
{
    quad other = Cell();
    for (point3& p : other.pos) p = {p.x + 4, p.y - 8, p.z};
    other.norm[1] = {4, 1, 1};
    other.depth = 11.0;
    other.face = 0.0;
    const quad between = InterpolateZ(Cell(), other, 0.25);
    EXPECT_EQ(between.pos[2], (point3{9, 2, 3}));
    EXPECT_EQ(between.norm[1], (point3{1, 1, 1}));
    EXPECT_EQ(between.depth, 8.0);
    EXPECT_EQ(between.face, 0.75);
    EXPECT_TRUE(SameCell(InterpolateZ(Cell(), other, 0.0), Cell()));
    EXPECT_TRUE(SameCell(InterpolateZ(Cell(), other, 1.0), other));
}

TEST(BaseCells, WithoutExtrusionLieOnTheSamples)
{
    // Either of the two switches it off.
    for (const meshSettings& settings : {Extruded(0.0, 3), Extruded(4.0, 0)}) {
        const std::vector<quad> cells = BaseCells(TwoSteps(), settings);
        ASSERT_EQ(cells.size(), 2u);
        EXPECT_EQ(cells[1].pos[0], (point3{10, -5, 0}));
        EXPECT_EQ(cells[1].pos[1], (point3{20, -5, 0}));
        EXPECT_EQ(cells[1].pos[2], (point3{20, 5, 0}));
        EXPECT_EQ(cells[1].pos[3], (point3{10, 5, 0}));
        EXPECT_EQ(cells[1].tex[2], (point3{20, 8, 1}));
        EXPECT_EQ(cells[1].face, 0.0);
        EXPECT_EQ(cells[1].depth, 0.0);
        // Normals: the first sample's own, then the sum with the one before.
        EXPECT_EQ(cells[0].norm[0], (point3{0, 0, 1}));
        EXPECT_EQ(cells[0].norm[1], (point3{0, 1, 2}));
        EXPECT_EQ(cells[1].norm[0], (point3{0, 1, 2}));
        EXPECT_EQ(cells[1].norm[2], (point3{0, 3, 2}));
    }
}

TEST(BaseCells, ExtrusionPushesTwoFacesOutAlongTheNormals)
{
    meshSettings settings = Extruded(8.0, 1);
    settings.uniformScale = 0.5;  // half depth 8 / 2 * 0.5 = 2
    const std::vector<quad> cells = BaseCells(TwoSteps(), settings);
    ASSERT_EQ(cells.size(), 4u);
    EXPECT_EQ(cells[2].face, 0.0);
    EXPECT_EQ(cells[3].face, 1.0);
    EXPECT_EQ(cells[2].pos[0], (point3{10, -7, -2}));
    EXPECT_EQ(cells[2].pos[2], (point3{20, 1, -2}));
    EXPECT_EQ(cells[3].pos[0], (point3{10, -3, 2}));
    EXPECT_EQ(cells[3].pos[2], (point3{20, 9, 2}));
}

TEST(Slices, LieBetweenTheFacesOfTheirOwnStrip)
{
    quad back = Cell(), front = Cell(), otherBack = Cell(), otherFront = Cell();
    back.face = otherBack.face = 0.0;
    for (point3& p : front.pos) p.z += 8;
    for (point3& p : otherFront.pos) p.x += 4;
    front.depth = 15.0;
    std::vector<quad> cells{back, front, otherBack, otherFront};
    AppendSlices(cells, 4);
    ASSERT_EQ(cells.size(), 4u + 2 * 3);
    EXPECT_EQ(cells[4].face, 0.25);
    EXPECT_EQ(cells[5].face, 0.5);
    EXPECT_EQ(cells[6].face, 0.75);
    EXPECT_EQ(cells[4].pos[0], (point3{0, 0, 3}));
    EXPECT_EQ(cells[6].pos[0], (point3{0, 0, 7}));
    EXPECT_EQ(cells[6].depth, 13.0);
    EXPECT_EQ(cells[7].face, 0.25);
    EXPECT_EQ(cells[7].pos[0], (point3{1, 0, 1}));
}

TEST(Strips, ComeByStripThenByCell)
{
    quad second = Cell();
    for (point3& p : second.pos) p.x += 100;
    const std::vector<quad> cells{Cell(), second};
    std::vector<quad> drawn;
    depthRange range;
    AppendStrips(cells, 2, {0, 0, 0}, drawn, range);
    ASSERT_EQ(drawn.size(), 4u);
    EXPECT_EQ(drawn[0].pos[0], (point3{0, 0, 1}));
    EXPECT_EQ(drawn[1].pos[0], (point3{100, 0, 1}));
    EXPECT_EQ(drawn[2].pos[0], (point3{0, 2, 3}));
    EXPECT_EQ(drawn[3].pos[2], (point3{108, 4, 3}));
    // Nearest corners: (0, 0, 1) and (0, 2, 3). Farthest of all: (108, 4, 3).
    EXPECT_EQ(drawn[0].depth, 1.0);
    EXPECT_EQ(drawn[2].depth, 13.0);
    EXPECT_EQ(range.runMin, 1.0);
    EXPECT_EQ(range.runMax, 108.0 * 108 + 16 + 9);
    AppendStrips(cells, 0, {0, 0, 0}, drawn, range);
    EXPECT_EQ(drawn.size(), 4u);
}

TEST(DepthRange, FitsThePlanesToTheMesh)
{
    // The nearest corner 1000 away, the farthest 3000.
    const depthRange seen{.runMin = 1e6, .runMax = 9e6};
    EXPECT_NEAR(seen.nearPlane(), 707.10678 - 100, 1e-5);
    EXPECT_EQ(seen.farPlane(), 3100.0);
    const depthRange close{.runMin = 0.0, .runMax = 0.0};
    EXPECT_EQ(close.nearPlane(), 100.0);
    EXPECT_EQ(close.farPlane(), 101.0) << "a degenerate range gets a pixel of depth";
    // Beyond the starting value the near plane stays where that puts it.
    const depthRange distant{.runMax = 4e10};
    EXPECT_NEAR(distant.nearPlane(), 31622.7766 / 1.41421356 - 100, 1e-3);
    EXPECT_EQ(distant.farPlane(), 200100.0);
}

TEST(SortCells, AgreesWithAStableSortOfWholeCells)
{
    constexpr unsigned kSeed = 77;
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<int> key(0, 200);
    std::vector<quad> cells(3000, Cell());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        cells[i].depth = key(random);
        cells[i].face = static_cast<double>(i);
    }
    std::vector<quad> expected = cells;
    std::stable_sort(expected.begin(), expected.end(), sortF);
    SortCells(cells);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        ASSERT_TRUE(SameCell(cells[i], expected[i])) << "place " << i << ", seed " << kSeed;
    }
}

/// A contour across the middle of the ribbon, three samples.
frameShape ShapeWithContour()
{
    frameShape shape;
    shape.flat = false;
    shape.ribbon = TwoSteps();
    shape.contour.front = {{0, 0, 2}, {10, 0, 2}, {20, 0, 2}};
    shape.contour.back = {{0, 0, -2}, {10, 0, -2}, {20, 0, -2}};
    shape.contour.pathPos = {0, 0.5, 1};
    shape.contour.tex = {{0, 0, 8}, {10, 0, 8}, {20, 0, 8}};
    return shape;
}

TEST(DrawList, CountsThatNoNumberHoldsAreStillTooLarge)
{
    meshSettings settings = Extruded(4.0, kMostLayers);
    settings.subSampling = kMostStrips;
    std::string reason;
    for (const std::uint64_t outlineSamples : {0ULL, 100'000'000ULL, 10'000'000'000'000ULL}) {
        const cellCounts counts = CountCells(4097, outlineSamples, settings);
        EXPECT_EQ(CheckMeshBudget(counts, reason), PF_Err_OUT_OF_MEMORY) << outlineSamples;
        EXPECT_GE(counts.bytes(), counts.drawn);
    }
}

TEST(DrawList, HoldsStripsSlicesAndWallNearestFirst)
{
    meshSettings settings = Extruded(4.0, 3);
    settings.subSampling = 2;
    const drawList list = BuildDrawList(ShapeWithContour(), settings, {0, 0, 1000});
    // 2 steps x 2 faces x 2 strips, 2 slices for each of 4 pairs, 2 wall cells x 2 strips.
    ASSERT_EQ(list.cells.size(), 8u + 8 + 4);
    EXPECT_EQ(list.cells.size(), CountCells(2, 3, settings).drawn);
    EXPECT_TRUE(std::is_sorted(list.cells.begin(), list.cells.end(), sortF));
    const auto walls = std::count_if(list.cells.begin(), list.cells.end(),
                                     [](const quad& c) { return c.face == 2.0; });
    EXPECT_EQ(walls, 4);
    EXPECT_EQ(list.cells.front().face, 1.0) << "the eye is in front";
    EXPECT_LT(list.nearPlane, 998 - 1e-3);
    EXPECT_GT(list.farPlane, 1002 + 1e-3);
}

TEST(DrawList, OfNothingKeepsThePlanes)
{
    meshSettings settings = Extruded(4.0, 3);
    frameShape shape = ShapeWithContour();
    settings.subSampling = 0;
    const drawList none = BuildDrawList(shape, settings, {0, 0, 1000});
    EXPECT_TRUE(none.cells.empty());
    EXPECT_EQ(none.nearPlane, 100.0);
    EXPECT_EQ(none.farPlane, 100000.0);
    settings.subSampling = 2;
    shape.flat = true;
    EXPECT_TRUE(BuildDrawList(shape, settings, {0, 0, 1000}).cells.empty());
}

TEST(DrawList, SortsWhateverTheEye)
{
    const double bad = std::nan("");
    const drawList list = BuildDrawList(ShapeWithContour(), Extruded(4.0, 2), {bad, 1e300, 0});
    EXPECT_TRUE(std::is_sorted(list.cells.begin(), list.cells.end(), sortF));
    for (const quad& cell : list.cells) EXPECT_TRUE(std::isfinite(cell.depth));
    EXPECT_TRUE(std::isfinite(list.farPlane));
}

class MeshLimit : public testing::Test {
protected:
    ~MeshLimit() override { unsetenv("ORV_MESH_LIMIT"); }
};

TEST_F(MeshLimit, IsTwoGibibytesUnlessAWholeNumberSaysOtherwise)
{
    const std::uint64_t standard = 2048ull * 1024 * 1024;
    for (const char* text : {"", "many", "12x", "-1", "99999999999999"}) {
        setenv("ORV_MESH_LIMIT", text, 1);
        EXPECT_EQ(MeshByteLimit(), standard) << text;
    }
    unsetenv("ORV_MESH_LIMIT");
    EXPECT_EQ(MeshByteLimit(), standard);
}

}  // namespace
