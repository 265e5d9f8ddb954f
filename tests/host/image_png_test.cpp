// PNG: what is written comes back, every kind of colour is understood, damage is refused.
#include <gtest/gtest.h>
#include <png.h>

#include <fstream>

#include "host/image_bytes.h"
#include "image/imageFile.h"
#include "support/caseName.h"
#include "support/tempFolder.h"

namespace orv {
namespace {

image WrittenAndRead(const image& picture)
{
    const TempFolder folder;
    WritePng(picture, folder.file("a.png"));
    return DecodeImage(BytesOf(folder.file("a.png")), "a.png");
}

TEST(Png, EightBitsComeBack)
{
    const image picture = Noise(61, 37, 8, 1);
    EXPECT_EQ(WrittenAndRead(picture), picture);
}

TEST(Png, EveryValueOfSixteenBitsComesBackInEveryChannel)
{
    image picture(257, 128, 16);  // 32,896 pixels: every value and a few twice
    std::uint16_t* values = picture.row16(0);
    for (std::uint32_t i = 0; i < 257U * 128U; ++i) {
        for (std::uint32_t c = 0; c < 4; ++c) {
            values[4 * i + c] = static_cast<std::uint16_t>((i + 9000U * c) % 32769U);
        }
    }
    EXPECT_EQ(WrittenAndRead(picture), picture);
}

TEST(Png, SamePictureSameBytes)
{
    const TempFolder folder;
    const image picture = Noise(40, 30, 16, 3);
    WritePng(picture, folder.file("a.png"));
    WritePng(picture, folder.file("b.png"));
    EXPECT_EQ(BytesOf(folder.file("a.png")), BytesOf(folder.file("b.png")));
    EXPECT_EQ(folder.fileCount(), 2) << "no temporary file stays";
}

// ------------------------------------------------------------------ other writers' files

struct colourCase {
    const char* name;
    int bits, type;
    bool interlaced;
    byteList rows;  ///< 2 x 1 pixels as the file packs them
    std::vector<int> argb;
    int depth;
};

/// A 2 x 1 file of that kind. A palette has red (opaque) and blue (alpha 128); other kinds without
/// alpha name black as transparent.
byteList EncodeAs(const colourCase& c)
{
    byteList file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep from, std::size_t count) {
            auto* to = static_cast<byteList*>(png_get_io_ptr(writer));
            to->insert(to->end(), from, from + count);
        },
        nullptr);
    png_set_IHDR(png, info, 2, 1, c.bits, c.type,
                 c.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, 0, 0);
    const png_color colours[2] = {{255, 0, 0}, {0, 0, 255}};
    const png_byte alphas[2] = {255, 128};
    const png_color_16 black{};
    if (c.type == PNG_COLOR_TYPE_PALETTE) {
        png_set_PLTE(png, info, colours, 2);
        png_set_tRNS(png, info, alphas, 2, nullptr);
    } else if ((c.type & PNG_COLOR_MASK_ALPHA) == 0) {
        png_set_tRNS(png, info, nullptr, 0, &black);
    }
    png_write_info(png, info);
    const int passes = png_set_interlace_handling(png);
    for (int pass = 0; pass < passes; ++pass) png_write_row(png, c.rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

class PngColours : public testing::TestWithParam<colourCase> {};
TEST_P(PngColours, AreUnderstood)
{
    EXPECT_EQ(DecodeImage(EncodeAs(GetParam()), "a.png"), Row(GetParam().depth, GetParam().argb));
}
const colourCase kKinds[] = {
    {"GreyOfOneBit", 1, PNG_COLOR_TYPE_GRAY, false, {0x40}, {0, 0, 0, 0, 255, 255, 255, 255}, 8},
    {"GreyAndAlpha",
     8,
     PNG_COLOR_TYPE_GRAY_ALPHA,
     false,
     {10, 20, 30, 40},
     {20, 10, 10, 10, 40, 30, 30, 30},
     8},
    {"Palette", 2, PNG_COLOR_TYPE_PALETTE, false, {0x10}, {255, 255, 0, 0, 128, 0, 0, 255}, 8},
    {"RgbInterlaced",
     8,
     PNG_COLOR_TYPE_RGB,
     true,
     {1, 2, 3, 4, 5, 6},
     {255, 1, 2, 3, 255, 4, 5, 6},
     8},
    // 0x8000 x 32768/65535 = 16384.25, 0xffff is full scale, 1
    // becomes 0.5 and rounds down
    {"RgbOfSixteenBits",
     16,
     PNG_COLOR_TYPE_RGB,
     false,
     {0x80, 0, 0xff, 0xff, 0, 1, 0, 3, 0, 0, 0, 0},
     {32768, 16384, 32768, 1, 32768, 2, 0, 0},
     16}};
INSTANTIATE_TEST_SUITE_P(Kinds, PngColours, testing::ValuesIn(kKinds), caseName{});

// ------------------------------------------------------------------ damage

TEST(PngDamage, EveryCutIsRefused)
{
    const TempFolder folder;
    WritePng(Noise(9, 7, 8, 5), folder.file("a.png"));
    const byteList whole = BytesOf(folder.file("a.png"));
    for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
        const std::span cut(whole.data(), length);
        EXPECT_THROW(DecodeImage(cut, "a.png"), failure) << "cut to " << length << " bytes";
    }
}

TEST(PngDamage, SizesAreRefusedBeforeMemoryIsTaken)
{
    // The header of a 30001 x 1 picture, its checksum worked out by the library's own zlib.
    byteList file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
    const auto finish = [&](std::uint32_t width, std::uint32_t height) {
        byteList header = file;
        for (const std::uint32_t size : {width, height}) {
            for (int shift = 24; shift >= 0; shift -= 8) {
                header.push_back(static_cast<std::uint8_t>(size >> shift));
            }
        }
        header.insert(header.end(), {8, PNG_COLOR_TYPE_RGBA, 0, 0, 0});
        std::uint32_t crc = 0xffffffffU;
        for (std::size_t i = 12; i < header.size(); ++i) {
            crc ^= header[i];
            for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1U) * 0xedb88320U);
        }
        for (int shift = 24; shift >= 0; shift -= 8) {
            header.push_back(static_cast<std::uint8_t>(~crc >> shift));
        }
        header.insert(header.end(), {0, 0, 0, 0, 'I', 'D', 'A', 'T', 0x35, 0xaf, 0x06, 0x1e});
        return header;
    };
    EXPECT_EQ(FailureText(failureKind::scene, [&] { DecodeImage(finish(30001, 1), "a.png"); }),
              "a.png: 30001 x 1 pixels, more than the limit of 30000 on a side and 67108864 in "
              "all");
    EXPECT_EQ(FailureText(failureKind::scene, [&] { DecodeImage(finish(30000, 2240), "a.png"); }),
              "a.png: 30000 x 2240 pixels, more than the limit of 30000 on a side and 67108864 in "
              "all");
}

