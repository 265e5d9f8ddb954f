#include "geometry/meshBudget.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "geometry/records.h"

namespace {

constexpr std::uint64_t kMiB = std::uint64_t{1} << 20;
constexpr std::uint64_t kDefaultLimit = 2048 * kMiB;
/// A drawn cell also has a key and an index while the list is sorted.
constexpr std::uint64_t kBytesPerDrawnCell = sizeof(quad) + 2 * sizeof(double);

}  // namespace

std::uint64_t MeshByteLimit()
{
    const char* text = std::getenv("ORV_MESH_LIMIT");
    if (text == nullptr) return kDefaultLimit;
    const char* end = text + std::strlen(text);
    std::uint32_t mebibytes = 0;
    const auto [stopped, error] = std::from_chars(text, end, mebibytes);
    const bool whole = error == std::errc{} && stopped == end;
    return whole ? mebibytes * kMiB : kDefaultLimit;
}

std::uint64_t cellCounts::bytes() const
{
    // Far above any limit, the sum would wrap around.
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    constexpr std::uint64_t kMany = kMost / (2 * kBytesPerDrawnCell);
    if (base + wall > kMany || drawn > kMany) return kMost;
    return (base + wall) * sizeof(quad) + drawn * kBytesPerDrawnCell;
}

cellCounts CountCells(int steps, std::uint64_t outlineSamples, const meshSettings& settings)
{
    const auto strips = static_cast<std::uint64_t>(settings.subSampling);
    const auto layers = static_cast<std::uint64_t>(settings.extrusionLayers);
    const auto perFace = static_cast<std::uint64_t>(steps);
    cellCounts counts;
    counts.base = perFace * static_cast<std::uint64_t>(settings.faces());
    counts.wall = outlineSamples > 1 ? outlineSamples - 1 : 0;
    counts.drawn = (counts.base + counts.wall) * strips;
    if (settings.extruded() && layers > 1) counts.drawn += perFace * strips * (layers - 1);
    return counts;
}

PF_Err CheckMeshBudget(const cellCounts& counts, std::string& reason)
{
    const std::uint64_t limit = MeshByteLimit();
    const std::uint64_t bytes = counts.bytes();
    if (bytes <= limit) return PF_Err_NONE;
    reason = "The mesh would have " + std::to_string(counts.drawn) + " cells (" +
             std::to_string(bytes / kMiB + (bytes % kMiB != 0 ? 1 : 0)) + " MiB); the limit is " +
             std::to_string(limit / kMiB) + " MiB.";
    return PF_Err_OUT_OF_MEMORY;
}
