// worldOperations.h: what the host does with pixels at an effect's request. Straight alpha.
// Rectangles must lie within their worlds, formats of two worlds must be equal.
#pragma once

#include "plugin/worlds.h"

namespace orv {

/// Whether the rectangle is not inside out and lies within the world.
bool IsWithin(const PF_Rect& rect, const hostWorld& world);

/// Copies a rectangle. Equal sizes copy bytes (also within one world); others scale bilinearly at
/// pixel centres with clamped edges, each pixel's colour counting by its alpha, so that hidden
/// colours of transparent pixels do not bleed.
void CopyWorld(const hostWorld& from, const PF_Rect& fromRect, const hostWorld& to,
               const PF_Rect& toRect);

/// `color` is on the scale of 8 bits.
void FillWorld(const hostWorld& world, const PF_Rect& rect, const PF_Pixel& color);

/// Multiplies colours by alpha, or divides them by it: to the nearest, clamped, colour kept where
/// alpha is 0.
void Premultiply(const hostWorld& world);
void Unpremultiply(const hostWorld& world);

/// Lays `rect` of `from` over (`inFront`) or under what `to` holds at (x, y) onwards; parts outside
/// `to` are left out. `opacity` is 0..1. A transparent pixel of `from` leaves `to` untouched.
void TransferWorld(const hostWorld& from, const PF_Rect& rect, const hostWorld& to, A_long x,
                   A_long y, bool inFront, double opacity);

/// Whether no 16-bit channel is above 32768. Other formats always are in range.
bool ChannelsInRange(const hostWorld& world);

}  // namespace orv
