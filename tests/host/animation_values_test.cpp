// Key frames between and beyond their times, with values worked out by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "animation/easing.h"
#include "animation/evaluate.h"
#include "animation/spatialPath.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

constexpr double kExact = 1e-12;   // a handful of double roundings
constexpr double kSolved = 1e-8;   // the easing is solved for its x to 1e-9; slopes up to 3 or so
constexpr double kOnCurve = 0.01;  // what positions along curves are promised to

keyFrame Key(double t, std::vector<double> value)
{
    keyFrame key;
    key.t = t;
    key.value = std::move(value);
    return key;
}

struct easeCase {
    const char* name;
    easeHandle out, in;
    double p, fraction;
};
class Easing : public testing::TestWithParam<easeCase> {};

TEST_P(Easing, GivesTheHandWorkedFraction)
{
    const easeCase& c = GetParam();
    EXPECT_NEAR(EasedFraction(c.out, c.in, 0, c.p), c.fraction, kSolved);
}

// With X(u) = 3u(1-u)^2 ox + 3u^2(1-u) ix + u^3 the p below are the X of the u in the comments.
const easeCase kCurves[] = {
    // Symmetric, so the middle is the middle.
    {"SymmetricMiddle", {{0.333}, {0}}, {{0.667}, {1}}, 0.5, 0.5},
    // u = 1/2: X = 3/8 * 0.2 + 3/8 * 0.4 + 1/8 = 0.35, Y = 3/8 * 0.6 + 3/8 * 1 + 1/8 = 0.725
    {"Asymmetric", {{0.2}, {0.6}}, {{0.4}, {1}}, 0.35, 0.725},
    // u = 1/4: X = 27/64 * 1/3 + 9/64 * 2/3 + 1/64 = 1/4; Y = 9/64 * 1 + 1/64 = 10/64
    {"EaseInOut", {{1.0 / 3}, {0}}, {{2.0 / 3}, {1}}, 0.25, 10.0 / 64},
    // The same x; Y at u = 1/2 with handles 3 and -1: 3/8 * 3 - 3/8 + 1/8 = 0.875
    {"OvershootingHandles", {{1.0 / 3}, {3}}, {{2.0 / 3}, {-1}}, 0.5, 0.875},
    // Y beyond 1: handles 0 and 3 at u = 3/4: 27/64 * 3 + 27/64 = 108/64
    {"LeavesTheRange", {{1.0 / 3}, {0}}, {{2.0 / 3}, {3}}, 0.75, 108.0 / 64},
    // Flat in the middle: X' (1/2) = 0. u = 1/2 gives X = 3/8 + 1/8 = 1/2 and Y = 1/8.
    {"VerticalTangent", {{1}, {0}}, {{0}, {0}}, 0.5, 0.125},
    {"AtTheStart", {{0.9}, {0}}, {{0.1}, {1}}, 0, 0},
    {"AtTheEnd", {{0.9}, {0}}, {{0.1}, {1}}, 1, 1},
    {"DiagonalHandlesAreLinear", {{0.4}, {0.4}}, {{0.9}, {0.9}}, 0.3, 0.3},
    {"MissingHandleIsLinear", {}, {{0.1}, {1}}, 0.3, 0.3}};
INSTANTIATE_TEST_SUITE_P(Curves, Easing, testing::ValuesIn(kCurves), caseName{});

TEST(Easing, IsSolvedToTheToleranceOverTheWholeRange)
{
    // With out.y = out.x and in.y = in.x the curve is a straight line even if the linear short cut
    // were missing; handles that differ in the last digit force the solver to find it.
    for (const double a : {0.0, 0.1, 0.5, 1.0}) {
        for (const double b : {0.0, 0.3, 0.9, 1.0}) {
            const easeHandle out{{a}, {std::nextafter(a, 2.0)}};
            const easeHandle in{{b}, {std::nextafter(b, 2.0)}};
            for (int k = 0; k <= 1000; ++k) {
                const double p = k / 1000.0;
                ASSERT_NEAR(EasedFraction(out, in, 0, p), p, 1.1e-9) << a << " " << b;
            }
        }
    }
}

