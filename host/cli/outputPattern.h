// outputPattern.h: where pictures go. A pattern is a file name that holds the frame number once, as
// a run of '#' or as "%04d"; its extension chooses the format.
#pragma once

#include <string>

namespace orv {

enum class outputKind { png, exr, video };

struct outputPattern {
    std::string folder;          ///< "" or with a closing '/'; never holds the number
    std::string prefix, suffix;  ///< file name before and after the number
    int digits = 0;              ///< at least so many, filled with zeros; 0: no number
    outputKind kind = outputKind::png;

    [[nodiscard]] bool numbered() const { return digits > 0; }
};

/// Throws failure(usage): no file name, an unknown extension, two numbers, a number in a video's
/// name.
outputPattern ParseOutputPattern(const std::string& text);

/// SCENENAME.####.png in the working folder, whatever characters the scene's name holds.
outputPattern DefaultOutputPattern(const std::string& sceneFile);

std::string FrameFile(const outputPattern& pattern, int frame);

}  // namespace orv
