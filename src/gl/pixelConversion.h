// pixelConversion.h: rows of pixels between the host's depths and GL's floats.
// Pixels keep their channel order (alpha, red, green, blue); nothing here allocates or fails.
#pragma once

#include "host_api.h"

/// What the row functions below get as their reference: two worlds, `to` at least as wide as
/// `from`, of the depths that the function names.
struct worldPair {
    PF_EffectWorld* from;
    PF_EffectWorld* to;
};

// Row functions for AEGP_IterateGeneric: `refcon` is a worldPair*, `row` the row to convert. Rows
// are independent, so any number of threads may work on one pair. Always PF_Err_NONE.

/// 16 bits to float: v / 32768.
PF_Err tex1632(void* refcon, A_long thread, A_long row, A_long rows);
/// Float to 16 bits: v * 32768, cut. Channels must lie in 0..1 (the shader sees to that).
PF_Err tex3216(void* refcon, A_long thread, A_long row, A_long rows);

/// Copies a row with its colours multiplied by alpha: 8 bits to the nearest, floats as they come.
void PremultiplyRow(const PF_Pixel8* from, A_long width, PF_Pixel8* to);
void PremultiplyRow(const PF_PixelFloat* from, A_long width, PF_PixelFloat* to);

/// Floats to 8 bits, to the nearest; below 0 and not a number give 0, above 1 gives 255.
void QuantiseRow(const PF_PixelFloat* from, A_long width, PF_Pixel8* to);
