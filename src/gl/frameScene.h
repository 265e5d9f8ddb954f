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
    double eyeDistance = 0.0;   ///< of the "2D" view
    bool depthOfField = false;  ///< the frame is drawn in two passes
};

/// One instant: the frame's own time, or one motion-blur sample.
struct frameInstant {
    paramSnapshot values;
    meshSettings mesh;
    frameShape shape;
    camData camera;
    drawList list;  ///< made last; empty for a flat shape
};

/// The instant's cells as its camera sees them, to be put into `list`.
drawList SortedCells(const frameInstant& instant);
