#include "Util/utf16.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

void AppendUtf8(std::string& text, char32_t c)
{
    const auto trailing = [&](unsigned shift) {
        text += static_cast<char>(0x80 | ((c >> shift) & 0x3F));
    };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | (c >> 6));
        trailing(0);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0 | (c >> 12));
        trailing(6);
        trailing(0);
    } else {
        text += static_cast<char>(0xF0 | (c >> 18));
        trailing(12);
        trailing(6);
        trailing(0);
    }
}

}  // namespace

std::string Utf8FromUtf16(const A_UTF16Char* units)
{
    std::string text;
    while (*units != 0) {
        char32_t c = *units++;
        if (IsHighSurrogate(c) && IsLowSurrogate(*units)) {
            c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<char32_t>(*units++) - 0xDC00);
        } else if (IsHighSurrogate(c) || IsLowSurrogate(c)) {
            c = kReplacement;
        }
        AppendUtf8(text, c);
    }
    return text;
}
