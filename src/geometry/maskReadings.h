// maskReadings.h: what the host's paths tell of one instant, before anything is laid.
#pragma once

#include <vector>

#include "geometry/maskSampling.h"
#include "geometry/records.h"

/// Everything that the paths of one instant tell. Lists that are not empty have N + 1 entries,
/// but for `outline`.
struct maskReadings {
    std::vector<propS> props;        ///< placement along the source; never empty
    std::vector<pathSample> source;  ///< the curve that the texture is read along; empty: none
    std::vector<pathSample> mask;    ///< the ribbon's spine; empty: flat mode
    std::vector<point3> outline;     ///< the contour on the layer, see ContourPoint; may be empty
};
