#include "gl/composite.h"

#include "Util/firstError.h"
#include "Util/guards.h"

namespace {

PF_CompositeMode TransferMode(int compositeMode)
{
    return {.xfer = compositeMode == kCompositeOver ? PF_Xfer_IN_FRONT : PF_Xfer_BEHIND,
            .rand_seed = 0,
            .opacity = 255,
            .rgb_only = 0,
            .opacitySu = 0x8000};
}

/// Puts the input into `output` and lays the rendering that was there over or under it.
PF_Err CombineWithInput(const renderHost& host, int compositeMode, PF_LayerDef& output)
{
    const bool deep = PF_WORLD_IS_DEEP(&output) != 0;
    HostWorld1 rendering(host.in_data, host.suites.WorldSuite1(), output.width, output.height,
                         deep ? PF_NewWorldFlag_DEEP_PIXELS : PF_NewWorldFlag_NONE);
    const PF_Rect whole{0, 0, output.width, output.height};
    const PF_CompositeMode mode = TransferMode(compositeMode);
    PF_InData& in_data = host.in_data;
    return FirstError(rendering.error())
        .then([&] { return PF_COPY(&in_data, &output, &rendering.world(), nullptr, nullptr); })
        .then([&] { return PF_COPY(&in_data, &host.input(), &output, nullptr, nullptr); })
        .then([&] {
            return host.suites.WorldTransformSuite1().transfer_rect(
                in_data.effect_ref, in_data.quality, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, &whole,
                &rendering.world(), &mode, nullptr, 0, 0, &output);
        })
        .always([&] { return rendering.close(); })
        .code();
}

}  // namespace

PF_Err Composite(const renderHost& host, PF_EffectWorld& rendered, int compositeMode,
                 PF_LayerDef& output)
{
    PF_InData& in_data = host.in_data;
    return FirstError{}
        .then([&] {
            return host.suites.FillMatteSuite2().premultiply(in_data.effect_ref, /*forward=*/0,
                                                             &rendered);
        })
        .then([&] {
            PF_Rect whole{0, 0, rendered.width, rendered.height};
            return PF_COPY(&in_data, &rendered, &output, &whole, nullptr);
        })
        .then([&] {
            if (compositeMode <= kCompositeNone) return PF_Err{PF_Err_NONE};
            return CombineWithInput(host, compositeMode, output);
        })
        .code();
}
