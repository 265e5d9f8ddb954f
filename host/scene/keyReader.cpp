#include "scene/keyReader.h"

#include <fmt/format.h>

#include <algorithm>

namespace orv {
namespace {

/// A number, or a list of them.
std::vector<double> ReadEntries(const JsonNode& node)
{
    if (!node.isList()) return {node.number()};
    std::vector<double> entries;
    for (std::size_t k = 0; k < node.size(); ++k) entries.push_back(node.item(k).number());
    return entries;
}

}  // namespace

bool HoldsKeys(const JsonNode& k)
{
    if (!k.isList() || k.size() == 0) return false;
    const JsonNode first = k.item(0);
    return first.isObject() && first.find("t").has_value();
}

std::size_t KeyCount(const JsonNode& k)
{
    constexpr std::size_t kMostKeys = 100'000;
    if (k.size() > kMostKeys) {
        k.fail(fmt::format("{} key frames, the limit is {}", k.size(), kMostKeys));
    }
    return k.size();
}

easeHandle ReadHandle(const JsonNode& keyNode, std::string_view key)
{
    const std::optional<JsonNode> node = keyNode.find(key);
    if (!node) return {};
    easeHandle handle{ReadEntries(node->required("x", "a number or a list of numbers")),
                      ReadEntries(node->required("y", "a number or a list of numbers"))};
    for (double& x : handle.x) x = std::clamp(x, 0.0, 1.0);
    return handle;
}

void FailOrder(const JsonNode& keyNode, double before, double t)
{
    keyNode.messages().fail(PathWithKey(keyNode.path(), "t"),
                            fmt::format("key frames must ascend in time, {} comes after {}",
                                        NumberText(t), NumberText(before)));
}

void FailNoStart(const JsonNode& k, std::size_t index)
{
    const JsonNode node = k.item(index);
    if (k.size() == 1) (void)node.required("s", "a value");
    k.messages().fail(
        PathWithKey(node.path(), "s"),
        fmt::format("required field is missing: the key frame at t = {} is not the last, another "
                    "follows at t = {}",
                    NumberText(node.numberAt("t")), NumberText(k.item(index + 1).numberAt("t"))));
}

}  // namespace orv
