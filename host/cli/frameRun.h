// frameRun.h: the two ways in which `orv render` gets its frames: in this process, or in processes
// of their own.
#pragma once

#include <vector>

#include "cli/renderSession.h"
#include "cli/stats.h"

namespace orv {

class FrameRun {
public:
    FrameRun() = default;
    virtual ~FrameRun() = default;
    FrameRun(const FrameRun&) = delete;
    FrameRun& operator=(const FrameRun&) = delete;

    /// What is to be rendered, known from the start.
    [[nodiscard]] virtual const runStart& start() const = 0;
    /// Renders all frames and appends their figures in the order of the list. Tells everything that
    /// goes wrong, and returns the exit code. An interrupt ends it early.
    virtual int Run(std::vector<frameStats>& figures) = 0;
};

}  // namespace orv
