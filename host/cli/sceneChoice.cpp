#include "cli/sceneChoice.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include <fmt/format.h>

#include "scene/errors.h"

namespace orv {
namespace {

[[noreturn]] void Refuse(const std::string& reason)
{
    throw failure(failureKind::usage, reason);
}

const layer* FindByInd(const composition& comp, const std::string& text)
{
    int ind = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), ind);
    if (error != std::errc{} || end != text.data() + text.size()) return nullptr;
    const auto found = std::find_if(comp.layers.begin(), comp.layers.end(),
                                    [ind](const layer& each) { return each.ind == ind; });
    return found == comp.layers.end() ? nullptr : &*found;
}

const layer* FindByName(const composition& comp, const std::string& name)
{
    const auto named = [&](const layer& each) { return each.name == name; };
    const auto first = std::find_if(comp.layers.begin(), comp.layers.end(), named);
    if (first == comp.layers.end()) return nullptr;
    if (std::find_if(first + 1, comp.layers.end(), named) != comp.layers.end())
        Refuse(fmt::format("--layer: several layers are named '{}'; use the `ind`", name));
    return &*first;
}

std::string Names(const std::vector<std::string>& names)
{
    return names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", "));
}

}  // namespace

const composition& ChooseComposition(const project& scene, const std::string& id)
{
    std::vector<std::string> ids;
    for (std::size_t k = 1; k < scene.compositions.size(); ++k) {
        if (scene.compositions[k].id == id) return scene.compositions[k];
        ids.push_back(scene.compositions[k].id);
    }
    Refuse(fmt::format("--comp: the scene has no composition '{}'; it has: {}", id, Names(ids)));
}

const layer& ChooseLayer(const composition& comp, const std::string& nameOrInd)
{
    const layer* found = FindByInd(comp, nameOrInd);
    if (!found && !nameOrInd.empty()) found = FindByName(comp, nameOrInd);
    if (!found) {
        std::vector<std::string> names;
        for (const layer& each : comp.layers) names.push_back(each.name);
        Refuse(fmt::format("--layer: the composition has no layer '{}'; it has: {}", nameOrInd,
                           Names(names)));
    }
    if (found->width <= 0 || found->height <= 0)
        Refuse(fmt::format("--layer: layer '{}' has no pixels", nameOrInd));
    return *found;
}

}  // namespace orv
