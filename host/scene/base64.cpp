#include "scene/base64.h"

#include <array>
#include <cstddef>

namespace orv {
namespace {

constexpr std::uint8_t kNoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> MakeDigits()
{
    constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<std::uint8_t, 256> digits{};
    digits.fill(kNoDigit);
    for (std::size_t k = 0; k < kAlphabet.size(); ++k) {
        digits[static_cast<unsigned char>(kAlphabet[k])] = static_cast<std::uint8_t>(k);
    }
    return digits;
}

constexpr std::array<std::uint8_t, 256> kDigits = MakeDigits();

bool IsSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

std::optional<std::vector<std::uint8_t>> DecodeBase64(std::string_view text)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    std::size_t digits = 0, padding = 0;
    for (const char c : text) {
        if (IsSpace(c)) continue;
        if (c == '=') {
            ++padding;
            continue;
        }
        const std::uint8_t digit = kDigits[static_cast<unsigned char>(c)];
        if (digit == kNoDigit || padding > 0) return std::nullopt;
        bits = bits << 6 | digit;
        ++digits;
        // Six new bits a digit: a byte is complete at the second, third and fourth of each four.
        if (digits % 4 != 1)
            bytes.push_back(static_cast<std::uint8_t>(bits >> (6 - 2 * ((digits - 1) % 4))));
    }
    const bool wholeBytes = digits % 4 != 1;
    const bool wholeGroups = padding == 0 || (padding <= 2 && (digits + padding) % 4 == 0);
    if (!wholeBytes || !wholeGroups) return std::nullopt;
    return bytes;
}

}  // namespace orv
