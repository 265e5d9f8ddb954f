// Matrices, cameras and times, with values worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "animation/evaluate.h"
#include "animation/rotation.h"
#include "animation/ticks.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

constexpr double kTolerance = 1e-9;  // sines and products of a few matrices, values below 10^4

property Constant(std::vector<double> value)
{
    return {std::move(value), {}};
}

property Moving(double t0, std::vector<double> from, double t1, std::vector<double> to)
{
    property value;
    value.keys.resize(2);
    value.keys[0].t = t0;
    value.keys[0].value = std::move(from);
    value.keys[1].t = t1;
    value.keys[1].value = std::move(to);
    return value;
}

void ExpectPoint(const vec3& actual, const vec3& expected)
{
    EXPECT_NEAR(actual.x, expected.x, kTolerance);
    EXPECT_NEAR(actual.y, expected.y, kTolerance);
    EXPECT_NEAR(actual.z, expected.z, kTolerance);
}

vec3 Row(const matrix4& matrix, std::size_t row)
{
    return {matrix.m[row][0], matrix.m[row][1], matrix.m[row][2]};
}

layer LayerOf(layerType type, bool threeD = false)
{
    layer l;
    l.type = type;
    l.threeD = threeD;
    l.op = 100;
    return l;
}

composition CompositionOf(std::vector<layer> layers)
{
    composition comp;
    comp.layers = std::move(layers);
    for (std::size_t k = 0; k < comp.layers.size(); ++k) comp.layers[k].index = static_cast<int>(k);
    return comp;
}

TEST(Matrices, InverseUndoesAndRefusesFlatOnes)
{
    matrix4 m = RotationZYX({20, -35, 110});
    m.m[0][0] *= 3;
    m.m[3] = {5, -6, 700, 1};
    const auto inverse = Inverse(m);
    ASSERT_TRUE(inverse);
    ExpectPoint(TransformPoint(TransformPoint({1, 2, 3}, m), *inverse), {1, 2, 3});
    m.m[1] = {0, 0, 0, 0};
    EXPECT_FALSE(Inverse(m));
}

TEST(Rotations, TurnAsTheyAreDefined)
{
    // The images of the axes under a quarter turn, exactly.
    EXPECT_EQ(Row(RotationZ(90), 0), (vec3{0, 1, 0}));    // x to y: clockwise on the screen
    EXPECT_EQ(Row(RotationY(90), 0), (vec3{0, 0, -1}));   // x towards the viewer
    EXPECT_EQ(Row(RotationX(-270), 1), (vec3{0, 0, 1}));  // y into the screen
    // z first, then y, then x: x turns to y by the first, stays by the second, to z by the third.
    EXPECT_EQ(Row(RotationZYX({90, 90, 90}), 0), (vec3{0, 0, 1}));
}

struct mixCase {
    const char* name;
    vec3 from, to;
    double fraction;
    vec3 expected;
};
class MixedOrientation : public testing::TestWithParam<mixCase> {};

TEST_P(MixedOrientation, IsTheExpectedRotation)
{
    const mixCase& c = GetParam();
    const matrix4 actual = RotationZYX(MixOrientations(c.from, c.to, c.fraction));
    const matrix4 expected = RotationZYX(c.expected);
    for (std::size_t row = 0; row < 3; ++row) ExpectPoint(Row(actual, row), Row(expected, row));
}

const mixCase kArcs[] = {{"AboutOneAxis", {0, 0, 10}, {0, 0, 50}, 0.25, {0, 0, 20}},
                         // 350 to 10 goes through 0, not through 180.
                         {"ShorterArc", {350, 0, 0}, {10, 0, 0}, 0.5, {0, 0, 0}},
                         {"BeyondTheEnd", {0, 20, 0}, {0, 40, 0}, 1.5, {0, 50, 0}},
                         {"BeforeTheStart", {0, 20, 0}, {0, 40, 0}, -0.5, {0, 10, 0}},
                         {"ThroughAStraightUpView", {0, 80, 0}, {0, 100, 0}, 0.5, {0, 90, 0}},
                         {"SameRotation", {0, 0, 360}, {0, 0, 0}, 0.5, {0, 0, 0}},
                         {"EndAsWritten", {90, 0, 0}, {0, 0, 450}, 1.0, {0, 0, 450}}};
