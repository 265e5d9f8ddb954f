#include "cli/frameList.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>

#include <fmt/format.h>

#include "scene/errors.h"

namespace orv {
namespace {

constexpr std::int64_t kMaxFrames = 1'000'000;

/// Takes an integer off the front of `rest`; false when there is none or it does not fit.
bool TakeInteger(std::string_view& rest, int& value)
{
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
    if (error != std::errc{}) return false;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    return true;
}

bool TakeMark(std::string_view& rest, char mark)
{
    if (rest.empty() || rest.front() != mark) return false;
    rest.remove_prefix(1);
    return true;
}

frameRange ParseItem(std::string_view item)
{
    const auto refuse = [item] {
        throw failure(
            failureKind::usage,
            fmt::format("--frames: '{}' is none of N, FIRST-LAST and FIRST-LASTxSTEP", item));
    };
    frameRange range;
    std::string_view rest = item;
    if (!TakeInteger(rest, range.first)) refuse();
    range.last = range.first;
    if (TakeMark(rest, '-')) {
        if (!TakeInteger(rest, range.last)) refuse();
        if (TakeMark(rest, 'x') && (!TakeInteger(rest, range.step) || range.step < 1)) refuse();
    }
    if (!rest.empty()) refuse();
    return range;
}

std::int64_t CountFrames(const frameRange& range)
{
    return std::abs(std::int64_t{range.last} - range.first) / range.step + 1;
}

}  // namespace

std::vector<frameRange> ParseFrameList(std::string_view text)
{
    std::vector<frameRange> ranges;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        ranges.push_back(ParseItem(text.substr(start, comma - start)));
        start = comma + 1;
    }
    return ranges;
}

std::vector<int> ExpandFrames(std::span<const frameRange> ranges, int sceneFirst, int sceneEnd)
{
    // Checked before anything is allocated: the list comes from outside.
    std::int64_t count = 0;
    for (const frameRange& range : ranges) {
        for (const int frame : {range.first, range.last})
            if (frame < sceneFirst || frame >= sceneEnd)
                throw failure(failureKind::usage,
                              fmt::format("--frames: {} is outside the scene's frames {} to {}",
                                          frame, sceneFirst, sceneEnd - 1));
        count += CountFrames(range);
        if (count > kMaxFrames)
            throw failure(failureKind::usage,
                          fmt::format("--frames: more than {} frames", kMaxFrames));
    }

    std::vector<int> frames;
    frames.reserve(static_cast<std::size_t>(count));
    for (const frameRange& range : ranges) {
        const std::int64_t step = range.last < range.first ? -range.step : range.step;
        for (std::int64_t k = 0; k < CountFrames(range); ++k)
            frames.push_back(static_cast<int>(range.first + k * step));
    }
    return frames;
}

}  // namespace orv
