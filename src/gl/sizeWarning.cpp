#include "gl/sizeWarning.h"

#include <algorithm>

#include "Util/intToString.h"

std::string UpdateSizeWarning(const sizeWarningInput& input, std::uint8_t& shown)
{
    const std::int64_t limit = input.maxTextureSize;
    if (shown == 0) {
        const std::int64_t edge = std::max(input.layerWidth, input.layerHeight);
        if (2 * edge <= limit) return {};
        shown = 1;
        const std::string half = intToString(input.maxTextureSize / 2);
        return "Warning: layer size exceeds maximum texture size (" + half + "x" + half + ").";
    }
    const std::int64_t edge = std::max(std::int64_t{input.worldWidth} * input.denX,
                                       std::int64_t{input.worldHeight} * input.denY);
    if (2 * edge <= limit) shown = 0;
    return {};
}
