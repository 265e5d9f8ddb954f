// Pictures: whatever the bytes are, they give a whole picture or one line that names the file.
#include <string_view>

#include "image/codecs.h"
#include "image/imageFile.h"
#include "scene/errors.h"
#include "target.h"

namespace orv::fuzz {
namespace {

/// A whole number whose most significant byte comes first.
std::uint64_t NumberAt(std::span<const std::uint8_t> data, std::size_t at, std::size_t bytes)
{
    std::uint64_t number = 0;
    for (std::size_t k = at; k < at + bytes; ++k) number = number << 8U | data[k];
    return number;
}

bool IsLarge(std::uint64_t width, std::uint64_t height)
{
    return width * height > (1U << 20U) && width * height <= (1U << 26U);
}

/// Pictures near the limit are right but take a second each: those whose size can be seen from
/// outside are left to other tests.
bool SaysItIsLarge(std::span<const std::uint8_t> data)
{
    constexpr std::size_t kPngSize = 16, kFrameSize = 9;
    if (data.size() >= kPngSize + 8 && data[0] == 0x89) {
        return IsLarge(NumberAt(data, kPngSize, 4), NumberAt(data, kPngSize + 4, 4));
    }
    for (std::size_t at = 0; at + kFrameSize <= data.size(); ++at) {
        const bool startsFrame = data[at] == 0xFF && (data[at + 1] & 0xF0U) == 0xC0;
        if (startsFrame && IsLarge(NumberAt(data, at + 7, 2), NumberAt(data, at + 5, 2))) {
            return true;
        }
    }
    return false;
}

void CheckWhole(const image& picture)
{
    Require(picture.width > 0 && picture.height > 0, "a picture has pixels");
    Require(picture.depth == 8 || picture.depth == 16, "a picture has 8 or 16 bits");
    Require(picture.bytes.size() == picture.rowBytes() * static_cast<std::size_t>(picture.height),
            "a picture is whole");
    if (picture.depth == 8) return;
    const std::uint16_t* values = picture.row16(0);
    bool inRange = true;
    for (std::size_t k = 0; k < picture.bytes.size() / 2; ++k) inRange &= values[k] <= 32768;
    Require(inRange, "16 bits end at 32768");
}

/// What loading does next, for pictures small enough.
void Resize(const image& picture)
{
    constexpr int kLargest = 256;
    if (picture.width > kLargest || picture.height > kLargest) return;
    CheckWhole(ConvertDepth(picture, 24 - picture.depth));
    CheckWhole(PreviewImage(picture, 3, 2));
    CheckWhole(FitImage(picture, 20, 30));
}

}  // namespace
}  // namespace orv::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace orv::fuzz;
    if (SaysItIsLarge({data, size})) return 0;
    try {
        const orv::image picture = orv::DecodeImage({data, size}, "made-up");
        CheckWhole(picture);
        Resize(picture);
    } catch (const orv::failure& problem) {
        Require(problem.kind() == orv::failureKind::scene, "a bad picture is a scene's failure");
        const std::string_view text = problem.what();
        Require(text.starts_with("made-up: ") && text.find('\n') == std::string_view::npos,
                "an error is one line that names the picture");
    }
    return 0;
}
