// frameList.h: which frames to render, in which order: "7", "0-47", "0-100x5", "47-0", "1,3,8-9".
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace orv {

/// From `first` to `last`, both included where the step meets them; `last` below `first` counts
/// down. The step is at least 1.
struct frameRange {
    int first = 0, last = 0, step = 1;
    bool operator==(const frameRange&) const = default;
};

/// Throws failure(usage) with the item that cannot be read.
std::vector<frameRange> ParseFrameList(std::string_view text);

/// The frames in the order of the list; a frame that the list names twice comes twice. Throws
/// failure(usage) when one lies outside sceneFirst <= n < sceneEnd, or when the list names more
/// than a million frames.
std::vector<int> ExpandFrames(std::span<const frameRange> ranges, int sceneFirst, int sceneEnd);

}  // namespace orv
