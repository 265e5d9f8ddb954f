// Arc lengths of mask segments.
#include <gtest/gtest.h>

#include <cmath>

#include "plugin/pathGeometry.h"

namespace orv {
namespace {

maskPath Path(bool closed, std::vector<vec2> vertex, std::vector<vec2> in, std::vector<vec2> out)
{
    return {closed, std::move(vertex), std::move(in), std::move(out)};
}

void ExpectPoint(const SegmentMeasure::point& at, vec2 position, vec2 direction)
{
    EXPECT_NEAR(at.position.x, position.x, 1e-6);
    EXPECT_NEAR(at.position.y, position.y, 1e-6);
    EXPECT_NEAR(at.direction.x, direction.x, 1e-6);
    EXPECT_NEAR(at.direction.y, direction.y, 1e-6);
}

TEST(PathOutline, TakesControlPointsFromBothVerticesAndDividesThem)
{
    const pathOutline open =
        MakeOutline(Path(false, {{0, 0}, {12, 6}}, {{9, 9}, {-2, 3}}, {{4, 6}, {9, 9}}), 2, 3);
    ASSERT_EQ(open.segments.size(), 1U);
    EXPECT_TRUE(open.open);
    const pathSegment expected{vec2{0, 0}, vec2{2, 2}, vec2{5, 3}, vec2{6, 2}};
    EXPECT_EQ(open.segments[0], expected);
}

TEST(PathOutline, OnlyAClosedPathReturnsToItsStart)
{
    const std::vector<vec2> corners{{0, 0}, {3, 0}, {0, 4}}, none(3);
    EXPECT_EQ(MakeOutline(Path(false, corners, none, none), 1, 1).segments.size(), 2U);
    const pathOutline closed = MakeOutline(Path(true, corners, none, none), 1, 1);
    ASSERT_EQ(closed.segments.size(), 3U);
    EXPECT_EQ(closed.segments[2][3], (vec2{0, 0}));
    EXPECT_FALSE(closed.open);
}

TEST(PathOutline, FewerThanTwoVerticesAreOpenAndEmpty)
{
    for (const auto& vertices : {std::vector<vec2>{}, std::vector<vec2>{{5, 5}}}) {
        const std::vector<vec2> tangents(vertices.size(), vec2{8, 0});
        const pathOutline outline = MakeOutline(Path(true, vertices, tangents, tangents), 1, 1);
        EXPECT_TRUE(outline.open);
        EXPECT_TRUE(outline.segments.empty());
    }
}

// A polygon's edge: its parametrisation stands still at both ends, the arc length does not.
TEST(SegmentMeasure, EdgeOfAPolygonIsWalkedEvenly)
{
    const SegmentMeasure edge({vec2{10, 20}, vec2{10, 20}, vec2{40, 60}, vec2{40, 60}});
    EXPECT_DOUBLE_EQ(edge.length(), 50.0);
    ExpectPoint(edge.At(0.0), {10, 20}, {0.6, 0.8});
    ExpectPoint(edge.At(12.5), {17.5, 30}, {0.6, 0.8});
    ExpectPoint(edge.At(50.0), {40, 60}, {0.6, 0.8});
}

TEST(SegmentMeasure, LengthsBeyondTheEndsGiveTheEnds)
{
    const SegmentMeasure curve({vec2{0, 0}, vec2{0, 30}, vec2{60, 90}, vec2{90, 90}});
    ExpectPoint(curve.At(-5.0), {0, 0}, {0, 1});
    ExpectPoint(curve.At(curve.length() + 5.0), {90, 90}, {1, 0});
    ExpectPoint(curve.At(std::nan("")), {0, 0}, {0, 1});
}

// The usual cubic for a quarter of a circle: its radius is off by at most 2.73e-4 of itself, so its
// length is within that of pi / 2 times the radius, and half of it lies on the diagonal.
TEST(SegmentMeasure, QuarterCircle)
{
    constexpr double kRadius = 1000.0, kHandle = 552.2847498307936;
    const SegmentMeasure quarter(
        {vec2{kRadius, 0}, vec2{kRadius, kHandle}, vec2{kHandle, kRadius}, vec2{0, kRadius}});
    EXPECT_NEAR(quarter.length(), 1570.7963267948966, 0.43);
    const double middle = 1000.0 * std::sqrt(0.5), slope = std::sqrt(0.5);
    ExpectPoint(quarter.At(0.5 * quarter.length()), {middle, middle}, {-slope, slope});
}

// Compared with a walk in a hundred thousand straight steps.
TEST(SegmentMeasure, AgreesWithASlowWalk)
{
    const pathSegment loop{vec2{0, 0}, vec2{900, 700}, vec2{-500, 600}, vec2{400, -100}};
    const SegmentMeasure measure(loop);
    constexpr int kSteps = 100000;
    double walked = 0.0, worst = 0.0;
    vec2 before = loop[0];
    for (int step = 1; step <= kSteps; ++step) {
        const double u = static_cast<double>(step) / kSteps, v = 1.0 - u;
        const auto cubic = [&](double a, double b, double c, double d) {
            return v * v * v * a + 3 * v * v * u * b + 3 * v * u * u * c + u * u * u * d;
        };
        const vec2 now{cubic(loop[0].x, loop[1].x, loop[2].x, loop[3].x),
                       cubic(loop[0].y, loop[1].y, loop[2].y, loop[3].y)};
        walked += std::hypot(now.x - before.x, now.y - before.y);
        before = now;
        if (step % 5000 != 0) continue;
        const vec2 found = measure.At(walked).position;
        worst = std::max(worst, std::hypot(found.x - now.x, found.y - now.y));
    }
    EXPECT_NEAR(measure.length(), walked, 0.001);
    EXPECT_LT(worst, 0.01);
}

TEST(SegmentMeasure, DirectionHasItsLimitWhereAHandleIsMissing)
{
    // Leaves towards the second control point, arrives from the first.
    const SegmentMeasure leaving({vec2{0, 0}, vec2{0, 0}, vec2{30, 40}, vec2{100, 40}});
    ExpectPoint(leaving.At(0.0), {0, 0}, {0.6, 0.8});
    const SegmentMeasure arriving({vec2{0, 0}, vec2{60, 0}, vec2{90, 40}, vec2{90, 40}});
    ExpectPoint(arriving.At(arriving.length()), {90, 40}, {0.6, 0.8});
}

TEST(SegmentMeasure, ASinglePointHasNeitherLengthNorDirection)
{
    const vec2 p{7, 9};
    const SegmentMeasure point({p, p, p, p});
    EXPECT_EQ(point.length(), 0.0);
    ExpectPoint(point.At(3.0), {7, 9}, {0, 0});
}

// There and back along one line: 0 to 12 and back to 0 has its turning point at u = 1/2, x = 9.
TEST(SegmentMeasure, TurningBackOnItselfCountsBothWays)
{
    const SegmentMeasure there({vec2{0, 0}, vec2{12, 0}, vec2{12, 0}, vec2{0, 0}});
    EXPECT_NEAR(there.length(), 18.0, 1e-4);
    ExpectPoint(there.At(4.5), {4.5, 0}, {1, 0});
    ExpectPoint(there.At(13.5), {4.5, 0}, {-1, 0});
}

}  // namespace
}  // namespace orv
