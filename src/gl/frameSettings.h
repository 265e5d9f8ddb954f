// frameSettings.h: what one frame is made from and how large it is. Read once per render command;
// the same for every motion-blur sample of it.
#pragma once

#include "host_api.h"

#include "camera/viewSetup.h"
#include "geometry/paramSnapshot.h"
#include "geometry/sourceCrop.h"
#include "gl/renderHost.h"

struct frameSettings {
    PF_PixelFormat format = PF_PixelFormat_INVALID;  ///< of the input: ARGB32 or ARGB64
    int denX = 1, denY = 1;                          ///< downsample denominators
    int frameWidth = 0, frameHeight = 0;             ///< input world, pixels
    int viewWidth = 0, viewHeight = 0;  ///< viewport: the input world, or its crop when the
                                        ///< effect's own layer is the source
    bool ownSource = true;              ///< "Source" names no layer
    bool separateBack = false;          ///< "Back face source" names a layer other than "Source"
    bool contourInset = false;          ///< "Contour mask" is set: images keep a clear border
    A_long sourceTime = 0;              ///< layer time at which the source is read
    int renderLevel = 0;
    int targetEdge = 0;  ///< of the level's render targets, pixels

    [[nodiscard]] bool deep() const { return format == PF_PixelFormat_ARGB64; }
    [[nodiscard]] viewSize view() const;
};

/// Reads the settings of the command. Fails with the host's code when the input's pixel format
/// cannot be had.
PF_Err ReadFrameSettings(const renderHost& host, const paramSnapshot& values,
                         frameSettings& settings);
