#include "cli/stats.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <numeric>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "scene/errors.h"

namespace orv {
namespace {

using json = nlohmann::ordered_json;

const char* ResultName(frameResult result)
{
    switch (result) {
        case frameResult::rendered:
            return "rendered";
        case frameResult::skipped:
            return "skipped";
        case frameResult::failed:
            return "failed";
    }
    return "";
}

json FrameJson(const frameStats& frame)
{
    return {{"frame", frame.frame}, {"result", ResultName(frame.result)},
            {"load", frame.load},   {"effect", frame.effect},
            {"draw", frame.draw},   {"write", frame.write},
            {"total", frame.total}, {"uploads", frame.uploads}};
}

std::int64_t PeakMemoryBytes()
{
    rusage own{}, largestChild{};
    getrusage(RUSAGE_SELF, &own);
    getrusage(RUSAGE_CHILDREN, &largestChild);
    return std::int64_t{std::max(own.ru_maxrss, largestChild.ru_maxrss)} * 1024;
}

template <class Value>
Value Sum(const std::vector<frameStats>& frames, Value frameStats::*field)
{
    return std::accumulate(frames.begin(), frames.end(), Value{},
                           [field](Value sum, const frameStats& f) { return sum + f.*field; });
}

}  // namespace

std::string StatsJson(const renderStats& stats)
{
    json frames = json::array();
    for (const frameStats& frame : stats.frames) frames.push_back(FrameJson(frame));
    const json all = {
        {"scene", stats.scene},
        {"composition", stats.composition},
        {"width", stats.width},
        {"height", stats.height},
        {"depth", stats.depth},
        {"gl", {{"renderer", stats.glRenderer}, {"version", stats.glVersion}}},
        {"load", {{"plugin", stats.loadPlugin}, {"scene", stats.loadScene}}},
        {"sums",
         {{"effect", Sum(stats.frames, &frameStats::effect)},
          {"draw", Sum(stats.frames, &frameStats::draw)},
          {"write", Sum(stats.frames, &frameStats::write)},
          {"total", Sum(stats.frames, &frameStats::total)}}},
        {"uploads", Sum(stats.frames, &frameStats::uploads)},
        {"peakMemoryBytes", PeakMemoryBytes()},
        {"exitCode", stats.exitCode},
        {"frames", std::move(frames)},
    };
    // Names come from files: what is not UTF-8 is replaced instead of refused here.
    return all.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

void WriteStats(const renderStats& stats, const std::string& file)
{
    errno = 0;
    std::ofstream out(file, std::ios::binary);
    out << StatsJson(stats);
    out.close();
    if (!out)
        throw failure(failureKind::output,
                      fmt::format("{}: cannot be written: {}", file, std::strerror(errno)));
}

}  // namespace orv
