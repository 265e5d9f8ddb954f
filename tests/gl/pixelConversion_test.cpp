#include "gl/pixelConversion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

/// A world over memory of our own, with `padding` bytes after each row, all set to `fill`.
template <class Pixel>
struct paddedWorld {
    std::vector<unsigned char> memory;
    PF_EffectWorld world{};

    paddedWorld(A_long width, A_long height, A_long padding, unsigned char fill)
    {
        world.width = width;
        world.height = height;
        world.rowbytes = width * static_cast<A_long>(sizeof(Pixel)) + padding;
        memory.assign(static_cast<std::size_t>(world.rowbytes * height), fill);
        world.data = memory.data();
    }
    Pixel* at(A_long x, A_long y)
    {
        void* row =
            memory.data() + y * (world.rowbytes / A_long{sizeof(Pixel)}) * A_long{sizeof(Pixel)};
        return static_cast<Pixel*>(row) + x;
    }
};

}  // namespace

TEST(Tex3216, TruncatesAndLeavesThePaddingAlone)
{
    paddedWorld<PF_PixelFloat> from(2, 1, 16, 0);
    paddedWorld<PF_Pixel16> to(3, 1, 12, 0xCD);
    *from.at(0, 0) = {1.0f, 0.99999f, 3.0517578125e-5f, 0.0f};
    *from.at(1, 0) = {0.5f, 0.25f, 0.75f, 1.0f};
    worldPair pair{&from.world, &to.world};

    EXPECT_EQ(tex3216(&pair, 1, 0, 1), PF_Err_NONE);

    const PF_Pixel16 first = *to.at(0, 0), second = *to.at(1, 0);
    EXPECT_EQ(first.alpha, 32768);
    EXPECT_EQ(first.red, 32767);  // 32767.67 is cut
    EXPECT_EQ(first.green, 1);
    EXPECT_EQ(first.blue, 0);
    EXPECT_EQ(second.green, 24576);
    EXPECT_EQ(second.alpha, 16384);
    for (std::size_t byte = 16; byte < to.memory.size(); ++byte) {
        EXPECT_EQ(to.memory[byte], 0xCD) << "byte " << byte << " lies behind the row";
    }
}

TEST(PixelConversion, EverySixteenBitValueSurvivesTheRoundTrip)
{
    paddedWorld<PF_Pixel16> from(32769, 1, 0, 0), back(32769, 1, 0, 0);
    paddedWorld<PF_PixelFloat> floats(32769, 1, 0, 0);
    for (A_long v = 0; v <= 32768; ++v) {
        const auto channel = static_cast<A_u_short>(v);
        *from.at(v, 0) = {channel, channel, channel, channel};
    }
    worldPair there{&from.world, &floats.world}, andBack{&floats.world, &back.world};
    tex1632(&there, 0, 0, 1);
    tex3216(&andBack, 0, 0, 1);
    EXPECT_EQ(from.memory, back.memory);
}

TEST(PremultiplyRow, EightBitsRoundToTheNearestForEveryPair)
{
    for (int alpha = 0; alpha <= 255; ++alpha) {
        for (int color = 0; color <= 255; ++color) {
            const PF_Pixel8 straight{static_cast<A_u_char>(alpha), static_cast<A_u_char>(color),
                                     255, 0};
            PF_Pixel8 packed{};
            PremultiplyRow(&straight, 1, &packed);
            ASSERT_EQ(packed.red, std::lround(color * alpha / 255.0)) << color << " * " << alpha;
            ASSERT_EQ(packed.green, alpha);
            ASSERT_EQ(packed.blue, 0);
            ASSERT_EQ(packed.alpha, alpha);
        }
    }
}

TEST(PremultiplyRow, FloatsAreMultipliedAsTheyCome)
{
    const PF_PixelFloat straight[] = {{0.5f, 1.0f, 0.5f, 0.25f}, {0.0f, 1.0f, 1.0f, 1.0f}};
    PF_PixelFloat packed[2];
    PremultiplyRow(straight, 2, packed);
    EXPECT_EQ(packed[0].alpha, 0.5f);
    EXPECT_EQ(packed[0].red, 0.5f);
    EXPECT_EQ(packed[0].green, 0.25f);
    EXPECT_EQ(packed[0].blue, 0.125f);
    EXPECT_EQ(packed[1].red, 0.0f);
}

TEST(QuantiseRow, RoundsToTheNearestAndClamps)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const PF_PixelFloat floats[] = {{1.0f, 0.5f, 0.0f, 1.0f / 255.0f},
                                    {0.4999f / 255.0f, 0.5001f / 255.0f, 254.4f / 255.0f, 1.5f},
                                    {-0.25f, nan, 1.0000001f, 254.6f / 255.0f}};
    PF_Pixel8 bytes[3];
    QuantiseRow(floats, 3, bytes);
    const unsigned char expected[] = {255, 128, 0, 1, 0, 1, 254, 255, 0, 0, 255, 255};
    EXPECT_EQ(std::memcmp(bytes, expected, sizeof expected), 0);
}
