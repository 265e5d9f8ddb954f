// transformReader.h: where a layer is, and what cameras and lights add to that.
#pragma once

#include "scene/jsonNode.h"
#include "scene/model.h"
#include "scene/readContext.h"

namespace orv {

/// `layerNode`: the layer; its `ks` may be missing. `l`: its type and `threeD` are known.
transformProps ReadTransform(const JsonNode& layerNode, const layer& l, const readContext& context);

cameraProps ReadCamera(const JsonNode& layerNode, const readContext& context);
lightProps ReadLight(const JsonNode& layerNode, const readContext& context);

}  // namespace orv
