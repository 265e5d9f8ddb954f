#include "cli/paramText.h"

#include <cmath>

#include <fmt/format.h>

namespace orv {
namespace {

std::string ChoiceText(const paramDeclaration& param, double value)
{
    const auto position = static_cast<std::size_t>(std::max(value, 0.0));
    if (position < 1 || position > param.choices.size()) return ParamNumberText(value);
    return param.choices[position - 1];
}

std::string ListText(std::span<const double> value)
{
    std::string text;
    for (const double component : value)
        text += (text.empty() ? "" : ", ") + ParamNumberText(component);
    return text;
}

}  // namespace

std::string_view KindName(paramKind kind)
{
    switch (kind) {
        case paramKind::layer:
            return "layer";
        case paramKind::slider:
            return "slider";
        case paramKind::floatSlider:
            return "float slider";
        case paramKind::angle:
            return "angle";
        case paramKind::checkbox:
            return "checkbox";
        case paramKind::color:
            return "color";
        case paramKind::popup:
            return "popup";
        case paramKind::path:
            return "path";
        case paramKind::point3D:
            return "3D point";
        case paramKind::groupStart:
            return "group start";
        case paramKind::groupEnd:
            return "group end";
    }
    return "";
}

bool HasValue(paramKind kind)
{
    return kind != paramKind::groupStart && kind != paramKind::groupEnd;
}

std::string ParamNumberText(double value)
{
    // A float's neighbours differ in the seventh digit: what was declared as the float 0.1 reads
    // 0.1, not 0.10000000149.
    const auto narrow = static_cast<float>(value);
    if (std::abs(value) < 1e9 && static_cast<double>(narrow) == value)
        return fmt::format("{}", narrow);
    return fmt::format("{}", value);
}

std::string ValueText(const paramDeclaration& param, std::span<const double> value)
{
    const double first = value.empty() ? 0.0 : value.front();
    switch (param.kind) {
        case paramKind::checkbox:
            return first != 0.0 ? "on" : "off";
        case paramKind::popup:
            return ChoiceText(param, first);
        case paramKind::angle:
            return ParamNumberText(first) + "\u00b0";
        case paramKind::layer:
        case paramKind::path:
            return first == 0.0 ? "none" : ParamNumberText(first);
        case paramKind::color:
        case paramKind::point3D:
            return ListText(value);
        case paramKind::slider:
        case paramKind::floatSlider:
            return ParamNumberText(first) + (param.percent ? " %" : "");
        case paramKind::groupStart:
        case paramKind::groupEnd:
            return "";
    }
    return "";
}

}  // namespace orv
