// renderRun.h: `orv render` once its command line is read.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/frameList.h"
#include "cli/outputPattern.h"
#include "cli/setOption.h"
#include "image/imageFile.h"

namespace orv {

/// How frames are rendered in processes of their own.
struct workerOptions {
    int jobs = 1;                        ///< processes at once
    std::optional<double> frameTimeout;  ///< seconds; none: a frame may take for ever
    std::uint64_t memoryLimit = std::uint64_t{4} << 30;  ///< bytes, of each
    std::vector<std::string> arguments;  ///< the command line from which a worker reads the rest
};

/// What the command line asks for; what is missing comes from the scene.
struct renderOptions {
    std::string scene, plugin, stats;  ///< files; "" for plug-in: the default, for stats: none
    outputPattern output;
    exrPixel exr = exrPixel::half;
    std::vector<frameRange> frames;  ///< empty: every frame of the scene
    std::optional<std::string> composition, layer;
    std::optional<int> depth;
    std::optional<std::array<int, 2>> downsample;
    std::optional<bool> motionBlur;
    std::optional<double> shutterAngle, shutterPhase;  ///< degrees
    std::optional<int> motionBlurSamples;              ///< a frame
    std::vector<setRequest> sets;
    bool strict = false, allowOutside = false, allowTruncated = false;
    bool resume = false, keepGoing = false, quiet = false;
    std::optional<workerOptions> workers;  ///< none: frames are rendered in this process
};

/// Returns the exit code: frames that fail are told on stderr. Throws failure for what ends the
/// whole run before its first frame.
int RunRender(const renderOptions& options);

/// The same as a worker process of another run: its frames come through the standard input, which
/// is a socket, and the answers go back there.
int RunRenderWorker(const renderOptions& options);

}  // namespace orv
