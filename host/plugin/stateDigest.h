// stateDigest.h: 16 bytes that stand for everything fed in; equal bytes mean equal input with near
// certainty. Not a defence against an adversary.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace orv {

using digest16 = std::array<std::uint8_t, 16>;

class StateDigest {
public:
    /// A value without padding bytes: number, enumeration, array of bytes.
    template <class Value>
    StateDigest& Add(const Value& value)
    {
        static_assert(std::is_trivially_copyable_v<Value>);
        std::array<std::uint8_t, sizeof(Value)> bytes;
        std::memcpy(bytes.data(), &value, sizeof value);
        for (const std::uint8_t byte : bytes) AddByte(byte);
        return *this;
    }

    [[nodiscard]] digest16 Bytes() const
    {
        digest16 bytes{};
        const std::uint64_t halves[2] = {Finish(low_), Finish(high_ ^ low_)};
        std::memcpy(bytes.data(), halves, sizeof halves);
        return bytes;
    }

private:
    void AddByte(std::uint8_t byte)
    {
        low_ = (low_ ^ byte) * 0x100000001B3U;
        high_ = (high_ + byte + 1U) * 0x9E3779B97F4A7C15U;
        high_ ^= high_ >> 32;
    }
    static std::uint64_t Finish(std::uint64_t value)
    {
        value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
        value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
        return value ^ (value >> 31);
    }

    std::uint64_t low_ = 0xCBF29CE484222325U, high_ = 0x2545F4914F6CDD1DU;
};

}  // namespace orv
