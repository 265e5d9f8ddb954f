#include "geometry/paramSnapshot.h"

namespace {

constexpr double kDegreesPerFixed = 1.0 / 65536.0;

/// What a user reads at a control; 0 for kinds that hold no number.
double ShownValue(const PF_ParamDef& def)
{
    switch (def.param_type) {
        case PF_Param_SLIDER:
            return def.u.sd.value;
        case PF_Param_FLOAT_SLIDER:
            return def.u.fs_d.value;
        case PF_Param_ANGLE:
            return def.u.ad.value * kDegreesPerFixed;
        case PF_Param_CHECKBOX:
            return def.u.bd.value;
        case PF_Param_POPUP:
            return def.u.pd.value;
        case PF_Param_LAYER:
        case PF_Param_COLOR:
        case PF_Param_PATH:
        case PF_Param_GROUP_START:
        case PF_Param_GROUP_END:
        case PF_Param_POINT_3D:
            break;
    }
    return 0.0;
}

/// Depth has no resolution of its own: it follows the columns.
point3 FullResolution(const PF_Point3DDef& def, const PF_InData& in_data)
{
    const double denX = in_data.downsample_x.den;
    const double denY = in_data.downsample_y.den;
    return {static_cast<float>(def.x_value * denX), static_cast<float>(def.y_value * denY),
            static_cast<float>(def.z_value * denX)};
}

point3 UnitColor(const PF_Pixel& color)
{
    const auto channel = [](A_u_char value) {
        return static_cast<float>(value) / static_cast<float>(PF_MAX_CHAN8);
    };
    return {channel(color.red), channel(color.green), channel(color.blue)};
}

}  // namespace

paramSnapshot ReadParams(const PF_InData& in_data, PF_ParamDef* const params[])
{
    paramSnapshot values;
    for (std::size_t i = 0; i < values.value.size(); ++i) {
        values.value[i] = static_cast<float>(ShownValue(*params[i]));
    }
    values.anchor = FullResolution(params[kAnchor]->u.point3d_d, in_data);
    values.position = FullResolution(params[kPosition]->u.point3d_d, in_data);
    values.contourColor = UnitColor(params[kContourColor]->u.cd.value);
    values.paths.mask = params[kMask]->u.path_d.path_id;
    values.paths.maskReference = params[kMaskReferenceMask]->u.path_d.path_id;
    values.paths.sourceReference = params[kSourceReferenceMask]->u.path_d.path_id;
    values.paths.contour = params[kContourMask]->u.path_d.path_id;
    return values;
}
