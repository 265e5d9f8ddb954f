// readContext.h: what every reader of scene parts needs besides the value that it reads.
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>

#include "scene/jsonNode.h"
#include "scene/jsonTree.h"
#include "scene/loader.h"

namespace orv {

struct slot {
    JsonNode property;  ///< what stands in its `p`
    std::size_t values = 0;
};

/// Lives as long as one loading; borrows everything.
struct readContext {
    const loadOptions& options;
    Messages& messages;
    std::unordered_map<std::string_view, slot> slots;  ///< by sid
    int layersLeft = 10'000;                           ///< of the file's limit
    /// Each use of a slot reads it again: a small file could ask for any amount of memory.
    mutable std::size_t slotValuesLeft = kMostJsonValues;
};

/// Fills the slots from the top level's object.
void ReadSlots(const JsonNode& root, readContext& context);

/// `property`, or the slot that its `sid` names, when there is one. Fails when the slots that were
/// used so far, each use counted, hold more JSON values than a file may.
JsonNode Slotted(const JsonNode& property, const readContext& context);

}  // namespace orv
