// maskReader.h: the masks of a layer.
#pragma once

#include "scene/jsonNode.h"
#include "scene/model.h"
#include "scene/readContext.h"

namespace orv {

/// `masks`: a layer's masksProperties. All are kept, in order, whatever their mode and size.
std::vector<mask> ReadMasks(const JsonNode& masks, const readContext& context);

}  // namespace orv
