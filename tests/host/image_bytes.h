// image_bytes.h: pictures and bytes for the tests of images.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "image/image.h"
#include "image/wholeFile.h"
#include "scene/errors.h"

namespace orv {

using byteList = std::vector<std::uint8_t>;

inline byteList BytesOf(const std::string& file)
{
    std::string data;
    EXPECT_TRUE(ReadWholeFile(file, 1U << 30, data)) << file;
    return {data.begin(), data.end()};
}

/// The message of the failure that `call` throws; its kind must be the one expected.
template <class Call>
std::string FailureText(failureKind kind, const Call& call)
{
    try {
        call();
    } catch (const failure& error) {
        EXPECT_EQ(error.kind(), kind) << error.what();
        return error.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

/// Any values, transparent pixels with colours included.
inline image Noise(int width, int height, int depth, unsigned seed)
{
    image picture(width, height, depth);
    std::mt19937 random(seed);
    if (depth == 16) {
        std::uint16_t* values = picture.row16(0);
        for (std::size_t i = 0; i < picture.bytes.size() / 2; ++i) {
            values[i] = static_cast<std::uint16_t>(random() % 32769U);
        }
    } else {
        for (std::uint8_t& each : picture.bytes) each = static_cast<std::uint8_t>(random());
    }
    return picture;
}

/// One row of pixels, each alpha, red, green, blue.
inline image Row(int depth, const std::vector<int>& argb)
{
    image picture(static_cast<int>(argb.size() / 4), 1, depth);
    for (std::size_t i = 0; i < argb.size(); ++i) {
        if (depth == 16) {
            picture.row16(0)[i] = static_cast<std::uint16_t>(argb[i]);
        } else {
            picture.row(0)[i] = static_cast<std::uint8_t>(argb[i]);
        }
    }
    return picture;
}

}  // namespace orv
