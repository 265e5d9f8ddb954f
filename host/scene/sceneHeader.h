// sceneHeader.h: what a scene says at its top level: rate, frames, depth, resolution, motion blur.
#pragma once

#include <optional>

#include "scene/jsonNode.h"
#include "scene/model.h"

namespace orv {

/// Fills all of `scene` but its compositions and images.
void ReadHeader(const JsonNode& root, project& scene);

/// The motion blur of all compositions: `inherited` is that of the main one.
struct motionBlurRules {
    motionBlurSettings inherited;
    std::optional<bool> forced;  ///< kal.motionBlur
};
motionBlurRules ReadMotionBlurRules(const JsonNode& root);
/// That of a composition: its own `mb`, else the inherited one.
motionBlurSettings ReadMotionBlur(const JsonNode& compositionNode, const motionBlurRules& rules);

}  // namespace orv
