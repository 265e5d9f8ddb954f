#include "scene/effectReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "scene/paramLookup.h"
#include "scene/paramRules.h"
#include "scene/propertyReader.h"

namespace orv {
namespace {

const effectDeclaration* FindDeclaration(const std::string& matchName, const loadOptions& options)
{
    const auto found = std::ranges::find(options.effects, matchName, &effectDeclaration::matchName);
    return found == options.effects.end() ? nullptr : &*found;
}

std::string MaskNames(const layer& owner)
{
    constexpr std::size_t kMost = 20;
    std::string names;
    for (std::size_t k = 0; k < owner.masks.size(); ++k) {
        if (k == kMost) return names + ", ...";
        names += (k > 0 ? ", " : "") + Quoted(owner.masks[k].name);
    }
    return names.empty() ? "the layer has no masks" : "the layer has " + names;
}

/// The position, from 1, of the one mask of that name.
double FindMask(const JsonNode& name, const layer& owner)
{
    std::size_t position = 0;
    for (std::size_t k = 0; k < owner.masks.size(); ++k) {
        if (owner.masks[k].name != name.text()) continue;
        if (position > 0) {
            name.fail(fmt::format("{} is the name of masks {} and {}", Quoted(name.text()),
                                  position, k + 1));
        }
        position = k + 1;
    }
    if (position == 0) {
        name.fail(fmt::format("no mask is named {}, {}", Quoted(name.text()), MaskNames(owner)));
    }
    return static_cast<double>(position);
}

/// The mask that the entry's `kal` names, if it does.
std::optional<property> NamedMask(const JsonNode& entry, const paramDeclaration& param,
                                  const layer& owner)
{
    const std::optional<JsonNode> kal = entry.find("kal");
    if (!kal) return std::nullopt;
    if (param.kind != paramKind::path) {
        WarnUnknownKeys(*kal, {});
        return std::nullopt;
    }
    WarnUnknownKeys(*kal, {"mask"});
    const std::optional<JsonNode> name = kal->find("mask");
    if (!name) return std::nullopt;
    return property{{FindMask(*name, owner)}, {}};
}

bool HasNoValue(const paramDeclaration& param)
{
    return param.kind == paramKind::groupStart || param.kind == paramKind::groupEnd;
}

property ReadParam(const JsonNode& entry, const paramDeclaration& param,
                   const paramSurroundings& around, const readContext& context)
{
    if (auto named = NamedMask(entry, param, around.owner)) return *std::move(named);
    const JsonNode v = entry.required("v", "a property");
    property value = ReadProperty(v, RuleFor(param, around), context);
    if (value.animated() && !param.canVary) {
        v.fail(fmt::format("{} key frames, but {} cannot vary over time", value.keys.size(),
                           ParamTitle(param)));
    }
    return value;
}

void ReadParams(const JsonNode& effectNode, const effectDeclaration& declaration,
                const paramSurroundings& around, const readContext& context, effect& target)
{
    const std::optional<JsonNode> entries = effectNode.find("ef");
    if (!entries) return;
    std::map<int, std::string> setBy;
    for (std::size_t k = 0; k < entries->size(); ++k) {
        const JsonNode entry = entries->item(k);
        if (entry.object().empty()) continue;
        const paramDeclaration& param = FindParam(entry, declaration);
        const auto [first, isNew] = setBy.emplace(param.index, entry.path());
        if (!isNew) {
            entry.fail(fmt::format("{} is already set by {}", ParamTitle(param), first->second));
        }
        if (HasNoValue(param)) continue;
        target.values.emplace(param.index, ReadParam(entry, param, around, context));
    }
}

effect ReadEffect(const JsonNode& node, const paramSurroundings& around, const readContext& context)
{
    effect result;
    result.where = node.path();
    result.matchName = node.textAt("mn", "");
    result.name = node.textAt("nm", "");
    result.enabled = node.flagAt("en", true);
    if (const auto kal = node.find("kal")) WarnUnknownKeys(*kal, {});

    const effectDeclaration* declaration = FindDeclaration(result.matchName, context.options);
    result.loaded = declaration != nullptr;
    if (declaration == nullptr) {
        node.warn(fmt::format("the effect {} is not loaded, skipped", Quoted(result.matchName)));
    } else {
        ReadParams(node, *declaration, around, context, result);
    }
    return result;
}

}  // namespace

void ReadEffects(const JsonNode& layerNode, const composition& comp,
                 const std::unordered_map<int, int>& byInd, const readContext& context,
                 layer& owner)
{
    const std::optional<JsonNode> effects = layerNode.find("ef");
    if (!effects) return;
    for (std::size_t k = 0; k < effects->size(); ++k) {
        owner.effects.push_back(ReadEffect(effects->item(k), {comp, owner, byInd}, context));
    }
}

}  // namespace orv
