// sourceImages.h: the layers that a frame shows, cropped and at the depth that GL is given.
#pragma once

#include <optional>

#include "host_api.h"

#include "Util/guards.h"
#include "gl/frameSettings.h"

/// One image ready to be uploaded: straight alpha, 8 bits or (in 16-bit projects) float. Owns its
/// world.
class SourceImage {
public:
    /// Makes the image: `from` of `layer` (a null rectangle: all of it), scaled to width x height,
    /// with a clear border of one pixel when `settings.contourInset`. Returns the host's code.
    PF_Err Make(const renderHost& host, const frameSettings& settings, PF_EffectWorld& layer,
                PF_Rect* from, A_long width, A_long height);

    [[nodiscard]] bool made() const noexcept { return made_; }
    [[nodiscard]] PF_EffectWorld& world() noexcept
    {
        return floats_ ? floats_->world() : copy_->world();
    }
    /// Gives the world back.
    PF_Err close() noexcept;

private:
    PF_Err ConvertToFloat(const renderHost& host);

    std::optional<HostWorld1> copy_;
    std::optional<HostWorld2> floats_;
    bool made_ = false;
};

/// The two images of a frame. One that was not made is missing: the source when its crop leaves
/// nothing usable, the back face when none is wanted or its layer is smaller than 4 x 4 pixels.
struct sourceImages {
    SourceImage source, back;

    PF_Err close() noexcept
    {
        const PF_Err sourceResult = source.close();
        const PF_Err backResult = back.close();
        return sourceResult != PF_Err_NONE ? sourceResult : backResult;
    }
};

/// Makes both images. Layers are checked in again. Returns the first host error, or the abort code.
PF_Err MakeSourceImages(const renderHost& host, const frameSettings& settings,
                        const paramSnapshot& values, sourceImages& images);
