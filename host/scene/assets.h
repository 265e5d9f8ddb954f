// assets.h: the table of a scene's assets, by id.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scene/jsonNode.h"
#include "scene/model.h"
#include "scene/readContext.h"

namespace orv {

enum class assetKind { composition, image, other };

struct assetEntry {
    assetKind kind = assetKind::other;
    JsonNode node;
    int composition = -1;  ///< index in project.compositions
    int image = -1;        ///< index in project.images; -1 while no layer shows it
};

struct assetTable {
    std::vector<assetEntry> entries;  ///< as in the file
    std::unordered_map<std::string, std::size_t> byId;

    [[nodiscard]] assetEntry* find(const std::string& id);
};

/// Reads ids and kinds. Compositions are numbered from 1, since 0 is the main one.
assetTable ReadAssets(const JsonNode& root);

/// The composition, or image, that `layerNode`'s refId names; -1, with a warning, when no asset
/// bears the id. Fails when the asset is of another kind. An image enters project.images, still
/// without pixels, when the first layer shows it.
int UseComposition(const JsonNode& layerNode, assetTable& assets);
int UseImage(const JsonNode& layerNode, assetTable& assets, project& scene);

}  // namespace orv