INSTANTIATE_TEST_SUITE_P(Arcs, MixedOrientation, testing::ValuesIn(kArcs), caseName{});

TEST(MixedOrientations, TurnAtAnEvenRateAboutAFixedAxis)
{
    // Between two rotations a and b the rotation from a to the mix grows in proportion to the
    // fraction: its angle is read off the trace (1 + 2 cos) of inverse(a) * mix.
    const vec3 a{30, -50, 70}, b{-100, 40, 10};
    const auto angle = [&](double fraction) {
        const matrix4 turn =
            *Inverse(RotationZYX(a)) * RotationZYX(MixOrientations(a, b, fraction));
        return std::acos((turn.m[0][0] + turn.m[1][1] + turn.m[2][2] - 1) / 2);
    };
    const double whole = angle(1.0);
    for (const double f : {0.125, 0.5, 0.875}) EXPECT_NEAR(angle(f), f * whole, kTolerance);
}

TEST(LayerMatrix, OfAFlatLayerAnchorsScalesTurnsAndPlaces)
{
    layer l = LayerOf(layerType::solid);
    l.transform.anchor = Constant({10, 20, 99});
    l.transform.scale = Constant({200, 50, 7});
    l.transform.rotation = Constant({90});
    l.transform.position = Constant({300, 400, 99});
    l.transform.rotationX = Constant({45});
    const matrix4 m = LayerMatrix(l, 0);
    // (11, 22): from the anchor (1, 2), scaled (2, 1), a quarter turn clockwise (-1, 2).
    ExpectPoint(TransformPoint({11, 22, 0}, m), {299, 402, 0});
    EXPECT_EQ(Row(m, 2), (vec3{0, 0, 1}));
}

TEST(LayerMatrix, OfASpatialLayerTurnsByRotationsThenOrientation)
{
    layer l = LayerOf(layerType::solid, true);
    l.transform.anchor = Constant({1, 0, 0});
    l.transform.scale = Constant({100, 100, 300});
    l.transform.rotation = Constant({90});
    l.transform.orientation = Constant({0, 90, 0});
    l.transform.split = true;
    l.transform.positionX = Constant({5});
    l.transform.positionZ = Moving(0, {0}, 10, {20});
    // (2, 3, 4) - anchor = (1, 3, 4), scaled (1, 3, 12), Rz(90): (-3, 1, 12), then Ry(90):
    // x' = x c + z s = 12, z' = -x s + z c = 3; at t = 5 z is moved by 10.
    ExpectPoint(TransformPoint({2, 3, 4}, LayerMatrix(l, 5)), {17, 1, 13});
}

TEST(WorldMatrix, MultipliesTheParentsAtTheSameTime)
{
    layer grandparent = LayerOf(layerType::null), parent = grandparent, child = grandparent;
    grandparent.transform.position = Moving(0, {0, 0}, 10, {100, 0});
    grandparent.transform.opacity = Constant({0});
    grandparent.hidden = true;
    parent.transform.rotation = Constant({90});
    parent.parent = 0;
    child.transform.position = Constant({7, 0});
    child.parent = 1;
    const composition comp = CompositionOf({grandparent, parent, child});
    // The child's origin: (7, 0), turned (0, 7), moved by 50.
    ExpectPoint(TransformPoint({}, WorldMatrix(comp, comp.layers[2], 5)), {50, 7, 0});
    EXPECT_EQ(Opacity(comp.layers[2], 5), 1.0);
}

