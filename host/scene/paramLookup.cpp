#include "scene/paramLookup.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace orv {
namespace {

const paramDeclaration& FindByIndex(const JsonNode& ix, const effectDeclaration& effect)
{
    const int index = ix.whole();
    if (index == 0) ix.fail("index 0 is the layer itself and cannot be set");
    const auto found = std::ranges::find(effect.params, index, &paramDeclaration::index);
    if (found == effect.params.end()) {
        ix.fail(fmt::format("no parameter has the index {}, there are 1 to {}", index,
                            effect.params.size() - 1));
    }
    return *found;
}

/// The number behind "MATCHNAME-", exactly four digits; nullopt when the text is something else.
std::optional<int> DiskId(std::string_view text, const effectDeclaration& effect)
{
    const std::string prefix = effect.matchName + "-";
    if (!text.starts_with(prefix)) return std::nullopt;
    text.remove_prefix(prefix.size());
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (text.size() != 4 || !std::ranges::all_of(text, isDigit)) return std::nullopt;
    return std::stoi(std::string(text));
}

const paramDeclaration& FindByMatchName(const JsonNode& mn, const effectDeclaration& effect)
{
    const std::optional<int> id = DiskId(mn.text(), effect);
    // The input layer has an entry too, but no ID of its own.
    const auto found = std::ranges::find_if(effect.params, [&](const paramDeclaration& param) {
        return id && param.index > 0 && param.id == *id;
    });
    if (found == effect.params.end()) {
        mn.fail(fmt::format("{} names no parameter, expected \"{}-\" and a disk ID in four digits",
                            Quoted(mn.text()), effect.matchName));
    }
    return *found;
}

const paramDeclaration& FindByName(const JsonNode& nm, const effectDeclaration& effect)
{
    const paramDeclaration* found = nullptr;
    for (const paramDeclaration& param : effect.params) {
        if (param.index == 0 || param.name != nm.text()) continue;
        if (found != nullptr) {
            nm.fail(fmt::format("{} is the name of parameters {} and {}, use ix or mn",
                                Quoted(nm.text()), found->index, param.index));
        }
        found = &param;
    }
    if (found == nullptr) nm.fail(fmt::format("no parameter is named {}", Quoted(nm.text())));
    return *found;
}

}  // namespace

const paramDeclaration& FindParam(const JsonNode& entry, const effectDeclaration& effect)
{
    const std::optional<JsonNode> ix = entry.find("ix"), mn = entry.find("mn");
    if (!ix && !mn) {
        const std::optional<JsonNode> nm = entry.find("nm");
        if (!nm) entry.fail("names no parameter, expected ix, mn or nm");
        return FindByName(*nm, effect);
    }
    const paramDeclaration& param = ix ? FindByIndex(*ix, effect) : FindByMatchName(*mn, effect);
    if (ix && mn && &FindByMatchName(*mn, effect) != &param) {
        entry.fail(fmt::format("ix {} is {}, mn {} is {}", ix->whole(), ParamTitle(param),
                               Quoted(mn->text()), ParamTitle(FindByMatchName(*mn, effect))));
    }
    return param;
}

std::string ParamTitle(const paramDeclaration& param)
{
    return fmt::format("parameter {} {}", param.index, Quoted(param.name));
}

}  // namespace orv