TEST(KeyFrames, MixComponentsByTheirOwnHandles)
{
    property value;
    value.keys = {Key(10, {0, 100, 7}), Key(14, {64, 164})};
    // The first component eases, the second is linear, the third takes the first's handles.
    value.keys[0].out = {{1.0 / 3, 0.5}, {0, 0.5}};
    value.keys[0].in = {{2.0 / 3, 0.5}, {1, 0.5}};
    const std::vector<double> fallback{0, 0, 71};
    const std::vector<double> quarter = Evaluate(value, 11, fallback);
    ASSERT_EQ(quarter.size(), 3U);
    EXPECT_NEAR(quarter[0], 10, 64 * kSolved);
    EXPECT_NEAR(quarter[1], 116, kExact * 100);
    EXPECT_NEAR(quarter[2], 17, 64 * kSolved);
}

TEST(KeyFrames, HoldBeforeBetweenAndAfter)
{
    property value;
    value.keys = {Key(2, {1}), Key(4, {3}), Key(6, {9}), Key(6, {20}), Key(8, {30})};
    value.keys[1].hold = true;
    const auto at = [&](double t) { return EvaluateScalar(value, t, -1); };
    EXPECT_EQ(at(-100), 1);
    EXPECT_EQ(at(2), 1);
    EXPECT_NEAR(at(3.5), 2.5, kExact);
    EXPECT_EQ(at(4), 3);
    EXPECT_EQ(at(5.999), 3);
    EXPECT_EQ(at(6), 20) << "of two keys with one time the later holds from then on";
    EXPECT_NEAR(at(7), 25, kExact);
    EXPECT_EQ(at(8), 30);
    EXPECT_EQ(at(1e6), 30);
    EXPECT_EQ(EvaluateHeld(value, 7.9, -1), 20);
    EXPECT_EQ(EvaluateHeld(value, 1, -1), 1);
}

TEST(KeyFrames, TakeTheDefaultForWhatIsMissing)
{
    EXPECT_EQ(EvaluateScalar({}, 0, 42), 42);
    EXPECT_EQ(EvaluateVector({{1, 2}, {}}, 0, {7, 8, 9}), (vec3{1, 2, 9}));
    EXPECT_EQ(Evaluate({{1, 2, 3}, {}}, 0, std::vector<double>{0}), std::vector<double>{1});
}

TEST(SpatialKeyFrames, FollowAStraightCurveAtEvenSpeed)
{
    // All control points on one line, unevenly: time runs along the length, not the parameter.
    property value;
    value.keys = {Key(0, {0, 0, 0}), Key(10, {30, 40, 0})};
    value.keys[0].toTangent = {24, 32, 0};
    value.keys[0].tiTangent = {-3, -4, 0};
    const vec3 point = EvaluateVector(value, 3, {});
    EXPECT_NEAR(point.x, 9, kOnCurve);
    EXPECT_NEAR(point.y, 12, kOnCurve);
}

TEST(SpatialKeyFrames, WithZeroTangentsMixEachComponentByItself)
{
    property value;
    value.keys = {Key(0, {0, 0}), Key(4, {64, 64})};
    value.keys[0].out = {{1.0 / 3, 0.5}, {0, 0.5}};
    value.keys[0].in = {{2.0 / 3, 0.5}, {1, 0.5}};
    value.keys[0].toTangent = value.keys[0].tiTangent = {0, 0, 0};
    const vec3 point = EvaluateVector(value, 1, {});
    EXPECT_NEAR(point.x, 10, 64 * kSolved);
    EXPECT_NEAR(point.y, 16, kExact * 100);
}

/// The point at a share of the length, from many chords.
spatialPoint SlowPointAlong(const spatialCurve& c, double fraction)
{
    constexpr int kChords = 100'000;
    std::vector<spatialPoint> points(kChords + 1);
    std::vector<double> passed(kChords + 1);
    for (int k = 0; k <= kChords; ++k) {
        const auto index = static_cast<std::size_t>(k);
        const double u = static_cast<double>(k) / kChords, rest = 1 - u;
        for (std::size_t i = 0; i < 3; ++i) {
            points[index][i] = rest * rest * rest * c.start[i] +
                               3 * u * rest * rest * c.startControl[i] +
                               3 * u * u * rest * c.endControl[i] + u * u * u * c.end[i];
        }
        if (k == 0) continue;
        const spatialPoint &a = points[index - 1], &b = points[index];
        passed[index] = passed[index - 1] + std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
    }
    const auto end = std::ranges::upper_bound(passed, fraction * passed.back());
    const auto index = static_cast<std::size_t>(end - passed.begin());
    const double share =
        (fraction * passed.back() - passed[index - 1]) / (passed[index] - passed[index - 1]);
    spatialPoint point{};
    for (std::size_t i = 0; i < 3; ++i) {
        point[i] = points[index - 1][i] + share * (points[index][i] - points[index - 1][i]);
    }
    return point;
}

