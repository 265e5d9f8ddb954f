// ticks.h: the whole numbers in which the host tells effects the time. The host's time step is the
// ticks of a frame, its time scale the ticks of a second; tick v is the instant v / perFrame.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace orv {

struct tickRate {
    int perFrame = 512, perSecond = 12800;
    bool operator==(const tickRate&) const = default;
};

/// Fine enough that truncated times keep motion within a frame. `frameRate`: above 0, at most 999.
///   whole rates              512 ticks a frame,   512 x rate a second
///   whole rates x 1000/1001  1001 ticks a frame, 1000 x rate a second (29.97, 23.976, 59.94)
///   others                   1000 ticks a frame, 1000 x rate a second, rounded, at least 1
inline tickRate TickRateOf(double frameRate)
{
    const double whole = std::round(frameRate);
    if (whole > 0.0 && std::abs(frameRate - whole) <= 0.0001) {
        return {512, 512 * static_cast<int>(whole)};
    }
    const double ntsc = std::round(1.001 * frameRate);
    if (ntsc > 0.0 && std::abs(1.001 * frameRate - ntsc) <= 0.005) {
        return {1001, 1000 * static_cast<int>(ntsc)};
    }
    return {1000, std::max(1, static_cast<int>(std::lround(1000.0 * frameRate)))};
}

/// The nearest tick to frame time `t`; times beyond 32 bits are cut to them.
inline std::int32_t ToTicks(double t, int ticksPerFrame)
{
    using limits = std::numeric_limits<std::int32_t>;
    const double ticks = std::round(t * ticksPerFrame);
    return static_cast<std::int32_t>(
        std::clamp(ticks, static_cast<double>(limits::min()), static_cast<double>(limits::max())));
}

/// The instant of a tick that an effect asks for during a command whose own time is `commandTime`:
/// asking for that very tick means the exact instant, so that no hold key comes a frame late.
inline double FromTicks(std::int32_t ticks, int ticksPerFrame, double commandTime)
{
    if (ticks == ToTicks(commandTime, ticksPerFrame)) return commandTime;
    return static_cast<double>(ticks) / ticksPerFrame;
}

}  // namespace orv
