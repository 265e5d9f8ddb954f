// Values over time, of effects and of cameras and lights, in the units that a user reads.
#include <algorithm>

#include "animation/evaluate.h"
#include "plugin/gatedCall.h"
#include "plugin/requests.h"
#include "plugin/suites.h"

namespace orv {

namespace {

// ---- an effect's streams

PF_Err DisposeEffect(HostSession& session, AEGP_EffectRefH effect)
{
    session.references.effects.Remove(effect);
    return TakeBack(session, loanKind::effectRef, effect, "AEGP_DisposeEffect");
}

PF_Err GetNewEffectStreamByIndex(HostSession& session, AEGP_PluginID, AEGP_EffectRefH effect,
                                 PF_ParamIndex index, AEGP_StreamRefH* stream)
{
    if (stream == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *stream = nullptr;
    effectInstance* const* instance = session.references.effects.Find(effect);
    if (instance == nullptr) {
        return RefuseForeign(session, "AEGP_GetNewEffectStreamByIndex", "effect");
    }
    if (index < 0 || index >= session.params.count()) return PF_Err_INVALID_INDEX;
    *stream = session.references.streams.Add({*instance, index});
    session.ledger.Take(loanKind::stream, *stream);
    return PF_Err_NONE;
}

PF_Err DisposeStream(HostSession& session, AEGP_StreamRefH stream)
{
    if (session.ledger.IsOut(loanKind::streamValue, stream)) {
        (void)session.BreakRule("AEGP_DisposeStream was called before its values were given back");
    }
    session.references.streams.Remove(stream);
    return TakeBack(session, loanKind::stream, stream, "AEGP_DisposeStream");
}

/// The instant that is meant, for a layer. False when it is no time.
bool InstantOf(const HostSession& session, const layer& of, AEGP_LTimeMode mode, const A_Time* time,
               double& t)
{
    if (time == nullptr || time->scale == 0) return false;
    const CommandClock& clock = *session.command->clock;
    if (mode == AEGP_LTimeMode_LayerTime) {
        t = clock.OfLayerTime(of, time->value, time->scale);
    } else if (mode == AEGP_LTimeMode_CompTime) {
        t = clock.OfCompositionTime(time->value, time->scale);
    } else {
        return false;
    }
    return true;
}

/// There are no expressions: values before and after them are the same.
PF_Err GetNewStreamValue(HostSession& session, AEGP_PluginID, AEGP_StreamRefH stream,
                         AEGP_LTimeMode time_mode, const A_Time* time, A_Boolean,
                         AEGP_StreamValue2* value)
{
    if (value == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *value = {};
    const lentStream* lent = session.references.streams.Find(stream);
    if (lent == nullptr) return RefuseForeign(session, "AEGP_GetNewStreamValue", "stream");
    const commandContext& command = *session.command;
    double t = 0.0;
    if (!InstantOf(session, *command.frame->owner, time_mode, time, t)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const paramDeclaration& declared = session.params.declaration(lent->index);
    if (!WriteStreamValue(command.params, declared, t, session.pathIds, value->val)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    value->streamH = stream;
    session.ledger.Take(loanKind::streamValue, stream);
    return PF_Err_NONE;
}

PF_Err DisposeStreamValue(HostSession& session, AEGP_StreamValue2* value)
{
    if (value == nullptr) return RefuseForeign(session, "AEGP_DisposeStreamValue", "value");
    const AEGP_StreamRefH stream = value->streamH;
    *value = {};
    return TakeBack(session, loanKind::streamValue, stream, "AEGP_DisposeStreamValue");
}

// ---- flags

PF_Err GetDynamicStreamFlags(HostSession& session, AEGP_StreamRefH stream,
                             AEGP_DynStreamFlags* flags)
{
    const lentStream* lent = session.references.streams.Find(stream);
    if (lent == nullptr || flags == nullptr) {
        return RefuseForeign(session, "AEGP_GetDynamicStreamFlags", "stream");
    }
    const controlState& control = lent->instance->controls[static_cast<std::size_t>(lent->index)];
    *flags = control.hidden ? AEGP_DynStreamFlag_HIDDEN : 0;
    return PF_Err_NONE;
}

PF_Err SetDynamicStreamFlag(HostSession& session, AEGP_StreamRefH stream,
                            AEGP_DynStreamFlags one_flag, A_Boolean, A_Boolean set)
{
    const lentStream* lent = session.references.streams.Find(stream);
    if (lent == nullptr) return RefuseForeign(session, "AEGP_SetDynamicStreamFlag", "stream");
    if (one_flag != AEGP_DynStreamFlag_HIDDEN) return PF_Err_BAD_CALLBACK_PARAM;
    lent->instance->controls[static_cast<std::size_t>(lent->index)].hidden = set != 0;
    return PF_Err_NONE;
}

// ---- cameras and lights

/// Full-resolution pixels, percent. Distances are not below 0.
bool CameraValue(const layer& of, AEGP_LayerStream which, double t, AEGP_StreamVal2& value)
{
    const cameraProps& camera = of.camera;
    const auto atLeast0 = [](double number) { return std::max(0.0, number); };
    const auto zoom = [&] { return EvaluateScalar(camera.zoom, t, 0.0); };
    switch (which) {
        case AEGP_LayerStream_ZOOM:
            value.one_d = zoom();
            return true;
        case AEGP_LayerStream_DEPTH_OF_FIELD:
            value.one_d = EvaluateHeld(camera.depthOfField, t, 0.0) != 0.0 ? 1.0 : 0.0;
            return true;
        case AEGP_LayerStream_FOCUS_DISTANCE:
            value.one_d = camera.focusDistance
                              ? atLeast0(EvaluateScalar(*camera.focusDistance, t, 0.0))
                              : zoom();
            return true;
        case AEGP_LayerStream_APERTURE:
            value.one_d = atLeast0(EvaluateScalar(camera.aperture, t, 0.0));
            return true;
        case AEGP_LayerStream_BLUR_LEVEL:
            value.one_d = atLeast0(EvaluateScalar(camera.blurLevel, t, 100.0));
            return true;
        default:
            return false;
    }
}

bool LightValue(const layer& of, AEGP_LayerStream which, double t, AEGP_StreamVal2& value)
{
    const lightProps& light = of.light;
    switch (which) {
        case AEGP_LayerStream_INTENSITY:
            value.one_d = EvaluateScalar(light.intensity, t, 100.0);
            return true;
        case AEGP_LayerStream_COLOR: {
            const vec3 color = EvaluateVector(light.color, t, {1, 1, 1});
            value.color = {1.0, color.x, color.y, color.z};
            return true;
        }
        case AEGP_LayerStream_CONE_ANGLE:
            value.one_d = EvaluateScalar(light.coneAngle, t, 90.0);
            return true;
        case AEGP_LayerStream_CONE_FEATHER:
            value.one_d = std::clamp(EvaluateScalar(light.coneFeather, t, 50.0), 0.0, 100.0);
            return true;
        default:
            return false;
    }
}

PF_Err GetLayerStreamValue(HostSession& session, AEGP_LayerH layerH, AEGP_LayerStream which,
                           AEGP_LTimeMode time_mode, const A_Time* time, A_Boolean,
                           AEGP_StreamVal2* value, AEGP_StreamType* type)
{
    const layer* of = LayerOf(session, layerH);
    if (of == nullptr || value == nullptr) {
        return RefuseForeign(session, "AEGP_GetLayerStreamValue", "layer");
    }
    *value = {};
    double t = 0.0;
    if (!InstantOf(session, *of, time_mode, time, t)) return PF_Err_BAD_CALLBACK_PARAM;
    const bool known = of->type == layerType::camera  ? CameraValue(*of, which, t, *value)
                       : of->type == layerType::light ? LightValue(*of, which, t, *value)
                                                      : false;
    if (!known) return PF_Err_BAD_CALLBACK_PARAM;
    if (type != nullptr) {
        *type = which == AEGP_LayerStream_COLOR ? AEGP_StreamType_COLOR : AEGP_StreamType_OneD;
    }
    return PF_Err_NONE;
}

}  // namespace

const AEGP_StreamSuite9 kStreamSuite9{
    .AEGP_GetNewEffectStreamByIndex =
        gated<"AEGP_GetNewEffectStreamByIndex", &GetNewEffectStreamByIndex>,
    .AEGP_DisposeStream = gatedRelease<"AEGP_DisposeStream", &DisposeStream>,
    .AEGP_GetNewStreamValue = gated<"AEGP_GetNewStreamValue", &GetNewStreamValue>,
    .AEGP_DisposeStreamValue = gatedRelease<"AEGP_DisposeStreamValue", &DisposeStreamValue>,
    .AEGP_GetLayerStreamValue = gated<"AEGP_GetLayerStreamValue", &GetLayerStreamValue>};

const AEGP_DynamicStreamSuite5 kDynamicStreamSuite5{
    .AEGP_GetDynamicStreamFlags = gated<"AEGP_GetDynamicStreamFlags", &GetDynamicStreamFlags>,
    .AEGP_SetDynamicStreamFlag = gated<"AEGP_SetDynamicStreamFlag", &SetDynamicStreamFlag>};

const AEGP_EffectSuite3 kEffectSuite3{.AEGP_DisposeEffect =
                                          gatedRelease<"AEGP_DisposeEffect", &DisposeEffect>};
const AEGP_EffectSuite2 kEffectSuite2 = kEffectSuite3;

}  // namespace orv
