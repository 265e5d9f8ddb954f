#include "geometry/ribbon.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "geometry/maskSampling.h"
#include "geometry/polyline.h"
#include "geometry/shapeLayout.h"
#include "geometry/textureEdges.h"
#include "support/caseName.h"

namespace {

constexpr double kPi = std::numbers::pi;
/// Floats of a few hundred pixels.
constexpr float kPixelRounding = 1e-4f;

void ExpectPoint(const point3& p, float x, float y, float z, const char* what)
{
    EXPECT_NEAR(p.x, x, kPixelRounding) << what;
    EXPECT_NEAR(p.y, y, kPixelRounding) << what;
    EXPECT_NEAR(p.z, z, kPixelRounding) << what;
}

/// A source of 200 x 80, stretched in 5 steps along a mask from (0, 100) to (500, 100).
meshSettings FiveSteps()
{
    meshSettings settings;
    settings.sizes = {.sourceWidth = 200, .sourceHeight = 80, .viewWidth = 600, .viewHeight = 300};
    settings.meshDefinitionPercent = 2.5;
    settings.stretchAlongPath = true;
    return settings;
}

const Polyline& StraightMask()
{
    static const Polyline mask({{0, 100}, {500, 100}}, true);
    return mask;
}

ribbonSamples Lay(const Polyline& mask, const meshSettings& settings, bool onCurve = false)
{
    maskReadings readings = ReadingsOf(mask, settings);
    textureEdges edges = SourceEdges(readings.props, settings);
    return LayRibbon(readings.props, edges, readings.mask, onCurve, settings);
}

/// Signed half width at each sample of a ribbon on the straight mask: positive when A is above.
std::vector<float> HalfWidths(const ribbonSamples& ribbon)
{
    std::vector<float> widths;
    for (std::size_t s = 0; s < ribbon.posA.size(); ++s) {
        widths.push_back((ribbon.posB[s].y - ribbon.posA[s].y) / 2);
    }
    return widths;
}

struct edgeCase {
    const char* name;
    int rotation;
    point3 a, b;
};

class TextureEdges : public testing::TestWithParam<edgeCase> {};

TEST_P(TextureEdges, TurnWithTheSource)
{
    meshSettings settings = FiveSteps();
    settings.rotation = GetParam().rotation;
    const propS quarter{0.0, 0.25, 0};
    const textureEdges edges = SourceEdges(std::span(&quarter, 1), settings);
    EXPECT_EQ(edges.a[0], GetParam().a);
    EXPECT_EQ(edges.b[0], GetParam().b);
}

const edgeCase kRotations[] = {{"Upright", 1, {50, 0, 1}, {50, 80, 1}},
                               {"Quarter", 2, {0, 60, 1}, {200, 60, 1}},
                               {"Half", 3, {150, 80, 1}, {150, 0, 1}},
                               {"ThreeQuarters", 4, {200, 20, 1}, {0, 20, 1}}};
INSTANTIATE_TEST_SUITE_P(Rotations, TextureEdges, testing::ValuesIn(kRotations), caseName{});

TEST(TextureEdges, RunBesideACurve)
{
    meshSettings settings = FiveSteps();
    settings.sourceRadius = 0.5;
    // Down the layer: the tangent is (0, 1), the normal (-1, 0). Half of half of 80 is 20 px.
    const pathSample sample{30, 40, -1, 0, {0, 0.75, 0.5}};
    const textureEdges edges = CurveEdges(std::span(&sample, 1), settings);
    EXPECT_EQ(edges.a[0], (point3{50, 40, 0.75f}));
    EXPECT_EQ(edges.b[0], (point3{10, 40, 0.75f}));
}

TEST(Ribbon, LiesFlatAlongTheMaskByDefault)
{
    const ribbonSamples ribbon = Lay(StraightMask(), FiveSteps());
    ASSERT_EQ(ribbon.posA.size(), 6u);
    for (std::size_t s = 0; s < 6; ++s) {
        const float x = 100.0f * static_cast<float>(s);
        ExpectPoint(ribbon.posA[s], x, 60, 0, "edge A, above the mask");
        ExpectPoint(ribbon.posB[s], x, 140, 0, "edge B");
        ExpectPoint(ribbon.normal[s], 0, 0, 1, "normal towards the viewer");
        EXPECT_FLOAT_EQ(ribbon.texA[s].z, 0.2f * static_cast<float>(s));
        EXPECT_FLOAT_EQ(ribbon.texB[s].x, 40.0f * static_cast<float>(s));
    }
}

struct widthCase {
    const char* name;
    int rotation, denX, denY;
    double scaleY, radius;
    bool onCurve;
    float halfWidth;
};

class RibbonWidth : public testing::TestWithParam<widthCase> {};

TEST_P(RibbonWidth, FollowsTheSide)
{
    const widthCase& c = GetParam();
    meshSettings settings = FiveSteps();
    settings.rotation = c.rotation;
    settings.sizes.denX = c.denX;
    settings.sizes.denY = c.denY;
    settings.sourceScaleY = c.scaleY;
    settings.sourceRadius = c.radius;
    const ribbonSamples ribbon = Lay(StraightMask(), settings, c.onCurve);
    EXPECT_FLOAT_EQ(HalfWidths(ribbon)[2], c.halfWidth);
    EXPECT_FLOAT_EQ((ribbon.posA[2].y + ribbon.posB[2].y) / 2, 100.0f * static_cast<float>(c.denY));
}

const widthCase kSides[] = {{"HalfTheHeight", 1, 1, 1, 1.0, 1.0, false, 40},
                            {"HalfTheWidthWhenTurned", 2, 1, 1, 1.0, 1.0, false, 100},
                            {"Scaled", 3, 1, 1, 0.25, 1.0, false, 10},
                            {"ColumnsDivisorUpright", 1, 2, 3, 1.0, 1.0, false, 80},
                            {"RowsDivisorTurned", 4, 2, 3, 1.0, 1.0, false, 300},
                            {"RadiusOnACurve", 1, 1, 1, 1.0, 0.5, true, 20},
                            {"RadiusWithoutACurve", 1, 1, 1, 1.0, 0.5, false, 40}};
INSTANTIATE_TEST_SUITE_P(Sides, RibbonWidth, testing::ValuesIn(kSides), caseName{});

TEST(RibbonScale, EasesToTheMiddleAndOn)
{
    meshSettings settings = FiveSteps();
    settings.meshDefinitionPercent = 1.5;  // 3 steps: samples at 0, 1/3, 2/3, 1
    settings.scaleStart = 0.0;
    settings.scaleEnd = 2.0;
    // At 1/3: (1 - cos 120 degrees) / 2 = 0.75 of the way from 0 to 1. At 2/3: 0.25 from 1 to 2.
    const std::vector<float> widths = HalfWidths(Lay(StraightMask(), settings));
    EXPECT_NEAR(widths[0], 0.0f, kPixelRounding);
    EXPECT_NEAR(widths[1], 30.0f, kPixelRounding);
    EXPECT_NEAR(widths[2], 50.0f, kPixelRounding);
    EXPECT_NEAR(widths[3], 80.0f, kPixelRounding);
}

TEST(RibbonScale, AlongTheMaskFollowsThePathPosition)
{
    meshSettings settings = FiveSteps();
    settings.meshDefinitionPercent = 1.5;
    settings.endPointPercent = 50.0;  // the samples lie at 0, 1/6, 1/3, 1/2 of the mask
    settings.scaleMaskStart = 0.5;
    const std::vector<float> widths = HalfWidths(Lay(StraightMask(), settings));
    // At 1/6: (1 - cos 60 degrees) / 2 = 0.25 of the way from 0.5 to 1.
    EXPECT_NEAR(widths[0], 20.0f, kPixelRounding);
    EXPECT_NEAR(widths[1], 25.0f, kPixelRounding);
    EXPECT_NEAR(widths[3], 40.0f, kPixelRounding);
}

struct twistCase {
    const char* name;
    double source, mask;  ///< degrees, at start and end alike
    point3 a, normal;     ///< at the mask point (200, 100)
};

class RibbonTwist : public testing::TestWithParam<twistCase> {};

TEST_P(RibbonTwist, TurnsTheCrossSection)
{
    const twistCase& c = GetParam();
    meshSettings settings = FiveSteps();
    settings.twistStart = settings.twistEnd = c.source * kPi / 180.0;
    settings.twistMaskStart = settings.twistMaskEnd = c.mask * kPi / 180.0;
    const ribbonSamples ribbon = Lay(StraightMask(), settings);
    ExpectPoint(ribbon.posA[2], c.a.x, c.a.y, c.a.z, "edge A");
    ExpectPoint(ribbon.posB[2], 400 - c.a.x, 200 - c.a.y, -c.a.z, "edge B mirrors it");
    ExpectPoint(ribbon.normal[2], c.normal.x, c.normal.y, c.normal.z, "normal");
}

// Half width 40. At 60 degrees: 40 cos 60 = 20 across, 40 sin 60 up; the normal leans by 150
// degrees, (-n cos 150, sin 150) with n = (0, 1).
const twistCase kAngles[] = {
    {"Flat", 0, 0, {200, 60, 0}, {0, 0, 1}},
    {"Sixty", 60, 0, {200, 80, 34.641016f}, {0, 0.8660254f, 0.5f}},
    {"EdgeOnHasNoNormal", 90, 0, {200, 100, 40}, {0, 0, 0}},
    {"OtherEdgeOn", 0, -90, {200, 100, -40}, {0, 0, 0}},
    {"Upside", 180, 0, {200, 140, 0}, {0, 0, -1}},
    {"BothAdd", 100, -40, {200, 80, 34.641016f}, {0, 0.8660254f, 0.5f}},
    {"FullTurnsVanish", 720, -1080, {200, 60, 0}, {0, 0, 1}},
    {"PastHalfATurn", 200, 100, {200, 80, -34.641016f}, {0, -0.8660254f, 0.5f}}};
INSTANTIATE_TEST_SUITE_P(Angles, RibbonTwist, testing::ValuesIn(kAngles), caseName{});

TEST(RibbonVertices, BlendScaleAndZBetweenTheTwoOfASegment)
{
    const Polyline mask({{0, 100}, {400, 100}, {400, 500}}, true);
    meshSettings settings = FiveSteps();
    settings.vertsMatch = true;
    settings.meshDefinitionPercent = 1.5;  // samples at 0, 2/3 of segment 1, 1/3 of 2, its end
    settings.vertexZ[0] = 30;
    settings.vertexZ[1] = 60;
    settings.vertexZ[2] = 120;
    settings.vertexScale[1] = 0.25;
    settings.smoothZ = false;
    settings.smoothScale = true;
    const ribbonSamples ribbon = Lay(mask, settings);
    EXPECT_NEAR(ribbon.z[0], 30.0, 1e-9);
    EXPECT_NEAR(ribbon.z[1], 50.0, 1e-9);
    EXPECT_NEAR(ribbon.z[2], 80.0, 1e-9);
    EXPECT_NEAR(ribbon.z[3], 120.0, 1e-9);
    EXPECT_FLOAT_EQ(ribbon.posA[1].z, -50.0f);
    EXPECT_FLOAT_EQ(ribbon.posB[1].z, -50.0f);
    // Smooth at 2/3: (1 - cos 120 degrees) / 2 = 0.75 from 1 to 0.25, so 40 * 0.4375.
    EXPECT_NEAR(HalfWidths(ribbon)[1], 17.5f, kPixelRounding);
}

TEST(RibbonVertices, ClosingSegmentRunsToTheNextNumber)
{
    const Polyline square({{0, 0}, {100, 0}, {100, 100}, {0, 100}}, false);
    meshSettings settings = FiveSteps();
    settings.vertsMatch = true;
    settings.smoothZ = false;
    settings.vertexZ[3] = 10;
    settings.vertexZ[4] = 20;
    // 5 steps over 4 segments: sample 4 is 0.2 into the last one.
    EXPECT_NEAR(Lay(square, settings).z[4], 12.0, 1e-9);
    EXPECT_NEAR(Lay(square, settings).z[5], 20.0, 1e-9);
}

TEST(RibbonVertices, NumbersAboveTheLastReuseIt)
{
    std::vector<vertex2> vertices;
    for (int i = 0; i <= 150; ++i) vertices.push_back({10.0 * i, 0.0});
    meshSettings settings = FiveSteps();
    settings.vertexZ[98] = 1;
    settings.vertexZ[99] = 2;
    const ribbonSamples ribbon = Lay(Polyline(vertices, true), settings);
    EXPECT_EQ(ribbon.z[5], 2.0);  // vertex 151
    EXPECT_EQ(ribbon.z[0], 0.0);
}

TEST(StraightenEnds, RunsOnFromBothFixedSamples)
{
    const Polyline corner({{0, 0}, {300, 0}, {300, 200}}, true);
    meshSettings settings = FiveSteps();
    settings.undistortedStart = 0.6;  // sample 3, at the corner's own place (300, 0)
    settings.undistortedEnd = 0.9;    // sample 4
    ribbonSamples ribbon = Lay(corner, settings);
    const ribbonSamples before = ribbon;
    StraightenEnds(ribbon, settings);
    EXPECT_EQ(ribbon.posA[3], before.posA[3]);
    EXPECT_EQ(ribbon.posB[4], before.posB[4]);
    // From (300, 0) to (300, 100) the ribbon goes down, so it came from above.
    for (int s = 0; s < 3; ++s) {
        const auto at = static_cast<std::size_t>(s);
        const auto away = static_cast<float>(3 - s);
        ExpectPoint(ribbon.posA[at], before.posA[3].x, before.posA[3].y - 100 * away, 0, "start");
        EXPECT_EQ(ribbon.normal[at], before.normal[3]);
    }
    ExpectPoint(ribbon.posB[5], before.posB[4].x, before.posB[4].y + 100, 0, "end");
    EXPECT_EQ(ribbon.texA, before.texA);
    EXPECT_EQ(ribbon.pathPos, before.pathPos);
}

struct straightCase {
    const char* name;
    double start, end;
    int first, last;  ///< samples that stay where they are
};

class Straightened : public testing::TestWithParam<straightCase> {};

TEST_P(Straightened, KeepsTheSamplesBetween)
{
    // A polygon that turns at every sample, so that a straightened one always moves.
    const Polyline zigzag({{0, 0}, {100, 70}, {200, 0}, {300, 70}, {400, 0}, {500, 70}}, true);
    meshSettings settings = FiveSteps();
    settings.vertsMatch = true;
    settings.undistortedStart = GetParam().start;
    settings.undistortedEnd = GetParam().end;
    ribbonSamples ribbon = Lay(zigzag, settings);
    const ribbonSamples before = ribbon;
    StraightenEnds(ribbon, settings);
    for (int s = 0; s <= 5; ++s) {
        const auto at = static_cast<std::size_t>(s);
        const bool kept = s >= GetParam().first && s <= GetParam().last;
        EXPECT_EQ(ribbon.posA[at] == before.posA[at], kept) << "sample " << s;
    }
}

// 5 steps; a kept pair of samples gives the direction, so at least two stay.
const straightCase kLimits[] = {{"NothingAsked", 0.0, 1.0, 0, 5},
                                {"LessThanOneStep", 0.19, 1.0, 0, 5},
                                {"All", 1.0, 1.0, 4, 5},
                                {"NothingLeft", 0.0, 0.0, 0, 1},
                                {"Crossed", 0.8, 0.2, 4, 5}};
INSTANTIATE_TEST_SUITE_P(Limits, Straightened, testing::ValuesIn(kLimits), caseName{});

TEST(FlatMode, LiesInTheMiddleOfTheView)
{
    meshSettings settings = FiveSteps();
    settings.sizes.denX = 2;
    settings.sizes.denY = 3;
    settings.sourceScaleXPercent = 50.0;
    settings.meshDefinitionPercent = 5.0;
    settings.transform.position = {7, 0, 0};
    maskReadings readings;
    readings.props = PlaceEvenly(MeshStepCount(settings));
    const frameShape shape = LayShape(readings, settings);
    EXPECT_TRUE(shape.flat);
    EXPECT_TRUE(shape.ribbon.normal.empty());
    // Left border (600 - 200 * 0.5) / 2 = 250, top (300 - 80) / 2 = 110; texels keep their size.
    ExpectPoint(shape.ribbon.posA[0], 2 * 250 + 7, 3 * 110, 0, "first A");
    ExpectPoint(shape.ribbon.posB.back(), 2 * 450 + 7, 3 * 190, 0, "last B");
    EXPECT_EQ(shape.ribbon.texA[0].z, 1.0f);
}

TEST(FlatMode, StraightensAndReadsAlongItsOwnCurve)
{
    meshSettings settings = FiveSteps();
    settings.undistortedStart = 0.4;
    const Polyline curve({{0, 40}, {100, 40}, {100, 140}}, true);
    maskReadings readings;
    readings.props = PlaceEvenly(5);
    readings.source = curve.Sample(settings);
    const frameShape shape = LayShape(readings, settings);
    // Sample 2 lies at 80 of 200, the curve's band is 40 wide on either side: y 0 to 80, and the
    // view puts it 200 px right and 110 down. Sample 3 is at (100, 60), its band runs across x.
    ExpectPoint(shape.ribbon.posA[2], 280, 110, 0, "kept");
    ExpectPoint(shape.ribbon.posB[2], 280, 190, 0, "kept");
    // Strides of the middle: from (300, 170) back to (280, 150).
    ExpectPoint(shape.ribbon.posA[0], 280 - 40, 110 - 40, 0, "straightened");
    EXPECT_FLOAT_EQ(shape.ribbon.texA[1].z, 0.4f);  // inside the curve's first segment
}

TEST(ShapeLayout, TransformsAfterStraightening)
{
    meshSettings settings = FiveSteps();
    settings.undistortedStart = 0.4;
    settings.transform.anchor = {200, 100, 0};
    settings.transform.position = {10, 20, 30};
    settings.transform.scale = {2, 1, 1};
    settings.transform.angleZ = -kPi / 2;  // a quarter turn: right becomes down
    const frameShape shape = LayShape(ReadingsOf(StraightMask(), settings), settings);
    // (0, 60) from the anchor: (-200, -40), scaled (-400, -40), turned (40, -400).
    ExpectPoint(shape.ribbon.posA[0], 50, -380, 30, "moved");
    ExpectPoint(shape.ribbon.normal[0], 0, 0, 1, "normals only turn");
}

TEST(ShapeLayout, GivesOnlyFiniteNumbers)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr float kHuge = std::numeric_limits<float>::max();
    meshSettings settings = FiveSteps();
    settings.vertexZ[0] = std::numeric_limits<float>::quiet_NaN();
    settings.vertexZ[1] = kHuge;
    settings.vertexScale[1] = kInfinity;
    settings.scaleMaskEnd = 1e300;
    settings.undistortedEnd = 0.5;
    settings.transform.scale = {kHuge, 1, 1};
    settings.transform.angleX = kInfinity;
    maskReadings readings =
        ReadingsOf(Polyline({{0, 1e300}, {kInfinity, 0}, {3, 4}}, true), settings);
    readings.outline = {{0.5f, 0.5f, 0.5f}, {1, 0, 1}};
    const frameShape shape = LayShape(readings, settings);
    // A NaN differs from itself.
    EXPECT_EQ(shape, shape);
    for (const point3& p : shape.ribbon.posA) {
        EXPECT_LE(std::abs(p.x), 1e9f);
        EXPECT_LE(std::abs(p.z), 1e9f);
    }
}

}  // namespace
