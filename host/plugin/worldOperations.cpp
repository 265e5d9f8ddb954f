#include "plugin/worldOperations.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>
#include <type_traits>
#include <vector>

#include "image/parallel.h"

namespace orv {

namespace {

constexpr int kLeastRows = 64;  ///< for one worker: starting a thread costs about as much

/// What 1.0 is in a pixel's channels.
template <class Pixel>
constexpr double kOne = 1.0;
template <>
constexpr double kOne<PF_Pixel8> = PF_MAX_CHAN8;
template <>
constexpr double kOne<PF_Pixel16> = PF_MAX_CHAN16;

/// A pixel on the scale of its channels.
struct argb {
    double alpha = 0.0, red = 0.0, green = 0.0, blue = 0.0;
};

template <class Pixel>
argb Load(const Pixel& pixel)
{
    return {static_cast<double>(pixel.alpha), static_cast<double>(pixel.red),
            static_cast<double>(pixel.green), static_cast<double>(pixel.blue)};
}

/// To the nearest value, within the scale.
template <class Pixel>
Pixel Store(const argb& color)
{
    using channel = decltype(Pixel::alpha);
    const auto stored = [](double value) {
        const double clamped = std::clamp(value, 0.0, kOne<Pixel>);
        return static_cast<channel>(std::is_floating_point_v<channel> ? clamped : clamped + 0.5);
    };
    return {stored(color.alpha), stored(color.red), stored(color.green), stored(color.blue)};
}

template <class Pixel>
Pixel* Row(const hostWorld& world, A_long y)
{
    return reinterpret_cast<Pixel*>(world.row(y));
}

/// Calls `work` with a pixel of the format's type, whose value does not matter.
template <class Work>
void WithPixelType(PF_PixelFormat format, Work&& work)
{
    switch (format) {
        case PF_PixelFormat_ARGB32:
            return work(PF_Pixel8{});
        case PF_PixelFormat_ARGB64:
            return work(PF_Pixel16{});
        case PF_PixelFormat_ARGB128:
            return work(PF_PixelFloat{});
        case PF_PixelFormat_INVALID:
            break;
    }
}

template <class Work>
void ForEachRow(A_long top, A_long bottom, const Work& work)
{
    ParallelRows(bottom - top, kLeastRows, [&](int, int begin, int end) {
        for (int y = begin; y < end; ++y) work(top + y);
    });
}

/// The two neighbours of a destination pixel's centre along one axis, and the second one's share.
struct tap {
    A_long first, second;
    double share;
};

tap TapAt(A_long pixel, A_long destination, A_long source)
{
    const double at = (pixel + 0.5) * source / destination - 0.5;
    const double low = std::floor(at);
    const auto clamped = [&](double index) {
        return static_cast<A_long>(std::clamp(index, 0.0, source - 1.0));
    };
    return {clamped(low), clamped(low + 1.0), at - low};
}

template <class Pixel>
Pixel Blend(const std::array<const Pixel*, 4>& pixels, const std::array<double, 4>& weights)
{
    argb sum;
    double total = 0.0;
    for (std::size_t k = 0; k < 4; ++k) sum.alpha += weights[k] * Load(*pixels[k]).alpha;
    for (std::size_t k = 0; k < 4; ++k) {
        const argb color = Load(*pixels[k]);
        const double weight = sum.alpha > 0.0 ? weights[k] * color.alpha : weights[k];
        sum.red += weight * color.red;
        sum.green += weight * color.green;
        sum.blue += weight * color.blue;
        total += weight;
    }
    return Store<Pixel>({sum.alpha, sum.red / total, sum.green / total, sum.blue / total});
}

template <class Pixel>
void Scale(const hostWorld& from, const PF_Rect& fromRect, const hostWorld& to,
           const PF_Rect& toRect)
{
    const A_long width = toRect.right - toRect.left, height = toRect.bottom - toRect.top;
    std::vector<tap> columns;
    for (A_long x = 0; x < width; ++x) {
        columns.push_back(TapAt(x, width, fromRect.right - fromRect.left));
    }
    ForEachRow(0, height, [&](A_long y) {
        const tap rows = TapAt(y, height, fromRect.bottom - fromRect.top);
        const Pixel* upper = Row<Pixel>(from, fromRect.top + rows.first) + fromRect.left;
        const Pixel* lower = Row<Pixel>(from, fromRect.top + rows.second) + fromRect.left;
        Pixel* out = Row<Pixel>(to, toRect.top + y) + toRect.left;
        for (A_long x = 0; x < width; ++x) {
            const tap& column = columns[static_cast<std::size_t>(x)];
            const double right = column.share, down = rows.share;
            out[x] = Blend<Pixel>(
                {upper + column.first, upper + column.second, lower + column.first,
                 lower + column.second},
                {(1 - right) * (1 - down), right * (1 - down), (1 - right) * down, right * down});
        }
    });
}

/// Rows move as a whole; within one world in the order that does not overwrite what is to come.
void CopyBytes(const hostWorld& from, const PF_Rect& fromRect, const hostWorld& to,
               const PF_Rect& toRect)
{
    const std::ptrdiff_t pixel = PixelBytes(from.format);
    const std::size_t bytes = static_cast<std::size_t>((fromRect.right - fromRect.left) * pixel);
    const A_long height = fromRect.bottom - fromRect.top;
    const bool upwards = toRect.top > fromRect.top;
    for (A_long k = 0; k < height; ++k) {
        const A_long y = upwards ? height - 1 - k : k;
        std::memmove(to.row(toRect.top + y) + toRect.left * pixel,
                     from.row(fromRect.top + y) + fromRect.left * pixel, bytes);
    }
}

/// `upper` over `lower`; the alphas are fractions of 1 and not both zero.
template <class Pixel>
Pixel Over(const Pixel& upper, double upperAlpha, const Pixel& lower, double lowerAlpha)
{
    const double under = lowerAlpha * (1.0 - upperAlpha), alpha = upperAlpha + under;
    const argb up = Load(upper), low = Load(lower);
    const auto mixed = [&](double upChannel, double lowChannel) {
        return (upChannel * upperAlpha + lowChannel * under) / alpha;
    };
    return Store<Pixel>({alpha * kOne<Pixel>, mixed(up.red, low.red), mixed(up.green, low.green),
                         mixed(up.blue, low.blue)});
}

template <class Pixel>
void TransferPixel(const Pixel& from, Pixel& to, bool inFront, double opacity)
{
    const double fromAlpha = opacity * Load(from).alpha / kOne<Pixel>;
    const double toAlpha = Load(to).alpha / kOne<Pixel>;
    if (!(fromAlpha > 0.0)) return;
    if (inFront) {
        to = fromAlpha >= 1.0 ? from : Over(from, fromAlpha, to, toAlpha);
    } else if (toAlpha < 1.0) {
        to = Over(to, toAlpha, from, fromAlpha);
    }
}

/// Replaces each pixel that is not fully transparent by `change` of it, keeping its alpha.
template <class Change>
void ChangeColors(const hostWorld& world, const Change& change)
{
    WithPixelType(world.format, [&](auto type) {
        using Pixel = decltype(type);
        ForEachRow(0, world.world.height, [&](A_long y) {
            Pixel* row = Row<Pixel>(world, y);
            for (A_long x = 0; x < world.world.width; ++x) {
                const argb color = Load(row[x]);
                if (!(color.alpha > 0.0) || color.alpha >= kOne<Pixel>) continue;
                const auto changed = [&](double channel) {
                    return change(channel, color.alpha, kOne<Pixel>);
                };
                row[x] = Store<Pixel>(
                    {color.alpha, changed(color.red), changed(color.green), changed(color.blue)});
            }
        });
    });
}

}  // namespace

bool IsWithin(const PF_Rect& rect, const hostWorld& world)
{
    return 0 <= rect.left && rect.left <= rect.right && rect.right <= world.world.width &&
           0 <= rect.top && rect.top <= rect.bottom && rect.bottom <= world.world.height;
}

void CopyWorld(const hostWorld& from, const PF_Rect& fromRect, const hostWorld& to,
               const PF_Rect& toRect)
{
    const A_long fromWidth = fromRect.right - fromRect.left;
    const A_long fromHeight = fromRect.bottom - fromRect.top;
    const A_long toWidth = toRect.right - toRect.left, toHeight = toRect.bottom - toRect.top;
    if (fromWidth == 0 || fromHeight == 0 || toWidth == 0 || toHeight == 0) return;
    if (fromWidth == toWidth && fromHeight == toHeight) {
        CopyBytes(from, fromRect, to, toRect);
        return;
    }
    WithPixelType(from.format,
                  [&](auto pixel) { Scale<decltype(pixel)>(from, fromRect, to, toRect); });
}

void FillWorld(const hostWorld& world, const PF_Rect& rect, const PF_Pixel& color)
{
    WithPixelType(world.format, [&](auto pixel) {
        using Pixel = decltype(pixel);
        constexpr double kScale = kOne<Pixel> / kOne<PF_Pixel8>;
        const argb wanted = Load(color);
        const auto fill = Store<Pixel>({wanted.alpha * kScale, wanted.red * kScale,
                                        wanted.green * kScale, wanted.blue * kScale});
        for (A_long y = rect.top; y < rect.bottom; ++y) {
            std::fill(Row<Pixel>(world, y) + rect.left, Row<Pixel>(world, y) + rect.right, fill);
        }
    });
}

void Premultiply(const hostWorld& world)
{
    ChangeColors(world, [](double color, double alpha, double one) { return color * alpha / one; });
}

void Unpremultiply(const hostWorld& world)
{
    ChangeColors(world, [](double color, double alpha, double one) { return color * one / alpha; });
}

void TransferWorld(const hostWorld& from, const PF_Rect& rect, const hostWorld& to, A_long x,
                   A_long y, bool inFront, double opacity)
{
    const A_long left = std::max(rect.left, rect.left - x);
    const A_long right = std::min(rect.right, rect.left - x + to.world.width);
    const A_long top = std::max(rect.top, rect.top - y);
    const A_long bottom = std::min(rect.bottom, rect.top - y + to.world.height);
    if (left >= right || top >= bottom) return;
    WithPixelType(from.format, [&](auto type) {
        using Pixel = decltype(type);
        ForEachRow(top, bottom, [&](A_long row) {
            const Pixel* source = Row<Pixel>(from, row);
            Pixel* target = Row<Pixel>(to, row - rect.top + y) + (x - rect.left);
            for (A_long column = left; column < right; ++column) {
                TransferPixel(source[column], target[column], inFront, opacity);
            }
        });
    });
}

bool ChannelsInRange(const hostWorld& world)
{
    if (world.format != PF_PixelFormat_ARGB64) return true;
    std::atomic<bool> inRange = true;
    ForEachRow(0, world.world.height, [&](A_long y) {
        const A_u_short* row = Row<A_u_short>(world, y);
        A_u_short most = 0;
        for (A_long k = 0; k < 4 * world.world.width; ++k) most = std::max(most, row[k]);
        if (most > PF_MAX_CHAN16) inRange = false;
    });
    return inRange;
}

}  // namespace orv
