// motionBlurQuery.h: whether host, composition and layer want a frame blurred.
#pragma once

#include "host_api.h"

/// The host's answers; what it did not tell is 0.
struct motionBlurState {
    A_long samples = 0;                      ///< suggested by the composition
    A_Ratio shutterAngle{}, shutterPhase{};  ///< in frames; a denominator of 0: not known
    AEGP_CompFlags compFlags = 0;
    AEGP_LayerFlags layerFlags = 0;
};

/// Asks the host; stops at the first failure and returns its code. Throws PF_Err_BAD_CALLBACK_PARAM
/// when a suite is missing.
PF_Err QueryMotionBlur(PF_InData& in_data, motionBlurState& state);

/// The shutter's opening plus its phase, in frames; 0 when either is not known.
double ShutterFrames(const motionBlurState& state);

/// Both switches are on, the shutter is known and the composition suggests enough samples.
bool UsesShutter(const motionBlurState& state);

/// Whether a frame is rendered with motion blur: also needs a shutter sum that is not 0.
bool BlursFrames(const motionBlurState& state);
