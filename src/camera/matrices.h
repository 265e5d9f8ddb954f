// matrices.h: small routines on the host's 4 x 4 matrices. Row vectors: p' = p * M, translation in
// row 3. Angles in radians. Nothing here fails; a singular inverse has entries that are not finite.
#pragma once

#include "host_api.h"

#include "geometry/records.h"

A_Matrix4 IdentityMatrix4();
A_Matrix4 MultiplyMatrix4(const A_Matrix4& a, const A_Matrix4& b);  ///< a * b

/// m becomes m * R3(a3) * R2(a2) * R1(a1): turns by +a1 about x, +a2 about y, -a3 about z.
void RotateMatrix4(A_Matrix4* m, double a1, double a2, double a3);

/// Adjugate over determinant, of a general matrix.
A_Matrix4 invertMatrix4(A_Matrix4 m);

/// Projects `p` through the camera's layer-to-world matrix on the layer; `zoom` in pixels. The
/// result is (x, y, w).
void PointToScreen(PF_InData* in_data, point3 p, A_Matrix4 cam, float zoom, point3* result);
