// States of parameters and their controls.
#include <cstring>

#include "image/digest.h"
#include "plugin/gatedCall.h"
#include "plugin/requests.h"
#include "plugin/suites.h"

namespace orv {

namespace {

PF_Err UpdateParamUI(HostSession& session, PF_ProgPtr effect_ref, PF_ParamIndex index,
                     const PF_ParamDef* def)
{
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "PF_UpdateParamUI")) return err;
    if (session.command->cmd != PF_Cmd_UPDATE_PARAMS_UI) {
        (void)session.BreakRule("PF_UpdateParamUI was called outside UPDATE_PARAMS_UI");
        return PF_Err_INVALID_CALLBACK;
    }
    if (def == nullptr) return session.BreakRule("PF_UpdateParamUI was given no record");
    if (index < 1 || index >= session.params.count()) return PF_Err_INVALID_INDEX;
    controlState& control = session.command->instance->controls[static_cast<std::size_t>(index)];
    control.disabled = (def->ui_flags & PF_PUI_DISABLED) != 0;
    const void* end = std::memchr(def->name, 0, sizeof def->name);
    if (end != nullptr) control.name = def->name;
    return PF_Err_NONE;
}

/// Everything that the parameter's value depends on at `t`.
stateBytes StateAt(HostSession& session, PF_ParamIndex index, double t)
{
    const commandContext& command = *session.command;
    const effectFrame& frame = *command.frame;
    Digest digest;
    if (index == 0) {
        if (frame.images != nullptr) {
            digest.add(frame.images->InputState(frame.shown, *frame.owner, frame.effectIndex, t));
        }
        return digest.add(reinterpret_cast<std::uintptr_t>(frame.shown.comp))
            .add(frame.owner->index)
            .bytes();
    }
    const paramDeclaration& declared = session.params.declaration(index);
    if (declared.kind == paramKind::layer) {
        const int named = NamedLayer(command.params, declared, t);
        digest.add(named);
        if (named < 0) return digest.bytes();
        const layer& of = frame.shown.comp->layers[static_cast<std::size_t>(named)];
        return digest.add(LayerState(frame, of, t)).bytes();
    }
    for (const double value : ValueAt(command.params, declared, t)) digest.add(value);
    return digest.bytes();
}

PF_Err GetCurrentState(HostSession& session, PF_ProgPtr effect_ref, PF_ParamIndex index,
                       const A_Time* start, const A_Time* duration, PF_State* state)
{
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "PF_GetCurrentState")) return err;
    if (state == nullptr) return session.BreakRule("PF_GetCurrentState was given no record");
    if (index < 0 || index >= session.params.count()) return PF_Err_INVALID_INDEX;
    const CommandClock& clock = *session.command->clock;
    if (start != nullptr && start->scale == 0) return PF_Err_BAD_CALLBACK_PARAM;
    const double t = start != nullptr ? clock.OfLayerTime(start->value, start->scale) : clock.t();
    Digest digest;
    digest.add(StateAt(session, index, t));
    if (duration != nullptr && duration->value != 0) {
        // Nothing is known about a span of time, so its state is like no other.
        static std::uint64_t spans = 0;
        digest.add(++spans);
    }
    const stateBytes bytes = digest.bytes();
    std::memcpy(state->bytes, bytes.data(), sizeof state->bytes);
    return PF_Err_NONE;
}

PF_Err AreStatesIdentical(HostSession& session, PF_ProgPtr, const PF_State* state1,
                          const PF_State* state2, A_Boolean* same)
{
    if (state1 == nullptr || state2 == nullptr || same == nullptr) {
        return session.BreakRule("PF_AreStatesIdentical was given no record");
    }
    *same = std::memcmp(state1->bytes, state2->bytes, sizeof state1->bytes) == 0 ? 1 : 0;
    return PF_Err_NONE;
}

}  // namespace

const PF_ParamUtilsSuite3 kParamUtilsSuite3{
    .PF_UpdateParamUI = gated<"PF_UpdateParamUI", &UpdateParamUI>,
    .PF_GetCurrentState = gated<"PF_GetCurrentState", &GetCurrentState>,
    .PF_AreStatesIdentical = gated<"PF_AreStatesIdentical", &AreStatesIdentical>};

}  // namespace orv
