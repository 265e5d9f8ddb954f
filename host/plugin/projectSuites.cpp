// The effect's layer, its composition, camera and lights.
#include <cmath>

#include "animation/evaluate.h"
#include "plugin/gatedCall.h"
#include "plugin/requests.h"
#include "plugin/suites.h"

namespace orv {

namespace {

// ---- the effect's place

PF_Err GetEffectLayer(HostSession& session, PF_ProgPtr effect_ref, AEGP_LayerH* layerH)
{
    if (layerH == nullptr) return RefuseForeign(session, "AEGP_GetEffectLayer", "layer");
    *layerH = nullptr;
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "AEGP_GetEffectLayer")) return err;
    *layerH = LayerRef(session, session.command->frame->owner->index);
    return PF_Err_NONE;
}

PF_Err GetNewEffectForEffect(HostSession& session, AEGP_PluginID, PF_ProgPtr effect_ref,
                             AEGP_EffectRefH* effect)
{
    if (effect == nullptr) return RefuseForeign(session, "AEGP_GetNewEffectForEffect", "effect");
    *effect = nullptr;
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "AEGP_GetNewEffectForEffect")) {
        return err;
    }
    *effect = session.references.effects.Add(session.command->instance);
    session.ledger.Take(loanKind::effectRef, *effect);
    return PF_Err_NONE;
}

PF_Err ConvertEffectToCompTime(HostSession& session, PF_ProgPtr effect_ref, A_long what_time,
                               A_u_long time_scale, A_Time* comp_time)
{
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "AEGP_ConvertEffectToCompTime")) {
        return err;
    }
    if (comp_time == nullptr || time_scale == 0) return PF_Err_BAD_CALLBACK_PARAM;
    *comp_time = session.command->clock->ToCompositionTime(what_time, time_scale);
    return PF_Err_NONE;
}

PF_Err GetEffectCamera(HostSession& session, PF_ProgPtr effect_ref, const A_Time* comp_time,
                       AEGP_LayerH* camera)
{
    if (camera == nullptr) return RefuseForeign(session, "AEGP_GetEffectCamera", "layer");
    *camera = nullptr;
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "AEGP_GetEffectCamera")) return err;
    if (comp_time == nullptr || comp_time->scale == 0) return PF_Err_BAD_CALLBACK_PARAM;
    const commandContext& command = *session.command;
    const double t = command.clock->OfCompositionTime(comp_time->value, comp_time->scale);
    const layer* active = ActiveCamera(*command.frame->shown.comp, t);
    if (active != nullptr) *camera = LayerRef(session, active->index);
    return PF_Err_NONE;
}

// ---- layers

PF_Err CheckComp(HostSession& session, AEGP_CompH compH, const char* call)
{
    if (const PF_Err err = CheckScene(session, call)) return err;
    return compH == CompositionRef() ? PF_Err_NONE : RefuseForeign(session, call, "composition");
}

