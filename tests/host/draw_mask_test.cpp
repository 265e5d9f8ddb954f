// Masks: coverage of paths, and what several of them leave.
#include <gtest/gtest.h>

#include <numbers>
#include <numeric>

#include "draw/maskCoverage.h"
#include "draw/maskShape.h"
#include "host/draw_project.h"
#include "host/image_bytes.h"
#include "support/caseName.h"

namespace orv {
namespace {

maskPath Reversed(maskPath path)
{
    std::reverse(path.vertex.begin(), path.vertex.end());
    return path;
}

/// Both shapes in one path, joined by an edge that is walked there and back.
maskPath Joined(const maskPath& first, const maskPath& second)
{
    maskPath path = first;
    path.vertex.push_back(first.vertex.front());
    path.vertex.insert(path.vertex.end(), second.vertex.begin(), second.vertex.end());
    path.vertex.push_back(second.vertex.front());
    path.in.assign(path.vertex.size(), {});
    path.out.assign(path.vertex.size(), {});
    return path;
}

double AreaOf(const std::vector<std::uint8_t>& coverage)
{
    return std::accumulate(coverage.begin(), coverage.end(), 0.0) / 255.0;
}

TEST(PathCoverage, IsExactOnPixelBordersAndSharesPixels)
{
    EXPECT_EQ(PathCoverage(Rectangle(1, 0, 3, 1), 4, 1, 1, 1),
              (std::vector<std::uint8_t>{0, 255, 255, 0}));
    const std::vector<std::uint8_t> halves = PathCoverage(Rectangle(0.5, 0, 2.25, 1), 4, 1, 1, 1);
    EXPECT_NEAR(halves[0], 127.5, 1.0) << "coverage comes in 255 steps";
    EXPECT_EQ(halves[1], 255);
    EXPECT_NEAR(halves[2], 63.75, 1.0);
    EXPECT_EQ(halves[3], 0);
}

TEST(PathCoverage, CountsWindingsThatAreNotZero)
{
    const maskPath outer = Rectangle(0, 0, 9, 9), inner = Rectangle(3, 3, 6, 6);
    EXPECT_DOUBLE_EQ(AreaOf(PathCoverage(Joined(outer, inner), 9, 9, 1, 1)), 81.0);
    EXPECT_DOUBLE_EQ(AreaOf(PathCoverage(Joined(outer, Reversed(inner)), 9, 9, 1, 1)), 72.0);
}

TEST(PathCoverage, ReachesAsFarAsScenesDo)
{
    EXPECT_EQ(PathCoverage(Rectangle(-1e9, -1e9, 2, 1e9), 4, 1, 1, 1),
              (std::vector<std::uint8_t>{255, 255, 0, 0}));
    EXPECT_DOUBLE_EQ(AreaOf(PathCoverage(Rectangle(-1e9, -1e9, -1, -1), 4, 4, 1, 1)), 0.0);
    const maskPath around =
        Joined(Rectangle(-1e9, -1e9, 1e9, 1e9), Reversed(Rectangle(1, 1, 3, 3)));
    EXPECT_DOUBLE_EQ(AreaOf(PathCoverage(around, 4, 4, 1, 1)), 12.0);
}

TEST(PathCoverage, FollowsCurvesAtAnyResolution)
{
    // A circle of radius 40: the usual four cubics are at most 0.03 % off.
    const double r = 40.0, k = r * 0.5522847498;
    maskPath circle;
    circle.closed = true;
    circle.vertex = {{50, 10}, {90, 50}, {50, 90}, {10, 50}};
    circle.out = {{k, 0}, {0, k}, {-k, 0}, {0, -k}};
    circle.in = {{-k, 0}, {0, -k}, {k, 0}, {0, k}};
    const double area = std::numbers::pi * r * r;
    // half a step of 255 in some 320 pixels of the edge, and the cubics
    EXPECT_NEAR(AreaOf(PathCoverage(circle, 100, 100, 1, 1)), area, 5.0);
    EXPECT_NEAR(8.0 * AreaOf(PathCoverage(circle, 50, 25, 2, 4)), area, 12.0);
}

TEST(CutToPicture, KeepsWhatIsInside)
{
    const std::vector<vec2> inside{{1, 1}, {5, 2}, {3, 4}};
    EXPECT_EQ(CutToPicture(inside, 10, 10), inside);
    // A triangle with one corner beyond the right edge: cut at x = 10, y = 2.5 and 7.5.
    const std::vector<vec2> cut = CutToPicture({{5, 0}, {15, 5}, {5, 10}}, 10, 10);
    EXPECT_EQ(cut, (std::vector<vec2>{{5, 0}, {10, 2.5}, {10, 7.5}, {5, 10}}));
}

// ------------------------------------------------------------------ several masks

struct maskEntry {
    maskMode mode;
    bool inverted;
    double opacity;
    double left, right;  ///< covers these columns
};
struct algebraCase {
    const char* name;
    std::vector<maskEntry> masks;
    std::vector<int> alpha;  ///< of four opaque pixels, full scale 32768
};

class MaskAlgebra : public testing::TestWithParam<algebraCase> {};
TEST_P(MaskAlgebra, LeavesThatAlpha)
{
    layer l = SolidLayer(4, 1, kRed);
    for (const maskEntry& each : GetParam().masks) {
        mask m;
        m.mode = each.mode;
        m.inverted = each.inverted;
        m.opacity = Constant({each.opacity});
        m.path.constant = Rectangle(each.left, 0, each.right, 1);
        l.masks.push_back(m);
    }
    image picture = Row(16, {32768, 7, 8, 9, 32768, 7, 8, 9, 32768, 7, 8, 9, 32768, 7, 8, 9});
    image expected = picture;
    for (std::size_t x = 0; x < 4; ++x) {
        expected.row16(0)[4 * x] = static_cast<std::uint16_t>(GetParam().alpha[x]);
    }
    ClipByMasks(l, 0.0, 1, 1, picture);
    EXPECT_EQ(picture, expected);
}
// The first mask covers columns 0 and 1, the second columns 1 and 2, at 50 % where it says so.
const algebraCase kModes[] = {
    {"NoneClipsNothing", {{maskMode::none, false, 100, 0, 1}}, {32768, 32768, 32768, 32768}},
    {"Add", {{maskMode::add, false, 100, 0, 2}}, {32768, 32768, 0, 0}},
    {"AddInverted", {{maskMode::add, true, 50, 0, 2}}, {0, 0, 16384, 16384}},
    {"SubtractFirst", {{maskMode::subtract, false, 25, 0, 2}}, {24576, 24576, 32768, 32768}},
    {"IntersectFirst", {{maskMode::intersect, false, 100, 0, 2}}, {32768, 32768, 0, 0}},
    {"DarkenFirst", {{maskMode::darken, false, 50, 0, 2}}, {16384, 16384, 0, 0}},
    {"LightenFirst", {{maskMode::lighten, false, 50, 0, 2}}, {16384, 16384, 0, 0}},
    {"DifferenceFirst", {{maskMode::difference, false, 50, 0, 2}}, {16384, 16384, 0, 0}},
    // 0.5 + 0.5 - 0.25
    {"AddTwo",
     {{maskMode::add, false, 50, 0, 2}, {maskMode::add, false, 50, 1, 3}},
     {16384, 24576, 16384, 0}},
    {"Subtract",
     {{maskMode::add, false, 100, 0, 2}, {maskMode::subtract, false, 50, 1, 3}},
     {32768, 16384, 0, 0}},
    {"Intersect",
     {{maskMode::add, false, 100, 0, 2}, {maskMode::intersect, false, 50, 1, 3}},
     {0, 16384, 0, 0}},
    {"Lighten",
     {{maskMode::add, false, 25, 0, 2}, {maskMode::lighten, false, 50, 1, 3}},
     {8192, 16384, 16384, 0}},
    {"Darken",
     {{maskMode::add, false, 25, 0, 2}, {maskMode::darken, false, 50, 1, 3}},
     {0, 8192, 0, 0}},
    {"Difference",
     {{maskMode::add, false, 25, 0, 2}, {maskMode::difference, false, 100, 1, 3}},
     {8192, 24576, 32768, 0}},
    // the first mask that clips decides where it starts
    {"NoneBeforeSubtract",
     {{maskMode::none, false, 100, 0, 4}, {maskMode::subtract, true, 100, 0, 2}},
     {32768, 32768, 0, 0}}};
INSTANTIATE_TEST_SUITE_P(Modes, MaskAlgebra, testing::ValuesIn(kModes), caseName{});

TEST(Masks, OnlyClosedPathsWithTwoVerticesClip)
{
    mask m;
    maskPath open = Rectangle(0, 0, 1, 1);
    open.closed = false;
    maskPath point;
    point.closed = true;
    point.vertex = {{1, 1}};
    point.in = point.out = {{0, 0}};
    EXPECT_TRUE(Clips(m, Rectangle(0, 0, 1, 1)));
    EXPECT_FALSE(Clips(m, open));
    EXPECT_FALSE(Clips(m, point));
    EXPECT_FALSE(Clips(m, maskPath{}));
    m.mode = maskMode::none;
    EXPECT_FALSE(Clips(m, Rectangle(0, 0, 1, 1)));
}

}  // namespace
}  // namespace orv
