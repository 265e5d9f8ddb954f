#include "geometry/maskSampling.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "geometry/polyline.h"
#include "support/caseName.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
/// Sums of a few dozen doubles below 1000.
constexpr double kRounding = 1e-9;

meshSettings Sized(int width, int height)
{
    meshSettings settings;
    settings.sizes = {.sourceWidth = width, .sourceHeight = height};
    return settings;
}

struct stepCase {
    const char* name;
    int width, height;
    double definition, scaleX, scaleY;
    int steps;
};

class MeshSteps : public testing::TestWithParam<stepCase> {};

TEST_P(MeshSteps, AreOddAndClamped)
{
    const stepCase& c = GetParam();
    meshSettings settings = Sized(c.width, c.height);
    settings.meshDefinitionPercent = c.definition;
    settings.sourceScaleXPercent = c.scaleX;
    settings.sourceScaleY = c.scaleY * 0.01;
    EXPECT_EQ(MeshStepCount(settings), c.steps);
}

const stepCase kSources[] = {{"VgaAtDefault", 640, 480, 25, 100, 100, 161},
                             {"OddStays", 100, 10, 29, 100, 100, 29},
                             {"ExactProductIsNotCutShort", 200, 10, 29, 100, 100, 59},
                             {"TallSourceCountsItsHeight", 100, 484, 25, 100, 100, 121},
                             {"TinyIsRaised", 4, 4, 25, 100, 100, 3},
                             {"TwoBecomesThree", 8, 4, 25, 100, 100, 3},
                             {"LastEvenBelowTheCap", 4096, 16, 100, 100, 100, 4097},
                             {"HugeIsCapped", 30000, 30000, 100, 100, 100, 4097},
                             {"EnlargingAddsNone", 640, 480, 25, 300, 1000, 161},
                             {"ShrinkingRemovesSome", 640, 480, 25, 50, 50, 81},
                             {"MirroredSideCountsNothing", 640, 480, 25, -100, 100, 121},
                             {"NotANumber", 640, 480, kNaN, 100, 100, 3}};
INSTANTIATE_TEST_SUITE_P(Sources, MeshSteps, testing::ValuesIn(kSources), caseName{});

TEST(PlaceEvenly, IsAFractionOfTheSource)
{
    const std::vector<propS> props = PlaceEvenly(4);
    ASSERT_EQ(props.size(), 5u);
    EXPECT_EQ(props[1], (propS{0.25, 0.25, 0}));
    EXPECT_EQ(props[4], (propS{1.0, 1.0, 0}));
}

TEST(PlaceOnSegments, GivesEachSegmentTheSameSamples)
{
    const pathLengths reference = MakePathLengths({10, 20, 30, 40}, true);
    const std::vector<propS> props = PlaceOnSegments(8, reference);
    ASSERT_EQ(props.size(), 9u);
    for (std::size_t s = 0; s < 8; ++s) EXPECT_EQ(props[s].seg, static_cast<int>(s / 2));
    // Sample 3 is the middle of the second segment: 10 + 20/2 of 100.
    EXPECT_EQ(props[3].segFrac, 0.5);
    EXPECT_DOUBLE_EQ(props[3].pathFrac, 0.2);
    EXPECT_EQ(props[8], (propS{1.0, 1.0, 3}));
}

TEST(PlaceOnSegments, WithoutLengthTakesTheTextureEvenly)
{
    const std::vector<propS> props = PlaceOnSegments(4, MakePathLengths({0, 0}, true));
    EXPECT_EQ(props[1], (propS{0.5, 0.25, 0}));
    EXPECT_EQ(props[3], (propS{0.5, 0.75, 1}));
}

TEST(PlaceBySegment, BeyondThePathIsItsEnd)
{
    const pathLengths path = MakePathLengths({30, 70}, true);
    const pathPlace inside = PlaceBySegment({0.5, 0.0, 1}, path);
    EXPECT_DOUBLE_EQ(inside.pathPos, 0.65);
    const pathPlace beyond = PlaceBySegment({0.25, 0.0, 5}, path);
    EXPECT_EQ(beyond.seg, 1);
    EXPECT_EQ(beyond.local, 1.0);
    EXPECT_DOUBLE_EQ(beyond.pathPos, 1.0);
}

/// On a path of segments 100 and 300 with a source of 200 x 80.
struct placeCase {
    const char* name;
    bool open, stretch, relative;
    double start, end, sourceFrac;
    int rotation;
    int seg;
    double local, pathPos;
};

class Placed : public testing::TestWithParam<placeCase> {};

TEST_P(Placed, ByLength)
{
    const placeCase& c = GetParam();
    meshSettings settings = Sized(200, 80);
    settings.stretchAlongPath = c.stretch;
    settings.relativeToSource = c.relative;
    settings.startPointPercent = c.start;
    settings.endPointPercent = c.end;
    settings.rotation = c.rotation;
    const pathLengths path = MakePathLengths({100, 300}, c.open);
    const pathPlace place = PlaceByLength(c.sourceFrac, path, settings);
    EXPECT_EQ(place.seg, c.seg);
    EXPECT_NEAR(place.local, c.local, kRounding);
    EXPECT_NEAR(place.pathPos, c.pathPos, kRounding);
}

