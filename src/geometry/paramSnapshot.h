// paramSnapshot.h: the values of all parameters at one instant, as a user reads them.
// The one view of the values that geometry, camera and pipeline are fed from: `ReadParams` fills it
// from the host's parameter array, the motion-blur renderer from the streams of a sample. Every
// value is narrowed to float here, so that both sources compute alike.
#pragma once

#include <array>
#include <cstddef>

#include "host_api.h"

#include "geometry/paramIndex.h"
#include "geometry/records.h"

struct paramSnapshot {
    /// Sliders and percents as shown (100 is 100 %), degrees, popups from 1, checkboxes 0 or 1.
    /// Entries of other types stay 0.
    std::array<float, kParamCount> value{};
    point3 anchor, position;  ///< layer pixels at full resolution, z as in the host
    point3 contourColor;      ///< red, green, blue, 0..1
    /// Chosen masks, 0 when none. Taken from the frame's parameters: paths are not sampled over
    /// time.
    struct {
        PF_PathID mask = 0, maskReference = 0, sourceReference = 0, contour = 0;
    } paths;

    [[nodiscard]] float operator[](PF_ParamIndex index) const
    {
        return value[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] int popup(PF_ParamIndex index) const { return static_cast<int>((*this)[index]); }
    [[nodiscard]] bool on(PF_ParamIndex index) const { return (*this)[index] != 0.0f; }
    /// "Camera mode" is "3D (composition)".
    [[nodiscard]] bool composition3D() const { return popup(kCameraMode) == kCamera3D; }
    /// A percent parameter as a fraction of 1.
    [[nodiscard]] double fraction(PF_ParamIndex index) const
    {
        return static_cast<double>((*this)[index]) * 0.01;
    }
};

/// The snapshot of a command's own parameter array (kParamCount entries, none null). Points are
/// brought to full resolution with the downsample denominators of `in_data`.
paramSnapshot ReadParams(const PF_InData& in_data, PF_ParamDef* const params[]);
