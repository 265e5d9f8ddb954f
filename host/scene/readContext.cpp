#include "scene/readContext.h"

#include <optional>

namespace orv {

void ReadSlots(const JsonNode& root, readContext& context)
{
    const std::optional<JsonNode> slots = root.find("slots");
    if (!slots) return;
    for (const jsonMember& member : slots->object()) {
        const JsonNode slot(member.value, PathWithKey(slots->path(), member.key), context.messages);
        if (const auto value = slot.find("p")) context.slots.insert_or_assign(member.key, *value);
    }
}

JsonNode Slotted(const JsonNode& property, const readContext& context)
{
    const std::optional<JsonNode> sid = property.find("sid");
    if (!sid) return property;
    const auto slot = context.slots.find(sid->text());
    return slot == context.slots.end() ? property : slot->second;
}

}  // namespace orv
