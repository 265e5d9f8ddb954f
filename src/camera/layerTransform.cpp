#include "camera/layerTransform.h"

#include "camera/matrices.h"

namespace {

/// p * m for a point, in double.
point3 TransformedPoint(const point3& p, const A_Matrix4& m)
{
    const double x = static_cast<double>(p.x), y = static_cast<double>(p.y),
                 z = static_cast<double>(p.z);
    const auto column = [&](int c) {
        return static_cast<float>(x * m.mat[0][c] + y * m.mat[1][c] + z * m.mat[2][c] +
                                  m.mat[3][c]);
    };
    return {column(0), column(1), column(2)};
}

void TurnAsLayer(A_Matrix4& m, const transformSettings& transform)
{
    RotateMatrix4(&m, transform.angleX, transform.angleY, transform.angleZ);
}

/// T(-anchor) * D(scale) * rotation * T(position).
A_Matrix4 LayerMatrix(const transformSettings& transform)
{
    const double scale[3] = {static_cast<double>(transform.scale.x),
                             static_cast<double>(transform.scale.y),
                             static_cast<double>(transform.scale.z)};
    const double anchor[3] = {static_cast<double>(transform.anchor.x),
                              static_cast<double>(transform.anchor.y),
                              static_cast<double>(transform.anchor.z)};
    A_Matrix4 m = IdentityMatrix4();
    for (int axis = 0; axis < 3; ++axis) {
        m.mat[axis][axis] = scale[axis];
        m.mat[3][axis] = -anchor[axis] * scale[axis];
    }
    TurnAsLayer(m, transform);
    m.mat[3][0] += static_cast<double>(transform.position.x);
    m.mat[3][1] += static_cast<double>(transform.position.y);
    m.mat[3][2] += static_cast<double>(transform.position.z);
    return m;
}

}  // namespace

void TransformPoints(std::span<point3> points, const transformSettings& transform)
{
    const A_Matrix4 m = LayerMatrix(transform);
    for (point3& p : points) p = TransformedPoint(p, m);
}

void TransformNormals(std::span<point3> normals, const transformSettings& transform)
{
    A_Matrix4 m = IdentityMatrix4();
    TurnAsLayer(m, transform);
    for (point3& n : normals) n = TransformedPoint(n, m);
}