TEST(Decode, OtherFormatsAreNamedAsSuch)
{
    const byteList text{'G', 'I', 'F', '8', '9', 'a'};
    EXPECT_EQ(FailureText(failureKind::scene, [&] { DecodeImage(text, "a.png"); }),
              "a.png: neither PNG nor JPEG");
    EXPECT_EQ(FailureText(failureKind::scene, [&] { DecodeImage({}, "a.png"); }),
              "a.png: the file is empty");
}

// ------------------------------------------------------------------ files

TEST(WholeFile, ReplacesFilesAndNothingElse)
{
    const TempFolder folder;
    const std::string file = folder.file("a.png");
    std::ofstream(file) << "old";
    WritePng(Noise(2, 2, 8, 1), file);
    EXPECT_EQ(ProbePicture(file).width, 2);

    std::filesystem::create_directory(folder.file("b.png"));
    EXPECT_EQ(
        FailureText(failureKind::output, [&] { WritePng(image(1, 1, 8), folder.file("b.png")); }),
        folder.file("b.png") + ": cannot be written: it exists and is not a regular file");
    EXPECT_EQ(FailureText(failureKind::output,
                          [&] { WritePng(image(1, 1, 8), folder.file("none/c.png")); }),
              folder.file("none/c.png") + ": cannot be written: No such file or directory");
    EXPECT_EQ(folder.fileCount(), 2) << "failures leave nothing behind";
}

TEST(Probe, TellsWholePicturesFromOthers)
{
    const TempFolder folder;
    const image picture = Noise(5, 3, 16, 9);
    WritePng(picture, folder.file("a.png"));
    WriteExr(picture, folder.file("a.exr"), exrPixel::half);
    for (const char* name : {"a.png", "a.exr"}) {
        const std::string file = folder.file(name);
        const pictureInfo info = ProbePicture(file);
        EXPECT_EQ(info.width, 5) << name;
        EXPECT_EQ(info.height, 3) << name;
        EXPECT_EQ(info.depth, 16) << name;
        std::filesystem::resize_file(file, std::filesystem::file_size(file) - 20);
        EXPECT_EQ(ProbePicture(file).width, 0) << name << " cut short";
    }
    EXPECT_EQ(ProbePicture(folder.file("missing.png")).width, 0);
    EXPECT_EQ(ProbePicture(folder.path().string()).width, 0);
}

}  // namespace
}  // namespace orv