layer Camera(std::vector<double> position, double zoom)
{
    layer l = LayerOf(layerType::camera);
    l.transform.position = Constant(std::move(position));
    l.camera.zoom = Constant({zoom});
    return l;
}

TEST(Cameras, OfOneNodeLookAlongZ)
{
    const composition comp = CompositionOf({Camera({10, 20, -300}, 500)});
    const cameraView view = ViewAt(comp, 100, 50, 0);
    matrix4 expected;
    expected.m[3] = {10, 20, -300, 1};
    EXPECT_EQ(view.world, expected);
    EXPECT_EQ(view.zoom, 500);
}

TEST(Cameras, OfTwoNodesLookAtTheirPointOfInterest)
{
    layer camera = Camera({100, 100, -100}, 500);
    camera.transform.anchorGiven = true;
    // Down and to the left and into the screen: d = (-2, 1, 2) / 3.
    camera.transform.anchor = Constant({-100, 200, 100});
    const composition comp = CompositionOf({camera});
    const matrix4 world = WorldMatrix(comp, comp.layers[0], 0);
    ExpectPoint(Row(world, 2), {-2.0 / 3, 1.0 / 3, 2.0 / 3});
    // Row 0 stays level: it is (cos psi, 0, -sin psi) with tan psi = -1.
    ExpectPoint(Row(world, 0), {std::sqrt(0.5), 0, std::sqrt(0.5)});
    // Row 1 completes the right-handed frame (row 2 x row 0) and points down.
    ExpectPoint(Row(world, 1), {std::sqrt(0.5) / 3, 4 * std::sqrt(0.5) / 3, -std::sqrt(0.5) / 3});
    // On that line of sight, 3 away from the camera, the point is seen at the centre.
    ExpectPoint(TransformPoint({98, 101, -98}, *Inverse(world)), {0, 0, 3});
}

TEST(Cameras, RollAboutTheirLineOfSight)
{
    layer camera = Camera({0, 0, 0}, 500);
    camera.transform.anchorGiven = true;
    camera.transform.anchor = Constant({50, 0, 0});  // to the right: L = Ry(90)
    camera.transform.rotation = Constant({90});
    const composition comp = CompositionOf({camera});
    const matrix4 world = WorldMatrix(comp, comp.layers[0], 0);
    // Rz(90) sends x to y and y to -x; Ry(90) leaves y and sends -x to z.
    ExpectPoint(Row(world, 0), {0, 1, 0});
    ExpectPoint(Row(world, 1), {0, 0, 1});
    ExpectPoint(Row(world, 2), {1, 0, 0});
}

TEST(Cameras, UnderAScaledParentKeepUnitAxesButMove)
{
    layer parent = LayerOf(layerType::null, true);
    parent.transform.scale = Constant({200, 300, 0});
    parent.transform.rotationY = Constant({90});
    layer camera = Camera({5, 10, 30}, 500);
    camera.parent = 0;
    const composition comp = CompositionOf({parent, camera});
    const matrix4 world = WorldMatrix(comp, comp.layers[1], 0);
    // Scaled (10, 30, 0), then Ry(90): x to -z.
    ExpectPoint(Row(world, 3), {0, 30, -10});
    ExpectPoint(Row(world, 0), {0, 0, -1});
    ExpectPoint(Row(world, 1), {0, 1, 0});
    ExpectPoint(Row(world, 2), {0, 0, 0});
}

TEST(Cameras, WithTheirPointOfInterestOnThemselvesDoNotTurn)
{
    layer camera = Camera({5, 5, 5}, 500);
    camera.transform.anchorGiven = true;
    camera.transform.anchor = Constant({5, 5, 5});
    const composition comp = CompositionOf({camera});
    EXPECT_EQ(Row(WorldMatrix(comp, comp.layers[0], 0), 2), (vec3{0, 0, 1}));
}

