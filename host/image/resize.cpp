// resize.cpp: other depths and other sizes. Averages are taken of colours multiplied by alpha, so
// that what is transparent lends no colour to its neighbours.
#include <algorithm>
#include <cmath>
#include <vector>

#include "image/imageFile.h"
#include "image/parallel.h"

namespace orv {

namespace {

constexpr int kLeastRows = 32;  ///< rows that are worth a thread

template <class From, class To>
void ConvertChannels(const From* from, To* to, std::size_t count, std::uint32_t fromFull,
                     std::uint32_t toFull)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t value = std::min<std::uint32_t>(from[i], fromFull);
        to[i] = static_cast<To>((value * toFull + fromFull / 2) / fromFull);
    }
}

// ------------------------------------------------------------------ whole divisors

/// Mean of the pixels of one cell. Sums are of whole numbers, hence exact.
template <class Channel>
void CellMean(const image& source, int left, int top, int right, int bottom, Channel* mean)
{
    std::uint64_t alpha = 0, red = 0, green = 0, blue = 0;
    for (int y = top; y < bottom; ++y) {
        const auto* p = reinterpret_cast<const Channel*>(source.row(y)) + std::ptrdiff_t{4} * left;
        for (int x = left; x < right; ++x, p += 4) {
            const std::uint64_t a = p[0];
            alpha += a;
            red += a * p[1];
            green += a * p[2];
            blue += a * p[3];
        }
    }
    if (alpha == 0) return;
    const auto pixels = static_cast<std::uint64_t>((right - left) * (bottom - top));
    const auto nearest = [](std::uint64_t sum, std::uint64_t parts) {
        return static_cast<Channel>((sum + parts / 2) / parts);
    };
    mean[0] = nearest(alpha, pixels);
    mean[1] = nearest(red, alpha);
    mean[2] = nearest(green, alpha);
    mean[3] = nearest(blue, alpha);
}

template <class Channel>
void DivideRows(const image& source, int divisorX, int divisorY, image& result, int begin, int end)
{
    for (int y = begin; y < end; ++y) {
        auto* to = reinterpret_cast<Channel*>(result.row(y));
        const int top = y * divisorY, bottom = std::min(top + divisorY, source.height);
        for (int x = 0; x < result.width; ++x, to += 4) {
            const int left = x * divisorX;
            CellMean(source, left, top, std::min(left + divisorX, source.width), bottom, to);
        }
    }
}

// ------------------------------------------------------------------ any size

/// The source pixels that one target pixel is made of. Weights add up to 1.
struct tap {
    int first = 0;
    std::vector<float> weights;
};

/// A triangle as wide as the larger of a source and a target pixel to either side.
std::vector<tap> TriangleTaps(int sourceSize, int targetSize)
{
    const double step = static_cast<double>(sourceSize) / targetSize;
    const double reach = std::max(1.0, step);
    std::vector<tap> taps(static_cast<std::size_t>(targetSize));
    for (std::size_t i = 0; i < taps.size(); ++i) {
        const double centre = (static_cast<double>(i) + 0.5) * step - 0.5;
        const int first = static_cast<int>(std::ceil(centre - reach));
        const int last = static_cast<int>(std::floor(centre + reach));
        tap& each = taps[i];
        each.first = std::clamp(first, 0, sourceSize - 1);
        const int stop = std::clamp(last, 0, sourceSize - 1);
        double sum = 0.0;
        std::vector<double> weights;
        for (int s = each.first; s <= stop; ++s) {
            weights.push_back(std::max(0.0, 1.0 - std::abs(s - centre) / reach));
            sum += weights.back();
        }
        for (const double weight : weights) {
            each.weights.push_back(static_cast<float>(weight / sum));
        }
    }
    return taps;
}

/// One source row as floats multiplied by alpha, squeezed to the target's width.
template <class Channel>
void SqueezeRow(const Channel* row, const std::vector<tap>& taps, float* to)
{
    for (const tap& each : taps) {
        float sum[4] = {};
        const Channel* p = row + std::ptrdiff_t{4} * each.first;
        for (const float weight : each.weights) {
            const float alpha = static_cast<float>(p[0]);
            sum[0] += weight * alpha;
            for (int c = 1; c < 4; ++c) sum[c] += weight * alpha * static_cast<float>(p[c]);
            p += 4;
        }
        to = std::copy(sum, sum + 4, to);
    }
}

