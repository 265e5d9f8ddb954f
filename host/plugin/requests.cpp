#include "plugin/requests.h"

#include <fmt/format.h>

namespace orv {

PF_Err CheckScene(HostSession& session, const char* call)
{
    if (session.command->frame != nullptr) return PF_Err_NONE;
    (void)session.BreakRule(fmt::format("{} was called in a command without a scene", call));
    return PF_Err_INVALID_CALLBACK;
}

PF_Err CheckEffectRef(HostSession& session, PF_ProgPtr effect_ref, const char* call)
{
    if (const PF_Err err = CheckScene(session, call)) return err;
    const effectInstance* instance = session.command->instance;
    if (instance != nullptr && effect_ref == instance->ref) return PF_Err_NONE;
    return RefuseForeign(session, call, "effect_ref");
}

PF_Err RefuseForeign(HostSession& session, const char* call, const char* thing)
{
    return session.BreakRule(fmt::format("{}: this {} is not the host's", call, thing));
}

PF_Err TakeBack(HostSession& session, loanKind kind, const void* thing, const char* call)
{
    if (session.ledger.GiveBack(kind, thing)) return PF_Err_NONE;
    return session.BreakRule(fmt::format("{} gave back what is not out", call));
}

AEGP_CompH CompositionRef()
{
    static AEGP_CompH ref = NewToken<AEGP_CompH>();
    return ref;
}

AEGP_ItemH CompositionItemRef()
{
    static AEGP_ItemH ref = NewToken<AEGP_ItemH>();
    return ref;
}

AEGP_LayerH LayerRef(HostSession& session, int index)
{
    for (const auto& [ref, known] : session.references.layers) {
        if (known == index) return ref;
    }
    return session.references.layers.Add(index);
}

const layer* LayerOf(HostSession& session, AEGP_LayerH layerH)
{
    const int* index = session.references.layers.Find(layerH);
    if (index == nullptr || session.command->frame == nullptr) return nullptr;
    return &session.command->frame->shown.comp->layers[static_cast<std::size_t>(*index)];
}

}  // namespace orv