struct curveCase {
    const char* name;
    spatialCurve curve;
};
class SpatialCurve : public testing::TestWithParam<curveCase> {};

TEST_P(SpatialCurve, AgreesWithManyChords)
{
    for (const double fraction : {0.1, 0.5, 0.77}) {
        const spatialPoint fast = PointAlong(GetParam().curve, fraction);
        const spatialPoint slow = SlowPointAlong(GetParam().curve, fraction);
        for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(fast[k], slow[k], kOnCurve) << fraction;
    }
}

const curveCase kSpatialCurveCurves[] = {
    {"Arch", {{0, 0}, {0, 400}, {600, 400}, {600, 0}}},
    {"Spatial", {{0, 0, 0}, {100, 0, 900}, {-300, 50, 0}, {5, 800, -70}}},
    // The controls cross so that the curve comes to a stop and turns back.
    {"Cusp", {{0, 0}, {300, 300}, {0, 300}, {300, 0}}},
    {"OutAndBack", {{0, 0}, {900, 0}, {-300, 0}, {500, 0}}},
    {"StillStart", {{0, 0}, {0, 0}, {400, 300}, {500, 0}}}};
INSTANTIATE_TEST_SUITE_P(Curves, SpatialCurve, testing::ValuesIn(kSpatialCurveCurves), caseName{});

TEST(SpatialCurve, GoesOnStraightBeyondItsEnds)
{
    // A straight curve of length 50 along (3, 4) / 5, whose controls lie on its ends.
    const spatialCurve line{{0, 0}, {0, 0}, {30, 40}, {30, 40}};
    const spatialPoint before = PointAlong(line, -0.1), after = PointAlong(line, 1.2);
    EXPECT_NEAR(before[0], -3, kOnCurve);
    EXPECT_NEAR(before[1], -4, kOnCurve);
    EXPECT_NEAR(after[0], 36, kOnCurve);
    EXPECT_NEAR(after[1], 48, kOnCurve);
    // Down at the start, up at the end of an arch 600 wide.
    const spatialCurve arch{{0, 0}, {0, 400}, {600, 400}, {600, 0}};
    EXPECT_NEAR(PointAlong(arch, -0.1)[0], 0, kOnCurve);
    EXPECT_LT(PointAlong(arch, -0.1)[1], -50);
    EXPECT_NEAR(PointAlong(arch, 1.1)[0], 600, kOnCurve);
    EXPECT_NEAR(PointAlong(arch, 1.1)[1], PointAlong(arch, -0.1)[1], kOnCurve);
}

TEST(SpatialCurve, WithoutLengthStaysWhereItIs)
{
    const spatialPoint point{7, 8, 9};
    for (const double fraction : {-1.0, 0.5, 2.0}) {
        const spatialPoint there = PointAlong({point, point, point, point}, fraction);
        for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(there[k], point[k], kExact);
    }
}

maskPath Triangle(double x, bool closed)
{
    return {
        closed, {{x, 0}, {x + 10, 0}, {x, 10}}, {{x, 1}, {0, 0}, {0, 0}}, {{0, 0}, {0, 2}, {0, 0}}};
}

TEST(PathKeyFrames, MixVerticesAndTangentsAndKeepTheFirstClosedFlag)
{
    pathProperty value;
    value.keys.resize(2);
    value.keys[0].value = Triangle(0, true);
    value.keys[1].t = 4;
    value.keys[1].value = Triangle(8, false);
    const maskPath path = EvaluatePath(value, 1);
    EXPECT_EQ(path, Triangle(2, true));
    EXPECT_EQ(EvaluatePath(value, 4), Triangle(8, false));
}

TEST(PathKeyFrames, OfDifferentCountsHoldTheFirst)
{
    pathProperty value;
    value.keys.resize(2);
    value.keys[0].value = Triangle(0, true);
    value.keys[1].t = 4;
    EXPECT_EQ(EvaluatePath(value, 3.99), Triangle(0, true));
    EXPECT_TRUE(EvaluatePath(value, 4).vertex.empty());
}

}  // namespace
}  // namespace orv::test