template <class Channel>
void StorePixel(const float* sum, float fullScale, Channel* to)
{
    const auto nearest = [&](float v) {
        return static_cast<Channel>(std::clamp(v + 0.5F, 0.0F, fullScale));
    };
    to[0] = nearest(sum[0]);
    if (to[0] == 0) return;
    for (int c = 1; c < 4; ++c) to[c] = nearest(sum[c] / sum[0]);
}

/// The source scaled to width x height, its top left corner at (left, top) of the result.
template <class Channel>
void ScaleInto(const image& source, int width, int height, float fullScale, int left, int top,
               image& result)
{
    const std::vector<tap> columns = TriangleTaps(source.width, width);
    const std::vector<tap> rows = TriangleTaps(source.height, height);
    const std::size_t rowFloats = static_cast<std::size_t>(width) * 4;

    // across
    std::vector<float> squeezed(rowFloats * static_cast<std::size_t>(source.height));
    ParallelRows(source.height, kLeastRows, [&](int, int begin, int end) {
        for (int y = begin; y < end; ++y) {
            SqueezeRow(reinterpret_cast<const Channel*>(source.row(y)), columns,
                       squeezed.data() + rowFloats * static_cast<std::size_t>(y));
        }
    });

    // down
    ParallelRows(height, kLeastRows, [&](int, int begin, int end) {
        std::vector<float> sum(rowFloats);
        for (int y = begin; y < end; ++y) {
            const tap& each = rows[static_cast<std::size_t>(y)];
            std::fill(sum.begin(), sum.end(), 0.0F);
            const float* from = squeezed.data() + rowFloats * static_cast<std::size_t>(each.first);
            for (const float weight : each.weights) {
                for (std::size_t i = 0; i < rowFloats; ++i) sum[i] += weight * from[i];
                from += rowFloats;
            }
            auto* to = reinterpret_cast<Channel*>(result.row(top + y)) + std::ptrdiff_t{4} * left;
            for (std::size_t i = 0; i < rowFloats; i += 4) {
                StorePixel(sum.data() + i, fullScale, to + i);
            }
        }
    });
}

}  // namespace

image ConvertDepth(const image& source, int depth)
{
    if (source.depth == depth) return source;
    image result(source.width, source.height, depth);
    const std::size_t count = source.bytes.size() / (source.pixelBytes() / 4);
    if (depth == 16) {
        ConvertChannels(source.row(0), result.row16(0), count, 255, 32768);
    } else {
        ConvertChannels(source.row16(0), result.row(0), count, 32768, 255);
    }
    return result;
}

image FitImage(const image& source, int width, int height)
{
    if (source.width == width && source.height == height) return source;
    const double scale = std::min(static_cast<double>(width) / source.width,
                                  static_cast<double>(height) / source.height);
    const int fitWidth = std::clamp(static_cast<int>(std::lround(source.width * scale)), 1, width);
    const int fitHeight =
        std::clamp(static_cast<int>(std::lround(source.height * scale)), 1, height);
    const int left = (width - fitWidth) / 2, top = (height - fitHeight) / 2;
    image result(width, height, source.depth);
    if (source.depth == 16) {
        ScaleInto<std::uint16_t>(source, fitWidth, fitHeight, 32768.0F, left, top, result);
    } else {
        ScaleInto<std::uint8_t>(source, fitWidth, fitHeight, 255.0F, left, top, result);
    }
    return result;
}

image PreviewImage(const image& source, int divisorX, int divisorY)
{
    if (divisorX == 1 && divisorY == 1) return source;
    image result((source.width + divisorX - 1) / divisorX,
                 (source.height + divisorY - 1) / divisorY, source.depth);
    ParallelRows(result.height, kLeastRows, [&](int, int begin, int end) {
        if (source.depth == 16) {
            DivideRows<std::uint16_t>(source, divisorX, divisorY, result, begin, end);
        } else {
            DivideRows<std::uint8_t>(source, divisorX, divisorY, result, begin, end);
        }
    });
    return result;
}

}  // namespace orv
