// image.h: pixels in memory as the host hands them around: straight alpha; alpha, red, green, blue.
//   depth 8:  std::uint8_t, 0..255        depth 16: std::uint16_t, 0..32768
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orv {

struct image {
    int width = 0, height = 0;
    int depth = 8;                    ///< bits per channel, 8 or 16
    std::vector<std::uint8_t> bytes;  ///< rows top to bottom, packed

    image() = default;
    /// Transparent black.
    image(int w, int h, int bits)
        : width(w),
          height(h),
          depth(bits),
          bytes(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * (bits == 16 ? 8U : 4U))
    {
    }
    [[nodiscard]] std::size_t pixelBytes() const { return depth == 16 ? 8U : 4U; }
    [[nodiscard]] std::size_t rowBytes() const
    {
        return static_cast<std::size_t>(width) * pixelBytes();
    }
    [[nodiscard]] std::uint8_t* row(int y)
    {
        return bytes.data() + static_cast<std::size_t>(y) * rowBytes();
    }
    [[nodiscard]] const std::uint8_t* row(int y) const
    {
        return bytes.data() + static_cast<std::size_t>(y) * rowBytes();
    }
    [[nodiscard]] std::uint16_t* row16(int y) { return reinterpret_cast<std::uint16_t*>(row(y)); }
    [[nodiscard]] const std::uint16_t* row16(int y) const
    {
        return reinterpret_cast<const std::uint16_t*>(row(y));
    }
    bool operator==(const image&) const = default;
};

}  // namespace orv
