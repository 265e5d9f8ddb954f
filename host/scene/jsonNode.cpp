#include "scene/jsonNode.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace orv {

JsonNode::JsonNode(const jsonValue& value, std::string path, Messages& messages)
    : value_(&value), path_(std::move(path)), messages_(&messages)
{
}

void JsonNode::fail(const std::string& reason) const
{
    messages_->fail(path_, reason);
}

void JsonNode::warn(const std::string& reason) const
{
    messages_->warn(path_, reason);
}

void JsonNode::failType(std::string_view expected) const
{
    fail(fmt::format("expected {}, found {}", expected, Described(*value_)));
}

bool JsonNode::isObject() const
{
    return std::holds_alternative<jsonValue::object>(value_->data);
}

bool JsonNode::isList() const
{
    return std::holds_alternative<jsonValue::list>(value_->data);
}

bool JsonNode::isText() const
{
    return std::holds_alternative<std::string>(value_->data);
}

double JsonNode::number() const
{
    if (const auto* value = std::get_if<double>(&value_->data)) return *value;
    failType("a number");
}

int JsonNode::whole() const
{
    const double value = number();
    if (value != std::floor(value)) failType("a whole number");
    return static_cast<int>(value);  // numbers beyond 1e9 were refused
}

bool JsonNode::flag() const
{
    if (const auto* value = std::get_if<bool>(&value_->data)) return *value;
    const auto* number = std::get_if<double>(&value_->data);
    if (number == nullptr || (*number != 0.0 && *number != 1.0)) {
        failType("a switch (true, false, 1 or 0)");
    }
    return *number == 1.0;
}

const std::string& JsonNode::text() const
{
    if (const auto* value = std::get_if<std::string>(&value_->data)) return *value;
    failType("a text");
}

const jsonValue::object& JsonNode::object() const
{
    if (const auto* value = std::get_if<jsonValue::object>(&value_->data)) return *value;
    failType("an object");
}

std::size_t JsonNode::size() const
{
    if (const auto* value = std::get_if<jsonValue::list>(&value_->data)) return value->size();
    failType("a list");
}

JsonNode JsonNode::item(std::size_t index) const
{
    return {std::get<jsonValue::list>(value_->data)[index], PathWithIndex(path_, index),
            *messages_};
}

std::optional<JsonNode> JsonNode::find(std::string_view key) const
{
    const jsonValue* found = FindMember(object(), key);
    if (found == nullptr) return std::nullopt;
    return JsonNode(*found, PathWithKey(path_, key), *messages_);
}

JsonNode JsonNode::required(std::string_view key, std::string_view expected) const
{
    std::optional<JsonNode> found = find(key);
    if (!found) {
        messages_->fail(PathWithKey(path_, key),
                        fmt::format("required field is missing, expected {}", expected));
    }
    return *std::move(found);
}

double JsonNode::numberAt(std::string_view key) const
{
    return required(key, "a number").number();
}

double JsonNode::numberAt(std::string_view key, double fallback) const
{
    const std::optional<JsonNode> found = find(key);
    return found ? found->number() : fallback;
}

bool JsonNode::flagAt(std::string_view key, bool fallback) const
{
    const std::optional<JsonNode> found = find(key);
    return found ? found->flag() : fallback;
}

std::string JsonNode::textAt(std::string_view key, std::string_view fallback) const
{
    const std::optional<JsonNode> found = find(key);
    return found ? found->text() : std::string(fallback);
}

std::string JsonNode::idAt(std::string_view key) const
{
    const JsonNode node = required(key, "a text");
    if (const auto* number = std::get_if<double>(&node.value().data)) return NumberText(*number);
    return node.text();
}

int SizeAt(const JsonNode& node, std::string_view key)
{
    constexpr double kLargest = 30000.0;
    const double size = std::round(node.numberAt(key));
    if (!(size >= 1.0 && size <= kLargest)) {
        node.messages().fail(PathWithKey(node.path(), key),
                             fmt::format("{} is outside 1..30000", NumberText(size)));
    }
    return static_cast<int>(size);
}

void CheckArea(const JsonNode& node, int width, int height)
{
    constexpr std::int64_t kLargest = std::int64_t{1} << 26;
    const std::int64_t area = std::int64_t{width} * height;
    if (area <= kLargest) return;
    node.fail(fmt::format("{} x {} are {} pixels, the limit is {}", width, height, area, kLargest));
}

void WarnUnknownKeys(const JsonNode& kal, std::initializer_list<std::string_view> known)
{
    for (const jsonMember& member : kal.object()) {
        if (std::ranges::find(known, member.key) != known.end()) continue;
        kal.messages().warn(PathWithKey(kal.path(), member.key), "unknown key, ignored");
    }
}

}  // namespace orv
