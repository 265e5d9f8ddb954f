// framePass.h: the passes that turn a frame's instants into the finished image in target A.
#pragma once

#include "gl/GL_base.h"
#include "gl/frameScene.h"
#include "gl/targetCopy.h"

/// Makes target A of the frame's level current and starts `pass` in it. In the blurred pass, what
/// the encoding pass left there goes into `encoding`, which becomes the program's blur texture, and
/// the target is cleared; otherwise the target must be clear already. Sets `DOF` to zeros. The
/// program must be in use.
AESDK_OpenGL::AESDK_OpenGL_Err BeginPass(const frameScene& scene, passKind pass,
                                         TargetCopy& encoding);

/// Ends `pass`: smooths the edges in target A and, in the blurred pass, applies the depth of field.
/// Works in place, on a copy of the image; the image itself stays beneath, but in the blurred
/// pass. The program must be in use.
AESDK_OpenGL::AESDK_OpenGL_Err RunPostPass(const frameScene& scene, passKind pass);

/// Draws the view's rectangle with its pixels as texture points, as the triangles of one cell.
void DrawFrameQuad(const viewSize& size);

/// Begins, draws and ends one pass over one instant.
AESDK_OpenGL::AESDK_OpenGL_Err DrawPass(const frameScene& scene, const frameInstant& instant,
                                        passKind pass, TargetCopy& encoding);
