#include "gl/frameSettings.h"

#include <algorithm>

#include "Util/AEFX_SuiteHelper.h"
#include "Util/firstError.h"

namespace {

PF_Err ReadPixelFormat(const renderHost& host, PF_PixelFormat& format)
{
    StepSuite<PF_WorldSuite2> worlds(&host.in_data, &host.out_data, kPFWorldSuite,
                                     kPFWorldSuiteVersion2);
    return FirstError(worlds.error())
        .then([&] { return worlds->PF_GetPixelFormat(&host.input(), &format); })
        .always([&] { return worlds.close(); })
        .code();
}

/// Two layer parameters name one layer exactly when they carry the same pixels.
void ReadLayerChoice(const renderHost& host, frameSettings& settings)
{
    const PF_LayerDef& source = host.params[kSource]->u.ld;
    const PF_LayerDef& back = host.params[kBackFaceSource]->u.ld;
    settings.ownSource = source.data == nullptr;
    settings.separateBack = back.data != nullptr && back.data != source.data;
}

void ReadSizes(const renderHost& host, const paramSnapshot& values, frameSettings& settings)
{
    const PF_EffectWorld& input = host.input();
    settings.denX = static_cast<int>(host.in_data.downsample_x.den);
    settings.denY = static_cast<int>(host.in_data.downsample_y.den);
    settings.frameWidth = settings.viewWidth = input.width;
    settings.frameHeight = settings.viewHeight = input.height;
    if (!settings.ownSource) return;

    const cropRect crop = CropLayer(input, values);
    if (!crop.usable) return;
    settings.viewWidth = crop.width;
    settings.viewHeight = crop.height;
}

}  // namespace

viewSize frameSettings::view() const
{
    const double width = viewWidth, height = viewHeight;
    return {.W = width * denX, .H = height * denY, .VW = width, .VH = height};
}

PF_Err ReadFrameSettings(const renderHost& host, const paramSnapshot& values,
                         frameSettings& settings)
{
    ReadLayerChoice(host, settings);
    ReadSizes(host, values, settings);
    settings.contourInset = values.paths.contour != 0;
    // The effect's own input is always read as it is now.
    const A_long now = host.in_data.current_time;
    settings.sourceTime =
        settings.ownSource ? now : SourceTime(values, now, host.in_data.time_step);
    settings.renderLevel =
        std::clamp(static_cast<int>(host.record().renderLevel), 0, AESDK_OpenGL::kRenderLevels - 1);
    settings.targetEdge = AESDK_OpenGL::RenderLevelEdges(
        AESDK_OpenGL::S_EffectCommonData
            .maxTextureSize)[static_cast<std::size_t>(settings.renderLevel)];
    return ReadPixelFormat(host, settings.format);
}
