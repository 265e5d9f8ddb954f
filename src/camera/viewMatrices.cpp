#include "camera/viewMatrices.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "camera/matrices.h"
#include "geometry/vec3.h"

namespace {

constexpr double kHalfAngleToDegrees = 114.591559026164;  // 360 / pi

float Distance(double x, double y, double z)
{
    return std::hypot(std::hypot(static_cast<float>(x), static_cast<float>(y)),
                      static_cast<float>(z));
}

double Dot(const vec3& a, const vec3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// A vector without length stays as it is.
vec3 Normalized(const vec3& v)
{
    const double length = std::sqrt(Dot(v, v));
    return length != 0.0 ? v * (1.0 / length) : v;
}

}  // namespace

perspectiveLens MakeLens(const viewSize& size, float zoom, double zNear, double zFar)
{
    const double halfHeight = size.H / size.VH * size.H / (2.0 * static_cast<double>(zoom));
    const auto fovy = static_cast<float>(std::atan(halfHeight) * kHalfAngleToDegrees);
    // A mesh that lies in one plane through the near plane's limit still needs some depth.
    return {.fovy = static_cast<double>(fovy),
            .aspect = size.W / size.H,
            .nearPlane = zNear,
            .farPlane = zFar > zNear ? zFar : zNear + 1.0};
}

void SetUpVector(camData& camera)
{
    A_Matrix4 mirror = IdentityMatrix4();
    mirror.mat[2][2] = -1.0;
    const A_Matrix4 inverse = invertMatrix4(MultiplyMatrix4(camera.cameraMatrix, mirror));
    for (int axis = 0; axis < 3; ++axis) camera.up[axis] = static_cast<float>(inverse.mat[axis][1]);
    const float length = std::hypot(std::hypot(camera.up[0], camera.up[1]), camera.up[2]);
    if (length == 0.0f) return;
    const double scale = 1.0 / static_cast<double>(length);
    for (float& each : camera.up) each = static_cast<float>(static_cast<double>(each) * scale);
}

lookAtView CameraLookAt(const viewSize& size, const camData& camera)
{
    const auto& eye = camera.cameraMatrix.mat[3];
    const auto& direction = camera.cameraMatrix.mat[2];
    const auto distance =
        static_cast<double>(Distance(eye[0] - size.W / 2.0, eye[1] - size.H / 2.0, eye[2]));
    const auto target = [&](int axis) {
        return static_cast<double>(static_cast<float>(eye[axis] + distance * direction[axis]));
    };
    return {.eye = {eye[0], eye[1], -eye[2]},
            .target = {target(0), target(1), -target(2)},
            .up = {static_cast<double>(camera.up[0]), static_cast<double>(camera.up[1]),
                   static_cast<double>(camera.up[2])}};
}

lookAtView FrontLookAt(const viewSize& size, double eyeDistance)
{
    return {.eye = {size.W / 2.0, size.H / 2.0, eyeDistance},
            .target = {size.W / 2.0, size.H / 2.0, 0.0},
            .up = {0.0, 1.0, 0.0}};
}

double EyeDistance2D(int denX, float zoom)
{
    // Half of the depth range: beyond it the layer's plane itself would be cut away.
    constexpr double kFarthestEye = kViewDepth2D / 2.0;
    return std::min(std::max(3000.0 / denX, static_cast<double>(zoom)), kFarthestEye);
}

A_Matrix4 ProjectionMatrix(const perspectiveLens& lens)
{
    const double halfAngle = lens.fovy / 2.0 * std::numbers::pi / 180.0;
    const double f = std::cos(halfAngle) / std::sin(halfAngle);
    const double depth = lens.farPlane - lens.nearPlane;
    A_Matrix4 m{};
    m.mat[0][0] = f / lens.aspect;
    m.mat[1][1] = f;
    m.mat[2][2] = -(lens.farPlane + lens.nearPlane) / depth;
    m.mat[2][3] = -1.0;
    m.mat[3][2] = -2.0 * lens.nearPlane * lens.farPlane / depth;
    return m;
}

A_Matrix4 ProjectionMatrix2D(const viewSize& size)
{
    const double depth = kViewDepth2D - kViewNear2D;
    A_Matrix4 m{};
    m.mat[0][0] = 2.0 / size.W;
    m.mat[1][1] = 2.0 / size.H;
    m.mat[2][2] = -2.0 / depth;
    m.mat[3][2] = -(kViewDepth2D + kViewNear2D) / depth;
    m.mat[3][3] = 1.0;
    return m;
}

A_Matrix4 ViewMatrix(const lookAtView& view)
{
    const vec3 eye{view.eye[0], view.eye[1], view.eye[2]};
    const vec3 forward = Normalized(vec3{view.target[0], view.target[1], view.target[2]} - eye);
    const vec3 side = Normalized(Cross(forward, vec3{view.up[0], view.up[1], view.up[2]}));
    const vec3 up = Cross(side, forward);
    A_Matrix4 m{};
    const vec3 columns[3] = {side, up, -forward};
    for (int column = 0; column < 3; ++column) {
        const vec3& axis = columns[column];
        m.mat[0][column] = axis.x;
        m.mat[1][column] = axis.y;
        m.mat[2][column] = axis.z;
        m.mat[3][column] = -Dot(axis, eye);
    }
    m.mat[3][3] = 1.0;
    return m;
}
