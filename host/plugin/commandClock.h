// commandClock.h: the times of one command, between the effect's ticks and the scene's frames.
// Effects are called in the time of the layer that bears them; the composition's time is asked for.
#pragma once

#include "host_api.h"

#include "scene/model.h"

namespace orv {

/// Borrows the project and the layer. `t` throughout: composition time in frames.
class CommandClock {
public:
    CommandClock(const project& scene, const layer& owner, double t);

    [[nodiscard]] A_long currentTime() const { return currentTicks_; }  ///< layer time
    [[nodiscard]] A_long timeStep() const;                              ///< ticks a frame
    [[nodiscard]] A_u_long timeScale() const;                           ///< ticks a second
    [[nodiscard]] A_long totalTime() const;                             ///< the layer's duration
    [[nodiscard]] double t() const { return t_; }

    /// The instant that an effect means by `value` / `scale` seconds of layer time. The command's
    /// own time means the frame's exact instant, however it was rounded. `scale` must not be 0.
    [[nodiscard]] double OfLayerTime(A_long value, A_u_long scale) const;
    /// The same for composition time, and for the layer time of another layer.
    [[nodiscard]] double OfCompositionTime(A_long value, A_u_long scale) const;
    [[nodiscard]] double OfLayerTime(const layer& other, A_long value, A_u_long scale) const;

    /// Layer time as composition time, to the nearest tick.
    [[nodiscard]] A_Time ToCompositionTime(A_long value, A_u_long scale) const;

private:
    [[nodiscard]] double Frames(A_long value, A_u_long scale) const;

    const project& scene_;
    const layer& owner_;
    double t_;
    A_long currentTicks_, compositionTicks_;
};

}  // namespace orv
