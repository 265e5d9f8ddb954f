#include "image/imageFile.h"

#include <fmt/format.h>

#include <array>
#include <cstring>

#include "image/codecs.h"
#include "image/wholeFile.h"
#include "scene/errors.h"

namespace orv {

namespace {

constexpr std::uint64_t kLargestSide = 30000;
constexpr std::uint64_t kMostPixels = std::uint64_t{1} << 26;
constexpr std::array<std::uint8_t, 8> kPngMagic{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
constexpr std::array<std::uint8_t, 3> kJpegMagic{0xff, 0xd8, 0xff};
constexpr std::array<std::uint8_t, 4> kExrMagic{0x76, 0x2f, 0x31, 0x01};

template <std::size_t N>
bool StartsWith(std::span<const std::uint8_t> data, const std::array<std::uint8_t, N>& magic)
{
    return data.size() >= N && std::memcmp(data.data(), magic.data(), N) == 0;
}

}  // namespace

void RefusePicture(const std::string& name, const std::string& reason)
{
    throw failure(failureKind::scene, fmt::format("{}: {}", name, reason));
}

void CheckPictureSize(const std::string& name, std::uint64_t width, std::uint64_t height)
{
    if (width > kLargestSide || height > kLargestSide || width * height > kMostPixels) {
        RefusePicture(name, fmt::format("{} x {} pixels, more than the limit of {} on a side and "
                                        "{} in all",
                                        width, height, kLargestSide, kMostPixels));
    }
}

image DecodeImage(std::span<const std::uint8_t> data, const std::string& name)
{
    if (data.empty()) RefusePicture(name, "the file is empty");
    if (StartsWith(data, kPngMagic)) return DecodePng(data, name);
    if (StartsWith(data, kJpegMagic)) return DecodeJpeg(data, name);
    RefusePicture(name, "neither PNG nor JPEG");
}

void WritePng(const image& picture, const std::string& file)
{
    WriteWholeFile(file, EncodePng(picture, file));
}

pictureInfo ProbePicture(const std::string& file)
{
    std::string content;
    if (!ReadWholeFile(file, std::uint64_t{1} << 32, content)) return {};
    const std::span data(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
    if (StartsWith(data, kExrMagic)) return ProbeExr(file);
    try {
        const image picture = DecodeImage(data, file);
        return {picture.width, picture.height, picture.depth};
    } catch (const failure&) {
        return {};
    }
}

}  // namespace orv
