#include "cli/outputPattern.h"

#include <cctype>
#include <filesystem>
#include <optional>

#include <fmt/format.h>

#include "image/video.h"
#include "scene/errors.h"

namespace orv {
namespace {

constexpr int kMaxDigits = 20;

struct placeholder {
    std::size_t start = 0, length = 0;
    int digits = 0;
};

[[noreturn]] void Refuse(const std::string& text, const std::string& reason)
{
    throw failure(failureKind::usage, fmt::format("output '{}': {}", text, reason));
}

/// "%d" and "%0Nd"; any other '%' is an ordinary character.
std::optional<placeholder> ReadPercent(const std::string& name, std::size_t start)
{
    std::size_t at = start + 1;
    int digits = 1;
    if (at < name.size() && name[at] == '0') {
        for (digits = 0; at < name.size() && std::isdigit(static_cast<unsigned char>(name[at])) &&
                         digits <= kMaxDigits;
             ++at)
            digits = digits * 10 + (name[at] - '0');
    }
    if (at >= name.size() || name[at] != 'd' || digits < 1) return std::nullopt;
    return placeholder{start, at + 1 - start, digits};
}

/// The next number at or after `from`.
std::optional<placeholder> FindNumber(const std::string& name, std::size_t from)
{
    for (std::size_t at = from; at < name.size(); ++at) {
        if (name[at] == '#') {
            const std::size_t end = std::min(name.find_first_not_of('#', at), name.size());
            return placeholder{at, end - at, static_cast<int>(end - at)};
        }
        if (name[at] != '%') continue;
        if (const auto found = ReadPercent(name, at)) return found;
    }
    return std::nullopt;
}

outputKind KindOf(const std::string& text, const std::string& name)
{
    std::string extension = std::filesystem::path(name).extension();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (extension == ".png") return outputKind::png;
    if (extension == ".exr") return outputKind::exr;
    if (IsVideoFile(name)) return outputKind::video;
    Refuse(text, "the extension must be .png, .exr, .mp4, .mov, .webm or .gif");
}

}  // namespace

outputPattern ParseOutputPattern(const std::string& text)
{
    const std::size_t slash = text.rfind('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    const std::string name = text.substr(nameStart);
    if (name.empty()) Refuse(text, "there is no file name");

    outputPattern pattern;
    pattern.folder = text.substr(0, nameStart);
    pattern.prefix = name;
    if (const auto number = FindNumber(name, 0)) {
        if (FindNumber(name, number->start + number->length))
            Refuse(text, "the frame number may stand there only once");
        if (number->digits > kMaxDigits)
            Refuse(text, fmt::format("a frame number has at most {} digits", kMaxDigits));
        pattern.prefix = name.substr(0, number->start);
        pattern.suffix = name.substr(number->start + number->length);
        pattern.digits = number->digits;
    }
    pattern.kind = KindOf(text, name);
    if (pattern.kind == outputKind::video && pattern.numbered())
        Refuse(text, "a video is one file and takes no frame number");
    return pattern;
}

outputPattern DefaultOutputPattern(const std::string& sceneFile)
{
    return {.folder = "",
            .prefix = std::filesystem::path(sceneFile).stem().string() + ".",
            .suffix = ".png",
            .digits = 4,
            .kind = outputKind::png};
}

std::string FrameFile(const outputPattern& pattern, int frame)
{
    if (!pattern.numbered()) return pattern.folder + pattern.prefix + pattern.suffix;
    return fmt::format("{}{}{:0{}}{}", pattern.folder, pattern.prefix, frame, pattern.digits,
                       pattern.suffix);
}

}  // namespace orv
