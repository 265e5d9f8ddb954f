// workerRun.h: frames from worker processes: what goes wrong in one costs its frame only.
#pragma once

#include <memory>

#include "cli/console.h"
#include "cli/frameRun.h"
#include "cli/renderRun.h"

namespace orv {

/// Starts the first worker, which finds out what is to be rendered; borrows both. Null when an
/// interrupt came first. Throws failure, as loading in this process does.
std::unique_ptr<FrameRun> StartWorkers(const renderOptions& options, Console& console);

}  // namespace orv
