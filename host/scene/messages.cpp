#include "scene/messages.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace orv {
namespace {

bool IsContinuationByte(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

bool IsControl(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

bool IsPlainKey(std::string_view key)
{
    return !key.empty() && key.size() <= 64 && std::ranges::all_of(key, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || c == '-';
    });
}

}  // namespace

std::string Clipped(std::string_view text)
{
    constexpr std::size_t kLongest = 160;
    std::size_t end = std::min(text.size(), kLongest);
    while (end < text.size() && end > 0 && IsContinuationByte(text[end])) --end;

    std::string result;
    for (const char c : text.substr(0, end)) {
        if (IsControl(c)) {
            result += fmt::format("\\u{:04x}", static_cast<unsigned char>(c));
        } else {
            result += c;
        }
    }
    return end < text.size() ? result + "..." : result;
}

std::string Quoted(std::string_view text)
{
    return '"' + Clipped(text) + '"';
}

std::string NumberText(double value)
{
    return fmt::format("{}", value);
}

std::string PathWithKey(const std::string& path, std::string_view key)
{
    if (!IsPlainKey(key)) return fmt::format("{}[{}]", path, Quoted(key));
    return path.empty() ? std::string(key) : fmt::format("{}.{}", path, key);
}

std::string PathWithIndex(const std::string& path, std::size_t index)
{
    return fmt::format("{}[{}]", path, index);
}

Messages::Messages(std::string file, bool strict, const warningSink& warn)
    : file_(std::move(file)), strict_(strict), warn_(warn)
{
}

std::string Messages::line(const std::string& path, const std::string& reason) const
{
    return path.empty() ? fmt::format("{}: {}", file_, reason)
                        : fmt::format("{}: {}: {}", file_, path, reason);
}

void Messages::fail(const std::string& path, const std::string& reason) const
{
    throw failure(failureKind::scene, line(path, reason));
}

void Messages::failAt(std::size_t line, std::size_t column, const std::string& reason) const
{
    throw failure(failureKind::scene, fmt::format("{}:{}:{}: {}", file_, line, column, reason));
}

void Messages::warn(const std::string& path, const std::string& reason)
{
    if (strict_) fail(path, reason);
    const auto [text, isNew] = warned_.insert(line(path, reason));
    if (isNew && warn_) warn_(*text);
}

}  // namespace orv
