#include "entry/paramTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Util/intToString.h"

namespace {

// -------------------------------------------------------------------------------------------------
// Words of the table below
// -------------------------------------------------------------------------------------------------

constexpr valueRange kZeroTo100{0.0f, 100.0f};
constexpr valueRange kZeroTo1000{0.0f, 1000.0f};
constexpr valueRange kThousand{-1000.0f, 1000.0f};
constexpr valueRange kMillion{-1000000.0f, 1000000.0f};
constexpr PF_ParamFlags kFixed = PF_ParamFlag_CANNOT_TIME_VARY;

constexpr paramRow GroupStart(PF_ParamIndex index, A_long id, const char* name,
                              PF_ParamFlags flags = 0)
{
    return {.index = index, .id = id, .type = PF_Param_GROUP_START, .name = name, .flags = flags};
}

constexpr paramRow GroupEnd(PF_ParamIndex index, A_long id)
{
    return {.index = index, .id = id, .type = PF_Param_GROUP_END, .name = ""};
}

constexpr paramRow Layer(PF_ParamIndex index, A_long id, const char* name)
{
    return {.index = index,
            .id = id,
            .type = PF_Param_LAYER,
            .name = name,
            .value = PF_LayerDefault_NONE};
}

constexpr paramRow Path(PF_ParamIndex index, A_long id, const char* name, PF_ParamFlags flags = 0)
{
    return {.index = index, .id = id, .type = PF_Param_PATH, .name = name, .flags = flags};
}

constexpr paramRow Popup(PF_ParamIndex index, A_long id, const char* name, const char* choices,
                         PF_ParamFlags flags = 0)
{
    return {.index = index,
            .id = id,
            .type = PF_Param_POPUP,
            .name = name,
            .value = 1.0,
            .flags = flags,
            .text = choices};
}

constexpr paramRow Number(PF_ParamIndex index, A_long id, const char* name, double value,
                          valueRange valid, valueRange slider, PF_ParamFlags flags = 0)
{
    return {.index = index,
            .id = id,
            .type = PF_Param_FLOAT_SLIDER,
            .name = name,
            .value = value,
            .valid = valid,
            .slider = slider,
            .flags = flags};
}

constexpr paramRow Percent(PF_ParamIndex index, A_long id, const char* name, double value,
                           valueRange valid, valueRange slider, PF_ParamFlags flags = 0)
{
    paramRow row = Number(index, id, name, value, valid, slider, flags);
    row.display = PF_ValueDisplayFlag_PERCENT;
    return row;
}

constexpr paramRow Whole(PF_ParamIndex index, A_long id, const char* name, double value,
                         valueRange valid, valueRange slider, PF_ParamFlags flags)
{
    paramRow row = Number(index, id, name, value, valid, slider, flags);
    row.type = PF_Param_SLIDER;
    return row;
}

constexpr paramRow Angle(PF_ParamIndex index, A_long id, const char* name, PF_ParamFlags flags = 0)
{
    return {.index = index, .id = id, .type = PF_Param_ANGLE, .name = name, .flags = flags};
}

constexpr paramRow CheckBox(PF_ParamIndex index, A_long id, const char* name, bool on,
                            PF_ParamFlags flags = 0, const char* text = "")
{
    return {.index = index,
            .id = id,
            .type = PF_Param_CHECKBOX,
            .name = name,
            .value = on ? 1.0 : 0.0,
            .flags = flags,
            .text = text};
}

constexpr paramRow White(PF_ParamIndex index, A_long id, const char* name)
{
    return {.index = index, .id = id, .type = PF_Param_COLOR, .name = name, .value = 255.0};
}

constexpr paramRow Centre3D(PF_ParamIndex index, A_long id, const char* name)
{
    return {.index = index, .id = id, .type = PF_Param_POINT_3D, .name = name, .value = 50.0};
}

/// The row once for each vertex. The name keeps its place for the number.
constexpr paramRow PerVertex(paramRow row)
{
    row.runLength = kVertexParamCount;
    return row;
}

// -------------------------------------------------------------------------------------------------
// The table
// -------------------------------------------------------------------------------------------------

// Index, disk ID, name; then default, valid range, slider range where the type has them.
// clang-format off
constexpr std::array kParamRows{
    GroupStart(kSourceGroup, 18, "Source parameters"),
    Layer(kSource, 3, "Source"),
    Popup(kSourceTimeMode, 264, "Source time mode", "Current time|Selector"),
    Number(kSourceTime, 265, "Source time", 0, {0.0f, 1000000.0f}, kZeroTo1000),
    GroupStart(kSourceGeometryGroup, 43, "Source geometry"),
    Popup(kRotation, 22, "Rotation", "0\xC2\xB0|90\xC2\xB0|180\xC2\xB0|270\xC2\xB0", kFixed),
    Percent(kSourceXScale, 25, "Source X scale", 100, kThousand, kZeroTo100),
    Percent(kSourceYScale, 26, "Source Y scale", 100, kThousand, kZeroTo100),
    Percent(kSourceCropLeft, 45, "Source crop left", 0, kZeroTo100, kZeroTo100, kFixed),
    Percent(kSourceCropRight, 46, "Source crop right", 0, kZeroTo100, kZeroTo100, kFixed),
    Percent(kSourceCropTop, 47, "Source crop top", 0, kZeroTo100, kZeroTo100, kFixed),
    Percent(kSourceCropBottom, 48, "Source crop bottom", 0, kZeroTo100, kZeroTo100, kFixed),
    GroupEnd(13, 44),
    Path(kSourceReferenceMask, 268, "Reference mask", PF_ParamFlag_SUPERVISE),
    Percent(kSourceRadius, 269, "Source radius", 100, kZeroTo1000, kZeroTo100),
    Layer(kBackFaceSource, 42, "Back face source"),
    Percent(kMeshDefinition, 1, "Mesh definition", 25, {1.0f, 200.0f}, {1.0f, 100.0f}, kFixed),
    Whole(kMeshSubSampling, 15, "Mesh sub-sampling", 2, {2.0f, 100.0f}, {2.0f, 10.0f}, kFixed),
    Angle(kTwistAtStart, 11, "Twist at start", PF_ParamFlag_COLLAPSE_TWIRLY),
    Angle(kTwistAtEnd, 12, "Twist at end", PF_ParamFlag_COLLAPSE_TWIRLY),
    Percent(kScaleAtStart, 156, "Scale at start", 100, kZeroTo1000, kZeroTo100),
    Percent(kScaleAtEnd, 157, "Scale at end", 100, kZeroTo1000, kZeroTo100),
    Percent(kRevealStart, 23, "Reveal start", 0, kZeroTo100, kZeroTo100),
    Percent(kRevealEnd, 24, "Reveal end", 100, kZeroTo100, kZeroTo100),
    Percent(kUndistortedStart, 262, "Undistorted start", 0, kZeroTo100, kZeroTo100),
    Percent(kUndistortedEnd, 263, "Undistorted end", 100, kZeroTo100, kZeroTo100),
    GroupEnd(27, 19),

    GroupStart(kMaskGroup, 20, "Mask parameters"),
    Path(kMask, 4, "Mask", PF_ParamFlag_SUPERVISE),
    CheckBox(kStretchWithVertsMatch, 266, "Stretch with verts match", false, kFixed),
    Path(kMaskReferenceMask, 267, "Reference mask", PF_ParamFlag_SUPERVISE),
    Percent(kStartPoint, 5, "Start point", 0, kMillion, kZeroTo100),
    CheckBox(kRelativeToSourceWidth, 49, "Relative to source width", true, kFixed,
             "(open masks only)"),
    Percent(kEndPoint, 6, "End point", 100, kMillion, kZeroTo100),
    CheckBox(kStretchAlongPath, 8, "Stretch along path", false),
    Angle(kTwistAtMaskStart, 13, "Twist at mask start", PF_ParamFlag_COLLAPSE_TWIRLY),
    Angle(kTwistAtMaskEnd, 14, "Twist at mask end", PF_ParamFlag_COLLAPSE_TWIRLY),
    Percent(kScaleAtMaskStart, 158, "Scale at mask start", 100, kZeroTo1000, kZeroTo100),
    Percent(kScaleAtMaskEnd, 159, "Scale at mask end", 100, kZeroTo1000, kZeroTo100),
    Percent(kRevealAtMaskStart, 27, "Reveal at mask start", 0, kThousand, kZeroTo100),
    Percent(kRevealAtMaskEnd, 28, "Reveal at mask end", 100, kThousand, kZeroTo100),
    GroupStart(42, 50, "Mask Z parameters", PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN),
    PerVertex(Number(kZAtVertex1, 51, "Z at vertex ", 0, kMillion, kThousand)),
    CheckBox(kSmoothZ, 282, "Smooth Z interpolation", true),
    GroupEnd(144, 151),
    GroupStart(145, 160, "Per vertex scale"),
    PerVertex(Percent(kScaleAtVertex1, 161, "Scale at vertex ", 100, kZeroTo1000, kZeroTo100)),
    CheckBox(kSmoothScale, 281, "Smooth scale interpolation", true),
    GroupEnd(247, 261),
    GroupEnd(248, 21),

    GroupStart(249, 16, "Extrusion parameters"),
    Number(kExtrusion, 7, "Extrusion", 0.1, {0.1f, 1000.0f}, {0.1f, 100.0f}),
    Whole(kExtrusionNumLayers, 9, "Extrusion num layers", 1, {0.0f, 500.0f}, kZeroTo100, kFixed),
    Path(kContourMask, 153, "Contour mask"),
    Percent(kContourDefinition, 154, "Contour definition", 50, kZeroTo100, kZeroTo100, kFixed),
    White(kContourColor, 155, "Contour color"),
    CheckBox(kUseLights, 31, "Use lights", true),
    GroupStart(256, 40, "Light parameters"),
    Number(kLightAmbient, 32, "Light ambient", 100, kZeroTo100, kZeroTo100),
    Number(kLightDiffuse, 33, "Light diffuse", 50, kZeroTo100, kZeroTo100),
    Number(kLightSpecular, 34, "Light specular", 50, kZeroTo100, kZeroTo100),
    Number(kLightShininess, 35, "Light shininess", 5, kZeroTo100, kZeroTo100),
    Number(kLightMetal, 36, "Light metal", 100, kZeroTo100, kZeroTo100),
    Number(kLightConstant, 37, "Light constant", 15, kZeroTo100, kZeroTo100),
    Number(kLightLinear, 38, "Light linear", 0, kZeroTo100, kZeroTo100),
    Number(kLightQuadratic, 39, "Light quadratic", 0, kZeroTo100, kZeroTo100),
    GroupEnd(265, 41),
    GroupEnd(266, 17),

    GroupStart(267, 271, "3D geometry"),
    Centre3D(kAnchor, 272, "Anchor"),
    Centre3D(kPosition, 273, "Position"),
    Percent(kScale, 283, "Scale", 100, kThousand, kZeroTo100),
    GroupStart(271, 284, "Separate dimensions (X,Y,Z)"),
    Percent(kScaleX, 274, "Scale X", 100, kThousand, kZeroTo100),
    Percent(kScaleY, 275, "Scale Y", 100, kThousand, kZeroTo100),
    Percent(kScaleZ, 276, "Scale Z", 100, kThousand, kZeroTo100),
    GroupEnd(275, 285),
    Angle(kRotationX, 277, "Rotation X"),
    Angle(kRotationY, 278, "Rotation Y"),
    Angle(kRotationZ, 279, "Rotation Z"),
    Popup(kCameraMode, 10, "Camera mode", "2D|3D (composition)"),
    GroupEnd(280, 280),

    Popup(kCompositeMode, 2, "Composite mode", "None|Over original|Under original"),
    CheckBox(kAllowMaximumTextureSize, 270, "Allow maximum texture size", false,
             kFixed | PF_ParamFlag_SUPERVISE, "(can cause slowdown)"),
};
// clang-format on

/// Every index from 1 to the last one has its row, in order.
constexpr bool IndicesAreComplete()
{
    PF_ParamIndex next = kInputLayer + 1;
    for (const paramRow& row : kParamRows) {
        if (row.index != next) return false;
        next += row.runLength;
    }
    return next == kParamCount;
}

constexpr bool IdsAreUnique()
{
    constexpr std::size_t kIdLimit = 1000;
    std::array<bool, kIdLimit> used{};
    for (const paramRow& row : kParamRows) {
        for (A_long id = row.id; id < row.id + row.runLength; ++id) {
            if (id < 1 || used.at(static_cast<std::size_t>(id))) return false;
            used.at(static_cast<std::size_t>(id)) = true;
        }
    }
    return true;
}

constexpr bool NamesFit()
{
    constexpr std::size_t kNumberDigits = 3;  // the longest vertex number is 100
    return std::all_of(kParamRows.begin(), kParamRows.end(), [](const paramRow& row) {
        const std::size_t length = std::char_traits<char>::length(row.name);
        return length + (row.runLength > 1 ? kNumberDigits : 0) <= PF_MAX_EFFECT_PARAM_NAME_LEN;
    });
}

static_assert(IndicesAreComplete());
static_assert(IdsAreUnique());
static_assert(NamesFit());

// -------------------------------------------------------------------------------------------------
// From a row to the host's record
// -------------------------------------------------------------------------------------------------

PF_FloatSliderDef MakeFloatSlider(const paramRow& row)
{
    PF_FloatSliderDef def{};
    def.value = row.value;
    def.valid_min = row.valid.low;
    def.valid_max = row.valid.high;
    def.slider_min = row.slider.low;
    def.slider_max = row.slider.high;
    def.dephault = static_cast<float>(row.value);
    def.precision = 2;
    def.display_flags = row.display;
    def.curve_tolerance = 0.05f;
    return def;
}

PF_SliderDef MakeSlider(const paramRow& row)
{
    PF_SliderDef def{};
    def.value = def.dephault = static_cast<A_long>(row.value);
    def.valid_min = static_cast<A_long>(row.valid.low);
    def.valid_max = static_cast<A_long>(row.valid.high);
    def.slider_min = static_cast<A_long>(row.slider.low);
    def.slider_max = static_cast<A_long>(row.slider.high);
    return def;
}

PF_PopupDef MakePopup(const paramRow& row)
{
    const std::string_view choices = row.text;
    PF_PopupDef def{};
    def.dephault = static_cast<A_short>(row.value);
    def.value = def.dephault;
    def.num_choices = static_cast<A_short>(1 + std::count(choices.begin(), choices.end(), '|'));
    def.namesptr = row.text;
    return def;
}

PF_ColorDef MakeGray(const paramRow& row)
{
    const auto level = static_cast<A_u_char>(row.value);
    const PF_Pixel opaque{PF_MAX_CHAN8, level, level, level};
    return {.value = opaque, .dephault = opaque};
}

void FillValue(const paramRow& row, PF_ParamDefUnion& u)
{
    const double v = row.value;
    switch (row.type) {
        case PF_Param_LAYER:
            u.ld.dephault = static_cast<A_long>(v);
            break;
        case PF_Param_SLIDER:
            u.sd = MakeSlider(row);
            break;
        case PF_Param_FLOAT_SLIDER:
            u.fs_d = MakeFloatSlider(row);
            break;
        case PF_Param_POPUP:
            u.pd = MakePopup(row);
            break;
        case PF_Param_COLOR:
            u.cd = MakeGray(row);
            break;
        case PF_Param_POINT_3D:
            u.point3d_d = {v, v, v, v, v, v};
            break;
        case PF_Param_CHECKBOX: {
            const auto on = static_cast<A_long>(v);
            u.bd = {.value = on, .dephault = on, .nameptr = row.text};
            break;
        }
        case PF_Param_ANGLE:
            u.ad = {};
            break;  // 0 degrees
        case PF_Param_PATH:
            u.path_d = {};
            break;  // no mask
        case PF_Param_GROUP_START:
        case PF_Param_GROUP_END:
            break;
    }
}

}  // namespace

std::span<const paramRow> ParamRows()
{
    return kParamRows;
}

PF_ParamDef MakeParamDef(PF_InData& in_data, const paramRow& row, int number)
{
    PF_ParamDef def{};
    std::string name = row.name;
    if (row.runLength > 1) name += intToString(number);
    (void)PF_STRCPY(&in_data, def.name, name.c_str());
    def.param_type = row.type;
    def.uu.id = row.id + number - 1;
    def.flags = row.flags;
    FillValue(row, def.u);
    return def;
}