TEST(Cameras, TheFirstThatIsOnAndShowsIsActive)
{
    layer hidden = Camera({}, 1), late = Camera({}, 2), third = Camera({}, 3);
    hidden.hidden = true;
    late.ip = 10;
    const composition comp = CompositionOf({LayerOf(layerType::null), hidden, late, third});
    EXPECT_EQ(ActiveCamera(comp, 9), &comp.layers[3]);
    EXPECT_EQ(ActiveCamera(comp, 10), &comp.layers[2]);
    EXPECT_EQ(ActiveCamera(comp, 100), nullptr);
    // 720 * 50 / 36 = 1000
    const cameraView standard = ViewAt(comp, 720, 405, 100);
    ExpectPoint(Row(standard.world, 3), {360, 202.5, -1000});
    EXPECT_EQ(standard.zoom, 1000);
}

TEST(Lights, OnlySpotAndParallelOnesLookAtAPoint)
{
    layer light = LayerOf(layerType::light);
    light.transform.anchorGiven = true;
    light.transform.anchor = Constant({100, 0, 0});
    for (const lightType type : {lightType::spot, lightType::parallel}) {
        light.light.type = type;
        ExpectPoint(Row(LayerMatrix(light, 0), 2), {1, 0, 0});
    }
    for (const lightType type : {lightType::point, lightType::ambient}) {
        light.light.type = type;
        ExpectPoint(Row(LayerMatrix(light, 0), 2), {0, 0, 1});
    }
}

TEST(LayerTimes, FollowStartStretchAndRemapping)
{
    layer l = LayerOf(layerType::precomposition);
    l.start = 10;
    l.stretch = -2;
    EXPECT_EQ(LayerTime(l, 16), -3);
    EXPECT_EQ(CompositionTime(l, -3), 16);
    EXPECT_EQ(PrecompositionTime(l, 16, 25), -3);
    l.timeRemap = Moving(0, {0}, 20, {4});
    EXPECT_EQ(PrecompositionTime(l, 5, 25), 25) << "a second at 25 frames";
}

TEST(LayerTimes, AllowForExportersRounding)
{
    layer l = LayerOf(layerType::solid);
    l.ip = 5.0000011811942;
    l.op = 29.0000011811942;
    EXPECT_TRUE(Shows(l, 5));
    EXPECT_FALSE(Shows(l, 4.99));
    EXPECT_TRUE(Shows(l, 28.9));
    EXPECT_FALSE(Shows(l, 29));
}

struct tickCase {
    const char* name;
    double frameRate;
    tickRate ticks;
};
class Ticks : public testing::TestWithParam<tickCase> {};

TEST_P(Ticks, OfAFrameAndASecond)
{
    EXPECT_EQ(TickRateOf(GetParam().frameRate), GetParam().ticks);
}

const tickCase kRates[] = {
    {"Pal", 25, {512, 12800}},           {"NearlyWhole", 29.99995, {512, 15360}},
    {"Ntsc", 29.97, {1001, 30000}},      {"NtscExact", 30000.0 / 1001, {1001, 30000}},
    {"NtscFilm", 23.976, {1001, 24000}}, {"NtscDouble", 59.94, {1001, 60000}},
    {"Odd", 30.5, {1000, 30500}},        {"Slow", 0.0001, {1000, 1}}};
INSTANTIATE_TEST_SUITE_P(Rates, Ticks, testing::ValuesIn(kRates), caseName{});

TEST(Ticks, RoundToTheNearestAndKeepTheCommandsExactInstant)
{
    EXPECT_EQ(ToTicks(1.5, 1001), 1502) << "1501.5 goes away from 0";
    EXPECT_EQ(ToTicks(-0.25, 512), -128);
    EXPECT_EQ(ToTicks(1e9, 512), std::numeric_limits<std::int32_t>::max());
    const double instant = 7.0003;
    EXPECT_EQ(FromTicks(ToTicks(instant, 512), 512, instant), instant);
    EXPECT_EQ(FromTicks(3585, 512, instant), 3585.0 / 512);
}

}  // namespace
}  // namespace orv::test
