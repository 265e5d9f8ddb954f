// layerReader.h: the layers of one composition.
#pragma once

#include "scene/assets.h"
#include "scene/jsonNode.h"
#include "scene/model.h"
#include "scene/readContext.h"

namespace orv {

/// Reads the list `layers`: all that a layer says about itself. Parents, effects and the size of
/// layers that have none of their own are left for later steps, when all layers are known.
std::vector<layer> ReadLayers(const JsonNode& layers, readContext& context, assetTable& assets,
                              project& scene);

}  // namespace orv