const placeCase kRules[] = {
    // 0.5 of 400 is 100 px into the second segment.
    {"Stretched", true, true, true, 0, 100, 0.5, 1, 1, 1.0 / 3, 0.5},
    {"StretchedPart", true, true, true, 10, 30, 0.5, 1, 0, 0.8, 0.2},
    {"OwnLength", true, false, false, 0, 100, 0.4, 1, 0, 0.8, 0.2},
    {"OwnLengthTurned", true, false, false, 0, 100, 0.5, 2, 0, 0.4, 0.1},
    // Half of the source stands on half of the mask.
    {"Relative", true, false, true, 50, 100, 0.5, 1, 1, 1.0 / 3, 0.5},
    {"NotRelative", true, false, false, 50, 100, 0.5, 1, 1, 2.0 / 3, 0.75},
    {"RelativeIsForOpenMasks", false, false, true, 50, 100, 0.5, 1, 1, 2.0 / 3, 0.75},
    // 0.9 + 0.25 wraps to 0.15.
    {"ClosedWraps", false, false, true, 90, 100, 0.5, 1, 0, 0.6, 0.15},
    {"ClosedWrapsBackwards", false, true, true, -10, 100, 0, 1, 1, 26.0 / 30, 0.9},
    {"ClosedEndIsTheStart", false, true, true, 0, 100, 1, 1, 0, 0, 0},
    {"OpenEndStaysTheEnd", true, true, true, 0, 100, 1, 1, 1, 1, 1},
    {"BeforeTheStart", true, true, true, -25, 100, 0, 1, 0, -1, -0.25},
    // Past the end the fraction is the place on the last segment: 1 + 0.25 * 300 / 400.
    {"PastTheEnd", true, true, true, 0, 125, 1, 1, 1, 1.25, 1.1875}};
INSTANTIATE_TEST_SUITE_P(Rules, Placed, testing::ValuesIn(kRules), caseName{});

TEST(PlaceByLength, EmptySegmentsHoldAMillionthOfAPixel)
{
    meshSettings settings = Sized(200, 80);
    settings.stretchAlongPath = true;
    const pathLengths path = MakePathLengths({100, 0, 100}, true);
    EXPECT_EQ(PlaceByLength(0.5, path, settings).seg, 0);
    // 0.2 millionths of a pixel past the first segment.
    const pathPlace within = PlaceByLength(0.5 + 1e-9, path, settings);
    EXPECT_EQ(within.seg, 1);
    EXPECT_NEAR(within.local, 0.2, 1e-4);  // the place is a difference of numbers near 100
    EXPECT_NEAR(within.pathPos, 0.5, kRounding);
    EXPECT_EQ(PlaceByLength(0.6, path, settings).seg, 2);
}

TEST(PlaceByLength, PathWithoutLengthPutsAllOnItsLastSegment)
{
    meshSettings settings = Sized(200, 80);
    settings.startPointPercent = 30.0;
    const pathLengths path = MakePathLengths({0, 0}, true);
    const pathPlace place = PlaceByLength(0.5, path, settings);
    EXPECT_EQ(place.seg, 1);
    EXPECT_DOUBLE_EQ(place.local, 0.3);
    EXPECT_EQ(place.pathPos, 0.0);
}

TEST(PathSample, RunsStraightOnBeyondTheEndsOfAnOpenPath)
{
    const Polyline path({{100, 50}, {200, 50}, {200, 350}}, true);
    meshSettings settings = Sized(40, 10);
    settings.stretchAlongPath = true;
    settings.startPointPercent = -25.0;
    settings.endPointPercent = 125.0;
    const std::vector<pathSample> samples = path.Sample(settings);
    // A quarter of 400 px before the start, to the left; as much after the end, downwards.
    EXPECT_NEAR(samples.front().x, 0.0, kRounding);
    EXPECT_NEAR(samples.front().y, 50.0, kRounding);
    EXPECT_NEAR(samples.front().place.pathPos, -0.25, kRounding);
    EXPECT_NEAR(samples.back().x, 200.0, kRounding);
    EXPECT_NEAR(samples.back().y, 450.0, kRounding);
    EXPECT_NEAR(samples.back().place.pathPos, 1.1875, kRounding);
    // The normal is the tangent turned by a quarter towards y: (-dy, dx).
    EXPECT_EQ(samples.front().normalX, 0.0);
    EXPECT_EQ(samples.front().normalY, 1.0);
    EXPECT_EQ(samples.back().normalX, -1.0);
    EXPECT_EQ(samples.back().normalY, 0.0);
}

TEST(PathSample, OnAClosedPathNeverLeavesIt)
{
    const pathLengths path = MakePathLengths({10, 10}, false);
    const pathSample sample = MakePathSample({0, -5.0, -2.5}, {3, 4, 1, 0}, path);
    EXPECT_EQ(sample.x, 3.0);
    EXPECT_EQ(sample.y, 4.0);
}

TEST(PathSample, WithoutADirectionHasNoNormal)
{
    const pathLengths path = MakePathLengths({10}, true);
    for (const double bad : {0.0, kNaN, kInfinity}) {
        const pathSample sample = MakePathSample({0, 2.0, 2.0}, {kNaN, kInfinity, bad, 0}, path);
        EXPECT_EQ(sample.normalX, 0.0) << bad;
        EXPECT_EQ(sample.normalY, 0.0) << bad;
        EXPECT_EQ(sample.x, 0.0) << bad;
        EXPECT_TRUE(std::isfinite(sample.y)) << bad;
    }
}

TEST(PathLengths, WhatIsNoLengthCountsAsNone)
{
    const pathLengths path = MakePathLengths({kNaN, -5.0, 10.0, kInfinity}, true);
    EXPECT_EQ(path.length[0], 0.0);
    EXPECT_EQ(path.length[1], 0.0);
    EXPECT_EQ(path.through[2], 10.0);
    EXPECT_TRUE(std::isfinite(path.total));
}

}  // namespace
