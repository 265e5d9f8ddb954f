// pngCodec.cpp: PNG through libpng. Its errors leave by longjmp, so the functions between setjmp
// and the calls that may fail hold no objects with destructors; what they need lives in a state
// record of their caller's.
#include <png.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <csetjmp>
#include <cstring>
#include <new>
#include <utility>

#include "image/codecs.h"
#include "scene/errors.h"

namespace orv {

namespace {

static_assert(std::endian::native == std::endian::little, "16-bit rows are swapped on their way");

struct pngState {
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::array<char, 128> message{};
    std::span<const std::uint8_t> unread;          ///< reading
    std::vector<std::uint8_t>* written = nullptr;  ///< writing
};

void OnError(png_structp png, png_const_charp text)
{
    auto* state = static_cast<pngState*>(png_get_error_ptr(png));
    std::strncpy(state->message.data(), text, state->message.size() - 1);
    png_longjmp(png, 1);
}

void OnWarning(png_structp, png_const_charp)
{
    // Odd but readable: damaged text chunks, unknown profiles.
}

constexpr const char* kTooShort = "the data ends too early";

void ReadBytes(png_structp png, png_bytep into, std::size_t count)
{
    auto* state = static_cast<pngState*>(png_get_io_ptr(png));
    if (count > state->unread.size()) png_error(png, kTooShort);
    std::memcpy(into, state->unread.data(), count);
    state->unread = state->unread.subspan(count);
}

// ------------------------------------------------------------------ reading

/// Whether no chunk says that it is longer than what is left. The library takes the memory that a
/// chunk says it needs, up to 2 GB, before it reads it.
bool HoldsItsChunks(std::span<const std::uint8_t> data)
{
    constexpr std::size_t kSignature = 8, kHeader = 8, kCheck = 4;
    for (data = data.subspan(kSignature); data.size() >= kHeader;) {
        const std::size_t length = png_get_uint_32(data.data()), left = data.size() - kHeader;
        if (length > left) return false;
        const bool isLast = std::memcmp(data.data() + 4, "IEND", 4) == 0;
        if (isLast || left - length < kCheck) break;
        data = data.subspan(kHeader + length + kCheck);
    }
    return true;
}

class PngReader {
public:
    PngReader(std::span<const std::uint8_t> data, std::string name) : name_(std::move(name))
    {
        state_.unread = data;
        state_.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &state_, OnError, OnWarning);
        if (state_.png != nullptr) state_.info = png_create_info_struct(state_.png);
        if (state_.info != nullptr) png_set_read_fn(state_.png, &state_, ReadBytes);
    }
    ~PngReader() { png_destroy_read_struct(&state_.png, &state_.info, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    /// Size and depth; the rows that follow are R, G, B, A.
    image ReadHeader()
    {
        if (state_.info == nullptr) RefusePicture(name_, "no memory for reading it");
        if (!ReadHeaderUnguarded()) RefusePicture(name_, state_.message.data());
        CheckPictureSize(name_, png_get_image_width(state_.png, state_.info),
                         png_get_image_height(state_.png, state_.info));
        return {static_cast<int>(png_get_image_width(state_.png, state_.info)),
                static_cast<int>(png_get_image_height(state_.png, state_.info)),
                png_get_bit_depth(state_.png, state_.info)};
    }

    void ReadRows(image& rgba)
    {
        if (!ReadRowsUnguarded(rgba)) RefusePicture(name_, state_.message.data());
    }

private:
    bool ReadHeaderUnguarded()
    {
        if (setjmp(png_jmpbuf(state_.png)) != 0) return false;
        png_read_info(state_.png, state_.info);
        png_set_expand(state_.png);
        png_set_gray_to_rgb(state_.png);
        png_set_add_alpha(state_.png, 0xffff, PNG_FILLER_AFTER);
        png_set_swap(state_.png);
        passes_ = png_set_interlace_handling(state_.png);
        png_read_update_info(state_.png, state_.info);
        return true;
    }

    bool ReadRowsUnguarded(image& rgba)
    {
        if (setjmp(png_jmpbuf(state_.png)) != 0) return false;
        if (png_get_rowbytes(state_.png, state_.info) != rgba.rowBytes()) {
            png_error(state_.png, "unexpected row size");
        }
        for (int pass = 0; pass < passes_; ++pass) {
            for (int y = 0; y < rgba.height; ++y) {
                png_read_row(state_.png, rgba.row(y), nullptr);
            }
        }
        png_read_end(state_.png, nullptr);
        return true;
    }

    std::string name_;
    pngState state_;
    int passes_ = 1;
};

void RgbaToArgb8(image& picture)
{
    for (std::size_t i = 0; i < picture.bytes.size(); i += 4) {
        std::uint8_t* p = picture.bytes.data() + i;
        std::rotate(p, p + 3, p + 4);
    }
}

/// 0..65535 to 0..32768, to the nearest, and alpha first.
void RgbaToArgb16(image& picture)
{
    const auto narrow = [](std::uint32_t v) {
        return static_cast<std::uint16_t>((v * 32768U + 32767U) / 65535U);
    };
    for (int y = 0; y < picture.height; ++y) {
        std::uint16_t* p = picture.row16(y);
        for (int x = 0; x < picture.width; ++x, p += 4) {
            const std::uint16_t alpha = p[3];
            p[3] = narrow(p[2]);
            p[2] = narrow(p[1]);
            p[1] = narrow(p[0]);
            p[0] = narrow(alpha);
        }
    }
}

// ------------------------------------------------------------------ writing

void AppendBytes(png_structp png, png_bytep from, std::size_t count)
{
    auto* state = static_cast<pngState*>(png_get_io_ptr(png));
    bool kept = true;
    try {
        state->written->insert(state->written->end(), from, from + count);
    } catch (const std::bad_alloc&) {
        kept = false;
    }
    if (!kept) png_error(png, "no memory for the compressed picture");  // outside the handler
}

void NothingToFlush(png_structp) {}

class PngWriter {
public:
    explicit PngWriter(std::vector<std::uint8_t>& written)
    {
        state_.written = &written;
        state_.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &state_, OnError, OnWarning);
        if (state_.png != nullptr) state_.info = png_create_info_struct(state_.png);
        if (state_.info != nullptr) {
            png_set_write_fn(state_.png, &state_, AppendBytes, NothingToFlush);
        }
    }
    ~PngWriter() { png_destroy_write_struct(&state_.png, &state_.info); }
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    /// `row` is one row of R, G, B, A; `fill` puts row `y` of the picture there.
    template <class Fill>
    bool Write(int width, int height, int depth, std::uint8_t* row, const Fill& fill)
    {
        if (state_.info == nullptr) return false;
        if (setjmp(png_jmpbuf(state_.png)) != 0) return false;
        png_set_IHDR(state_.png, state_.info, static_cast<png_uint_32>(width),
                     static_cast<png_uint_32>(height), depth, PNG_COLOR_TYPE_RGBA,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        // A farm waits for every frame: these are twice as fast as the defaults, a tenth larger.
        png_set_compression_level(state_.png, 4);
        png_set_filter(state_.png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB | PNG_FILTER_UP);
        png_write_info(state_.png, state_.info);
        png_set_swap(state_.png);
        for (int y = 0; y < height; ++y) {
            fill(y);
            png_write_row(state_.png, row);
        }
        png_write_end(state_.png, state_.info);
        return true;
    }

    [[nodiscard]] const char* message() const
    {
        return state_.message[0] != '\0' ? state_.message.data() : "no memory";
    }

private:
    pngState state_;
};

void ArgbToRgbaRow8(const image& picture, int y, std::uint8_t* rgba)
{
    const std::uint8_t* p = picture.row(y);
    for (int x = 0; x < picture.width; ++x, p += 4, rgba += 4) {
        rgba[0] = p[1];
        rgba[1] = p[2];
        rgba[2] = p[3];
        rgba[3] = p[0];
    }
}

/// 0..32768 to 0..65535, to the nearest. What lies above 32768 counts as 32768.
void ArgbToRgbaRow16(const image& picture, int y, std::uint16_t* rgba)
{
    const auto widen = [](std::uint32_t v) {
        return static_cast<std::uint16_t>((std::min(v, 32768U) * 65535U + 16384U) / 32768U);
    };
    const std::uint16_t* p = picture.row16(y);
    for (int x = 0; x < picture.width; ++x, p += 4, rgba += 4) {
        rgba[0] = widen(p[1]);
        rgba[1] = widen(p[2]);
        rgba[2] = widen(p[3]);
        rgba[3] = widen(p[0]);
    }
}

}  // namespace

image DecodePng(std::span<const std::uint8_t> data, const std::string& name)
{
    if (!HoldsItsChunks(data)) RefusePicture(name, kTooShort);
    PngReader reader(data, name);
    image picture = reader.ReadHeader();
    reader.ReadRows(picture);
    if (picture.depth == 16) {
        RgbaToArgb16(picture);
    } else {
        RgbaToArgb8(picture);
    }
    return picture;
}

std::vector<std::uint8_t> EncodePng(const image& picture, const std::string& name)
{
    std::vector<std::uint8_t> written;
    std::vector<std::uint16_t> row(static_cast<std::size_t>(picture.width) * 4);
    auto* bytes = reinterpret_cast<std::uint8_t*>(row.data());
    PngWriter writer(written);
    const bool done = writer.Write(picture.width, picture.height, picture.depth, bytes, [&](int y) {
        if (picture.depth == 16) {
            ArgbToRgbaRow16(picture, y, row.data());
        } else {
            ArgbToRgbaRow8(picture, y, bytes);
        }
    });
    if (!done) {
        throw failure(failureKind::output,
                      fmt::format("{}: cannot be written: {}", name, writer.message()));
    }
    return written;
}

}  // namespace orv
