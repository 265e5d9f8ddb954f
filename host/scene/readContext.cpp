#include "scene/readContext.h"

#include <fmt/format.h>

#include <optional>

namespace orv {
namespace {

std::size_t CountValues(const jsonValue& value)
{
    std::size_t count = 1;
    if (const auto* list = std::get_if<jsonValue::list>(&value.data)) {
        for (const jsonValue& each : *list) count += CountValues(each);
    } else if (const auto* object = std::get_if<jsonValue::object>(&value.data)) {
        for (const jsonMember& each : *object) count += CountValues(each.value);
    }
    return count;
}

}  // namespace

void ReadSlots(const JsonNode& root, readContext& context)
{
    const std::optional<JsonNode> slots = root.find("slots");
    if (!slots) return;
    for (const jsonMember& member : slots->object()) {
        const JsonNode node(member.value, PathWithKey(slots->path(), member.key), context.messages);
        const auto value = node.find("p");
        if (!value) continue;
        context.slots.insert_or_assign(member.key, slot{*value, CountValues(value->value())});
    }
}

JsonNode Slotted(const JsonNode& property, const readContext& context)
{
    const std::optional<JsonNode> sid = property.find("sid");
    if (!sid) return property;
    const auto found = context.slots.find(sid->text());
    if (found == context.slots.end()) return property;
    const slot& used = found->second;
    if (used.values > context.slotValuesLeft) {
        sid->fail(fmt::format("the slots in use come to more than the limit of {} JSON values",
                              kMostJsonValues));
    }
    context.slotValuesLeft -= used.values;
    return used.property;
}

}  // namespace orv
