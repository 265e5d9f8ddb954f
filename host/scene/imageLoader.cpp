#include "scene/imageLoader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "image/imageFile.h"
#include "scene/base64.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

struct encodedImage {
    std::string name;  ///< for messages
    std::vector<std::uint8_t> bytes;
};

encodedImage ReadDataUrl(const JsonNode& p)
{
    const std::string_view url = p.text();
    constexpr std::string_view kScheme = "data:", kEncoding = ";base64";
    const std::size_t comma = url.find(',');
    if (!url.starts_with(kScheme) || comma == std::string_view::npos ||
        !url.substr(0, comma).ends_with(kEncoding)) {
        p.fail(fmt::format("bad data URL {}, expected data:...;base64,...",
                           Quoted(url.substr(0, 40))));
    }
    auto bytes = DecodeBase64(url.substr(comma + 1));
    if (!bytes) p.fail("bad data URL: what follows the comma is not base64");
    return {"data URL", *std::move(bytes)};
}

bool IsNetworkAddress(std::string_view reference)
{
    return reference.find("://") != std::string_view::npos || reference.starts_with("//");
}

/// Whether `file` lies in `folder` or below, both with links resolved.
bool IsBelow(const fs::path& folder, const fs::path& file)
{
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    return end == folder.end() && rest != file.end();
}

/// The real file that the asset names, links resolved.
fs::path ResolveFile(const JsonNode& p, const fs::path& reference, const readContext& context)
{
    std::error_code error;
    const fs::path sceneFile = fs::absolute(context.messages.file(), error);
    const fs::path folder = fs::weakly_canonical(sceneFile.parent_path(), error);
    if (error) p.fail(fmt::format("{}: {}", sceneFile.string(), error.message()));
    const fs::path file = fs::weakly_canonical(folder / reference, error);
    if (error) p.fail(fmt::format("{}: {}", (folder / reference).string(), error.message()));

    const bool isInside = !reference.is_absolute() && IsBelow(folder, file);
    if (!isInside && !context.options.allowOutside) {
        p.fail(
            fmt::format("the image {} lies outside the scene's folder (--allow-outside permits it)",
                        Clipped(file.string())));
    }
    return file;
}

encodedImage ReadImageFile(const JsonNode& p, const fs::path& file)
{
    constexpr std::uintmax_t kLargest = 512U << 20;
    const std::string name = Clipped(file.string());
    std::error_code error;
    const bool isFile = fs::is_regular_file(file, error);
    if (error) p.fail(fmt::format("the image {} cannot be read: {}", name, error.message()));
    if (!isFile) p.fail(fmt::format("the image {} is not a file", name));
    const std::uintmax_t size = fs::file_size(file, error);
    if (!error && size > kLargest) {
        p.fail(fmt::format("the image {} has {} bytes, the limit is {}", name, size, kLargest));
    }

    std::ifstream stream(file, std::ios::binary);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (!stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size))) {
        p.fail(fmt::format("the image {} cannot be read: {}", name, std::strerror(errno)));
    }
    return {name, std::move(bytes)};
}

encodedImage ReadEncoded(const JsonNode& asset, const readContext& context)
{
    const JsonNode p = asset.required("p", "a text");
    if (asset.flagAt("e", false) || p.text().starts_with("data:")) return ReadDataUrl(p);

    const std::string reference = asset.textAt("u", "") + p.text();
    if (IsNetworkAddress(reference)) {
        p.fail(fmt::format("{} is a network address, only files are read", Quoted(reference)));
    }
    // A file name ends at a zero byte, a check of the text would not.
    if (p.text().empty() || reference.find('\0') != std::string::npos) {
        p.fail(fmt::format("{} is no file name", Quoted(reference)));
    }
    return ReadImageFile(p, ResolveFile(p, reference, context));
}

image Decode(const JsonNode& asset, const encodedImage& encoded)
{
    try {
        return DecodeImage(encoded.bytes, encoded.name);
    } catch (const failure& problem) {
        asset.messages().fail(PathWithKey(asset.path(), "p"), problem.what());
    }
}

}  // namespace

void LoadImages(const assetTable& assets, const readContext& context, project& scene)
{
    for (const assetEntry& entry : assets.entries) {
        if (entry.image < 0) continue;
        imageAsset& target = scene.images[static_cast<std::size_t>(entry.image)];
        const encodedImage encoded = ReadEncoded(entry.node, context);
        image decoded = Decode(entry.node, encoded);
        if (decoded.width != target.width || decoded.height != target.height) {
            entry.node.warn(fmt::format("the image is {} x {}, the asset {} x {}: scaled to fit",
                                        decoded.width, decoded.height, target.width,
                                        target.height));
            decoded = FitImage(decoded, target.width, target.height);
        }
        target.file = encoded.name;
        target.pixels = std::make_shared<const image>(std::move(decoded));
    }
}

}  // namespace orv
