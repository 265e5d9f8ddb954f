// viewMatrices.h: the numbers behind GL's projection and view, from a camera record. No GL here:
// viewSetup hands them to GL, tools print them.
// Render space: full-resolution layer pixels, y down, z towards the viewer (the host's z mirrored).
#pragma once

#include "camera/camData.h"

struct viewSize {
    double W = 0.0, H = 0.0;    ///< layer, full resolution
    double VW = 0.0, VH = 0.0;  ///< viewport, pixels at the preview resolution
};

/// What gluPerspective takes.
struct perspectiveLens {
    double fovy = 0.0;  ///< vertical angle of view, degrees; a float's value
    double aspect = 1.0;
    double nearPlane = 0.0, farPlane = 0.0;
};

/// What gluLookAt takes. `up` need not be square to the direction.
struct lookAtView {
    double eye[3] = {}, target[3] = {}, up[3] = {};
};

/// A far plane that is not beyond the near one counts as near + 1.
perspectiveLens MakeLens(const viewSize& size, float zoom, double zNear, double zFar);

/// Writes camera.up: the camera's own y axis, of unit length where it has a length.
void SetUpVector(camData& camera);

/// From the camera's place along its direction, to as far away as the layer's centre is. Reads
/// camera.up.
lookAtView CameraLookAt(const viewSize& size, const camData& camera);

/// From `eyeDistance` in front of the layer's centre.
lookAtView FrontLookAt(const viewSize& size, double eyeDistance);

inline constexpr double kViewNear2D = 1.0, kViewDepth2D = 100000.0;  ///< planes of the "2D" view

/// Distance of the "2D" view's eye from the layer, full-resolution pixels: the larger of what
/// 3000 / `denX` and the default camera's `zoom` give, so that lifted parts stay in front of it,
/// but never so far that the layer itself nears the end of the view's depth range.
double EyeDistance2D(int denX, float zoom);

// The matrices that GL makes of these. For row vectors (p' = p * M), which read row by row are the
// sixteen numbers that GL keeps column by column for its column vectors.
A_Matrix4 ProjectionMatrix(const perspectiveLens& lens);
A_Matrix4 ProjectionMatrix2D(const viewSize& size);
A_Matrix4 ViewMatrix(const lookAtView& view);
