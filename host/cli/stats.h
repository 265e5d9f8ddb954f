// stats.h: the figures of one `orv render`, for --stats.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orv {

enum class frameResult { rendered, skipped, failed };

/// Seconds. `load` is what the frame waited for loading: the first one of each process carries the
/// plug-in and the scene with all its pictures, later ones carry 0.
struct frameStats {
    int frame = 0;
    frameResult result = frameResult::rendered;
    double load = 0.0;
    double effect = 0.0;  ///< inside effects, commands and host calls of theirs
    double draw = 0.0;    ///< layers into the picture, without effects
    double write = 0.0;   ///< encoding and file
    double total = 0.0;
    std::int64_t uploads = 0;  ///< source pictures that effects prepared for upload
};

struct renderStats {
    std::string scene, composition, glRenderer, glVersion;
    int width = 0, height = 0, depth = 8;  ///< of the pictures
    double loadPlugin = 0.0, loadScene = 0.0;
    std::vector<frameStats> frames;
    int exitCode = 0;
};

/// One JSON object; adds the sums and the peak memory of the run's largest process.
std::string StatsJson(const renderStats& stats);
/// Throws failure(output) with file and reason.
void WriteStats(const renderStats& stats, const std::string& file);

}  // namespace orv
