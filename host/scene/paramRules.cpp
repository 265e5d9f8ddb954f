#include "scene/paramRules.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "scene/layerLinks.h"
#include "scene/paramLookup.h"

namespace orv {
namespace {

/// Missing components are taken from `initial`.
void Complete(std::vector<double>& value, const std::vector<double>& initial)
{
    for (std::size_t k = value.size(); k < initial.size(); ++k) value.push_back(initial[k]);
}

/// Ranges are declared in single precision, and so compared: 0.1 is not below a declared 0.1f.
void Clamp(std::vector<double>& value, double low, double high, const JsonNode& place)
{
    const auto lowest = static_cast<float>(low), highest = static_cast<float>(high);
    for (double& component : value) {
        const auto single = static_cast<float>(component);
        if (single >= lowest && single <= highest) continue;
        place.warn(
            fmt::format("{} is outside {}..{}, clamped", NumberText(component), lowest, highest));
        component = std::clamp(component, low, high);
    }
}

propertyRule RangedRule(const paramDeclaration& param)
{
    return {.check = [&param](std::vector<double>& value, const JsonNode& place) {
        Complete(value, param.initial);
        Clamp(value, param.validMin, param.validMax, place);
    }};
}

propertyRule AngleRule(const paramDeclaration& param)
{
    return {.check = [&param](std::vector<double>& value, const JsonNode&) {
        Complete(value, param.initial);
    }};
}

propertyRule ColorRule(const paramDeclaration& param)
{
    return {.components = 4, .check = [&param](std::vector<double>& value, const JsonNode& place) {
                constexpr std::size_t kAlpha = 3;
                if (value.size() == kAlpha) value.push_back(1.0);
                Complete(value, param.initial);
                Clamp(value, 0.0, 1.0, place);
            }};
}

/// Declared points are percent of the layer's size; a layer has no depth.
propertyRule PointRule(const paramDeclaration& param, const layer& owner)
{
    return {.components = 3,
            .check = [&param, &owner](std::vector<double>& value, const JsonNode&) {
                const double size[] = {static_cast<double>(owner.width),
                                       static_cast<double>(owner.height), 0.0};
                for (std::size_t k = value.size(); k < 3; ++k) {
                    const double percent = k < param.initial.size() ? param.initial[k] : 0.0;
                    value.push_back(size[k] * percent / 100.0);
                }
            }};
}

propertyRule ChoiceRule(const paramDeclaration& param)
{
    return {.holds = true, .check = [&param](std::vector<double>& value, const JsonNode& place) {
                Complete(value, param.initial);
                for (double& choice : value) choice = std::round(choice);
                Clamp(value, 1.0, std::max(1.0, static_cast<double>(param.choices.size())), place);
            }};
}

propertyRule SwitchRule(const paramDeclaration& param)
{
    return {.switches = true,
            .holds = true,
            .check = [&param](std::vector<double>& value, const JsonNode& place) {
                Complete(value, param.initial);
                Clamp(value, 0.0, 1.0, place);
                for (double& component : value) component = component != 0.0 ? 1.0 : 0.0;
            }};
}

double WholeOrFail(const std::vector<double>& value, const JsonNode& place)
{
    const double number = value.empty() ? 0.0 : value.front();
    if (number != std::floor(number)) {
        place.fail(fmt::format("{} is not a whole number", NumberText(number)));
    }
    return number;
}

propertyRule LayerRule(const paramSurroundings& around)
{
    return {.holds = true, .check = [around](std::vector<double>& value, const JsonNode& place) {
                const auto ind = static_cast<int>(WholeOrFail(value, place));
                value = {0.0};
                if (ind == 0) return;
                const auto found = around.byInd.find(ind);
                if (found == around.byInd.end()) {
                    place.fail(fmt::format("no layer of this composition has ind {}, {}", ind,
                                           KnownInds(around.comp)));
                }
                value.front() = found->second + 1.0;
            }};
}

propertyRule PathRule(const paramSurroundings& around)
{
    return {.holds = true, .check = [around](std::vector<double>& value, const JsonNode& place) {
                const double position = WholeOrFail(value, place);
                const std::size_t count = around.owner.masks.size();
                if (position < 0.0 || position > static_cast<double>(count)) {
                    place.fail(fmt::format("mask {} does not exist, the layer has {}",
                                           NumberText(position), count));
                }
                value = {position};
            }};
}

}  // namespace

propertyRule RuleFor(const paramDeclaration& param, const paramSurroundings& around)
{
    switch (param.kind) {
        case paramKind::slider:
        case paramKind::floatSlider:
            return RangedRule(param);
        case paramKind::angle:
            return AngleRule(param);
        case paramKind::checkbox:
            return SwitchRule(param);
        case paramKind::color:
            return ColorRule(param);
        case paramKind::popup:
            return ChoiceRule(param);
        case paramKind::point3D:
            return PointRule(param, around.owner);
        case paramKind::layer:
            return LayerRule(around);
        case paramKind::path:
            return PathRule(around);
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;  // without a value
    }
    return {};
}

}  // namespace orv
