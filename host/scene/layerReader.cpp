#include "scene/layerReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>

#include "scene/maskReader.h"
#include "scene/propertyReader.h"
#include "scene/transformReader.h"

namespace orv {
namespace {

layerType ReadType(const JsonNode& node)
{
    const JsonNode ty = node.required("ty", "a number");
    switch (ty.whole()) {
        case 0:
            return layerType::precomposition;
        case 1:
            return layerType::solid;
        case 2:
            return layerType::image;
        case 3:
            return layerType::null;
        case 4:
            ty.warn("shape layers are not drawn: transparent");
            return layerType::empty;
        case 5:
            ty.warn("text layers are not drawn: transparent");
            return layerType::empty;
        case 13:
            return layerType::camera;
        case 14:
            return layerType::light;
        default:
            ty.warn("layers of this type are not supported, skipped");
    }
    return layerType::skipped;
}

void ReadTimes(const JsonNode& node, layer& l)
{
    l.ip = node.numberAt("ip");
    l.op = node.numberAt("op");
    l.start = node.numberAt("st", 0.0);
    l.stretch = node.numberAt("sr", 1.0);
    if (l.stretch == 0.0) node.required("sr", "a number").fail("a stretch of 0 is not possible");
}

void ReadSwitches(const JsonNode& node, layer& l)
{
    l.hidden = node.flagAt("hd", false);
    l.threeD = node.flagAt("ddd", false);
    l.motionBlur = node.flagAt("mb", false);
    l.matteSource = node.flagAt("td", false);
}

double HexByte(std::string_view digits)
{
    const auto valueOf = [](char c) {
        if (c >= '0' && c <= '9') return c - '0';
        return (c >= 'a' ? c - 'a' : c - 'A') + 10;
    };
    return (valueOf(digits[0]) * 16 + valueOf(digits[1])) / 255.0;
}

std::array<double, 3> ReadColor(const JsonNode& node)
{
    const std::string_view text = node.text();
    const bool isColor =
        text.size() == 7 && text[0] == '#' &&
        text.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string_view::npos;
    if (!isColor) node.fail(fmt::format("{} is no colour, expected #rrggbb", Quoted(text)));
    return {HexByte(text.substr(1, 2)), HexByte(text.substr(3, 2)), HexByte(text.substr(5, 2))};
}

void ReadPrecomposition(const JsonNode& node, assetTable& assets, const readContext& context,
                        layer& l)
{
    l.composition = UseComposition(node, assets);
    const int width = SizeAt(node, "w"), height = SizeAt(node, "h");
    CheckArea(node, width, height);
    if (l.composition >= 0) {
        l.width = width;
        l.height = height;
    }
    if (const auto tm = node.find("tm")) l.timeRemap = ReadProperty(*tm, {}, context);
}

void ReadSolid(const JsonNode& node, layer& l)
{
    l.width = SizeAt(node, "sw");
    l.height = SizeAt(node, "sh");
    CheckArea(node, l.width, l.height);
    l.color = ReadColor(node.required("sc", "a colour"));
}

void ReadImage(const JsonNode& node, assetTable& assets, project& scene, layer& l)
{
    l.image = UseImage(node, assets, scene);
    if (l.image < 0) return;
    const imageAsset& shown = scene.images[static_cast<std::size_t>(l.image)];
    l.width = shown.width;
    l.height = shown.height;
}

void ReadByType(const JsonNode& node, readContext& context, assetTable& assets, project& scene,
                layer& l)
{
    switch (l.type) {
        case layerType::precomposition:
            ReadPrecomposition(node, assets, context, l);
            break;
        case layerType::solid:
            ReadSolid(node, l);
            break;
        case layerType::image:
            ReadImage(node, assets, scene, l);
            break;
        case layerType::camera:
            l.camera = ReadCamera(node, context);
            break;
        case layerType::light:
            l.light = ReadLight(node, context);
            break;
        case layerType::null:
        case layerType::empty:
        case layerType::skipped:
            break;
    }
    const bool hasKeysOfItsOwn = l.type == layerType::camera || l.type == layerType::light;
    if (const auto kal = node.find("kal"); kal && !hasKeysOfItsOwn) WarnUnknownKeys(*kal, {});
}

/// Features that players know and this host does not.
void WarnUnsupported(const JsonNode& node)
{
    constexpr std::array kFeatures{
        std::pair{std::string_view("bm"), std::string_view("blend modes are")},
        std::pair{std::string_view("tt"), std::string_view("track mattes are")},
        std::pair{std::string_view("ao"), std::string_view("auto-orientation is")},
        std::pair{std::string_view("ct"), std::string_view("collapsed transforms are")},
    };
    for (const auto& [key, feature] : kFeatures) {
        const std::optional<JsonNode> value = node.find(key);
        if (!value) continue;
        const auto* number = std::get_if<double>(&value->value().data);
        const auto* flag = std::get_if<bool>(&value->value().data);
        if ((number != nullptr && *number != 0.0) || (flag != nullptr && *flag)) {
            value->warn(fmt::format("{} not supported, ignored", feature));
        }
    }
    const std::optional<JsonNode> styles = node.find("sy");
    if (styles && styles->isList() && styles->size() > 0) {
        styles->warn("layer styles are not supported, ignored");
    }
}

layer ReadLayer(const JsonNode& node, readContext& context, assetTable& assets, project& scene)
{
    layer l;
    l.where = node.path();
    l.type = ReadType(node);
    l.name = node.textAt("nm", "");
    if (const auto ind = node.find("ind")) l.ind = ind->whole();
    ReadTimes(node, l);
    ReadSwitches(node, l);
    ReadByType(node, context, assets, scene, l);
    l.transform = ReadTransform(node, l, context);
    if (const auto masks = node.find("masksProperties")) l.masks = ReadMasks(*masks, context);
    WarnUnsupported(node);
    return l;
}

}  // namespace

std::vector<layer> ReadLayers(const JsonNode& layers, readContext& context, assetTable& assets,
                              project& scene)
{
    constexpr std::string_view kLimit = "more layers than the limit of 10000 in a file";
    std::vector<layer> result;
    for (std::size_t k = 0; k < layers.size(); ++k) {
        const JsonNode node = layers.item(k);
        if (--context.layersLeft < 0) node.fail(std::string(kLimit));
        result.push_back(ReadLayer(node, context, assets, scene));
        result.back().index = static_cast<int>(k);
    }
    return result;
}

}  // namespace orv
