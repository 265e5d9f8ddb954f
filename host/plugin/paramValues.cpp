#include "plugin/paramValues.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "animation/evaluate.h"

namespace orv {

namespace {

/// What a scene would have to write to get the declared default.
std::vector<double> DefaultValue(const paramSource& source, const paramDeclaration& declared)
{
    if (declared.kind == paramKind::point3D) {
        // Percent of width, height and depth; a layer has no depth.
        return {declared.initial[0] / 100.0 * source.width,
                declared.initial[1] / 100.0 * source.height, 0.0};
    }
    constexpr double kMyself = PF_LayerDefault_MYSELF;
    if (declared.kind == paramKind::layer && declared.initial[0] == kMyself) {
        return {source.owner->index + 1.0};
    }
    return declared.initial;
}

/// What stands in for the default; null when nothing does.
const property* GivenValue(const paramSource& source, int index)
{
    const std::map<int, property>* scene =
        source.values != nullptr ? &source.values->values : nullptr;
    for (const std::map<int, property>* values : {source.scripted, scene}) {
        if (values == nullptr) continue;
        const auto found = values->find(index);
        if (found != values->end()) return &found->second;
    }
    return nullptr;
}

/// Values of such a kind are never mixed between key frames.
bool IsHeld(paramKind kind)
{
    return kind == paramKind::layer || kind == paramKind::path || kind == paramKind::popup ||
           kind == paramKind::checkbox;
}

/// Brings a value into what its kind can hold: an easing may overshoot the range that the key
/// frames keep to.
double Fitted(const paramDeclaration& declared, double value)
{
    switch (declared.kind) {
        case paramKind::slider:
            return std::clamp(std::round(value), declared.validMin, declared.validMax);
        case paramKind::floatSlider:
            return std::clamp(value, declared.validMin, declared.validMax);
        case paramKind::popup:
            return std::clamp(std::round(value), 1.0, std::max(1.0, declared.validMax));
        case paramKind::checkbox:
            return value != 0.0 ? 1.0 : 0.0;
        case paramKind::color:
            return std::clamp(value, 0.0, 1.0);
        case paramKind::layer:
        case paramKind::path:
            return std::max(0.0, std::round(value));
        case paramKind::angle:
        case paramKind::point3D:
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;
    }
    return value;
}

/// 16.16; more than 32767 degrees cannot be told and count as that many.
PF_Fixed ToFixed(double degrees)
{
    using limits = std::numeric_limits<PF_Fixed>;
    return static_cast<PF_Fixed>(std::clamp(std::round(degrees * 65536.0),
                                            static_cast<double>(limits::min()),
                                            static_cast<double>(limits::max())));
}

A_u_char ToByte(double value)
{
    return static_cast<A_u_char>(std::lround(value * 255.0));
}

}  // namespace

PF_PathID PathIds::Of(const composition& comp, const layer& owner, int position)
{
    if (position <= 0) return 0;
    const auto next = static_cast<PF_PathID>(ids_.size() + 1);
    return ids_.emplace(std::tuple(&comp, owner.index, position), next).first->second;
}

int PathIds::PositionOf(const composition& comp, const layer& owner, PF_PathID id) const
{
    for (int position = 1; position <= static_cast<int>(owner.masks.size()); ++position) {
        const auto found = ids_.find({&comp, owner.index, position});
        if (found != ids_.end() && found->second == id) return position;
    }
    return 0;
}

std::vector<double> ValueAt(const paramSource& source, const paramDeclaration& declared, double t)
{
    std::vector<double> value = DefaultValue(source, declared);
    const property* given = GivenValue(source, declared.index);
    if (given != nullptr && !value.empty()) {
        value = IsHeld(declared.kind) ? std::vector{EvaluateHeld(*given, t, value[0])}
                                      : Evaluate(*given, t, value);
    }
    for (double& each : value) each = Fitted(declared, each);
    return value;
}

int NamedLayer(const paramSource& source, const paramDeclaration& declared, double t)
{
    const int named = static_cast<int>(ValueAt(source, declared, t)[0]) - 1;
    return named < static_cast<int>(source.comp->layers.size()) ? named : -1;
}

void WriteValue(const paramSource& source, const paramDeclaration& declared, double t,
                PathIds& pathIds, PF_ParamDef& def)
{
    if (declared.kind == paramKind::layer) return;
    const std::vector<double> value = ValueAt(source, declared, t);
    switch (declared.kind) {
        case paramKind::slider:
            def.u.sd.value = static_cast<A_long>(value[0]);
            break;
        case paramKind::floatSlider:
            def.u.fs_d.value = value[0];
            break;
        case paramKind::angle:
            def.u.ad.value = ToFixed(value[0]);
            break;
        case paramKind::checkbox:
            def.u.bd.value = static_cast<A_long>(value[0]);
            break;
        case paramKind::popup:
            def.u.pd.value = static_cast<A_long>(value[0]);
            break;
        case paramKind::color:
            def.u.cd.value = {ToByte(value[3]), ToByte(value[0]), ToByte(value[1]),
                              ToByte(value[2])};
            break;
        case paramKind::point3D:
            def.u.point3d_d.x_value = value[0] / source.divisorX;
            def.u.point3d_d.y_value = value[1] / source.divisorY;
            def.u.point3d_d.z_value = value[2] / source.divisorX;
            break;
        case paramKind::path:
            def.u.path_d.path_id =
                pathIds.Of(*source.comp, *source.owner, static_cast<int>(value[0]));
            break;
        case paramKind::layer:
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;
    }
}

bool WriteStreamValue(const paramSource& source, const paramDeclaration& declared, double t,
                      PathIds& pathIds, AEGP_StreamVal2& value)
{
    const std::vector<double> at = ValueAt(source, declared, t);
    switch (declared.kind) {
        case paramKind::slider:
        case paramKind::floatSlider:
        case paramKind::angle:
        case paramKind::checkbox:
        case paramKind::popup:
            value.one_d = at[0];
            return true;
        case paramKind::color:
            value.color = {at[3], at[0], at[1], at[2]};
            return true;
        case paramKind::point3D:
            value.three_d = {at[0], at[1], at[2]};
            return true;
        case paramKind::layer:
            value.layer_id = static_cast<A_long>(at[0]);
            return true;
        case paramKind::path:
            value.mask_id = static_cast<A_long>(
                pathIds.Of(*source.comp, *source.owner, static_cast<int>(at[0])));
            return true;
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;
    }
    return false;
}

}  // namespace orv
