#include "entry/renderLevel.h"

#include <cstddef>

#include "gl/GL_base.h"

std::int32_t ChooseRenderLevel(std::int32_t maxTextureSize, double frameEdge)
{
    const auto edges = AESDK_OpenGL::RenderLevelEdges(maxTextureSize);
    std::int32_t level = 0;
    while (level + 1 < AESDK_OpenGL::kRenderLevels) {
        const int nextEdge = edges[static_cast<std::size_t>(level) + 1];
        if (nextEdge == 0 || nextEdge < frameEdge) break;
        ++level;
    }
    return level;
}
