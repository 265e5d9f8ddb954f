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

struct jpegSession {
    jpeg_error_mgr errors{};  ///< first: the library hands out its address
    jpeg_progress_mgr progress{};
    jpeg_decompress_struct decoder{};
    std::jmp_buf escape{};
    std::array<char, JMSG_LENGTH_MAX> message{};
};

jpegSession& SessionOf(j_common_ptr common)
{
    return *reinterpret_cast<jpegSession*>(common->err);
}

void OnError(j_common_ptr common)
{
    jpegSession& session = SessionOf(common);
    common->err->format_message(common, session.message.data());
    std::longjmp(session.escape, 1);
}

/// The library goes on with grey where data is missing or broken; a picture like that is refused.
void OnMessage(j_common_ptr common, int level)
{
    if (level >= 0) return;
    switch (common->err->msg_code) {
        case JWRN_ADOBE_XFORM:
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
    constexpr int kMostScans = 500;
    if (!common->is_decompressor) return;
    jpegSession& session = SessionOf(common);
    if (session.decoder.input_scan_number > kMostScans) {
        std::snprintf(session.message.data(), session.message.size(), "more than %d scans",
                      kMostScans);
        std::longjmp(session.escape, 1);
    }
}

class JpegReader {
public:
    JpegReader(std::span<const std::uint8_t> data, std::string name)
        : name_(std::move(name)), data_(data)
    {
        session_.decoder.err = jpeg_std_error(&session_.errors);
        session_.errors.error_exit = OnError;
        session_.errors.emit_message = OnMessage;
        session_.progress.progress_monitor = OnProgress;
    }
    ~JpegReader() { jpeg_destroy_decompress(&session_.decoder); }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    image ReadHeader()
    {
        if (!ReadHeaderUnguarded()) RefusePicture(name_, session_.message.data());
        CheckPictureSize(name_, session_.decoder.image_width, session_.decoder.image_height);
        return {static_cast<int>(session_.decoder.image_width),
                static_cast<int>(session_.decoder.image_height), 8};
    }

    /// Rows as A, R, G, B, or C, M, Y, K when `cmyk`.
    void ReadRows(image& rows)
    {
        if (!ReadRowsUnguarded(rows)) RefusePicture(name_, session_.message.data());
    }

    [[nodiscard]] bool cmyk() const
    {
        return session_.decoder.jpeg_color_space == JCS_CMYK ||
               session_.decoder.jpeg_color_space == JCS_YCCK;
    }
    /// Files with Adobe's marker hold 255 for no ink.
    [[nodiscard]] bool invertedInks() const { return session_.decoder.saw_Adobe_marker != 0; }

private:
    bool ReadHeaderUnguarded()
    {
        if (setjmp(session_.escape) != 0) return false;
        jpeg_create_decompress(&session_.decoder);
        session_.decoder.progress = &session_.progress;
        jpeg_mem_src(&session_.decoder, data_.data(), static_cast<unsigned long>(data_.size()));
        jpeg_read_header(&session_.decoder, TRUE);
        return true;
    }

    bool ReadRowsUnguarded(image& rows)
    {
        if (setjmp(session_.escape) != 0) return false;
        session_.decoder.out_color_space = cmyk() ? JCS_CMYK : JCS_EXT_ARGB;
        session_.decoder.dct_method = JDCT_ISLOW;
        jpeg_start_decompress(&session_.decoder);
        while (session_.decoder.output_scanline < session_.decoder.output_height) {
            JSAMPROW row = rows.row(static_cast<int>(session_.decoder.output_scanline));
            jpeg_read_scanlines(&session_.decoder, &row, 1);
        }
        jpeg_finish_decompress(&session_.decoder);
        return true;
    }

    std::string name_;
    std::span<const std::uint8_t> data_;
    jpegSession session_;
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
