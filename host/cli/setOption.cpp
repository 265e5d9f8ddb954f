#include "cli/setOption.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <span>

#include <fmt/format.h>

#include "cli/paramText.h"
#include "scene/errors.h"

namespace orv {
namespace {

[[noreturn]] void Refuse(const setRequest& request, const std::string& reason)
{
    throw failure(failureKind::usage, fmt::format("--set '{}': {}", request.text, reason));
}

/// The whole text as a finite number.
std::optional<double> ReadNumber(std::string_view text)
{
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<int> ReadInteger(std::string_view text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// Comma-separated numbers; empty when one of them is none.
std::vector<double> ReadNumbers(std::string_view text)
{
    std::vector<double> numbers;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        const auto number = ReadNumber(text.substr(start, comma - start));
        if (!number) return {};
        numbers.push_back(*number);
        start = comma + 1;
    }
    return numbers;
}

/// "#rrggbb" or "#rrggbbaa" without the '#'; empty when it is neither.
std::vector<double> ReadHexColor(std::string_view digits)
{
    if (digits.size() != 6 && digits.size() != 8) return {};
    std::vector<double> color;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        const char* const start = digits.data() + at;
        unsigned value = 0;
        const auto [end, error] = std::from_chars(start, start + 2, value, 16);
        if (error != std::errc{} || end != start + 2) return {};
        color.push_back(value / 255.0);
    }
    return color;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [lower](char x, char y) { return lower(x) == lower(y); });
}

const paramDeclaration& FindParam(const setRequest& request, const effectDeclaration& declaration)
{
    const std::vector<paramDeclaration>& params = declaration.params;
    if (const auto index = ReadInteger(request.param)) {
        if (*index < 1 || *index >= static_cast<int>(params.size()))
            Refuse(request, fmt::format("parameters have the indices 1 to {}", params.size() - 1));
        return params[static_cast<std::size_t>(*index)];
    }
    const paramDeclaration* found = nullptr;
    for (const paramDeclaration& param : params) {
        if (param.index == 0 || param.name != request.param) continue;
        if (found)
            Refuse(request, fmt::format("the parameters {} and {} have this name; use the index",
                                        found->index, param.index));
        found = &param;
    }
    if (!found || request.param.empty())
        Refuse(request,
               fmt::format("{} has no parameter '{}'", declaration.displayName, request.param));
    return *found;
}

std::vector<double> ReadRanged(const setRequest& request, const paramDeclaration& param)
{
    const auto number = ReadNumber(request.value);
    if (!number) Refuse(request, fmt::format("'{}' takes a number", param.name));
    if (param.kind == paramKind::slider && *number != std::round(*number))
        Refuse(request, fmt::format("'{}' takes a whole number", param.name));
    // Ranges were declared as floats: 0.1 is within a range that starts at 0.1f.
    const auto narrow = static_cast<float>(*number);
    if (narrow < static_cast<float>(param.validMin) || narrow > static_cast<float>(param.validMax))
        Refuse(request,
               fmt::format("'{}' takes {} to {}", param.name, ParamNumberText(param.validMin),
                           ParamNumberText(param.validMax)));
    return {*number};
}

std::vector<double> ReadAngle(const setRequest& request, const paramDeclaration& param)
{
    const auto number = ReadNumber(request.value);
    if (!number) Refuse(request, fmt::format("'{}' takes degrees", param.name));
    return {*number};
}

std::vector<double> ReadCheckbox(const setRequest& request, const paramDeclaration& param)
{
    for (const std::string_view on : {"1", "on", "true"})
        if (EqualIgnoringCase(request.value, on)) return {1.0};
    for (const std::string_view off : {"0", "off", "false"})
        if (EqualIgnoringCase(request.value, off)) return {0.0};
    Refuse(request, fmt::format("'{}' takes on or off", param.name));
}

std::vector<double> ReadChoice(const setRequest& request, const paramDeclaration& param)
{
    const std::size_t count = param.choices.size();
    for (std::size_t k = 0; k < count; ++k)
        if (EqualIgnoringCase(request.value, param.choices[k])) return {static_cast<double>(k + 1)};
    const auto number = ReadInteger(request.value);
    if (!number || *number < 1 || *number > static_cast<int>(count))
        Refuse(request, fmt::format("'{}' takes 1 to {}: {}", param.name, count,
                                    fmt::join(param.choices, ", ")));
    return {static_cast<double>(*number)};
}

std::vector<double> ReadColor(const setRequest& request, const paramDeclaration& param)
{
    const bool hex = request.value.starts_with('#');
    std::vector<double> color =
        hex ? ReadHexColor(std::string_view(request.value).substr(1)) : ReadNumbers(request.value);
    if (color.size() == 3) color.push_back(1.0);
    const bool inside =
        std::all_of(color.begin(), color.end(), [](double c) { return c >= 0.0 && c <= 1.0; });
    if (color.size() != 4 || !inside)
        Refuse(request,
               fmt::format("'{}' takes r,g,b or r,g,b,a, each 0..1, or #rrggbb[aa]", param.name));
    return color;
}

std::vector<double> ReadPoint(const setRequest& request, const paramDeclaration& param)
{
    std::vector<double> point = ReadNumbers(request.value);
    if (point.size() != 3) Refuse(request, fmt::format("'{}' takes x,y,z in pixels", param.name));
    return point;
}

/// Layers that a text means: those with that number as `ind`, else those with that name.
std::vector<layer*> LayersNamed(const std::string& text, std::span<composition> comps)
{
    const auto ind = ReadInteger(text);
    std::vector<layer*> byInd, byName;
    for (composition& comp : comps) {
        for (layer& each : comp.layers) {
            if (ind && each.ind == ind) byInd.push_back(&each);
            if (each.name == text) byName.push_back(&each);
        }
    }
    return byInd.empty() ? byName : byInd;
}

/// Position of the layer in the composition plus 1; the first one when several bear the number.
double ReadLayer(const setRequest& request, composition& comp)
{
    if (request.value == "0" || request.value == "none") return 0.0;
    const std::vector<layer*> found = LayersNamed(request.value, {&comp, 1});
    if (found.empty()) Refuse(request, fmt::format("there is no layer '{}'", request.value));
    const bool byNumber = found.front()->ind && found.front()->ind == ReadInteger(request.value);
    if (found.size() > 1 && !byNumber)
        Refuse(request, fmt::format("several layers are named '{}'; use `ind`", request.value));
    return found.front()->index + 1.0;
}

double ReadMask(const setRequest& request, const layer& owner)
{
    if (request.value == "none") return 0.0;
    const std::size_t count = owner.masks.size();
    if (const auto position = ReadInteger(request.value)) {
        if (*position < 0 || *position > static_cast<int>(count))
            Refuse(request, fmt::format("masks of layer '{}' have the positions 1 to {}; 0 is none",
                                        owner.name, count));
        return *position;
    }
    const auto named = [&](const mask& each) { return each.name == request.value; };
    const auto first = std::find_if(owner.masks.begin(), owner.masks.end(), named);
    if (first == owner.masks.end())
        Refuse(request, fmt::format("layer '{}' has no mask '{}'", owner.name, request.value));
    if (std::find_if(first + 1, owner.masks.end(), named) != owner.masks.end())
        Refuse(request, fmt::format("several masks of layer '{}' are named '{}'; use the position",
                                    owner.name, request.value));
    return static_cast<double>(first - owner.masks.begin() + 1);
}

std::vector<double> ReadValue(const setRequest& request, const paramDeclaration& param,
                              composition& comp, const layer& owner)
{
    switch (param.kind) {
        case paramKind::layer:
            return {ReadLayer(request, comp)};
        case paramKind::path:
            return {ReadMask(request, owner)};
        case paramKind::slider:
        case paramKind::floatSlider:
            return ReadRanged(request, param);
        case paramKind::angle:
            return ReadAngle(request, param);
        case paramKind::checkbox:
            return ReadCheckbox(request, param);
        case paramKind::color:
            return ReadColor(request, param);
        case paramKind::popup:
            return ReadChoice(request, param);
        case paramKind::point3D:
            return ReadPoint(request, param);
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;
    }
    Refuse(request, fmt::format("a {} has no value", KindName(param.kind)));
}

void ApplySet(project& scene, const effectDeclaration& declaration, const setRequest& request)
{
    const paramDeclaration& param = FindParam(request, declaration);
    std::vector<layer*> owners;
    if (request.owner) owners = LayersNamed(*request.owner, scene.compositions);
    bool applied = false;
    for (composition& comp : scene.compositions) {
        for (layer& owner : comp.layers) {
            if (request.owner && std::ranges::find(owners, &owner) == owners.end()) continue;
            for (effect& instance : owner.effects) {
                if (instance.matchName != declaration.matchName) continue;
                property value;
                value.constant = ReadValue(request, param, comp, owner);
                instance.values[param.index] = std::move(value);
                applied = true;
            }
        }
    }
    if (applied) return;
    if (request.owner)
        Refuse(request, fmt::format("no layer '{}' has the effect {}", *request.owner,
                                    declaration.displayName));
    Refuse(request, fmt::format("no layer has the effect {}", declaration.displayName));
}

}  // namespace

setRequest ParseSet(const std::string& text)
{
    setRequest request{.text = text, .param = {}, .owner = {}, .value = {}};
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) Refuse(request, "write NAME=VALUE or NAME@LAYER=VALUE");
    const std::string key = text.substr(0, equals);
    const std::size_t at = key.find('@');
    request.param = key.substr(0, at);
    if (at != std::string::npos) request.owner = key.substr(at + 1);
    request.value = text.substr(equals + 1);
    if (request.param.empty()) Refuse(request, "the parameter's name or index is missing");
    if (request.owner && request.owner->empty()) Refuse(request, "the layer is missing");
    return request;
}

void ApplySets(project& scene, const effectDeclaration& declaration,
               const std::vector<setRequest>& requests)
{
    for (const setRequest& request : requests) ApplySet(scene, declaration, request);
}

}  // namespace orv
