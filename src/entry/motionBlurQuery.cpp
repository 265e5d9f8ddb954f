#include "entry/motionBlurQuery.h"

#include "Util/AEGP_SuiteHandler.h"
#include "Util/firstError.h"

namespace {

constexpr A_long kFewestSamples = 3;

}  // namespace

PF_Err QueryMotionBlur(PF_InData& in_data, motionBlurState& state)
{
    AEGP_SuiteHandler suites(in_data.pica_basicP);
    AEGP_LayerH layer = nullptr;
    AEGP_CompH comp = nullptr;
    return FirstError{}
        .then([&] {
            return suites.PFInterfaceSuite1().AEGP_GetEffectLayer(in_data.effect_ref, &layer);
        })
        .then([&] { return suites.LayerSuite12().AEGP_GetLayerParentComp(layer, &comp); })
        .then([&] { return suites.LayerSuite12().AEGP_GetLayerFlags(layer, &state.layerFlags); })
        .then([&] {
            return suites.CompSuite19().AEGP_GetCompSuggestedMotionBlurSamples(comp,
                                                                               &state.samples);
        })
        .then([&] {
            return suites.CompSuite19().AEGP_GetCompShutterAnglePhase(comp, &state.shutterAngle,
                                                                      &state.shutterPhase);
        })
        .then([&] { return suites.CompSuite19().AEGP_GetCompFlags(comp, &state.compFlags); })
        .code();
}

double ShutterFrames(const motionBlurState& state)
{
    const A_Ratio& angle = state.shutterAngle;
    const A_Ratio& phase = state.shutterPhase;
    if (angle.den == 0 || phase.den == 0) return 0.0;
    return static_cast<double>(angle.num) / angle.den + static_cast<double>(phase.num) / phase.den;
}

bool UsesShutter(const motionBlurState& state)
{
    return state.shutterAngle.den != 0 && state.shutterPhase.den != 0 &&
           state.samples >= kFewestSamples &&
           (state.compFlags & AEGP_CompFlag_ENABLE_MOTION_BLUR) != 0 &&
           (state.layerFlags & AEGP_LayerFlag_MOTION_BLUR) != 0;
}

bool BlursFrames(const motionBlurState& state)
{
    return UsesShutter(state) && ShutterFrames(state) != 0.0;
}
