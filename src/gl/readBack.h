// readBack.h: from target A to an image in the project's depth.
#pragma once

#include <optional>

#include "host_api.h"

#include "Util/guards.h"
#include "gl/frameSettings.h"

/// The rendered image at the frame's size, 8 or 16 bits, colours multiplied by alpha. Owns its
/// world.
class RenderedImage {
public:
    /// Reads target A, which must be bound. What lies outside the target stays transparent. Errors:
    /// the host's first, PF_Err_OUT_OF_MEMORY when the host has no memory for the transfer, 512
    /// with a GL message when GL could not draw or read the image.
    PF_Err Read(const renderHost& host, const frameSettings& settings);

    [[nodiscard]] PF_EffectWorld& world() noexcept
    {
        return deep_ ? deep_->world() : rendered_->world();
    }
    /// Gives the world back.
    PF_Err close() noexcept;

private:
    PF_Err ConvertTo16(const renderHost& host);

    std::optional<HostWorld2> rendered_;
    std::optional<HostWorld1> deep_;
};
