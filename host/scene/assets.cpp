#include "scene/assets.h"

#include <fmt/format.h>

#include <utility>

namespace orv {
namespace {

assetKind KindOf(const JsonNode& node)
{
    if (node.find("layers")) return assetKind::composition;
    return node.find("p") ? assetKind::image : assetKind::other;
}

std::string_view NameOf(assetKind kind)
{
    switch (kind) {
        case assetKind::composition:
            return "a composition";
        case assetKind::image:
            return "an image";
        case assetKind::other:
            break;
    }
    return "neither a composition nor an image";
}

/// The asset that a layer refers to, which must be of that kind; null when there is none.
assetEntry* Referred(const JsonNode& layerNode, assetTable& assets, assetKind kind)
{
    const std::string id = layerNode.idAt("refId");
    const std::string path = PathWithKey(layerNode.path(), "refId");
    assetEntry* entry = assets.find(id);
    if (entry == nullptr) {
        layerNode.messages().warn(
            path, fmt::format("no asset has the id {}, the layer has no pixels", Quoted(id)));
        return nullptr;
    }
    if (entry->kind != kind) {
        layerNode.messages().fail(path, fmt::format("the asset {} is {}, expected {}", Quoted(id),
                                                    NameOf(entry->kind), NameOf(kind)));
    }
    return entry;
}

}  // namespace

assetEntry* assetTable::find(const std::string& id)
{
    const auto found = byId.find(id);
    return found == byId.end() ? nullptr : &entries[found->second];
}

assetTable ReadAssets(const JsonNode& root)
{
    assetTable table;
    const std::optional<JsonNode> assets = root.find("assets");
    if (!assets) return table;
    int compositions = 0;
    for (std::size_t k = 0; k < assets->size(); ++k) {
        const JsonNode node = assets->item(k);
        const std::string id = node.idAt("id");
        const auto [place, isNew] = table.byId.emplace(id, k);
        if (!isNew) {
            node.messages().fail(PathWithKey(node.path(), "id"),
                                 fmt::format("the id {} is already that of {}", Quoted(id),
                                             table.entries[place->second].node.path()));
        }
        const assetKind kind = KindOf(node);
        table.entries.push_back({kind, node, kind == assetKind::composition ? ++compositions : -1});
    }
    return table;
}

int UseComposition(const JsonNode& layerNode, assetTable& assets)
{
    const assetEntry* entry = Referred(layerNode, assets, assetKind::composition);
    return entry == nullptr ? -1 : entry->composition;
}

int UseImage(const JsonNode& layerNode, assetTable& assets, project& scene)
{
    assetEntry* entry = Referred(layerNode, assets, assetKind::image);
    if (entry == nullptr) return -1;
    if (entry->image < 0) {
        imageAsset image;
        image.id = entry->node.idAt("id");
        image.width = SizeAt(entry->node, "w");
        image.height = SizeAt(entry->node, "h");
        CheckArea(entry->node, image.width, image.height);
        entry->image = static_cast<int>(scene.images.size());
        scene.images.push_back(std::move(image));
    }
    return entry->image;
}

}  // namespace orv
