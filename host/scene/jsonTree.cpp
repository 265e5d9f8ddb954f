#include "scene/jsonTree.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <ranges>
#include <utility>

#include "scene/utf8.h"

namespace orv {
namespace {

constexpr std::size_t kMostLevels = 128;
constexpr double kLargestNumber = 1e9;

[[noreturn]] void FailAtOffset(std::string_view text, std::size_t offset, const Messages& messages,
                               const std::string& reason)
{
    const std::string_view before = text.substr(0, std::min(offset, text.size()));
    const std::size_t lineStart =
        before.rfind('\n') + 1;  // without a line break npos + 1, that is 0
    const auto line = 1 + static_cast<std::size_t>(std::ranges::count(before, '\n'));
    messages.failAt(line, before.size() - lineStart + 1, reason);
}

/// Takes the parser's events and builds the tree. Knows the path of what it is building.
class TreeBuilder {
public:
    TreeBuilder(std::string_view text, const Messages& messages) : text_(text), messages_(messages)
    {
    }
    [[nodiscard]] jsonValue take() { return std::move(root_); }

    // The parser's events; true means go on.
    bool null() { return put({}); }
    bool boolean(bool value) { return put({value}); }
    bool number_integer(std::int64_t value) { return putNumber(static_cast<double>(value)); }
    bool number_unsigned(std::uint64_t value) { return putNumber(static_cast<double>(value)); }
    bool number_float(double value, const std::string&) { return putNumber(value); }
    bool string(std::string& value) { return put({std::move(value)}); }
    bool binary(std::vector<std::uint8_t>&) { return false; }  // texts hold none
    bool start_object(std::size_t) { return open({jsonValue::object{}}); }
    bool start_array(std::size_t) { return open({jsonValue::list{}}); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(std::string& name)
    {
        std::get<jsonValue::object>(open_.back()->data).push_back({std::move(name), {}});
        return true;
    }
    bool parse_error(std::size_t position, const std::string& lastToken,
                     const nlohmann::detail::exception& error);

private:
    /// The place of the value that comes next.
    jsonValue& nextPlace();
    bool put(jsonValue value)
    {
        nextPlace() = std::move(value);
        return true;
    }
    bool putNumber(double value);
    bool open(jsonValue container);
    bool close()
    {
        open_.pop_back();
        return true;
    }
    /// The path of the value that was placed last, or is about to be filled in.
    [[nodiscard]] std::string path() const;

    std::string_view text_;
    const Messages& messages_;
    jsonValue root_;
    // A container grows only while it is the last one open, so these pointers stay good.
    std::vector<jsonValue*> open_;
    std::size_t values_ = 0;
};

jsonValue& TreeBuilder::nextPlace()
{
    if (++values_ > kMostJsonValues) {
        messages_.fail("", fmt::format("more than the limit of {} JSON values", kMostJsonValues));
    }
    if (open_.empty()) return root_;
    if (auto* object = std::get_if<jsonValue::object>(&open_.back()->data)) {
        return object->back().value;
    }
    return std::get<jsonValue::list>(open_.back()->data).emplace_back();
}

bool TreeBuilder::putNumber(double value)
{
    jsonValue& place = nextPlace();
    if (std::abs(value) > kLargestNumber) {
        messages_.fail(path(), fmt::format("{} is beyond the limit of 1e9", NumberText(value)));
    }
    place.data = value;
    return true;
}

bool TreeBuilder::open(jsonValue container)
{
    const bool isObject = std::holds_alternative<jsonValue::object>(container.data);
    if (open_.empty() && !isObject) {
        FailAtOffset(text_, text_.find('['), messages_, "found a list, expected one object");
    }
    jsonValue& place = nextPlace();
    if (open_.size() == kMostLevels) {
        messages_.fail(path(),
                       fmt::format("nested deeper than the limit of {} levels", kMostLevels));
    }
    place = std::move(container);
    open_.push_back(&place);
    return true;
}

std::string TreeBuilder::path() const
{
    std::string result;
    for (const jsonValue* container : open_) {
        if (const auto* object = std::get_if<jsonValue::object>(&container->data)) {
            result = PathWithKey(result, object->back().key);
        } else {
            result = PathWithIndex(result, std::get<jsonValue::list>(container->data).size() - 1);
        }
    }
    return result;
}

bool TreeBuilder::parse_error(std::size_t position, const std::string& lastToken,
                              const nlohmann::detail::exception& error)
{
    constexpr int kNumberOverflow = 406;
    if (error.id == kNumberOverflow) {
        (void)nextPlace();
        messages_.fail(path(), fmt::format("{} is beyond the limit of 1e9", Clipped(lastToken)));
    }
    // The library's text begins with a position of its own and may repeat the input.
    const std::string_view text = error.what();
    const std::size_t start = text.find("syntax error");
    FailAtOffset(text_, position == 0 ? 0 : position - 1, messages_,
                 Clipped(start == std::string_view::npos ? text : text.substr(start)));
}

void RefusePackedFiles(std::string_view text, const Messages& messages)
{
    struct packing {
        std::string_view magic, name;
    };
    constexpr packing kPackings[] = {{"PK\x03\x04", "zip"}, {"\x1F\x8B", "gzip"}};
    for (const packing& each : kPackings) {
        if (!text.starts_with(each.magic)) continue;
        messages.failAt(1, 1, fmt::format("found {} data, expected JSON: unpack it", each.name));
    }
}

}  // namespace

jsonValue ParseJson(std::string_view text, const Messages& messages)
{
    RefusePackedFiles(text, messages);
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());

    const std::size_t bad = FirstBadUtf8(text);
    if (bad < text.size()) {
        FailAtOffset(text, bad, messages,
                     fmt::format("found byte {:02X}, which is not UTF-8",
                                 static_cast<unsigned char>(text[bad])));
    }

    TreeBuilder builder(text, messages);
    (void)nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
    jsonValue root = builder.take();
    if (!std::holds_alternative<jsonValue::object>(root.data)) {
        messages.failAt(1, 1, fmt::format("found {}, expected one object", Described(root)));
    }
    return root;
}

const jsonValue* FindMember(const jsonValue::object& object, std::string_view key)
{
    // From the end: of equal keys the last counts.
    const auto found = std::ranges::find(object.rbegin(), object.rend(), key, &jsonMember::key);
    return found == object.rend() ? nullptr : &found->value;
}

std::string Described(const jsonValue& value)
{
    struct describe {
        std::string operator()(std::monostate) const { return "null"; }
        std::string operator()(bool b) const { return b ? "true" : "false"; }
        std::string operator()(double number) const { return "the number " + NumberText(number); }
        std::string operator()(const std::string& text) const { return "the text " + Quoted(text); }
        std::string operator()(const jsonValue::list&) const { return "a list"; }
        std::string operator()(const jsonValue::object&) const { return "an object"; }
    };
    return std::visit(describe{}, value.data);
}

}  // namespace orv
