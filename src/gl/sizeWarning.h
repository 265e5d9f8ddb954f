// sizeWarning.h: tells the user, once, that a layer is larger than the effect's textures allow.
#pragma once

#include <cstdint>
#include <string>

struct sizeWarningInput {
    std::int32_t layerWidth = 0, layerHeight = 0;  ///< full resolution
    std::int32_t worldWidth = 0, worldHeight = 0;  ///< input world, at the preview resolution
    std::int32_t denX = 1, denY = 1;               ///< downsample denominators
    std::int32_t maxTextureSize = 0;
};

/// The text to show now, or "". `shown` remembers over frames that it was shown: set with the text,
/// cleared again at a frame whose input is back within half of maxTextureSize.
std::string UpdateSizeWarning(const sizeWarningInput& input, std::uint8_t& shown);
