// Keeps the controls in step with the settings: greys out those without meaning, and shows the
// controls of as many vertices as the mask has.
#include <algorithm>
#include <vector>

#include "Util/AEGP_SuiteHandler.h"
#include "Util/firstError.h"
#include "Util/guards.h"
#include "entry/commands.h"
#include "geometry/paramIndex.h"

namespace {

// -------------------------------------------------------------------------------------------------
// Greyed-out controls
// -------------------------------------------------------------------------------------------------

/// Copies of all parameter records, and which of them the host is to show anew.
class ControlCopies {
public:
    explicit ControlCopies(PF_ParamDef* const params[])
    {
        for (PF_ParamIndex index = 0; index < kParamCount; ++index) {
            copies_.push_back(*params[index]);
        }
    }

    [[nodiscard]] const PF_ParamDef& operator[](PF_ParamIndex index) const
    {
        return copies_[static_cast<std::size_t>(index)];
    }

    /// Greys the controls out or not. Whether they need it is told by the first of them.
    void SetDisabled(const std::vector<PF_ParamIndex>& controls, bool disabled)
    {
        if (IsDisabled(controls.front()) == disabled) return;
        for (const PF_ParamIndex index : controls) {
            PF_ParamUIFlags& flags = copies_[static_cast<std::size_t>(index)].ui_flags;
            flags = disabled ? flags | PF_PUI_DISABLED : flags & ~PF_PUI_DISABLED;
            changed_.push_back(index);
        }
    }

    /// Hands the changed ones back, each once, in the order of their indices.
    PF_Err HandBack(PF_InData& in_data, const PF_ParamUtilsSuite3& controls)
    {
        std::sort(changed_.begin(), changed_.end());
        changed_.erase(std::unique(changed_.begin(), changed_.end()), changed_.end());
        FirstError steps;
        for (const PF_ParamIndex index : changed_) {
            steps.then([&] {
                return controls.PF_UpdateParamUI(in_data.effect_ref, index, &(*this)[index]);
            });
        }
        return steps.code();
    }

private:
    [[nodiscard]] bool IsDisabled(PF_ParamIndex index) const
    {
        return ((*this)[index].ui_flags & PF_PUI_DISABLED) != 0;
    }

