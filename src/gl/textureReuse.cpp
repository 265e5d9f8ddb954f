#include "gl/textureReuse.h"

#include <algorithm>
#include <cstddef>

#include "Util/firstError.h"

namespace {

/// Takes the state of layer parameter `index` and tells whether it is `cached`, which it replaces.
PF_Err CompareState(const renderHost& host, PF_ParamIndex index, A_long time, PF_State& cached,
                    bool& same)
{
    const PF_ParamUtilsSuite3& suite = host.suites.ParamUtilsSuite3();
    const A_Time start{time, host.in_data.time_scale};
    const A_Time duration{0, host.in_data.time_scale};
    PF_State now{};
    A_Boolean identical = 0;
    return FirstError{}
        .then([&] {
            return suite.PF_GetCurrentState(host.in_data.effect_ref, index, &start, &duration,
                                            &now);
        })
        .then([&] {
            return suite.PF_AreStatesIdentical(host.in_data.effect_ref, &now, &cached, &identical);
        })
        .then([&] {
            same = identical != 0;
            cached = now;
            return PF_Err_NONE;
        })
        .code();
}

PF_Err CompareBackState(const renderHost& host, bool separateBack, PF_State& cached, bool& same)
{
    if (separateBack) {
        return CompareState(host, kBackFaceSource, host.in_data.current_time, cached, same);
    }
    // A texture left from an earlier choice may have another size: never to be taken up again.
    cached = {};
    same = true;
    return PF_Err_NONE;
}

}  // namespace

textureInputs CurrentInputs(const frameSettings& settings, const paramSnapshot& values)
{
    return {.downsample = static_cast<std::uint32_t>(std::max(settings.denX, settings.denY)),
            .rotation = values.popup(kRotation),
            .cropLeft = static_cast<double>(values[kSourceCropLeft]),
            .cropRight = static_cast<double>(values[kSourceCropRight]),
            .cropTop = static_cast<double>(values[kSourceCropTop]),
            .cropBottom = static_cast<double>(values[kSourceCropBottom]),
            .contourInset = settings.contourInset,
            .pixelFormat = settings.format,
            .worldWidth = settings.frameWidth,
            .worldHeight = settings.frameHeight};
}

textureInputs CachedInputs(const SequenceData& record)
{
    return {.downsample = record.cachedDownsample,
            .rotation = record.cachedRotation,
            .cropLeft = record.cachedCropLeft,
            .cropRight = record.cachedCropRight,
            .cropTop = record.cachedCropTop,
            .cropBottom = record.cachedCropBottom,
            .contourInset = record.cachedContourInset != 0,
            .pixelFormat = record.cachedPixelFormat,
            .worldWidth = record.cachedWorldWidth,
            .worldHeight = record.cachedWorldHeight};
}

void StoreInputs(const textureInputs& inputs, SequenceData& record)
{
    record.cachedDownsample = inputs.downsample;
    record.cachedRotation = inputs.rotation;
    record.cachedCropLeft = inputs.cropLeft;
    record.cachedCropRight = inputs.cropRight;
    record.cachedCropTop = inputs.cropTop;
    record.cachedCropBottom = inputs.cropBottom;
    record.cachedContourInset = inputs.contourInset ? 1 : 0;
    record.cachedPixelFormat = inputs.pixelFormat;
    record.cachedWorldWidth = inputs.worldWidth;
    record.cachedWorldHeight = inputs.worldHeight;
}

std::uint32_t TextureAt(const std::vector<std::uint32_t>& names, std::int32_t slot)
{
    const auto position = static_cast<std::size_t>(slot);
    return position < names.size() ? names[position] : 0;
}

bool HasTextures(const SequenceData& record, bool separateBack)
{
    return TextureAt(record.sourceTextures, record.slot) != 0 &&
           (!separateBack || TextureAt(record.backTextures, record.slot) != 0);
}

PF_Err TestTextureReuse(const renderHost& host, const frameSettings& settings,
                        const paramSnapshot& values, bool& reuse)
{
    SequenceData& record = host.record();
    const textureInputs now = CurrentInputs(settings, values);
    const bool usable = record.statesValid != 0 && HasTextures(record, settings.separateBack) &&
                        now == CachedInputs(record);
    record.statesValid = 0;
    StoreInputs(now, record);

    bool sameSource = false, sameBack = false;
    return FirstError{}
        .then([&] {
            return CompareState(host, settings.ownSource ? kInputLayer : kSource,
                                settings.sourceTime, record.sourceState, sameSource);
        })
        .then([&] {
            return CompareBackState(host, settings.separateBack, record.backState, sameBack);
        })
        .then([&] {
            reuse = usable && sameSource && sameBack;
            return PF_Err_NONE;
        })
        .code();
}
