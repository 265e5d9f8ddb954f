#include "plugin/callbacks.h"

#include <algorithm>
#include <cstring>

#include <fmt/format.h>

#include "plugin/gatedCall.h"
#include "plugin/modulePath.h"
#include "plugin/requests.h"
#include "plugin/suites.h"
#include "plugin/worldOperations.h"

namespace orv {

namespace {

// ---- parameters

/// The world of a layer parameter at another instant than the command's, or at it.
PF_Err WriteLayerWorld(HostSession& session, const paramDeclaration& declared, double t,
                       PF_ParamDef& def)
{
    commandContext& command = *session.command;
    const PF_LayerDef declaredDef = session.params.def(declared.index).u.ld;
    def.u.ld = {};
    def.u.ld.dephault = declaredDef.dephault;
    const int named = NamedLayer(command.params, declared, t);
    if (named < 0) return PF_Err_NONE;
    const effectFrame& frame = *command.frame;
    const layer& of = frame.shown.comp->layers[static_cast<std::size_t>(named)];
    const bool mustRun = frame.images != nullptr && frame.images->NeedsEffects(frame.shown, of, t);
    if (mustRun && !session.layerWorlds.Knows(frame, of, t)) {
        // Drawn outside this command, which is then sent again.
        command.wanted = wantedPixels{&of, t};
        return PF_Interrupt_CANCEL;
    }
    def.u.ld = command.Hold(session.layerWorlds.Get(session.worlds, frame, of, t));
    def.u.ld.dephault = declaredDef.dephault;
    return PF_Err_NONE;
}

/// The input is that of this command; the host keeps no other frame's.
PF_Err WriteInput(HostSession& session, double t, PF_ParamDef& def)
{
    const commandContext& command = *session.command;
    if (command.input == nullptr || t != command.frame->t) return PF_Err_INVALID_INDEX;
    def.u.ld = *command.input;
    return PF_Err_NONE;
}

PF_Err WriteParam(HostSession& session, PF_ParamIndex index, double t, PF_ParamDef& def)
{
    const paramDeclaration& declared = session.params.declaration(index);
    def = session.params.def(index);
    if (index == 0) return WriteInput(session, t, def);
    if (declared.kind == paramKind::layer) return WriteLayerWorld(session, declared, t, def);
    WriteValue(session.command->params, declared, t, session.pathIds, def);
    return PF_Err_NONE;
}

PF_Err CheckoutParam(HostSession& session, PF_ProgPtr effect_ref, PF_ParamIndex index,
                     A_long what_time, A_long, A_u_long time_scale, PF_ParamDef* param)
{
    if (param == nullptr) return session.BreakRule("checkout_param was given no record");
    *param = {};
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "checkout_param")) return err;
    if (index < 0 || index >= session.params.count()) return PF_Err_INVALID_INDEX;
    if (time_scale == 0) return PF_Err_BAD_CALLBACK_PARAM;
    return WriteParam(session, index, session.command->clock->OfLayerTime(what_time, time_scale),
                      *param);
}

/// A check-out that fails is a check-out too: it is to be checked in like any other. So this one
/// is not wrapped like the rest.
PF_Err CheckoutParamGated(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time,
                          A_long time_step, A_u_long time_scale, PF_ParamDef* param) noexcept
{
    const PF_Err err = gated<"checkout_param", &CheckoutParam>(effect_ref, index, what_time,
                                                               time_step, time_scale, param);
    HostSession* session = CurrentSession();
    if (session != nullptr && param != nullptr) {
        if (err != PF_Err_NONE) *param = {};
        session->ledger.Take(loanKind::param, param, fmt::format("index {}", index));
    }
    return err;
}

PF_Err CheckinParam(HostSession& session, PF_ProgPtr, PF_ParamDef* param)
{
    return TakeBack(session, loanKind::param, param, "checkin_param");
}

PF_Err AddParam(HostSession& session, PF_ProgPtr, PF_ParamIndex index, PF_ParamDef* def)
{
    if (session.command->cmd != PF_Cmd_PARAMS_SETUP) {
        (void)session.BreakRule("add_param was called outside PARAMS_SETUP");
        return PF_Err_INVALID_CALLBACK;
    }
    if (def == nullptr) return session.BreakRule("add_param was given no record");
    std::string reason;
    const PF_Err err = session.params.Add(index, *def, reason);
    if (err != PF_Err_NONE) (void)session.BreakRule(reason);
    return err;
}

