#include "plugin/modulePath.h"

#include <cstdint>

namespace orv {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// The code point that starts at `at`, which moves behind it.
char32_t NextCodePoint(const std::string& text, std::size_t& at)
{
    const auto byte = [&](std::size_t index) {
        return index < text.size() ? static_cast<std::uint8_t>(text[index]) : std::uint8_t{0};
    };
    const std::uint8_t lead = byte(at++);
    if (lead < 0x80) return lead;
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4) return kReplacement;
    char32_t code = lead & (0x3FU >> more);
    for (int k = 0; k < more; ++k) {
        if ((byte(at) & 0xC0) != 0x80) return kReplacement;
        code = (code << 6) | (byte(at++) & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return surrogate || code > 0x10FFFF ? kReplacement : code;
}

void Append(std::u16string& text, char32_t code)
{
    if (code < 0x10000) {
        text += static_cast<char16_t>(code);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
}

}  // namespace

std::u16string ColonPath(const std::string& absolutePath)
{
    std::u16string path = u"root";
    for (std::size_t at = 0; at < absolutePath.size();) {
        const char32_t code = NextCodePoint(absolutePath, at);
        Append(path, code == U'/' ? U':' : code == U':' ? U'/' : code);
    }
    return path;
}

}  // namespace orv
