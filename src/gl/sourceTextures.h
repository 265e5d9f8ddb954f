// sourceTextures.h: the GL textures that a frame's mesh is drawn with.
#pragma once

#include "gl/frameSettings.h"

/// The textures of a frame. Borrowed from the instance's record, which keeps them for the next.
struct frameTextures {
    bool ready = false;  ///< false: no source image, nothing is drawn
    AESDK_OpenGL::glName source = 0;
    AESDK_OpenGL::glName back = 0;  ///< the source's again without a separate back face
    int width = 0, height = 0;      ///< of the source, texels
};

/// Takes the textures of the last render up again when they still hold, else reads the layers and
/// uploads them, premultiplied. Errors: the host's first, its abort code, PF_Err_OUT_OF_MEMORY when
/// the host has no memory for the transfer, 512 with a GL message when GL refuses a texture. The
/// record's states are valid afterwards only if its textures are.
PF_Err PrepareTextures(const renderHost& host, const frameSettings& settings,
                       const paramSnapshot& values, frameTextures& textures);
