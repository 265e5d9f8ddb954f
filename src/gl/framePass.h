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

/// Copies the view, or as much of it as the bound target has.
AESDK_OpenGL::AESDK_OpenGL_Err CopyView(const frameSettings& settings, GLint internalFormat,
                                        TargetCopy& copy);

/// Empties what a frame touches of the bound target.
void ClearFrame(const frameSettings& settings);

/// How a smoothed image meets the one beneath it.
struct smoothing {
    float gain = 1.0f;     ///< factor of all four channels
    bool blurred = false;  ///< depth of field by the blur texture and `DOF`
    GLenum sourceFactor = GL_SRC_ALPHA, targetFactor = GL_ONE_MINUS_SRC_ALPHA;
};

/// Draws `image`, a copy of the view, over the bound target with its edges smoothed. Throws what
/// the GL layer finds wrong. The program must be in use.
void DrawSmoothed(const frameScene& scene, const TargetCopy& image, const smoothing& how);

/// Begins, draws and ends one pass over one instant.
AESDK_OpenGL::AESDK_OpenGL_Err DrawPass(const frameScene& scene, const frameInstant& instant,
                                        passKind pass, TargetCopy& encoding);
