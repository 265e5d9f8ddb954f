// layerLinks.h: how the layers of a composition refer to each other.
#pragma once

#include <string>
#include <unordered_map>

#include "scene/jsonNode.h"
#include "scene/model.h"

namespace orv {

/// Positions by `ind`; of layers with one `ind` the first, with a warning for each other.
std::unordered_map<int, int> LayersByInd(const JsonNode& layers, const composition& comp);

/// Sets the parents of all layers. A `parent` that names no layer is warned about and left out; a
/// cycle fails with its chain.
void LinkParents(const JsonNode& layers, const std::unordered_map<int, int>& byInd,
                 composition& comp);

/// The `ind`s that a composition has, for messages; a long list is cut.
std::string KnownInds(const composition& comp);

}  // namespace orv
