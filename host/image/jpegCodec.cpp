// jpegCodec.cpp: JPEG through libjpeg-turbo. Its errors leave by longjmp, so the functions between
// setjmp and the calls that may fail hold no objects with destructors.
#include <cstddef>
#include <cstdio>

#include <jpeglib.h>
// after jpeglib.h, which it needs
#include <jerror.h>

#include <algorithm>
#include <array>
#include <csetjmp>

#include "image/codecs.h"

namespace orv {

namespace {

struct jpegState {
    jpeg_error_mgr errors{};  ///< first: the library hands out its address
    jpeg_progress_mgr progress{};
    jpeg_decompress_struct decoder{};
    std::jmp_buf escape{};
    std::array<char, JMSG_LENGTH_MAX> message{};
};

jpegState& StateOf(j_common_ptr common)
{
    return *reinterpret_cast<jpegState*>(common->err);
}

void OnError(j_common_ptr common)
{
    jpegState& state = StateOf(common);
    common->err->format_message(common, state.message.data());
    std::longjmp(state.escape, 1);
}

/// The library goes on with grey where data is missing or broken; a picture like that is refused.
void OnMessage(j_common_ptr common, int level)
{
    if (level >= 0) return;
    switch (common->err->msg_code) {
        case JWRN_JFIF_MAJOR:
        case JWRN_EXTRANEOUS_DATA:
            return;
        default:
            OnError(common);
    }
}

/// A small progressive file can ask for thousands of passes over a large picture.
void OnProgress(j_common_ptr common)
{
    constexpr int kMostScans = 100;  // encoders write about ten
    if (!common->is_decompressor) return;
    jpegState& state = StateOf(common);
    if (state.decoder.input_scan_number > kMostScans) {
        std::snprintf(state.message.data(), state.message.size(), "more than %d scans", kMostScans);
        std::longjmp(state.escape, 1);
    }
}

class JpegReader {
public:
    JpegReader(std::span<const std::uint8_t> data, std::string name)
        : name_(std::move(name)), data_(data)
    {
        state_.decoder.err = jpeg_std_error(&state_.errors);
        state_.errors.error_exit = OnError;
        state_.errors.emit_message = OnMessage;
        state_.progress.progress_monitor = OnProgress;
    }
    ~JpegReader() { jpeg_destroy_decompress(&state_.decoder); }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    image ReadHeader()
    {
        if (!ReadHeaderUnguarded()) RefusePicture(name_, state_.message.data());
        CheckPictureSize(name_, state_.decoder.image_width, state_.decoder.image_height);
        return {static_cast<int>(state_.decoder.image_width),
                static_cast<int>(state_.decoder.image_height), 8};
    }

    /// Rows as A, R, G, B, or C, M, Y, K when `cmyk`.
    void ReadRows(image& rows)
    {
        if (!ReadRowsUnguarded(rows)) RefusePicture(name_, state_.message.data());
    }

    [[nodiscard]] bool cmyk() const
    {
        return state_.decoder.jpeg_color_space == JCS_CMYK ||
               state_.decoder.jpeg_color_space == JCS_YCCK;
    }
    /// Files with an APP14 marker hold 255 for no ink.
    [[nodiscard]] bool invertedInks() const { return invertedInks_; }

private:
    bool ReadHeaderUnguarded()
    {
        if (setjmp(state_.escape) != 0) return false;
        jpeg_create_decompress(&state_.decoder);
        state_.decoder.progress = &state_.progress;
        jpeg_mem_src(&state_.decoder, data_.data(), static_cast<unsigned long>(data_.size()));
        jpeg_save_markers(&state_.decoder, JPEG_APP0 + 14, 16);
        jpeg_read_header(&state_.decoder, TRUE);
        invertedInks_ = state_.decoder.marker_list != nullptr;
        return true;
    }

    bool ReadRowsUnguarded(image& rows)
    {
        if (setjmp(state_.escape) != 0) return false;
        state_.decoder.out_color_space = cmyk() ? JCS_CMYK : JCS_EXT_ARGB;
        state_.decoder.dct_method = JDCT_ISLOW;
        jpeg_start_decompress(&state_.decoder);
        while (state_.decoder.output_scanline < state_.decoder.output_height) {
            JSAMPROW row = rows.row(static_cast<int>(state_.decoder.output_scanline));
            jpeg_read_scanlines(&state_.decoder, &row, 1);
        }
        jpeg_finish_decompress(&state_.decoder);
        return true;
    }

    std::string name_;
    std::span<const std::uint8_t> data_;
    jpegState state_;
    bool invertedInks_ = false;
};

/// Without ink profiles: each ink takes its share of the light.
void CmykToArgb(image& picture, bool invertedInks)
{
    const int flip = invertedInks ? 0 : 255;
    for (std::size_t i = 0; i < picture.bytes.size(); i += 4) {
        std::uint8_t* p = picture.bytes.data() + i;
        const int light = flip ^ p[3];
        const auto channel = [&](int ink) {
            return static_cast<std::uint8_t>(((flip ^ ink) * light + 127) / 255);
        };
        const std::array<std::uint8_t, 4> argb{255, channel(p[0]), channel(p[1]), channel(p[2])};
        std::copy(argb.begin(), argb.end(), p);
    }
}

}  // namespace

image DecodeJpeg(std::span<const std::uint8_t> data, const std::string& name)
{
    JpegReader reader(data, name);
    image picture = reader.ReadHeader();
    reader.ReadRows(picture);
    if (reader.cmyk()) CmykToArgb(picture, reader.invertedInks());
    return picture;
}

}  // namespace orv
