#include "camera/layerTransform.h"

#include <gtest/gtest.h>

#include <numbers>
#include <vector>

namespace {

/// Floats of a few hundred pixels.
constexpr float kPixelRounding = 1e-4f;

void ExpectPoint(const point3& p, float x, float y, float z)
{
    EXPECT_NEAR(p.x, x, kPixelRounding);
    EXPECT_NEAR(p.y, y, kPixelRounding);
    EXPECT_NEAR(p.z, z, kPixelRounding);
}

/// As the sliders ask for it: the settings hold the negated angle.
double Turn(double degrees)
{
    return -degrees * std::numbers::pi / 180.0;
}

TEST(LayerTransform, LeavesTheMeshAloneByDefault)
{
    const transformSettings transform{.anchor = {960.5f, 540.25f, 7},
                                      .position = {960.5f, 540.25f, 7}};
    std::vector<point3> points{{123.456f, -7.5f, 0.125f}};
    TransformPoints(points, transform);
    EXPECT_EQ(points[0], (point3{123.456f, -7.5f, 0.125f}));
}

TEST(LayerTransform, MovesScalesTurnsAndMoves)
{
    const transformSettings transform{.anchor = {10, 20, 30},
                                      .position = {1000, 2000, 3000},
                                      .scale = {2, 3, -1},
                                      .angleZ = Turn(90)};
    // (11, 22, 33) - anchor = (1, 2, 3), scaled (2, 6, -3), turned (-6, 2, -3).
    std::vector<point3> points{{11, 22, 33}, {10, 20, 30}};
    TransformPoints(points, transform);
    ExpectPoint(points[0], 994, 2002, 2997);
    ExpectPoint(points[1], 1000, 2000, 3000);
}

TEST(LayerTransform, TurnsAsTheHostDoesInItsMirroredSpace)
{
    std::vector<point3> points{{1, 0, 0}};
    TransformPoints(points, {.angleZ = Turn(90)});
    ExpectPoint(points[0], 0, 1, 0);  // right goes down
    points = {{0, 1, 0}};
    TransformPoints(points, {.angleX = Turn(90)});
    ExpectPoint(points[0], 0, 0, -1);  // the lower edge goes away from the viewer
    points = {{1, 0, 0}};
    TransformPoints(points, {.angleY = Turn(90)});
    ExpectPoint(points[0], 0, 0, 1);  // the right edge comes towards the viewer
}

TEST(LayerTransform, TurnsAboutZThenYThenX)
{
    std::vector<point3> points{{1, 0, 0}};
    // z: (0, 1, 0); y leaves it; x: (0, 0, -1).
    TransformPoints(points, {.angleX = Turn(90), .angleY = Turn(90), .angleZ = Turn(90)});
    ExpectPoint(points[0], 0, 0, -1);
}

TEST(LayerTransform, NormalsOnlyTurn)
{
    std::vector<point3> normals{{0, 0, 1}, {0, 0.5f, 0}};
    TransformNormals(
        normals,
        {.anchor = {5, 5, 5}, .position = {9, 9, 9}, .scale = {-1, -1, -1}, .angleX = Turn(90)});
    ExpectPoint(normals[0], 0, 1, 0);
    ExpectPoint(normals[1], 0, 0, -0.5f);
}

}  // namespace
