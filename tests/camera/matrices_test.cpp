#include "camera/matrices.h"
#include "support/caseName.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace {

constexpr double kQuarter = std::numbers::pi / 2;
/// Products of sines and cosines.
constexpr double kRounding = 1e-12;

struct turnCase {
    const char* name;
    double a1, a2, a3;
    double from[3], to[3];
};

class Rotation : public testing::TestWithParam<turnCase> {};

TEST_P(Rotation, TurnsRowVectors)
{
    const turnCase& c = GetParam();
    A_Matrix4 m = IdentityMatrix4();
    RotateMatrix4(&m, c.a1, c.a2, c.a3);
    for (int column = 0; column < 3; ++column) {
        double turned = 0.0;
        for (int row = 0; row < 3; ++row) turned += c.from[row] * m.mat[row][column];
        EXPECT_NEAR(turned, c.to[column], kRounding) << "column " << column;
    }
}

// About x and y by plus the angle, about z by minus it; z first, then y, then x.
const turnCase kAxes[] = {{"AboutX", kQuarter, 0, 0, {0, 1, 0}, {0, 0, 1}},
                          {"AboutY", 0, kQuarter, 0, {0, 0, 1}, {1, 0, 0}},
                          {"AboutZ", 0, 0, kQuarter, {1, 0, 0}, {0, -1, 0}},
                          {"ZBeforeX", kQuarter, 0, kQuarter, {1, 0, 0}, {0, 0, -1}},
                          {"ZBeforeY", 0, kQuarter, kQuarter, {0, 1, 0}, {0, 0, -1}},
                          {"YBeforeX", kQuarter, kQuarter, 0, {1, 0, 0}, {0, 1, 0}}};
INSTANTIATE_TEST_SUITE_P(Axes, Rotation, testing::ValuesIn(kAxes), caseName{});

TEST(RotateMatrix4, ComesAfterWhatTheMatrixDid)
{
    A_Matrix4 m = IdentityMatrix4();
    m.mat[3][0] = 5.0;  // moved to (5, 0, 0), then turned to (0, -5, 0)
    RotateMatrix4(&m, 0, 0, kQuarter);
    EXPECT_NEAR(m.mat[3][0], 0.0, kRounding);
    EXPECT_NEAR(m.mat[3][1], -5.0, kRounding);
}

void ExpectIdentity(const A_Matrix4& m, double tolerance, unsigned seed)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_NEAR(m.mat[row][column], row == column ? 1.0 : 0.0, tolerance)
                << "row " << row << ", column " << column << ", seed " << seed;
        }
    }
}

TEST(invertMatrix4, UndoesAnyMatrix)
{
    constexpr unsigned kSeed = 5;
    std::mt19937 random(kSeed);
    std::uniform_real_distribution<double> entry(-1.0, 1.0);
    for (int i = 0; i < 50; ++i) {
        A_Matrix4 m;
        for (auto& row : m.mat) {
            for (double& value : row) value = entry(random);
        }
        for (int k = 0; k < 4; ++k) m.mat[k][k] += 4.0;  // far from singular
        ExpectIdentity(MultiplyMatrix4(m, invertMatrix4(m)), kRounding, kSeed);
        ExpectIdentity(MultiplyMatrix4(invertMatrix4(m), m), kRounding, kSeed);
    }
}

TEST(invertMatrix4, OfASingularMatrixIsNotFinite)
{
    const A_Matrix4 inverse = invertMatrix4(A_Matrix4{});
    for (const auto& row : inverse.mat) {
        for (const double value : row) EXPECT_FALSE(std::isfinite(value));
    }
}

/// A camera 500 in front of the centre of a 400 x 200 layer, looking along +z.
A_Matrix4 FrontCamera()
{
    A_Matrix4 camera = IdentityMatrix4();
    camera.mat[3][0] = 200.0;
    camera.mat[3][1] = 100.0;
    camera.mat[3][2] = -500.0;
    return camera;
}

TEST(PointToScreen, ScalesByTheDistance)
{
    PF_InData in_data{};
    in_data.width = 400;
    in_data.height = 200;
    point3 shown;
    // On the layer's plane and with the camera's own distance as zoom a point stays where it is.
    PointToScreen(&in_data, {230, 60, 0}, FrontCamera(), 500.0f, &shown);
    EXPECT_EQ(shown, (point3{230, 60, 1}));
    // Twice as far: half the way from the centre. w is the distance in units of 500.
    PointToScreen(&in_data, {230, 60, 500}, FrontCamera(), 500.0f, &shown);
    EXPECT_EQ(shown, (point3{215, 80, 2}));
    PointToScreen(&in_data, {230, 60, 0}, FrontCamera(), 1000.0f, &shown);
    EXPECT_EQ(shown, (point3{260, 20, 1}));
}

TEST(PointToScreen, StandsACameraAtTheCentre)
{
    PF_InData in_data{};
    A_Matrix4 camera = IdentityMatrix4();
    point3 shown;
    // The distance counts as 0.0001: w = 1 / 0.0001 + 1.
    PointToScreen(&in_data, {0, 0, 1}, camera, 1.0f, &shown);
    EXPECT_NEAR(shown.z, 10001.0f, 0.01f);
}

}  // namespace
