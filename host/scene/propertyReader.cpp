#include "scene/propertyReader.h"

#include <algorithm>
#include <optional>
#include <variant>

#include "scene/keyReader.h"

namespace orv {
namespace {

double ReadComponent(const JsonNode& node, const propertyRule& rule)
{
    if (rule.switches && std::holds_alternative<bool>(node.value().data)) {
        return node.flag() ? 1.0 : 0.0;
    }
    return node.number();
}

std::vector<double> ReadNumbers(const JsonNode& node, const propertyRule& rule)
{
    if (!node.isList()) return {ReadComponent(node, rule)};
    std::vector<double> numbers;
    const std::size_t count = std::min(node.size(), rule.components);
    for (std::size_t k = 0; k < count; ++k) numbers.push_back(ReadComponent(node.item(k), rule));
    return numbers;
}

std::vector<double> ReadValue(const JsonNode& node, const propertyRule& rule)
{
    std::vector<double> value = ReadNumbers(node, rule);
    if (rule.check) rule.check(value, node);
    return value;
}

/// Spatial tangents count only as a pair.
void ReadTangents(const JsonNode& keyNode, const propertyRule& rule, keyFrame& key)
{
    const std::optional<JsonNode> to = keyNode.find("to"), ti = keyNode.find("ti");
    if (!to || !ti) return;
    key.toTangent = ReadNumbers(*to, rule);
    key.tiTangent = ReadNumbers(*ti, rule);
}

property ReadValues(const JsonNode& k, const propertyRule& rule)
{
    if (!HoldsKeys(k)) return {ReadValue(k, rule), {}};
    property result;
    result.keys = ReadKeys<keyFrame>(
        k, rule.holds, [&](const JsonNode& node) { return ReadValue(node, rule); },
        [&](keyFrame& key, const JsonNode& node) { ReadTangents(node, rule, key); });
    if (result.keys.size() == 1) return {std::move(result.keys.front().value), {}};
    return result;
}

bool AnyNonZero(const jsonValue& value)
{
    if (const auto* number = std::get_if<double>(&value.data)) return *number != 0.0;
    if (const auto* list = std::get_if<jsonValue::list>(&value.data)) {
        return std::ranges::any_of(*list, AnyNonZero);
    }
    // A key frame: only its values count, not its time.
    const auto* object = std::get_if<jsonValue::object>(&value.data);
    if (object == nullptr) return false;
    const jsonValue *start = FindMember(*object, "s"), *end = FindMember(*object, "e");
    return (start != nullptr && AnyNonZero(*start)) || (end != nullptr && AnyNonZero(*end));
}

}  // namespace

property ReadProperty(const JsonNode& node, const propertyRule& rule, const readContext& context)
{
    const JsonNode source = Slotted(node, context);
    WarnExpression(source);
    return ReadValues(source.required("k", "a value or key frames"), rule);
}

property ReadPropertyAt(const JsonNode& parent, std::string_view key, const propertyRule& rule,
                        const readContext& context)
{
    const std::optional<JsonNode> node = parent.find(key);
    return node ? ReadProperty(*node, rule, context) : property{};
}

property ReadPlainOrPropertyAt(const JsonNode& parent, std::string_view key,
                               const propertyRule& rule, const readContext& context)
{
    const std::optional<JsonNode> node = parent.find(key);
    if (!node) return {};
    return node->isObject() ? ReadProperty(*node, rule, context)
                            : property{ReadValue(*node, rule), {}};
}

void WarnExpression(const JsonNode& property)
{
    const std::optional<JsonNode> expression = property.find("x");
    if (expression && expression->isText()) expression->warn("expressions are not run, ignored");
}

bool HoldsNonZero(const JsonNode& property)
{
    if (!property.isObject()) return AnyNonZero(property.value());
    const std::optional<JsonNode> k = property.find("k");
    return k && AnyNonZero(k->value());
}

}  // namespace orv
