#include "scene/maskReader.h"

#include <fmt/format.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "scene/keyReader.h"
#include "scene/propertyReader.h"

namespace orv {
namespace {

constexpr std::array kModes{
    std::pair{std::string_view("n"), maskMode::none},
    std::pair{std::string_view("a"), maskMode::add},
    std::pair{std::string_view("s"), maskMode::subtract},
    std::pair{std::string_view("i"), maskMode::intersect},
    std::pair{std::string_view("l"), maskMode::lighten},
    std::pair{std::string_view("d"), maskMode::darken},
    std::pair{std::string_view("f"), maskMode::difference},
};

maskMode ReadMode(const JsonNode& node)
{
    for (const auto& [letter, mode] : kModes) {
        if (node.text() == letter) return mode;
    }
    node.fail(
        fmt::format("{} is no mask mode, expected n, a, s, i, l, d or f", Quoted(node.text())));
}

vec2 ReadPoint(const JsonNode& node)
{
    const std::size_t count = node.size();
    return {count > 0 ? node.item(0).number() : 0.0, count > 1 ? node.item(1).number() : 0.0};
}

std::vector<vec2> ReadPoints(const JsonNode& path, std::string_view key)
{
    constexpr std::size_t kMostVertices = 10'000;
    const JsonNode list = path.required(key, "a list of points");
    if (list.size() > kMostVertices) {
        list.fail(fmt::format("{} vertices, the limit is {}", list.size(), kMostVertices));
    }
    std::vector<vec2> points;
    points.reserve(list.size());
    for (std::size_t k = 0; k < list.size(); ++k) points.push_back(ReadPoint(list.item(k)));
    return points;
}

/// `node`: a path, or a list with one path in it.
maskPath ReadPath(const JsonNode& node, bool closedByDefault)
{
    if (node.isList()) {
        if (node.size() != 1) node.failType("a path or a list of one path");
        return ReadPath(node.item(0), closedByDefault);
    }
    maskPath path{node.flagAt("c", closedByDefault), ReadPoints(node, "v"), ReadPoints(node, "i"),
                  ReadPoints(node, "o")};
    if (path.in.size() != path.vertex.size() || path.out.size() != path.vertex.size()) {
        node.fail(fmt::format("v, i and o have {}, {} and {} points, expected equal numbers",
                              path.vertex.size(), path.in.size(), path.out.size()));
    }
    return path;
}

void WarnDifferentCounts(const JsonNode& k, const std::vector<pathKeyFrame>& keys)
{
    for (std::size_t index = 1; index < keys.size(); ++index) {
        const pathKeyFrame &before = keys[index - 1], &key = keys[index];
        if (before.hold || before.value.vertex.size() == key.value.vertex.size()) continue;
        k.item(index - 1).warn(
            fmt::format("the paths at t = {} and t = {} have {} and {} vertices, the first holds",
                        NumberText(before.t), NumberText(key.t), before.value.vertex.size(),
                        key.value.vertex.size()));
    }
}

pathProperty ReadPathProperty(const JsonNode& node, bool closedByDefault,
                              const readContext& context)
{
    const JsonNode source = Slotted(node, context);
    WarnExpression(source);
    const JsonNode k = source.required("k", "a path or key frames");
    if (!HoldsKeys(k)) return {ReadPath(k, closedByDefault), {}};

    pathProperty result;
    result.keys = ReadKeys<pathKeyFrame>(
        k, false, [&](const JsonNode& value) { return ReadPath(value, closedByDefault); },
        [](pathKeyFrame&, const JsonNode&) {});
    WarnDifferentCounts(k, result.keys);
    if (result.keys.size() == 1) return {std::move(result.keys.front().value), {}};
    return result;
}

void WarnUnsupported(const JsonNode& node)
{
    for (const auto& [key, feature] : {std::pair{"x", "expansion"}, std::pair{"f", "feather"}}) {
        const std::optional<JsonNode> value = node.find(key);
        if (value && HoldsNonZero(*value)) {
            value->warn(fmt::format("mask {} is not supported, ignored", feature));
        }
    }
}

mask ReadMask(const JsonNode& node, const readContext& context)
{
    mask result;
    result.name = node.textAt("nm", "");
    if (const auto mode = node.find("mode")) result.mode = ReadMode(*mode);
    result.inverted = node.flagAt("inv", false);
    result.opacity = ReadPropertyAt(node, "o", {}, context);
    result.path =
        ReadPathProperty(node.required("pt", "a path property"), node.flagAt("cl", false), context);
    WarnUnsupported(node);
    if (const auto kal = node.find("kal")) WarnUnknownKeys(*kal, {});
    return result;
}

}  // namespace

std::vector<mask> ReadMasks(const JsonNode& masks, const readContext& context)
{
    constexpr std::size_t kMostMasks = 1000;
    if (masks.size() > kMostMasks) {
        masks.fail(fmt::format("{} masks, the limit is {}", masks.size(), kMostMasks));
    }
    std::vector<mask> result;
    for (std::size_t k = 0; k < masks.size(); ++k) {
        result.push_back(ReadMask(masks.item(k), context));
    }
    return result;
}

}  // namespace orv
