#include "support/imageCompare.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orv {

namespace {

using pixelValues = std::array<double, 4>;

pixelValues ValuesAt(const image& picture, int x, int y)
{
    pixelValues values{};
    for (std::size_t c = 0; c < 4; ++c) {
        const std::size_t at = static_cast<std::size_t>(x) * 4 + c;
        values[c] =
            picture.depth == 16 ? picture.row16(y)[at] / 32768.0 : picture.row(y)[at] / 255.0;
    }
    for (std::size_t c = 1; c < 4; ++c) values[c] *= values[0];
    return values;
}

template <class Use>
void ForEachDifference(const image& actual, const image& expected, const Use& use)
{
    for (int y = 0; y < actual.height; ++y) {
        for (int x = 0; x < actual.width; ++x) {
            const pixelValues a = ValuesAt(actual, x, y), e = ValuesAt(expected, x, y);
            for (std::size_t c = 0; c < 4; ++c) {
                use(x, y, static_cast<int>(c), std::abs(a[c] - e[c]));
            }
        }
    }
}

bool SameShape(const image& a, const image& b)
{
    return a.width == b.width && a.height == b.height && a.depth == b.depth;
}

const char* ChannelName(int channel)
{
    constexpr std::array<const char*, 4> kNames{"alpha", "red", "green", "blue"};
    return kNames[static_cast<std::size_t>(channel)];
}

}  // namespace

imageDifference Measure(const image& actual, const image& expected, double ignored)
{
    imageDifference result;
    double above = 0.0;
    ForEachDifference(actual, expected, [&](int x, int y, int channel, double difference) {
        if (difference > ignored) above += 1.0;
        if (difference <= result.worst) return;
        result.worst = difference;
        result.x = x, result.y = y, result.channel = channel;
    });
    const double values = 4.0 * actual.width * actual.height;
    if (values > 0.0) result.shareAbove = above / values;
    return result;
}

testing::AssertionResult ImagesMatch(const image& actual, const image& expected,
                                     const imageTolerance& tolerance)
{
    if (!SameShape(actual, expected)) {
        return testing::AssertionFailure() << actual.width << " x " << actual.height << " at "
                                           << actual.depth << " bits instead of " << expected.width
                                           << " x " << expected.height << " at " << expected.depth;
    }
    const imageDifference difference = Measure(actual, expected, tolerance.ignored);
    if (difference.shareAbove <= tolerance.share && difference.worst <= tolerance.never) {
        return testing::AssertionSuccess();
    }
    const auto channel = static_cast<std::size_t>(difference.channel);
    return testing::AssertionFailure()
           << "worst at (" << difference.x << ", " << difference.y << "), "
           << ChannelName(difference.channel) << ": "
           << ValuesAt(actual, difference.x, difference.y)[channel] << " instead of "
           << ValuesAt(expected, difference.x, difference.y)[channel] << "; "
           << 100.0 * difference.shareAbove << " % of the values differ by more than "
           << tolerance.ignored;
}

image DifferenceImage(const image& actual, const image& expected)
{
    image result(actual.width, actual.height, 8);
    ForEachDifference(actual, expected, [&](int x, int y, int channel, double difference) {
        std::uint8_t* pixel = result.row(y) + std::ptrdiff_t{4} * x;
        const double amplified = std::min(255.0, std::round(8.0 * 255.0 * difference));
        pixel[0] = 255;
        for (int c = 1; c < 4; ++c) {
            if (channel != 0 && channel != c) continue;
            pixel[c] = static_cast<std::uint8_t>(std::min(255.0, pixel[c] + amplified));
        }
    });
    return result;
}

}  // namespace orv
