// keyReader.h: the key frames of a property, whatever their values are. Used by the readers of
// number and path properties.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "scene/jsonNode.h"
#include "scene/property.h"

namespace orv {

/// A list whose first item is an object with "t".
bool HoldsKeys(const JsonNode& k);
/// The number of key frames, at most 100,000.
std::size_t KeyCount(const JsonNode& k);
/// The handle `key` of a key frame; empty when it is missing. x is clamped to 0..1.
easeHandle ReadHandle(const JsonNode& keyNode, std::string_view key);
[[noreturn]] void FailOrder(const JsonNode& keyNode, double before, double t);
[[noreturn]] void FailNoStart(const JsonNode& k, std::size_t index);

/// Old files give the last key's value as the end of the interval before it.
template <class Key, class ReadValue>
auto EndOfLastInterval(const Key& before, const JsonNode& beforeNode, bool holds,
                       const ReadValue& readValue)
{
    const std::optional<JsonNode> end = beforeNode.find("e");
    if (before.hold || (holds && !end)) return before.value;
    return readValue(end ? *end : beforeNode.required("e", "the value of the last key frame"));
}

/// Reads the list `k`. `readValue` turns the node of an `s` or `e` into a value, `finish` adds to a
/// key what only its kind has. With `holds` every key holds.
template <class Key, class ReadValue, class Finish>
std::vector<Key> ReadKeys(const JsonNode& k, bool holds, const ReadValue& readValue,
                          const Finish& finish)
{
    const std::size_t count = KeyCount(k);
    std::vector<Key> keys;
    keys.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        const JsonNode node = k.item(index);
        Key key;
        key.t = node.numberAt("t");
        if (index > 0 && key.t < keys.back().t) FailOrder(node, keys.back().t, key.t);
        key.hold = node.flagAt("h", false);
        key.out = ReadHandle(node, "o");
        key.in = ReadHandle(node, "i");
        const bool isLast = index + 1 == count;
        if (const std::optional<JsonNode> start = node.find("s")) {
            key.value = readValue(*start);
        } else if (isLast && index > 0) {
            key.value = EndOfLastInterval(keys.back(), k.item(index - 1), holds, readValue);
        } else {
            FailNoStart(k, index);
        }
        finish(key, node);
        keys.push_back(std::move(key));
    }
    if (holds) {
        for (Key& key : keys) key.hold = true;
    }
    return keys;
}

}  // namespace orv
