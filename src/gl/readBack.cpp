#include "gl/readBack.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <cstddef>

#include "Util/AEFX_SuiteHelper.h"
#include "Util/firstError.h"
#include "gl/pixelConversion.h"

namespace {

/// The part of the frame that the target has, and the rows that are fetched at a time: enough to
/// keep a bus busy, few enough to stay in a cache until they are converted.
struct readArea {
    int width, height, stripRows;
};

readArea AreaOf(const frameSettings& settings)
{
    constexpr int kStripPixels = 1 << 18;
    const int width = std::min(settings.frameWidth, settings.targetEdge);
    const int height = std::min(settings.frameHeight, settings.targetEdge);
    return {width, height, std::clamp(kStripPixels / std::max(width, 1), 1, std::max(height, 1))};
}

/// Fetches the area strip by strip into `buffer` and hands each row to `takeRow(row, pixels)`.
/// Floats for both depths: a driver's own way to bytes is slower than ours and may cut them.
template <class TakeRow>
void ReadRows(const readArea& area, PF_PixelFloat* buffer, TakeRow&& takeRow)
{
    glReadBuffer(GL_COLOR_ATTACHMENT0_EXT);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    for (int top = 0; top < area.height; top += area.stripRows) {
        const int rows = std::min(area.stripRows, area.height - top);
        glReadPixels(0, top, area.width, rows, GL_ABGR_EXT, GL_FLOAT, buffer);
        for (int row = 0; row < rows; ++row) {
            takeRow(top + row, buffer + std::ptrdiff_t{row} * area.width);
        }
    }
}

/// A row of `world`, whose first pixel is `first`.
template <class Pixel>
Pixel* RowAt(const PF_EffectWorld& world, Pixel* first, int row)
{
    return first + std::ptrdiff_t{world.rowbytes / static_cast<A_long>(sizeof(Pixel))} * row;
}

PF_Err Read8(const renderHost& host, const readArea& area, PF_PixelFloat* buffer,
             PF_EffectWorld& world)
{
    PF_Pixel8* first = nullptr;
    const PF_Err err = PF_GET_PIXEL_DATA8(&host.in_data, &world, nullptr, &first);
    if (err != PF_Err_NONE) return err;
    if (first == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    ReadRows(area, buffer, [&](int row, const PF_PixelFloat* pixels) {
        QuantiseRow(pixels, area.width, RowAt(world, first, row));
    });
    return PF_Err_NONE;
}

PF_Err ReadFloat(const renderHost& host, const readArea& area, PF_PixelFloat* buffer,
                 PF_EffectWorld& world)
{
    StepSuite<PF_PixelDataSuite1> pixelData(&host.in_data, &host.out_data, kPFPixelDataSuite,
                                            kPFPixelDataSuiteVersion1);
    PF_PixelFloat* first = nullptr;
    return FirstError(pixelData.error())
        .then([&] { return pixelData->get_pixel_data_float(&world, nullptr, &first); })
        .then([&] {
            if (first == nullptr) return PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
            ReadRows(area, buffer, [&](int row, const PF_PixelFloat* pixels) {
                std::copy_n(pixels, area.width, RowAt(world, first, row));
            });
            return PF_Err{PF_Err_NONE};
        })
        .always([&] { return pixelData.close(); })
        .code();
}

PF_Err ReadTarget(const renderHost& host, const frameSettings& settings, PF_EffectWorld& world)
{
    const readArea area = AreaOf(settings);
    const PF_HandleSuite2& handles = host.suites.HandleSuite2();
    const HostHandle buffer(handles, sizeof(PF_PixelFloat) * static_cast<A_u_longlong>(area.width) *
                                         static_cast<A_u_longlong>(area.stripRows));
    if (buffer.error() != PF_Err_NONE) return buffer.error();
    const HandleLock lock(handles, buffer.get());
    if (lock.error() != PF_Err_NONE) return lock.error();

    auto* const pixels = static_cast<PF_PixelFloat*>(lock.memory());
    return FirstError{}
        .then([&] {
            return settings.deep() ? ReadFloat(host, area, pixels, world)
                                   : Read8(host, area, pixels, world);
        })
        .then([&] { return host.gl(AESDK_OpenGL::CheckGLErrors()); })
        .code();
}

}  // namespace

PF_Err RenderedImage::Read(const renderHost& host, const frameSettings& settings)
{
    rendered_.emplace(host.in_data, host.suites.WorldSuite2(), settings.frameWidth,
                      settings.frameHeight,
                      settings.deep() ? PF_PixelFormat_ARGB128 : PF_PixelFormat_ARGB32);
    return FirstError(rendered_->error())
        .then([&] { return ReadTarget(host, settings, rendered_->world()); })
        .then([&] { return settings.deep() ? ConvertTo16(host) : PF_Err{PF_Err_NONE}; })
        .code();
}

PF_Err RenderedImage::ConvertTo16(const renderHost& host)
{
    PF_EffectWorld& floats = rendered_->world();
    deep_.emplace(host.in_data, host.suites.WorldSuite1(), floats.width, floats.height,
                  PF_NewWorldFlag_DEEP_PIXELS);
    return FirstError(deep_->error())
        .then([&] {
            worldPair pair{&floats, &deep_->world()};
            return host.suites.IterateSuite1().AEGP_IterateGeneric(floats.height, &pair, tex3216);
        })
        .always([&] { return rendered_->close(); })
        .code();
}

PF_Err RenderedImage::close() noexcept
{
    const PF_Err renderedResult = rendered_ ? rendered_->close() : PF_Err_NONE;
    const PF_Err deepResult = deep_ ? deep_->close() : PF_Err_NONE;
    return renderedResult != PF_Err_NONE ? renderedResult : deepResult;
}
