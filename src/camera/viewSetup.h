// viewSetup.h: GL projection, view, lights and material from a camera record. A GL context with the
// frame's target must be current. Nothing is reported and nothing restored.
// Render space: full-resolution layer pixels, y down, z towards the viewer (the host's z mirrored).
#pragma once

#include "camera/camData.h"
#include "camera/viewMatrices.h"
#include "geometry/paramSnapshot.h"

/// The "Light ..." sliders as shown, 0..100.
struct lightSettings {
    float ambient = 100, diffuse = 50, specular = 50, shininess = 5, constant = 15, linear = 0,
          quadratic = 0;
};
lightSettings MakeLightSettings(const paramSnapshot& values);

/// Lights of `camera` that GL can hold: the count for the shader. 0 when no light is gathered.
int UsableLights(const camData& camera);

/// "3D (composition)": perspective, camera, up to 8 lights, material, depth and alpha-test state.
/// All eight GL lights are reset first: nothing of an earlier frame's lights is left. A far plane
/// that is not beyond the near one counts as near + 1.
void cam3D(const viewSize& size, const lightSettings& lights, camData camera, double zNear,
           double zFar);

/// "2D": orthographic, seen from `eyeDistance` in front of the layer; lighting, alpha and depth
/// test off, depth mask off, clear depth 1. The mesh draw sets its own state after it.
void SetView2D(const viewSize& size, double eyeDistance);
