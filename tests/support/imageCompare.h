// imageCompare.h: whether two pictures are the same as far as anybody can see.
#pragma once

#include <gtest/gtest.h>

#include "image/image.h"

namespace orv {

/// Differences as shares of full scale. A picture matches when at most `share` of its values differ
/// by more than `ignored` and none by more than `never`.
struct imageTolerance {
    double ignored = 2.0 / 255.0;
    double share = 0.001;
    double never = 12.0 / 255.0;
};
constexpr imageTolerance kExact{0.0, 0.0, 0.0};

/// Values are alpha and the colours multiplied by alpha: a colour that cannot be seen counts
/// nothing.
struct imageDifference {
    double worst = 0.0;  ///< share of full scale
    int x = 0, y = 0;    ///< of the worst value
    int channel = 0;     ///< 0 alpha, 1 red, 2 green, 3 blue
    double shareAbove = 0.0;
};

/// Both of one size and depth.
imageDifference Measure(const image& actual, const image& expected, double ignored);

/// Success, or a failure that names the worst pixel and channel with its values in both.
testing::AssertionResult ImagesMatch(const image& actual, const image& expected,
                                     const imageTolerance& tolerance = {});

/// Opaque, 8 bits: eight times the absolute difference of each colour, alpha's added to all three.
image DifferenceImage(const image& actual, const image& expected);

}  // namespace orv
