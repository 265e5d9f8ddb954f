// jsonTree.h: a JSON text as a tree, bounded while it is read: nothing that is too deep, too large
// or not finite is ever kept.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "scene/messages.h"

namespace orv {

/// Objects, lists, numbers, ... of a file.
inline constexpr std::size_t kMostJsonValues = 5'000'000;

struct jsonMember;

/// Numbers are doubles. Objects keep their members as written; of equal keys the last counts.
struct jsonValue {
    using list = std::vector<jsonValue>;
    using object = std::vector<jsonMember>;
    std::variant<std::monostate, bool, double, std::string, list, object> data;
};

struct jsonMember {
    std::string key;
    jsonValue value;
};

/// The one object of a JSON text. Fails with line and column when the text is none (also for bad
/// UTF-8, and for packed files), with the path for more than 128 levels, 5,000,000 values, and
/// numbers outside -1e9..1e9. A byte-order mark is skipped.
jsonValue ParseJson(std::string_view text, const Messages& messages);

/// The value of `key`, null when `object` has none.
const jsonValue* FindMember(const jsonValue::object& object, std::string_view key);

/// "a number", "an object", ... for messages; short texts and numbers with their value.
std::string Described(const jsonValue& value);

}  // namespace orv
