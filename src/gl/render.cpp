#include "gl/render.h"

#include "gl/renderFrame.h"

namespace {

/// The one instant of a frame without motion blur: its own time.
PF_Err ReadFrameInstant(const frameSource& source, std::vector<frameInstant>& instants)
{
    frameInstant& instant = instants.emplace_back();
    instant.values = source.values;
    instant.camera = source.camera;
    return LayInstant(source, source.host.in_data.current_time, instant);
}

}  // namespace

PF_Err Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output)
{
    return RenderInstants(in_data, out_data, params, output, ReadFrameInstant);
}