PF_Err Abort(HostSession& session, PF_ProgPtr)
{
    callGate& gate = session.gate;
    ++gate.abortChecks;
    const bool asked = gate.abortOn != 0 && gate.abortChecks >= gate.abortOn;
    const bool interrupted = session.options.interrupted && session.options.interrupted();
    return asked || interrupted ? PF_Interrupt_CANCEL : PF_Err_NONE;
}

// ---- worlds

/// Whether the world shows a layer: the input, or the pixels of a layer parameter.
bool ShowsLayer(const commandContext& command, const hostWorld& world)
{
    const void* const pixels = world.world.data;
    const auto same = [pixels](const sharedLayerWorld& each) {
        return each->pixels->world.data == pixels;
    };
    return (command.input != nullptr && command.input->data == pixels) ||
           std::ranges::any_of(command.layerWorlds, same);
}

PF_Err Copy(HostSession& session, PF_ProgPtr, PF_EffectWorld* src, PF_EffectWorld* dst,
            PF_Rect* src_r, PF_Rect* dst_r)
{
    const hostWorld* from = session.worlds.Find(src);
    const hostWorld* to = session.worlds.Find(dst);
    if (from == nullptr || to == nullptr) return RefuseForeign(session, "copy", "world");
    if (from->format != to->format) {
        return session.BreakRule("copy was given worlds of different formats");
    }
    const PF_Rect fromRect = src_r != nullptr ? *src_r : from->world.extent_hint;
    const PF_Rect toRect = dst_r != nullptr ? *dst_r : to->world.extent_hint;
    if (!IsWithin(fromRect, *from) || !IsWithin(toRect, *to)) {
        return session.BreakRule("copy was given a rectangle that is not within its world");
    }
    CopyWorld(*from, fromRect, *to, toRect);
    const bool ownWorld = session.ledger.IsOut(loanKind::world, to->world.data);
    if (ownWorld && ShowsLayer(*session.command, *from)) ++session.counters.sourceCopies;
    return PF_Err_NONE;
}

PF_Err Fill(HostSession& session, PF_ProgPtr, const PF_Pixel* color, const PF_Rect* dst_rect,
            PF_EffectWorld* world)
{
    const hostWorld* target = session.worlds.Find(world);
    if (target == nullptr) return RefuseForeign(session, "fill", "world");
    const PF_Rect rect = dst_rect != nullptr ? *dst_rect : target->world.extent_hint;
    if (!IsWithin(rect, *target)) {
        return session.BreakRule("fill was given a rectangle that is not within its world");
    }
    FillWorld(*target, rect, color != nullptr ? *color : PF_Pixel{});
    return PF_Err_NONE;
}

// ---- the module's path and texts

PF_Err GetPlatformData(HostSession& session, PF_ProgPtr, PF_PlatDataID which, void* data)
{
    if (which != PF_PlatData_EXE_FILE_PATH_W || data == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const std::u16string path = ColonPath(session.modulePath);
    if (path.size() >= AEFX_MAX_PATH) return PF_Err_BAD_CALLBACK_PARAM;
    std::memcpy(data, path.c_str(), (path.size() + 1) * sizeof(char16_t));
    return PF_Err_NONE;
}

A_char* StringCopy(HostSession&, A_char* dst, const A_char* src)
{
    return std::strcpy(dst, src);
}

}  // namespace

PF_InteractCallbacks InteractCallbacks()
{
    return {.checkout_param = &CheckoutParamGated,
            .checkin_param = gatedRelease<"checkin_param", &CheckinParam>,
            .add_param = gated<"add_param", &AddParam>,
            .abort = gated<"abort", &Abort>};
}

PF_UtilCallbacks* UtilCallbacks()
{
    static PF_UtilCallbacks callbacks{
        .copy = gated<"copy", &Copy>,
        .fill = gated<"fill", &Fill>,
        .get_pixel_data8 = kPixelDataSuite1.get_pixel_data8,
        .get_platform_data = gated<"get_platform_data", &GetPlatformData>,
        .ansi = {.sprintf = kAnsiSuite1.sprintf, .strcpy = gated<"strcpy", &StringCopy>}};
    return &callbacks;
}

}  // namespace orv
