#include "gl/renderMB.h"

#include "Util/firstError.h"
#include "camera/compCamera.h"
#include "gl/motionTest.h"
#include "gl/paramSampling.h"
#include "gl/renderFrame.h"

namespace {

/// Reads one sample. `camera` carries what an earlier one left in the fields that the host has no
/// answer for at this one's time.
PF_Err ReadSample(const frameSource& source, A_long time, camData& camera, frameInstant& sample)
{
    const renderHost& host = source.host;
    sample.values = source.values;
    return FirstError(host.abort())
        .then([&] { return SampleParams(host, time, sample.values); })
        .then([&] { return LayInstant(source, time, sample); })
        .then([&] {
            const PF_Err err =
                CompCameraT(&host.in_data, sample.values.composition3D(), &camera, time);
            sample.camera = camera;
            return err;
        })
        .code();
}

PF_Err ReadSamples(const frameSource& source, int count, double shutterFrames,
                   std::vector<frameInstant>& samples)
{
    const PF_InData& in_data = source.host.in_data;
    camData camera = source.camera;
    FirstError steps;
    for (const A_long time :
         SampleTimes(in_data.current_time, in_data.time_step, count, shutterFrames)) {
        steps.then([&] { return ReadSample(source, time, camera, samples.emplace_back()); });
    }
    // Without a source image nothing can be seen to move.
    if (steps.ok() && (!source.textures.ready || !FrameMoves(samples))) samples.resize(1);
    return steps.code();
}

}  // namespace

PF_Err RenderMB(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                PF_LayerDef* output, int samples, double shutterFrames)
{
    return RenderInstants(in_data, out_data, params, output,
                          [&](const frameSource& source, std::vector<frameInstant>& instants) {
                              return ReadSamples(source, samples, shutterFrames, instants);
                          });
}
