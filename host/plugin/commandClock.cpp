#include "plugin/commandClock.h"

#include <cmath>

#include "animation/evaluate.h"
#include "animation/ticks.h"

namespace orv {

namespace {

/// a / scaleA == b / scaleB, exactly.
bool SameTime(A_long a, A_u_long scaleA, A_long b, A_u_long scaleB)
{
    return static_cast<std::int64_t>(a) * scaleB == static_cast<std::int64_t>(b) * scaleA;
}

}  // namespace

CommandClock::CommandClock(const project& scene, const layer& owner, double t)
    : scene_(scene),
      owner_(owner),
      t_(t),
      currentTicks_(ToTicks(LayerTime(owner, t), scene.ticksPerFrame)),
      compositionTicks_(ToTicks(t, scene.ticksPerFrame))
{
}

A_long CommandClock::timeStep() const
{
    return scene_.ticksPerFrame;
}

A_u_long CommandClock::timeScale() const
{
    return static_cast<A_u_long>(scene_.ticksPerSecond);
}

A_long CommandClock::totalTime() const
{
    return ToTicks((owner_.op - owner_.ip) / std::abs(owner_.stretch), scene_.ticksPerFrame);
}

double CommandClock::Frames(A_long value, A_u_long scale) const
{
    const double ticks = static_cast<double>(value) * scene_.ticksPerSecond / scale;
    return ticks / scene_.ticksPerFrame;
}

double CommandClock::OfLayerTime(A_long value, A_u_long scale) const
{
    if (SameTime(value, scale, currentTicks_, timeScale())) return t_;
    return CompositionTime(owner_, Frames(value, scale));
}

double CommandClock::OfCompositionTime(A_long value, A_u_long scale) const
{
    if (SameTime(value, scale, compositionTicks_, timeScale())) return t_;
    return Frames(value, scale);
}

double CommandClock::OfLayerTime(const layer& other, A_long value, A_u_long scale) const
{
    if (&other == &owner_) return OfLayerTime(value, scale);
    return CompositionTime(other, Frames(value, scale));
}

A_Time CommandClock::ToCompositionTime(A_long value, A_u_long scale) const
{
    return {ToTicks(OfLayerTime(value, scale), scene_.ticksPerFrame), timeScale()};
}

}  // namespace orv
