// jsonNode.h: a value of the tree together with its path, read with the type that is expected. Each
// reader fails with the path, the type expected and what was found.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "scene/jsonTree.h"
#include "scene/messages.h"

namespace orv {

/// Borrows the tree and the messages. Cheap to copy apart from its path.
class JsonNode {
public:
    JsonNode(const jsonValue& value, std::string path, Messages& messages);

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] Messages& messages() const noexcept { return *messages_; }
    [[nodiscard]] const jsonValue& value() const noexcept { return *value_; }
    [[noreturn]] void fail(const std::string& reason) const;
    void warn(const std::string& reason) const;

    // What it is, without complaint.
    [[nodiscard]] bool isObject() const;
    [[nodiscard]] bool isList() const;
    [[nodiscard]] bool isText() const;

    // Its value. A switch is true, false, 1 or 0; other numbers are not.
    [[nodiscard]] double number() const;
    [[nodiscard]] int whole() const;
    [[nodiscard]] bool flag() const;
    [[nodiscard]] const std::string& text() const;
    [[nodiscard]] const jsonValue::object& object() const;

    // Lists.
    [[nodiscard]] std::size_t size() const;
    [[nodiscard]] JsonNode item(std::size_t index) const;

    // Members of an object.
    [[nodiscard]] std::optional<JsonNode> find(std::string_view key) const;
    /// `expected`: "a number", for the message when it is missing.
    [[nodiscard]] JsonNode required(std::string_view key, std::string_view expected) const;
    [[nodiscard]] double numberAt(std::string_view key) const;
    [[nodiscard]] double numberAt(std::string_view key, double fallback) const;
    [[nodiscard]] bool flagAt(std::string_view key, bool fallback) const;
    [[nodiscard]] std::string textAt(std::string_view key, std::string_view fallback) const;
    /// A text, or a number as its decimal text: ids of assets.
    [[nodiscard]] std::string idAt(std::string_view key) const;

    [[noreturn]] void failType(std::string_view expected) const;

private:
    const jsonValue* value_;
    std::string path_;
    Messages* messages_;
};

/// Reads "w" and "h" style sizes: rounded, 1..30000.
int SizeAt(const JsonNode& node, std::string_view key);
/// Fails, at `node`, when the area is above 2^26 pixels.
void CheckArea(const JsonNode& node, int width, int height);
/// Warns about each member of `kal` that has none of these names.
void WarnUnknownKeys(const JsonNode& kal, std::initializer_list<std::string_view> known);

}  // namespace orv
