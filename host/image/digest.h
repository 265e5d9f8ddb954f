// digest.h: 128 bits that stand for everything that was added.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace orv {

/// Order counts. For telling whether something changed, not against forgery.
class Digest {
public:
    template <class Value>
    Digest& add(Value value)
    {
        if constexpr (std::is_same_v<Value, double>) {
            addWord(std::bit_cast<std::uint64_t>(value));
        } else {
            static_assert(std::is_integral_v<Value> || std::is_enum_v<Value>);
            addWord(static_cast<std::uint64_t>(value));
        }
        return *this;
    }
    Digest& add(const std::array<std::uint8_t, 16>& other)
    {
        std::array<std::uint64_t, 2> words{};
        std::memcpy(words.data(), other.data(), other.size());
        return add(words[0]).add(words[1]);
    }

    [[nodiscard]] std::array<std::uint8_t, 16> bytes() const
    {
        const std::array<std::uint64_t, 2> words{mixed(first_ + count_), mixed(second_ ^ count_)};
        std::array<std::uint8_t, 16> result{};
        std::memcpy(result.data(), words.data(), result.size());
        return result;
    }

private:
    /// Every bit of the result depends on every bit of `v`; different values stay different.
    static std::uint64_t mixed(std::uint64_t v)
    {
        v ^= v >> 32;
        v *= 0x9e3779b97f4a7c15U;
        v ^= v >> 29;
        v *= 0xd1342543de82ef95U;
        return v ^ (v >> 32);
    }
    /// Two lanes that spread the word differently, so that they do not collide together.
    void addWord(std::uint64_t word)
    {
        first_ = mixed(first_ ^ word);
        second_ = mixed(second_ + std::rotl(word, 23) + 0xa0761d6478bd642fU);
        ++count_;
    }

    std::uint64_t first_ = 0x243f6a8885a308d3U, second_ = 0x13198a2e03707344U, count_ = 0;
};

}  // namespace orv
