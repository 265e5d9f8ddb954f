// glInfo.h: what OpenGL this machine gives, asked through a context of our own that is gone again
// when the call returns.
#pragma once

#include <string>

namespace orv {

struct glInfo {
    std::string renderer, version;
    int maxRectangleSize = 0;  ///< longest edge of a rectangle texture
};

/// Throws failure(gl). Leaves current whatever context was current.
glInfo QueryGl();

}  // namespace orv
