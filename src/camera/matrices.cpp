#include "camera/matrices.h"

#include <cmath>

namespace {

struct sineCosine {
    explicit sineCosine(double angle) : s(std::sin(angle)), c(std::cos(angle)) {}
    double s, c;
};

A_Matrix4 TurnX(const sineCosine& a)
{
    return {{{1, 0, 0, 0}, {0, a.c, a.s, 0}, {0, -a.s, a.c, 0}, {0, 0, 0, 1}}};
}

A_Matrix4 TurnY(const sineCosine& a)
{
    return {{{a.c, 0, -a.s, 0}, {0, 1, 0, 0}, {a.s, 0, a.c, 0}, {0, 0, 0, 1}}};
}

/// The other way round than the two above: turns by minus the angle.
A_Matrix4 TurnZ(const sineCosine& a)
{
    return {{{a.c, -a.s, 0, 0}, {a.s, a.c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
}

/// Determinants of the 2 x 2 blocks that rows `r` and `r + 1` form with each pair of columns.
struct rowPairMinors {
    rowPairMinors(const A_Matrix4& m, int r)
    {
        const auto& p = m.mat[r];
        const auto& q = m.mat[r + 1];
        const auto minor = [&](int i, int j) { return p[i] * q[j] - p[j] * q[i]; };
        m01 = minor(0, 1), m02 = minor(0, 2), m03 = minor(0, 3);
        m12 = minor(1, 2), m13 = minor(1, 3), m23 = minor(2, 3);
    }
    double m01, m02, m03, m12, m13, m23;
};

}  // namespace

A_Matrix4 IdentityMatrix4()
{
    return {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
}

A_Matrix4 MultiplyMatrix4(const A_Matrix4& a, const A_Matrix4& b)
{
    A_Matrix4 product;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) sum += a.mat[row][k] * b.mat[k][column];
            product.mat[row][column] = sum;
        }
    }
    return product;
}

void RotateMatrix4(A_Matrix4* m, double a1, double a2, double a3)
{
    const A_Matrix4 zy = MultiplyMatrix4(TurnZ(sineCosine(a3)), TurnY(sineCosine(a2)));
    const A_Matrix4 zyx = MultiplyMatrix4(zy, TurnX(sineCosine(a1)));
    *m = MultiplyMatrix4(*m, zyx);
}

A_Matrix4 invertMatrix4(A_Matrix4 m)
{
    // Every cofactor is a combination of the minors of the upper and of the lower two rows.
    const rowPairMinors s(m, 0), t(m, 2);
    const auto& a = m.mat;
    const double adjugate[4][4] = {{a[1][1] * t.m23 - a[1][2] * t.m13 + a[1][3] * t.m12,
                                    -a[0][1] * t.m23 + a[0][2] * t.m13 - a[0][3] * t.m12,
                                    a[3][1] * s.m23 - a[3][2] * s.m13 + a[3][3] * s.m12,
                                    -a[2][1] * s.m23 + a[2][2] * s.m13 - a[2][3] * s.m12},
                                   {-a[1][0] * t.m23 + a[1][2] * t.m03 - a[1][3] * t.m02,
                                    a[0][0] * t.m23 - a[0][2] * t.m03 + a[0][3] * t.m02,
                                    -a[3][0] * s.m23 + a[3][2] * s.m03 - a[3][3] * s.m02,
                                    a[2][0] * s.m23 - a[2][2] * s.m03 + a[2][3] * s.m02},
                                   {a[1][0] * t.m13 - a[1][1] * t.m03 + a[1][3] * t.m01,
                                    -a[0][0] * t.m13 + a[0][1] * t.m03 - a[0][3] * t.m01,
                                    a[3][0] * s.m13 - a[3][1] * s.m03 + a[3][3] * s.m01,
                                    -a[2][0] * s.m13 + a[2][1] * s.m03 - a[2][3] * s.m01},
                                   {-a[1][0] * t.m12 + a[1][1] * t.m02 - a[1][2] * t.m01,
                                    a[0][0] * t.m12 - a[0][1] * t.m02 + a[0][2] * t.m01,
                                    -a[3][0] * s.m12 + a[3][1] * s.m02 - a[3][2] * s.m01,
                                    a[2][0] * s.m12 - a[2][1] * s.m02 + a[2][2] * s.m01}};
    const double determinant = s.m01 * t.m23 - s.m02 * t.m13 + s.m03 * t.m12 + s.m12 * t.m03 -
                               s.m13 * t.m02 + s.m23 * t.m01;
    A_Matrix4 inverse;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            inverse.mat[row][column] = adjugate[row][column] / determinant;
        }
    }
    return inverse;
}

void PointToScreen(PF_InData* in_data, point3 p, A_Matrix4 cam, float zoom, point3* result)
{
    constexpr float kSmallestDistance = 0.0001f;
    const auto& m = cam.mat;

    // The camera looks at a point as far away as the layer's centre.
    const float centreX = static_cast<float>(in_data->width) * 0.5f;
    const float centreY = static_cast<float>(in_data->height) * 0.5f;
    float distance =
        hypotf(hypotf(static_cast<float>(m[3][0]) - centreX, static_cast<float>(m[3][1]) - centreY),
               static_cast<float>(m[3][2]));
    const auto fromTarget = [&](float coordinate, int axis) {
        const double target = m[3][axis] + static_cast<double>(distance) * m[2][axis];
        return static_cast<double>(coordinate - static_cast<float>(target));
    };
    const double q[3] = {fromTarget(p.x, 0), fromTarget(p.y, 1), fromTarget(p.z, 2)};
    const auto along = [&](int row) {
        return m[row][0] * q[0] + m[row][1] * q[1] + m[row][2] * q[2] + m[row][3];
    };

    if (distance < kSmallestDistance) distance = kSmallestDistance;
    const double w = along(2) / static_cast<double>(distance) + 1.0;
    const double focal = w != 0.0 ? static_cast<double>(zoom) / static_cast<double>(distance) : 1.0;
    *result = {static_cast<float>(along(0) / w * focal) + centreX,
               static_cast<float>(along(1) / w * focal) + centreY, static_cast<float>(w)};
}
