#include "gl/sourceImages.h"

#include "Util/firstError.h"
#include "gl/pixelConversion.h"

namespace {

PF_Err CopyCrop(const renderHost& host, const frameSettings& settings, const paramSnapshot& values,
                PF_EffectWorld& layer, SourceImage& image)
{
    cropRect crop = CropLayer(layer, values);
    if (layer.data == nullptr || !crop.usable) return PF_Err_NONE;
    return image.Make(host, settings, layer, &crop.rect, crop.width, crop.height);
}

PF_Err MakeSource(const renderHost& host, const frameSettings& settings,
                  const paramSnapshot& values, SourceImage& image)
{
    if (settings.ownSource) return CopyCrop(host, settings, values, host.input(), image);

    CheckedOutParam layer(host.in_data, kSource, settings.sourceTime);
    return FirstError(layer.error())
        .then([&] { return CopyCrop(host, settings, values, layer.def().u.ld, image); })
        .always([&] { return layer.close(); })
        .code();
}

/// The whole layer, scaled to the source's size: one set of texture points serves both.
PF_Err MakeBack(const renderHost& host, const frameSettings& settings, const PF_EffectWorld& source,
                SourceImage& image)
{
    CheckedOutParam layer(host.in_data, kBackFaceSource, host.in_data.current_time);
    return FirstError(layer.error())
        .then([&] {
            PF_EffectWorld& pixels = layer.def().u.ld;
            if (pixels.width < kSmallestSource || pixels.height < kSmallestSource) {
                return PF_Err{PF_Err_NONE};
            }
            return image.Make(host, settings, pixels, nullptr, source.width, source.height);
        })
        .always([&] { return layer.close(); })
        .code();
}

}  // namespace

PF_Err SourceImage::Make(const renderHost& host, const frameSettings& settings,
                         PF_EffectWorld& layer, PF_Rect* from, A_long width, A_long height)
{
    copy_.emplace(host.in_data, host.suites.WorldSuite1(), width, height,
                  settings.deep() ? PF_NewWorldFlag_DEEP_PIXELS : PF_NewWorldFlag_NONE);
    const A_long inset = settings.contourInset ? 1 : 0;
    PF_Rect to{inset, inset, width - inset, height - inset};
    return FirstError(copy_->error())
        .then([&] { return PF_COPY(&host.in_data, &layer, &copy_->world(), from, &to); })
        .then([&] { return settings.deep() ? ConvertToFloat(host) : PF_Err{PF_Err_NONE}; })
        .then([&] {
            made_ = true;
            return PF_Err_NONE;
        })
        .code();
}

PF_Err SourceImage::ConvertToFloat(const renderHost& host)
{
    const A_long width = copy_->world().width, height = copy_->world().height;
    floats_.emplace(host.in_data, host.suites.WorldSuite2(), width, height, PF_PixelFormat_ARGB128);
    return FirstError(floats_->error())
        .then([&] {
            worldPair pair{&copy_->world(), &floats_->world()};
            return host.suites.IterateSuite1().AEGP_IterateGeneric(height, &pair, tex1632);
        })
        .always([&] { return copy_->close(); })
        .code();
}

PF_Err SourceImage::close() noexcept
{
    made_ = false;
    const PF_Err copyResult = copy_ ? copy_->close() : PF_Err_NONE;
    const PF_Err floatsResult = floats_ ? floats_->close() : PF_Err_NONE;
    return copyResult != PF_Err_NONE ? copyResult : floatsResult;
}

PF_Err MakeSourceImages(const renderHost& host, const frameSettings& settings,
                        const paramSnapshot& values, sourceImages& images)
{
    return FirstError{}
        .then([&] { return MakeSource(host, settings, values, images.source); })
        .then([&] { return host.abort(); })
        .then([&] {
            if (!settings.separateBack || !images.source.made()) return PF_Err{PF_Err_NONE};
            return MakeBack(host, settings, images.source.world(), images.back);
        })
        .then([&] { return host.abort(); })
        .code();
}
