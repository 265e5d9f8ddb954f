#include "gl/pixelConversion.h"

#include <cstddef>

namespace {

/// Address of a row. A row stride that is no multiple of the pixel size is rounded down to one.
template <class Pixel>
Pixel* RowOf(const PF_EffectWorld& world, A_long row)
{
    const std::ptrdiff_t stride = world.rowbytes / static_cast<A_long>(sizeof(Pixel));
    return static_cast<Pixel*>(world.data) + stride * row;
}

float ToFloat(A_u_short channel)
{
    return static_cast<float>(channel * 3.0517578125e-5);
}

A_u_short To16(float channel)
{
    const float above = channel > 0.0f ? channel : 0.0f;  // a NaN has no integer
    return static_cast<A_u_short>(static_cast<A_long>(above * 32768.0f));
}

/// channel * alpha / 255 to the nearest, exact for all bytes.
A_u_char TimesAlpha(unsigned channel, unsigned alpha)
{
    const unsigned product = channel * alpha + 128;
    return static_cast<A_u_char>((product + (product >> 8)) >> 8);
}

/// Comparisons in this form, without branches and with "not a number" falling to 0, are vectorised.
A_u_char To8(float channel)
{
    const float above = channel > 0.0f ? channel : 0.0f;
    const float within = above < 1.0f ? above : 1.0f;
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): never negative; lround would be a call
    return static_cast<A_u_char>(static_cast<A_long>(within * 255.0f + 0.5f));
}

}  // namespace

PF_Err tex1632(void* refcon, A_long /*thread*/, A_long row, A_long /*rows*/)
{
    const auto& worlds = *static_cast<const worldPair*>(refcon);
    const auto* from = RowOf<PF_Pixel16>(*worlds.from, row);
    auto* to = RowOf<PF_PixelFloat>(*worlds.to, row);
    for (A_long x = 0; x < worlds.from->width; ++x) {
        to[x] = {ToFloat(from[x].alpha), ToFloat(from[x].red), ToFloat(from[x].green),
                 ToFloat(from[x].blue)};
    }
    return PF_Err_NONE;
}

PF_Err tex3216(void* refcon, A_long /*thread*/, A_long row, A_long /*rows*/)
{
    const auto& worlds = *static_cast<const worldPair*>(refcon);
    const auto* from = RowOf<PF_PixelFloat>(*worlds.from, row);
    auto* to = RowOf<PF_Pixel16>(*worlds.to, row);
    for (A_long x = 0; x < worlds.from->width; ++x) {
        to[x] = {To16(from[x].alpha), To16(from[x].red), To16(from[x].green), To16(from[x].blue)};
    }
    return PF_Err_NONE;
}

void PremultiplyRow(const PF_Pixel8* from, A_long width, PF_Pixel8* to)
{
    for (A_long x = 0; x < width; ++x) {
        const PF_Pixel8 pixel = from[x];
        to[x] = {pixel.alpha, TimesAlpha(pixel.red, pixel.alpha),
                 TimesAlpha(pixel.green, pixel.alpha), TimesAlpha(pixel.blue, pixel.alpha)};
    }
}

void PremultiplyRow(const PF_PixelFloat* from, A_long width, PF_PixelFloat* to)
{
    for (A_long x = 0; x < width; ++x) {
        const PF_PixelFloat pixel = from[x];
        to[x] = {pixel.alpha, pixel.red * pixel.alpha, pixel.green * pixel.alpha,
                 pixel.blue * pixel.alpha};
    }
}

void QuantiseRow(const PF_PixelFloat* from, A_long width, PF_Pixel8* to)
{
    for (A_long x = 0; x < width; ++x) {
        to[x] = {To8(from[x].alpha), To8(from[x].red), To8(from[x].green), To8(from[x].blue)};
    }
}
