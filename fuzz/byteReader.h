// byteReader.h: made-up values out of made-up bytes. When the bytes are used up, zeros follow.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <string>

namespace orv::fuzz {

class ByteReader {
public:
    ByteReader(const std::uint8_t* data, std::size_t size) : unread_(data, size) {}

    [[nodiscard]] bool empty() const { return unread_.empty(); }
    std::uint8_t byte() { return raw<std::uint8_t>(); }
    bool flag() { return (byte() & 1U) != 0; }
    /// 0 <= result < end, `end` at most 65536.
    int below(int end) { return raw<std::uint16_t>() % end; }
    /// Any double there is; extremes and small whole numbers more often than chance would have it.
    double any();
    /// A finite number within +-limit.
    double within(double limit)
    {
        const double value = any();
        return std::isnan(value) ? 0.0 : std::clamp(value, -limit, limit);
    }
    float anyFloat() { return static_cast<float>(any()); }
    /// What is left.
    std::string text()
    {
        std::string result(unread_.begin(), unread_.end());
        unread_ = {};
        return result;
    }

private:
    template <class Value>
    Value raw()
    {
        Value value{};
        const std::size_t count = std::min(sizeof(Value), unread_.size());
        if (count > 0) std::memcpy(&value, unread_.data(), count);
        unread_ = unread_.subspan(count);
        return value;
    }

    std::span<const std::uint8_t> unread_;
};

inline double ByteReader::any()
{
    using limits = std::numeric_limits<double>;
    constexpr std::array<double, 24> kExtremes{0.0,
                                               -0.0,
                                               1.0,
                                               -1.0,
                                               0.5,
                                               1e-9,
                                               -1e-9,
                                               100.0,
                                               360.0,
                                               1e4,
                                               -1e4,
                                               1e6,
                                               1e9,
                                               -1e9,
                                               limits::min(),
                                               limits::denorm_min(),
                                               1e19,
                                               -1e19,
                                               1e38,
                                               -1e300,
                                               limits::max(),
                                               limits::infinity(),
                                               -limits::infinity(),
                                               limits::quiet_NaN()};
    const std::uint8_t choice = byte();
    if (choice < kExtremes.size()) return kExtremes[choice];
    if (choice < 64) return static_cast<double>(raw<std::int8_t>());
    if (choice < 160) return static_cast<double>(raw<std::int16_t>()) / 16.0;
    return raw<double>();
}

}  // namespace orv::fuzz
