// requests.h: what almost every function of the host checks first.
#pragma once

#include "plugin/hostSession.h"

namespace orv {

/// 0 when the running command has a scene behind it, and `effect_ref` names its instance.
PF_Err CheckEffectRef(HostSession& session, PF_ProgPtr effect_ref, const char* call);
/// 0 when the running command has a scene behind it.
PF_Err CheckScene(HostSession& session, const char* call);

/// A rule broken by passing something that is not (or no longer) the host's.
PF_Err RefuseForeign(HostSession& session, const char* call, const char* thing);

/// Takes `thing` back; a second time is a broken rule.
PF_Err TakeBack(HostSession& session, loanKind kind, const void* thing, const char* call);

/// The one composition that an effect can reach, and its item.
AEGP_CompH CompositionRef();
AEGP_ItemH CompositionItemRef();
/// The reference of a layer of the command's composition: the same one each time.
AEGP_LayerH LayerRef(HostSession& session, int index);
/// Null when `layerH` is not a live reference.
const layer* LayerOf(HostSession& session, AEGP_LayerH layerH);

}  // namespace orv