PF_Err GetCompNumLayers(HostSession& session, AEGP_CompH compH, A_long* num_layers)
{
    if (const PF_Err err = CheckComp(session, compH, "AEGP_GetCompNumLayers")) return err;
    if (num_layers == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *num_layers = static_cast<A_long>(session.command->frame->shown.comp->layers.size());
    return PF_Err_NONE;
}

PF_Err GetCompLayerByIndex(HostSession& session, AEGP_CompH compH, A_long index,
                           AEGP_LayerH* layerH)
{
    if (layerH == nullptr) return RefuseForeign(session, "AEGP_GetCompLayerByIndex", "layer");
    *layerH = nullptr;
    if (const PF_Err err = CheckComp(session, compH, "AEGP_GetCompLayerByIndex")) return err;
    const auto count = static_cast<A_long>(session.command->frame->shown.comp->layers.size());
    if (index < 0 || index >= count) return PF_Err_INVALID_INDEX;
    *layerH = LayerRef(session, index);
    return PF_Err_NONE;
}

AEGP_ObjectType ObjectTypeOf(layerType type)
{
    switch (type) {
        case layerType::camera:
            return AEGP_ObjectType_CAMERA;
        case layerType::light:
            return AEGP_ObjectType_LIGHT;
        case layerType::skipped:
            return AEGP_ObjectType_NONE;
        case layerType::precomposition:
        case layerType::solid:
        case layerType::image:
        case layerType::null:
        case layerType::empty:
            break;
    }
    return AEGP_ObjectType_AV;
}

PF_Err GetLayerObjectType(HostSession& session, AEGP_LayerH layerH, AEGP_ObjectType* object_type)
{
    const layer* of = LayerOf(session, layerH);
    if (of == nullptr || object_type == nullptr) {
        return RefuseForeign(session, "AEGP_GetLayerObjectType", "layer");
    }
    *object_type = ObjectTypeOf(of->type);
    return PF_Err_NONE;
}

PF_Err GetLayerParentComp(HostSession& session, AEGP_LayerH layerH, AEGP_CompH* compH)
{
    if (LayerOf(session, layerH) == nullptr || compH == nullptr) {
        return RefuseForeign(session, "AEGP_GetLayerParentComp", "layer");
    }
    *compH = CompositionRef();
    return PF_Err_NONE;
}

/// The video switch alone: whether the layer shows at that time does not enter.
PF_Err GetLayerFlags(HostSession& session, AEGP_LayerH layerH, AEGP_LayerFlags* flags)
{
    const layer* of = LayerOf(session, layerH);
    if (of == nullptr || flags == nullptr) {
        return RefuseForeign(session, "AEGP_GetLayerFlags", "layer");
    }
    *flags = (of->hidden ? 0 : AEGP_LayerFlag_VIDEO_ACTIVE) |
             (of->motionBlur ? AEGP_LayerFlag_MOTION_BLUR : 0);
    return PF_Err_NONE;
}

PF_Err GetLayerToWorldXform(HostSession& session, AEGP_LayerH layerH, const A_Time* comp_time,
                            A_Matrix4* xform)
{
    const layer* of = LayerOf(session, layerH);
    if (of == nullptr) return RefuseForeign(session, "AEGP_GetLayerToWorldXform", "layer");
    if (comp_time == nullptr || comp_time->scale == 0 || xform == nullptr) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const commandContext& command = *session.command;
    const double t = command.clock->OfCompositionTime(comp_time->value, comp_time->scale);
    const matrix4 world = WorldMatrix(*command.frame->shown.comp, *of, t);
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            xform->mat[row][column] = world.m[row][column];
        }
    }
    return PF_Err_NONE;
}

/// The view's time matters only to layers that turn towards the camera; scenes have none.
PF_Err GetLayerToWorldXformFromView(HostSession& session, AEGP_LayerH layerH, const A_Time*,
                                    const A_Time* comp_time, A_Matrix4* xform)
{
    return GetLayerToWorldXform(session, layerH, comp_time, xform);
}

// ---- the composition