    std::vector<PF_ParamDef> copies_;
    std::vector<PF_ParamIndex> changed_;
};

PF_Err GreyControls(const commandCall& call, AEGP_SuiteHandler& suites)
{
    ControlCopies controls(call.params);
    // Flat pictures have no thickness, and a stretch chosen by its start has no end.
    controls.SetDisabled({kExtrusion, kExtrusionNumLayers},
                         controls[kCameraMode].u.pd.value == kCamera2D);
    controls.SetDisabled({kEndPoint}, controls[kStretchAlongPath].u.bd.value == 0);
    return controls.HandBack(call.in_data, suites.ParamUtilsSuite3());
}

// -------------------------------------------------------------------------------------------------
// The mask's segments
// -------------------------------------------------------------------------------------------------

PF_Err CountPathSegments(PF_InData& in_data, AEGP_SuiteHandler& suites, PF_PathID id,
                         A_long& segments)
{
    CheckedOutPath path(in_data, suites.PathQuerySuite1(), id, in_data.current_time);
    return FirstError(path.error())
        .then([&] {
            if (path.get() == nullptr) return static_cast<PF_Err>(PF_Err_NONE);
            return suites.PathDataSuite1().PF_PathNumSegments(in_data.effect_ref, path.get(),
                                                              &segments);
        })
        .always([&] { return path.close(); })
        .code();
}

/// Counts when the layer's mask at `position` is the one chosen.
PF_Err VisitMask(PF_InData& in_data, AEGP_SuiteHandler& suites, AEGP_LayerH layer, A_long position,
                 PF_PathID chosen, A_long& segments)
{
    MaskHandle mask(suites.MaskSuite6(), layer, position);
    if (const PF_Err stopped = PF_ABORT(&in_data)) return stopped;
    PF_PathID id = 0;
    FirstError steps(mask.error());
    if (mask.get() != nullptr) {
        steps.then([&] {
            return suites.PathQuerySuite1().PF_PathInfo(in_data.effect_ref, position, &id);
        });
    }
    if (id != 0 && id == chosen) {
        steps.then([&] { return CountPathSegments(in_data, suites, id, segments); });
    }
    return steps.always([&] { return mask.close(); }).code();
}

/// Segments of "Mask" at the current time; 0 when none is chosen.
PF_Err CountMaskSegments(const commandCall& call, AEGP_SuiteHandler& suites, A_long& segments)
{
    segments = 0;
    const PF_PathID chosen = call.params[kMask]->u.path_d.path_id;
    if (chosen == 0) return PF_Err_NONE;

    AEGP_LayerH layer = nullptr;
    AEGP_CompH comp = nullptr;
    A_long masks = 0;
    FirstError steps;
    steps
        .then([&] {
            return suites.PFInterfaceSuite1().AEGP_GetEffectLayer(call.in_data.effect_ref, &layer);
        })
        .then([&] { return suites.LayerSuite12().AEGP_GetLayerParentComp(layer, &comp); })
        .then([&] { return suites.MaskSuite6().AEGP_GetLayerNumMasks(layer, &masks); });
    for (A_long position = 0; steps.ok() && position < masks; ++position) {
        steps.then(
            [&] { return VisitMask(call.in_data, suites, layer, position, chosen, segments); });
    }
    return steps.code();
}

// -------------------------------------------------------------------------------------------------
// Hidden controls
// -------------------------------------------------------------------------------------------------

/// Shows or hides one control. One that the host refuses stays as it is.
void ShowControl(AEGP_SuiteHandler& suites, AEGP_EffectRefH effect, PF_ParamIndex index, bool show)
{
    const AEGP_DynamicStreamSuite5& controls = suites.DynamicStreamSuite5();
    const EffectStream stream(suites.StreamSuite9(), effect, index);
    AEGP_DynStreamFlags flags = 0;
    if (stream.error() != PF_Err_NONE ||
        controls.AEGP_GetDynamicStreamFlags(stream.get(), &flags) != PF_Err_NONE) {
        return;
    }
    const bool shown = (flags & AEGP_DynStreamFlag_HIDDEN) == 0;
    if (shown == show) return;
    (void)controls.AEGP_SetDynamicStreamFlag(stream.get(), AEGP_DynStreamFlag_HIDDEN,
                                             /*undoableB=*/0, /*setB=*/show ? 0 : 1);
}

struct controlVisibility {
    PF_ParamIndex index;
    bool show;
};

/// Which controls are shown, in the order in which the host is told.
std::vector<controlVisibility> WantedControls(PF_ParamDef* const params[], A_long segments)
{
    std::vector<controlVisibility> controls;
    for (const PF_ParamIndex first : {kScaleAtVertex1, kZAtVertex1}) {
        for (int vertex = 0; vertex < kVertexParamCount; ++vertex) {
            controls.push_back({first + vertex, vertex <= segments});
        }
    }
    // How the source is stretched along the mask: by a reference mask, or by two points.
    const bool byReference = params[kStretchWithVertsMatch]->u.bd.value != 0;
    for (PF_ParamIndex index = kMaskReferenceMask; index <= kStretchAlongPath; ++index) {
        controls.push_back({index, (index == kMaskReferenceMask) == byReference});
    }
    return controls;
}

PF_Err ShowControls(const commandCall& call, AEGP_SuiteHandler& suites, A_long segments)
{
    EffectRef effect(call.in_data, suites.PFInterfaceSuite1(), suites.EffectSuite3());
    if (effect.get() == nullptr) return effect.error();
    if (const PF_Err stopped = PF_ABORT(&call.in_data)) return stopped;
    for (const auto& [index, show] : WantedControls(call.params, segments)) {
        ShowControl(suites, effect.get(), index, show);
        if (const PF_Err stopped = PF_ABORT(&call.in_data)) return stopped;
    }
    return effect.close();
}

}  // namespace

PF_Err UpdateParamsUI(const commandCall& call)
{
    AEGP_SuiteHandler suites(call.in_data.pica_basicP);
    A_long segments = 0;
    return FirstError{}
        .then([&] { return GreyControls(call, suites); })
        .then([&] { return CountMaskSegments(call, suites, segments); })
        .then([&] { return ShowControls(call, suites, segments); })
        .code();
}
