#include "plugin/paramDeclarations.h"

#include <charconv>
#include <cstring>
#include <map>
#include <optional>
#include <string_view>

#include <fmt/format.h>

namespace orv {

namespace {

std::optional<paramKind> KindOf(PF_ParamType type)
{
    switch (type) {
        case PF_Param_LAYER:
            return paramKind::layer;
        case PF_Param_SLIDER:
            return paramKind::slider;
        case PF_Param_ANGLE:
            return paramKind::angle;
        case PF_Param_CHECKBOX:
            return paramKind::checkbox;
        case PF_Param_COLOR:
            return paramKind::color;
        case PF_Param_POPUP:
            return paramKind::popup;
        case PF_Param_FLOAT_SLIDER:
            return paramKind::floatSlider;
        case PF_Param_PATH:
            return paramKind::path;
        case PF_Param_GROUP_START:
            return paramKind::groupStart;
        case PF_Param_GROUP_END:
            return paramKind::groupEnd;
        case PF_Param_POINT_3D:
            return paramKind::point3D;
    }
    return std::nullopt;
}

/// The double that is written with the same digits: 0.1 for the float nearest to 0.1, so that a
/// value written as 0.1 is not below a limit of 0.1.
double AsWritten(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double written = 0.0;
    std::from_chars(text, end, written);
    return written;
}

std::vector<std::string> SplitChoices(std::string_view text)
{
    std::vector<std::string> choices;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t bar = std::min(text.find('|', from), text.size());
        choices.emplace_back(text.substr(from, bar - from));
        from = bar + 1;
    }
    return choices;
}

void DescribeFloatSlider(const PF_FloatSliderDef& def, paramDeclaration& declared)
{
    declared.initial = {def.value};
    declared.validMin = AsWritten(def.valid_min);
    declared.validMax = AsWritten(def.valid_max);
    declared.sliderMin = AsWritten(def.slider_min);
    declared.sliderMax = AsWritten(def.slider_max);
    declared.precision = def.precision;
    declared.percent = (def.display_flags & PF_ValueDisplayFlag_PERCENT) != 0;
}

void DescribeSlider(const PF_SliderDef& def, paramDeclaration& declared)
{
    declared.initial = {static_cast<double>(def.dephault)};
    declared.validMin = def.valid_min;
    declared.validMax = def.valid_max;
    declared.sliderMin = def.slider_min;
    declared.sliderMax = def.slider_max;
}

void DescribePopup(const PF_PopupDef& def, paramDeclaration& declared)
{
    declared.initial = {static_cast<double>(def.dephault)};
    declared.choices = SplitChoices(def.namesptr != nullptr ? def.namesptr : "");
    declared.validMin = 1;
    declared.validMax = def.num_choices;
}

/// The part of a declaration that depends on the type.
void Describe(const PF_ParamDefUnion& u, paramDeclaration& declared)
{
    switch (declared.kind) {
        case paramKind::layer:
            declared.initial = {static_cast<double>(u.ld.dephault)};
            break;
        case paramKind::slider:
            DescribeSlider(u.sd, declared);
            break;
        case paramKind::floatSlider:
            DescribeFloatSlider(u.fs_d, declared);
            break;
        case paramKind::angle:
            declared.initial = {u.ad.dephault / 65536.0};
            break;
        case paramKind::checkbox:
            declared.initial = {u.bd.dephault != 0 ? 1.0 : 0.0};
            declared.validMax = 1;
            declared.checkboxText = u.bd.nameptr != nullptr ? u.bd.nameptr : "";
            break;
        case paramKind::color: {
            const PF_Pixel& c = u.cd.dephault;
            declared.initial = {c.red / 255.0, c.green / 255.0, c.blue / 255.0, c.alpha / 255.0};
            declared.validMax = 1;
            break;
        }
        case paramKind::popup:
            DescribePopup(u.pd, declared);
            break;
        case paramKind::path:
            declared.initial = {static_cast<double>(u.path_d.dephault)};
            break;
        case paramKind::point3D:
            declared.initial = {u.point3d_d.x_dephault, u.point3d_d.y_dephault,
                                u.point3d_d.z_dephault};
            break;
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;
    }
}

/// What is wrong with one record; "" if nothing.
std::string FaultOf(const paramDeclaration& declared, const PF_ParamDef& def)
{
    const bool ranged =
        declared.kind == paramKind::slider || declared.kind == paramKind::floatSlider;
    if (ranged && !(declared.validMin <= declared.validMax)) {
        return fmt::format("its valid range is {}..{}", declared.validMin, declared.validMax);
    }
    if (declared.kind == paramKind::popup &&
        declared.choices.size() != static_cast<std::size_t>(def.u.pd.num_choices)) {
        return fmt::format("{} choices are announced and {} named", def.u.pd.num_choices,
                           declared.choices.size());
    }
    return {};
}

}  // namespace

ParamDeclarations::ParamDeclarations()
{
    PF_ParamDef input{};
    input.param_type = PF_Param_LAYER;
    defs_.push_back(input);
    declarations_.emplace_back().initial = {0.0};
}

const char* ParamDeclarations::Keep(const char* text)
{
    return text != nullptr ? texts_.emplace_back(text).c_str() : nullptr;
}

PF_Err ParamDeclarations::Add(PF_ParamIndex index, const PF_ParamDef& def, std::string& reason)
{
    if (index != -1 && index != count()) {
        reason = fmt::format("parameter added at index {} when {} are there", index, count());
        return PF_Err_INVALID_INDEX;
    }
    const std::optional<paramKind> kind = KindOf(def.param_type);
    if (!kind || std::memchr(def.name, 0, sizeof def.name) == nullptr) {
        reason = fmt::format("parameter {} has {}", count(),
                             kind ? "a name that does not end" : "an unknown type");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    paramDeclaration declared;
    declared.index = count();
    declared.id = def.uu.id;
    declared.kind = *kind;
    declared.name = def.name;
    declared.flags = def.flags;
    declared.canVary = (def.flags & PF_ParamFlag_CANNOT_TIME_VARY) == 0;
    Describe(def.u, declared);
    if (const std::string fault = FaultOf(declared, def); !fault.empty()) {
        reason = fmt::format("parameter {} (\"{}\"): {}", count(), declared.name, fault);
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    PF_ParamDef kept = def;
    if (*kind == paramKind::popup) kept.u.pd.namesptr = Keep(def.u.pd.namesptr);
    if (*kind == paramKind::checkbox) kept.u.bd.nameptr = Keep(def.u.bd.nameptr);
    defs_.push_back(kept);
    declarations_.push_back(std::move(declared));
    return PF_Err_NONE;
}

std::string ParamDeclarations::Fault() const
{
    std::map<int, int> indexOfId;
    int depth = 0;
    for (const paramDeclaration& each : declarations_) {
        if (each.index == 0) continue;
        const auto [first, fresh] = indexOfId.emplace(each.id, each.index);
        if (!fresh) {
            return fmt::format("parameters {} and {} have the same disk ID {}", first->second,
                               each.index, each.id);
        }
        if (each.kind == paramKind::groupStart) ++depth;
        if (each.kind == paramKind::groupEnd && --depth < 0) {
            return fmt::format("the group end at parameter {} ends no group", each.index);
        }
    }
    return depth != 0 ? fmt::format("{} parameter groups are not closed", depth) : "";
}

}  // namespace orv