PF_Err GetItemFromComp(HostSession& session, AEGP_CompH compH, AEGP_ItemH* itemH)
{
    if (const PF_Err err = CheckComp(session, compH, "AEGP_GetItemFromComp")) return err;
    if (itemH == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *itemH = CompositionItemRef();
    return PF_Err_NONE;
}

PF_Err GetItemDimensions(HostSession& session, AEGP_ItemH itemH, A_long* width, A_long* height)
{
    if (const PF_Err err = CheckScene(session, "AEGP_GetItemDimensions")) return err;
    if (itemH != CompositionItemRef() || width == nullptr || height == nullptr) {
        return RefuseForeign(session, "AEGP_GetItemDimensions", "item");
    }
    *width = session.command->frame->shown.width;
    *height = session.command->frame->shown.height;
    return PF_Err_NONE;
}

PF_Err GetCompFlags(HostSession& session, AEGP_CompH compH, AEGP_CompFlags* flags)
{
    if (const PF_Err err = CheckComp(session, compH, "AEGP_GetCompFlags")) return err;
    if (flags == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const bool blurs = session.command->frame->shown.comp->motionBlur.enabled;
    *flags = blurs ? AEGP_CompFlag_ENABLE_MOTION_BLUR : 0;
    return PF_Err_NONE;
}

/// Degrees as a part of a frame, to a tenthousandth of a degree.
A_Ratio FrameRatio(double degrees)
{
    constexpr double kParts = 10000.0;
    return {static_cast<A_long>(std::lround(degrees * kParts)),
            static_cast<A_u_long>(360.0 * kParts)};
}

PF_Err GetCompShutterAnglePhase(HostSession& session, AEGP_CompH compH, A_Ratio* angle,
                                A_Ratio* phase)
{
    if (const PF_Err err = CheckComp(session, compH, "AEGP_GetCompShutterAnglePhase")) return err;
    if (angle == nullptr || phase == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const motionBlurSettings& blur = session.command->frame->shown.comp->motionBlur;
    *angle = FrameRatio(blur.shutterAngle);
    *phase = FrameRatio(blur.shutterPhase);
    return PF_Err_NONE;
}

PF_Err GetCompSuggestedMotionBlurSamples(HostSession& session, AEGP_CompH compH, A_long* samples)
{
    if (const PF_Err err = CheckComp(session, compH, "AEGP_GetCompSuggestedMotionBlurSamples")) {
        return err;
    }
    if (samples == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *samples = session.command->frame->shown.comp->motionBlur.samples;
    return PF_Err_NONE;
}

PF_Err GetDefaultCameraDistance(HostSession& session, AEGP_CompH compH, A_FpLong* distance)
{
    if (const PF_Err err = CheckComp(session, compH, "AEGP_GetDefaultCameraDistanceToImagePlane")) {
        return err;
    }
    if (distance == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *distance = DefaultCameraDistance(session.command->frame->shown.width);
    return PF_Err_NONE;
}

// ---- lights

AEGP_LightType LightTypeOf(lightType type)
{
    switch (type) {
        case lightType::parallel:
            return AEGP_LightType_PARALLEL;
        case lightType::spot:
            return AEGP_LightType_SPOT;
        case lightType::point:
            return AEGP_LightType_POINT;
        case lightType::ambient:
            break;
    }
    return AEGP_LightType_AMBIENT;
}

PF_Err GetLightType(HostSession& session, AEGP_LayerH layerH, AEGP_LightType* light_type)
{
    const layer* of = LayerOf(session, layerH);
    if (of == nullptr || light_type == nullptr || of->type != layerType::light) {
        return RefuseForeign(session, "AEGP_GetLightType", "light");
    }
    *light_type = LightTypeOf(of->light.type);
    return PF_Err_NONE;
}

}  // namespace

const AEGP_PFInterfaceSuite1 kPFInterfaceSuite1{
    .AEGP_GetEffectLayer = gated<"AEGP_GetEffectLayer", &GetEffectLayer>,
    .AEGP_GetNewEffectForEffect = gated<"AEGP_GetNewEffectForEffect", &GetNewEffectForEffect>,
    .AEGP_ConvertEffectToCompTime = gated<"AEGP_ConvertEffectToCompTime", &ConvertEffectToCompTime>,
    .AEGP_GetEffectCamera = gated<"AEGP_GetEffectCamera", &GetEffectCamera>};

const AEGP_LayerSuite11 kLayerSuite11{
    .AEGP_GetCompNumLayers = gated<"AEGP_GetCompNumLayers", &GetCompNumLayers>,
    .AEGP_GetCompLayerByIndex = gated<"AEGP_GetCompLayerByIndex", &GetCompLayerByIndex>,
    .AEGP_GetLayerObjectType = gated<"AEGP_GetLayerObjectType", &GetLayerObjectType>};

const AEGP_LayerSuite12 kLayerSuite12{
    .AEGP_GetLayerParentComp = gated<"AEGP_GetLayerParentComp", &GetLayerParentComp>,
    .AEGP_GetLayerFlags = gated<"AEGP_GetLayerFlags", &GetLayerFlags>};

const AEGP_LayerSuite13 kLayerSuite13{
    .AEGP_GetLayerToWorldXform = gated<"AEGP_GetLayerToWorldXform", &GetLayerToWorldXform>,
    .AEGP_GetLayerToWorldXformFromView =
        gated<"AEGP_GetLayerToWorldXformFromView", &GetLayerToWorldXformFromView>};

const AEGP_CompSuite18 kCompSuite18{.AEGP_GetItemFromComp =
                                        gated<"AEGP_GetItemFromComp", &GetItemFromComp>};

const AEGP_CompSuite19 kCompSuite19{
    .AEGP_GetCompFlags = gated<"AEGP_GetCompFlags", &GetCompFlags>,
    .AEGP_GetCompShutterAnglePhase =
        gated<"AEGP_GetCompShutterAnglePhase", &GetCompShutterAnglePhase>,
    .AEGP_GetCompSuggestedMotionBlurSamples =
        gated<"AEGP_GetCompSuggestedMotionBlurSamples", &GetCompSuggestedMotionBlurSamples>};

const AEGP_ItemSuite13 kItemSuite13{.AEGP_GetItemDimensions =
                                        gated<"AEGP_GetItemDimensions", &GetItemDimensions>};

const AEGP_CameraSuite2 kCameraSuite2{
    .AEGP_GetDefaultCameraDistanceToImagePlane =
        gated<"AEGP_GetDefaultCameraDistanceToImagePlane", &GetDefaultCameraDistance>};

const AEGP_LightSuite2 kLightSuite2{.AEGP_GetLightType = gated<"AEGP_GetLightType", &GetLightType>};

}  // namespace orv
