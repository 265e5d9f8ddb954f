#include "scene/layerLinks.h"

#include <fmt/format.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace orv {
namespace {

int ParentOf(const composition& comp, int position)
{
    return comp.layers[static_cast<std::size_t>(position)].parent;
}

[[noreturn]] void FailCycle(const JsonNode& layers, const composition& comp, int start)
{
    constexpr int kLongest = 20;
    std::string chain = std::to_string(*comp.layers[static_cast<std::size_t>(start)].ind);
    int steps = 0, position = start;
    do {
        position = ParentOf(comp, position);
        if (++steps > kLongest) {
            chain += " -> ...";
            break;
        }
        chain += fmt::format(" -> {}", *comp.layers[static_cast<std::size_t>(position)].ind);
    } while (position != start);
    layers.item(static_cast<std::size_t>(start))
        .required("parent", "a number")
        .fail(fmt::format("the parents form a cycle: {}", chain));
}

/// Follows each layer to its root once. What this walk has passed and not left is a cycle.
void RefuseCycles(const JsonNode& layers, const composition& comp)
{
    constexpr int kUnseen = -1, kDone = -2;
    std::vector<int> walkOf(comp.layers.size(), kUnseen);
    for (int start = 0; start < static_cast<int>(comp.layers.size()); ++start) {
        int position = start;
        while (position >= 0 && walkOf[static_cast<std::size_t>(position)] == kUnseen) {
            walkOf[static_cast<std::size_t>(position)] = start;
            position = ParentOf(comp, position);
        }
        if (position >= 0 && walkOf[static_cast<std::size_t>(position)] == start) {
            FailCycle(layers, comp, position);
        }
        for (position = start; position >= 0 && walkOf[static_cast<std::size_t>(position)] == start;
             position = ParentOf(comp, position)) {
            walkOf[static_cast<std::size_t>(position)] = kDone;
        }
    }
}

}  // namespace

std::unordered_map<int, int> LayersByInd(const JsonNode& layers, const composition& comp)
{
    std::unordered_map<int, int> byInd;
    for (const layer& l : comp.layers) {
        if (!l.ind) continue;
        const auto [first, isNew] = byInd.emplace(*l.ind, l.index);
        if (isNew) continue;
        layers.item(static_cast<std::size_t>(l.index))
            .required("ind", "a number")
            .warn(fmt::format("{} is also the ind of {}, which is meant by it", *l.ind,
                              comp.layers[static_cast<std::size_t>(first->second)].where));
    }
    return byInd;
}

void LinkParents(const JsonNode& layers, const std::unordered_map<int, int>& byInd,
                 composition& comp)
{
    for (layer& l : comp.layers) {
        const std::optional<JsonNode> parent =
            layers.item(static_cast<std::size_t>(l.index)).find("parent");
        if (!parent) continue;
        const auto found = byInd.find(parent->whole());
        if (found == byInd.end()) {
            parent->warn(fmt::format("no layer has ind {}, no parent", parent->whole()));
        } else {
            l.parent = found->second;
        }
    }
    RefuseCycles(layers, comp);
}

std::string KnownInds(const composition& comp)
{
    constexpr int kMost = 20;
    std::string result;
    int count = 0;
    for (const layer& l : comp.layers) {
        if (!l.ind) continue;
        if (++count > kMost) return result + ", ...";
        result += fmt::format("{}{}", result.empty() ? "" : ", ", *l.ind);
    }
    return result.empty() ? "no layer has an ind" : "there are " + result;
}

}  // namespace orv
