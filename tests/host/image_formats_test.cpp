// JPEG in, EXR out.
#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputFile.h>
#include <gtest/gtest.h>

#include <cstdio>
// after cstdio, which it needs
#include <jpeglib.h>

#include <array>
#include <cstdlib>

#include "host/image_bytes.h"
#include "image/imageFile.h"
#include "support/caseName.h"
#include "support/tempFolder.h"

namespace orv {
namespace {

// ------------------------------------------------------------------ JPEG

/// One colour in 16 x 16 pixels, at the best quality.
byteList EncodeJpeg(J_COLOR_SPACE space, const std::array<std::uint8_t, 4>& colour,
                    bool progressive = false)
{
    jpeg_error_mgr errors{};
    jpeg_compress_struct encoder{};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&encoder, &memory, &size);
    encoder.image_width = encoder.image_height = 16;
    encoder.in_color_space = space;
    encoder.input_components = space == JCS_GRAYSCALE ? 1 : space == JCS_RGB ? 3 : 4;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, 100, TRUE);
    if (progressive) jpeg_simple_progression(&encoder);
    jpeg_start_compress(&encoder, TRUE);
    byteList row;
    for (int x = 0; x < 16; ++x) {
        row.insert(row.end(), colour.begin(), colour.begin() + encoder.input_components);
    }
    while (encoder.next_scanline < encoder.image_height) {
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&encoder, &rows, 1);
    }
    jpeg_finish_compress(&encoder);
    byteList file(memory, memory + size);
    jpeg_destroy_compress(&encoder);
    std::free(memory);
    return file;
}

struct jpegCase {
    const char* name;
    J_COLOR_SPACE space;
    std::array<std::uint8_t, 4> colour;
    std::array<int, 3> rgb;
    bool progressive;
};
class JpegColours : public testing::TestWithParam<jpegCase> {};
TEST_P(JpegColours, AreUnderstood)
{
    const jpegCase& c = GetParam();
    const image picture = DecodeImage(EncodeJpeg(c.space, c.colour, c.progressive), "a.jpg");
    ASSERT_EQ(picture.width, 16);
    ASSERT_EQ(picture.height, 16);
    ASSERT_EQ(picture.depth, 8);
    const std::uint8_t* pixel = picture.row(15) + std::size_t{4} * 15;
    EXPECT_EQ(pixel[0], 255);
    for (std::size_t i = 0; i < 3; ++i) {
        // the way through luminance and chrominance in whole numbers costs a step or two
        EXPECT_NEAR(pixel[i + 1], c.rgb[i], 2) << "channel " << i;
    }
}
const jpegCase kKinds[] = {{"Rgb", JCS_RGB, {200, 100, 50, 0}, {200, 100, 50}, false},
                           {"Progressive", JCS_RGB, {10, 220, 90, 0}, {10, 220, 90}, true},
                           {"Grey", JCS_GRAYSCALE, {77, 0, 0, 0}, {77, 77, 77}, false},
                           // inverted inks, as the encoder's APP14 marker says: 255 is no ink.
                           // 204 x 127.5/255 = 102
                           {"Cmyk", JCS_CMYK, {204, 255, 0, 128}, {102, 128, 0}, false}};
INSTANTIATE_TEST_SUITE_P(Kinds, JpegColours, testing::ValuesIn(kKinds), caseName{});

TEST(JpegDamage, CutsAreRefusedInsteadOfFilledWithGrey)
{
    const byteList whole = EncodeJpeg(JCS_RGB, {200, 100, 50, 0});
    for (std::size_t length = 3; length + 2 < whole.size(); length += 7) {
        EXPECT_THROW(DecodeImage({whole.data(), length}, "a.jpg"), failure)
            << "cut to " << length << " of " << whole.size();
    }
}

// ------------------------------------------------------------------ EXR

/// R, G, B, A of the first pixel, whatever type the file holds.
std::array<float, 4> FirstExrPixel(const std::string& file, Imf::PixelType expected)
{
    Imf::InputFile input(file.c_str());
    const auto& window = input.header().dataWindow();
    const auto width = static_cast<std::size_t>(window.max.x + 1);
    const auto height = static_cast<std::size_t>(window.max.y + 1);
    std::vector<std::array<float, 4>> pixels(width * height);
    Imf::FrameBuffer frame;
    constexpr std::array<const char*, 4> kNames{"R", "G", "B", "A"};
    for (std::size_t c = 0; c < 4; ++c) {
        const Imf::Channel* channel = input.header().channels().findChannel(kNames[c]);
        EXPECT_TRUE(channel != nullptr && channel->type == expected) << kNames[c];
        frame.insert(kNames[c], Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(&pixels[0][c]),
                                           sizeof(pixels[0]), sizeof(pixels[0]) * width));
    }
    input.setFrameBuffer(frame);
    input.readPixels(0, window.max.y);
    return pixels[0];
}

TEST(Exr, HoldsPremultipliedValuesAsTheyAre)
{
    const TempFolder folder;
    const image deep = Row(16, {16384, 32768, 8192, 0, 0, 5, 5, 5});
    WriteExr(deep, folder.file("deep.exr"), exrPixel::full);
    EXPECT_EQ(FirstExrPixel(folder.file("deep.exr"), Imf::FLOAT),
              (std::array{0.5F, 0.125F, 0.0F, 0.5F}));

    // half has steps of 2^-11 at this size: 51/255 x 0.6 = 0.12
    const image plain = Row(8, {153, 255, 51, 0});
    WriteExr(plain, folder.file("plain.exr"), exrPixel::half);
    const std::array<float, 4> read = FirstExrPixel(folder.file("plain.exr"), Imf::HALF);
    const std::array<float, 4> expected{0.6F, 0.12F, 0.0F, 0.6F};
    for (std::size_t c = 0; c < 4; ++c) EXPECT_NEAR(read[c], expected[c], 1.0 / 4096.0) << c;
    EXPECT_EQ(ProbePicture(folder.file("deep.exr")).depth, 32);
}

}  // namespace
}  // namespace orv
