#include <algorithm>
#include <new>

#include "Util/returnMessage.h"
#include "entry/commands.h"
#include "entry/motionBlurQuery.h"
#include "entry/records.h"
#include "entry/renderLevel.h"
#include "geometry/paramIndex.h"
#include "gl/GL_base.h"
#include "gl/render.h"
#include "gl/renderMB.h"

using namespace AESDK_OpenGL;

namespace {

/// Empties both targets of the level and leaves A bound. Cleared is what the frame can touch: the
/// viewport and every read lie inside the input's size, and a level's full square would take a
/// software renderer longer to clear than the frame to draw.
void PrepareTargets(const commandCall& call, int level)
{
    const PF_LayerDef& input = call.params[kInputLayer]->u.ld;
    for (const int useB : {1, 0}) {
        const AESDK_OpenGL_Err err =
            AESDK_OpenGL_MakeReadyToRender(S_EffectCommonData, useB, level);
        if (err != Ok) {
            throw FailWithMessage(call.in_data, call.out_data, ReportError(err));
        }
        AESDK_OpenGL_ClearBoundTarget(input.width, input.height);
    }
}

PF_Err RenderPlain(const commandCall& call)
{
    return Render(&call.in_data, &call.out_data, call.params, call.output);
}

PF_Err RenderBlurred(const commandCall& call, const motionBlurState& blur)
{
    return RenderMB(&call.in_data, &call.out_data, call.params, call.output, blur.samples,
                    ShutterFrames(blur));
}

PF_Err RenderByState(const commandCall& call)
try {
    motionBlurState blur;
    // An answer that the host does not give counts as no blur.
    (void)QueryMotionBlur(call.in_data, blur);
    return BlursFrames(blur) ? RenderBlurred(call, blur) : RenderPlain(call);
} catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
}

}  // namespace

PF_Err FrameSetup(const commandCall& call)
{
    if (SequenceData* record = SequenceRecord(call.in_data.sequence_data)) {
        const PF_InData& in = call.in_data;
        const double frameEdge = std::max(in.width / static_cast<double>(in.downsample_x.den),
                                          in.height / static_cast<double>(in.downsample_y.den));
        record->renderLevel = ChooseRenderLevel(S_EffectCommonData.maxTextureSize, frameEdge);
    }
    return PF_Err_NONE;
}

PF_Err RenderFrame(const commandCall& call)
{
    PF_Err err = PF_Err_NONE;
    const SequenceData* record = SequenceRecord(call.in_data.sequence_data);
    if (record != nullptr && GlobalRecord(call.in_data.global_data) != nullptr) {
        PrepareTargets(call, record->renderLevel);
        err = RenderByState(call);
    }
    SetContext(S_EffectCommonData.hostContext);
    return err;
}
