#include "scene/loader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <string_view>
#include <utility>

#include "scene/assets.h"
#include "scene/effectReader.h"
#include "scene/imageLoader.h"
#include "scene/jsonNode.h"
#include "scene/jsonTree.h"
#include "scene/layerLinks.h"
#include "scene/layerReader.h"
#include "scene/nesting.h"
#include "scene/readContext.h"
#include "scene/sceneHeader.h"

namespace orv {
namespace {

constexpr std::size_t kLargestFile = std::size_t{256} << 20;

[[noreturn]] void FailSize(const Messages& messages)
{
    messages.fail("", fmt::format("larger than the limit of {} bytes", kLargestFile));
}

/// In pieces, since a pipe does not know its size.
std::string ReadText(const Messages& messages)
{
    std::ifstream stream(messages.file(), std::ios::binary);
    std::string text;
    std::vector<char> piece(std::size_t{1} << 20);
    while (stream.read(piece.data(), static_cast<std::streamsize>(piece.size())),
           stream.gcount() > 0) {
        text.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
        if (text.size() > kLargestFile) FailSize(messages);
    }
    if (!stream.eof()) messages.fail("", fmt::format("cannot be read: {}", std::strerror(errno)));
    return text;
}

/// Where each composition's layers stand, in the order of project.compositions.
std::vector<JsonNode> LayerLists(const JsonNode& root, const assetTable& assets)
{
    std::vector<JsonNode> lists{root.required("layers", "a list of layers")};
    for (const assetEntry& entry : assets.entries) {
        if (entry.kind == assetKind::composition) {
            lists.push_back(entry.node.required("layers", "a list of layers"));
        }
    }
    return lists;
}

void ReadCompositions(const JsonNode& root, const assetTable& assets, project& scene)
{
    const motionBlurRules blur = ReadMotionBlurRules(root);
    composition main;
    main.name = scene.name;
    main.width = SizeAt(root, "w");
    main.height = SizeAt(root, "h");
    CheckArea(root, main.width, main.height);
    main.motionBlur = blur.inherited;
    scene.compositions.push_back(std::move(main));
    for (const assetEntry& entry : assets.entries) {
        if (entry.kind != assetKind::composition) continue;
        composition comp;
        comp.id = entry.node.idAt("id");
        comp.name = entry.node.textAt("nm", "");
        comp.motionBlur = ReadMotionBlur(entry.node, blur);
        scene.compositions.push_back(std::move(comp));
    }
}

/// A composition asset has the size of the first layer that shows it, else the main size.
void SizeCompositions(project& scene)
{
    for (const composition& outer : scene.compositions) {
        for (const layer& l : outer.layers) {
            if (l.composition < 0) continue;
            composition& inner = scene.compositions[static_cast<std::size_t>(l.composition)];
            if (inner.width > 0) continue;
            inner.width = l.width;
            inner.height = l.height;
        }
    }
    for (composition& comp : scene.compositions) {
        if (comp.width == 0) comp.width = scene.compositions.front().width;
        if (comp.height == 0) comp.height = scene.compositions.front().height;
        for (layer& l : comp.layers) {
            if (l.type != layerType::empty) continue;
            l.width = comp.width;
            l.height = comp.height;
        }
    }
}

/// Parents, and effects with what they refer to.
void LinkLayers(const JsonNode& layers, const readContext& context, composition& comp)
{
    const auto byInd = LayersByInd(layers, comp);
    LinkParents(layers, byInd, comp);
    for (layer& l : comp.layers) {
        ReadEffects(layers.item(static_cast<std::size_t>(l.index)), comp, byInd, context, l);
    }
}

project ReadScene(std::string_view text, const loadOptions& options, Messages& messages)
{
    const jsonValue tree = ParseJson(text, messages);
    const JsonNode root(tree, "", messages);
    readContext context{options, messages, {}};
    project scene;

    // What the layers refer to.
    ReadHeader(root, scene);
    ReadSlots(root, context);
    assetTable assets = ReadAssets(root);
    ReadCompositions(root, assets, scene);

    // The layers, each by itself, then among each other.
    const std::vector<JsonNode> lists = LayerLists(root, assets);
    for (std::size_t k = 0; k < lists.size(); ++k) {
        scene.compositions[k].where = lists[k].path();
        scene.compositions[k].layers = ReadLayers(lists[k], context, assets, scene);
    }
    CheckNesting(scene, messages);
    SizeCompositions(scene);
    for (std::size_t k = 0; k < lists.size(); ++k) {
        LinkLayers(lists[k], context, scene.compositions[k]);
    }

    LoadImages(assets, context, scene);
    return scene;
}

}  // namespace

project LoadScene(const std::string& file, const loadOptions& options, const warningSink& warn)
{
    Messages messages(file, options.strict, warn);
    const std::string text = ReadText(messages);
    return ReadScene(text, options, messages);
}

project LoadSceneText(std::string_view text, const std::string& file, const loadOptions& options,
                      const warningSink& warn)
{
    Messages messages(file, options.strict, warn);
    if (text.size() > kLargestFile) FailSize(messages);
    return ReadScene(text, options, messages);
}

}  // namespace orv
