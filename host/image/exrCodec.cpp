// exrCodec.cpp: OpenEXR out, and just enough in to tell what a file holds.
#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfInputFile.h>
#include <ImfOutputFile.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>

#include "image/codecs.h"
#include "image/wholeFile.h"
#include "scene/errors.h"

namespace orv {

namespace {

/// The library's file, in memory: what is on disk then appears whole.
class MemoryStream : public Imf::OStream {
public:
    explicit MemoryStream(const std::string& name) : Imf::OStream(name.c_str()) {}
    void write(const char bytes[], int count) override
    {
        const std::size_t end = at_ + static_cast<std::size_t>(count);
        if (end > data_.size()) data_.resize(end);
        std::memcpy(data_.data() + at_, bytes, static_cast<std::size_t>(count));
        at_ = end;
    }
    std::uint64_t tellp() override { return at_; }
    void seekp(std::uint64_t position) override { at_ = static_cast<std::size_t>(position); }
    [[nodiscard]] std::span<const std::uint8_t> data() const { return data_; }

private:
    std::vector<std::uint8_t> data_;
    std::size_t at_ = 0;
};

/// R, G, B, A as floats: full scale is 1, colours multiplied by alpha.
std::vector<float> PremultipliedRgba(const image& picture)
{
    const std::size_t pixels = picture.bytes.size() / picture.pixelBytes();
    std::vector<float> rgba(pixels * 4);
    const auto convert = [&](const auto* argb, float fullScale) {
        for (std::size_t i = 0; i < rgba.size(); i += 4) {
            const float alpha = static_cast<float>(argb[i]) / fullScale;
            for (std::size_t c = 0; c < 3; ++c) {
                rgba[i + c] = static_cast<float>(argb[i + c + 1]) / fullScale * alpha;
            }
            rgba[i + 3] = alpha;
        }
    };
    if (picture.depth == 16) {
        convert(picture.row16(0), 32768.0F);
    } else {
        convert(picture.row(0), 255.0F);
    }
    return rgba;
}

constexpr std::array<const char*, 4> kChannels{"R", "G", "B", "A"};

void WriteRows(Imf::OStream& stream, const image& picture, Imf::PixelType type, char* pixels,
               std::size_t channelBytes)
{
    Imf::Header header(picture.width, picture.height);
    header.compression() = Imf::ZIP_COMPRESSION;
    Imf::FrameBuffer rows;
    const std::size_t pixelBytes = channelBytes * kChannels.size();
    for (std::size_t c = 0; c < kChannels.size(); ++c) {
        header.channels().insert(kChannels[c], Imf::Channel(type));
        rows.insert(kChannels[c], Imf::Slice(type, pixels + c * channelBytes, pixelBytes,
                                             pixelBytes * static_cast<std::size_t>(picture.width)));
    }
    Imf::OutputFile file(stream, header);
    file.setFrameBuffer(rows);
    file.writePixels(picture.height);
}

}  // namespace

void WriteExr(const image& picture, const std::string& file, exrPixel pixel)
{
    MemoryStream stream(file);
    try {
        std::vector<float> rgba = PremultipliedRgba(picture);
        if (pixel == exrPixel::full) {
            WriteRows(stream, picture, Imf::FLOAT, reinterpret_cast<char*>(rgba.data()),
                      sizeof(float));
        } else {
            std::vector<half> halves(rgba.begin(), rgba.end());
            WriteRows(stream, picture, Imf::HALF, reinterpret_cast<char*>(halves.data()),
                      sizeof(half));
        }
    } catch (const std::exception& error) {
        throw failure(failureKind::output,
                      fmt::format("{}: cannot be written: {}", file, error.what()));
    }
    WriteWholeFile(file, stream.data());
}

pictureInfo ProbeExr(const std::string& file)
try {
    Imf::InputFile input(file.c_str());
    const auto& window = input.header().dataWindow();
    const Imf::Channel* red = input.header().channels().findChannel("R");
    if (!input.isComplete() || red == nullptr) return {};
    const pictureInfo info{window.max.x - window.min.x + 1, window.max.y - window.min.y + 1,
                           red->type == Imf::HALF ? 16 : 32};

    // Only reading it shows that all of it is there; one row of memory is enough.
    std::vector<float> row(static_cast<std::size_t>(info.width));
    Imf::FrameBuffer rows;
    rows.insert("R", Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(row.data() - window.min.x),
                                sizeof(float), 0));
    input.setFrameBuffer(rows);
    input.readPixels(window.min.y, window.max.y);
    return info;
} catch (const std::exception&) {
    return {};
}

}  // namespace orv
