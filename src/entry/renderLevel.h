// renderLevel.h: which size of render target a frame is drawn in.
#pragma once

#include <cstdint>

/// The smallest level whose edge still covers `frameEdge`, the frame's longer side in pixels at the
/// preview resolution; 0 when none does. Levels that do not exist at this maxTextureSize are not
/// chosen. Pure.
std::int32_t ChooseRenderLevel(std::int32_t maxTextureSize, double frameEdge);
