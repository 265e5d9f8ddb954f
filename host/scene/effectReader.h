// effectReader.h: the effects of a layer and the values that the scene gives their parameters.
#pragma once

#include <unordered_map>

#include "scene/jsonNode.h"
#include "scene/model.h"
#include "scene/readContext.h"

namespace orv {

/// Reads `layerNode`'s `ef` into `owner`, which belongs to `comp`, whose layers are all known.
/// Effects of plug-ins that are not loaded stay in the list without values, with a warning.
void ReadEffects(const JsonNode& layerNode, const composition& comp,
                 const std::unordered_map<int, int>& byInd, const readContext& context,
                 layer& owner);

}  // namespace orv
