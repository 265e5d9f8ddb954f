// meshDraw.h: draws the mesh of one instant.
#pragma once

#include "gl/GL_base.h"
#include "gl/frameScene.h"

/// Draws the instant's cells, nearest first, into the bound target: first their opaque pixels, with
/// depth, then the translucent ones over them. A flat shape is drawn in one go, without depth. Sets
/// view, lights, textures 0 and 1 and the mesh's uniforms; a flat shape leaves `DOF` as it is. The
/// program must be in use.
AESDK_OpenGL::AESDK_OpenGL_Err DrawInstant(const frameScene& scene, const frameInstant& instant,
                                           passKind pass);
