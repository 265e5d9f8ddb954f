// frameScene.h: what the drawing stages of a frame are given.
#pragma once

#include "camera/camData.h"
#include "camera/viewSetup.h"
#include "geometry/meshBuilder.h"
#include "geometry/meshSettings.h"
#include "geometry/paramSnapshot.h"
#include "gl/frameSettings.h"
#include "gl/frameUniforms.h"
#include "gl/sourceTextures.h"

/// The same for all passes and instants of a frame.
struct frameScene {
    frameSettings settings;
    frameTextures textures;
    textureRoles roles;
    lightSettings lights;
    double eyeDistance = 0.0;  ///< of the "2D" view
};

/// One instant: the frame's own time, or one motion-blur sample.
struct frameInstant {
    paramSnapshot values;
    meshSettings mesh;
    frameShape shape;
    camData camera;
    drawList list;  ///< empty for a flat shape
};

/// Distance of the "2D" view's eye from the layer, full-resolution pixels: the larger of what
/// 3000 / `denX` and the default camera's `zoom` give, so that lifted parts stay in front of it,
/// but never so far that the layer itself nears the end of the view's depth range.
double EyeDistance2D(int denX, float zoom);
