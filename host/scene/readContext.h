// readContext.h: what every reader of scene parts needs besides the value that it reads.
#pragma once

#include <string_view>
#include <unordered_map>

#include "scene/jsonNode.h"
#include "scene/loader.h"

namespace orv {

/// Lives as long as one loading; borrows everything.
struct readContext {
    const loadOptions& options;
    Messages& messages;
    std::unordered_map<std::string_view, JsonNode> slots;  ///< by sid: the property in its `p`
    int layersLeft = 10'000;                               ///< of the file's limit
};

/// Fills the slots from the top level's object.
void ReadSlots(const JsonNode& root, readContext& context);

/// `property`, or the slot that its `sid` names, when there is one.
JsonNode Slotted(const JsonNode& property, const readContext& context);

}  // namespace orv
