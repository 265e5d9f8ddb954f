// Worlds through the suites and callbacks, with numbers worked out by hand.
#include <gtest/gtest.h>

#include "host/plugin_fixture.h"

namespace orv::test {
namespace {

const PF_Pixel8& At(const PF_EffectWorld& world, int x, int y)
{
    const char* row = static_cast<const char*>(world.data) + std::ptrdiff_t{world.rowbytes} * y;
    return reinterpret_cast<const PF_Pixel8*>(row)[x];
}

void ExpectPixel(const PF_Pixel8& pixel, int alpha, int red, int green, int blue)
{
    EXPECT_EQ(pixel.alpha, alpha);
    EXPECT_EQ(pixel.red, red);
    EXPECT_EQ(pixel.green, green);
    EXPECT_EQ(pixel.blue, blue);
}

// The input is 0x11 in every byte.
TEST(Worlds, AreCopiedFilledMultipliedAndLaidOverEachOther)
{
    Stage stage;
    AtEachFrame([&](double t, const renderQuality& quality) {
        const int width = quality.divisorX == 1 ? 200 : 100;
        const int height = quality.divisorX == 1 ? 100 : 34;
        stage.With(t, quality, [&](PF_InData& in_data, PF_ParamDef* params[]) {
            const Acquired<PF_WorldSuite2> worlds(in_data, kPFWorldSuite, 2);
            const Acquired<PF_FillMatteSuite2> matte(in_data, kPFFillMatteSuite, 2);
            const Acquired<PF_WorldTransformSuite1> transform(in_data, kPFWorldTransformSuite, 1);
            const PF_ProgPtr ref = in_data.effect_ref;
            PF_EffectWorld world{}, white{};
            ASSERT_EQ(worlds->PF_NewWorld(ref, width, height, 0, PF_PixelFormat_ARGB32, &world), 0);
            ASSERT_EQ(worlds->PF_NewWorld(ref, 2, 2, 1, PF_PixelFormat_ARGB32, &white), 0);
            EXPECT_EQ(PF_COPY(&in_data, &params[kInput]->u.ld, &world, nullptr, nullptr), 0);
            ExpectPixel(At(world, width - 1, height - 1), 17, 17, 17, 17);

            const PF_Rect patch{1, 1, 3, 2};
            const PF_Pixel brown{128, 200, 100, 50}, opaque{255, 255, 255, 255};
            EXPECT_EQ(PF_FILL(&in_data, &brown, &patch, &world), 0);
            EXPECT_EQ(PF_FILL(&in_data, &opaque, nullptr, &white), 0);
            // 200 x 128/255 = 100.4, 50.2, 25.1; 17 x 17/255 = 1.1. And back:
            // 199.2, 99.6, 49.8; 15.
            EXPECT_EQ(matte->premultiply(ref, 1, &world), 0);
            ExpectPixel(At(world, 2, 1), 128, 100, 50, 25);
            ExpectPixel(At(world, 0, 0), 17, 1, 1, 1);
            EXPECT_EQ(matte->premultiply(ref, 0, &world), 0);
            ExpectPixel(At(world, 2, 1), 128, 199, 100, 50);
            ExpectPixel(At(world, 3, 1), 17, 15, 15, 15);

            PF_CompositeMode mode{};
            mode.xfer = PF_Xfer_IN_FRONT;
            mode.opacity = 255;
            const auto lay = [&](int x, int y) {
                return transform->transfer_rect(ref, in_data.quality, PF_MF_Alpha_STRAIGHT,
                                                PF_Field_FRAME, nullptr, &white, &mode, nullptr, x,
                                                y, &world);
            };
            EXPECT_EQ(lay(width - 1, height - 1), 0);  // a quarter of it lies within
            ExpectPixel(At(world, width - 1, height - 1), 255, 255, 255, 255);
            ExpectPixel(At(world, width - 2, height - 1), 17, 15, 15, 15);
            mode.xfer = PF_Xfer_BEHIND;
            EXPECT_EQ(lay(0, 0), 0);
            // 15 x 17/255 + 255 x 238/255
            ExpectPixel(At(world, 0, 0), 255, 239, 239, 239);
            EXPECT_EQ(worlds->PF_DisposeWorld(ref, &white), 0);
            EXPECT_EQ(worlds->PF_DisposeWorld(ref, &world), 0);
        });
    });
}

TEST(Worlds, GiveTheirPixelsInTheirOwnFormatOnly)
{
    const PF_PixelFormat formats[] = {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                      PF_PixelFormat_ARGB128};
    Stage stage;
    AtEachFrame([&](double t, const renderQuality& quality) {
        stage.With(t, quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
            const Acquired<PF_WorldSuite2> worlds(in_data, kPFWorldSuite, 2);
            const Acquired<PF_PixelDataSuite1> data(in_data, kPFPixelDataSuite, 1);
            for (std::size_t k = 0; k < 3; ++k) {
                PF_EffectWorld world{};
                PF_PixelFormat format{};
                PF_Pixel8 *bytes = nullptr, *same = nullptr;
                PF_Pixel16* words = nullptr;
                PF_PixelFloat* floats = nullptr;
                ASSERT_EQ(worlds->PF_NewWorld(in_data.effect_ref, 3, 2, 1, formats[k], &world), 0);
                EXPECT_EQ(worlds->PF_GetPixelFormat(&world, &format), 0);
                EXPECT_EQ(format, formats[k]);
                EXPECT_EQ(PF_WORLD_IS_DEEP(&world) != 0, k != 0);
                EXPECT_EQ(data->get_pixel_data8(&world, nullptr, &bytes), 0);
                EXPECT_EQ(data->get_pixel_data16(&world, nullptr, &words), 0);
                EXPECT_EQ(data->get_pixel_data_float(&world, nullptr, &floats), 0);
                EXPECT_EQ(PF_GET_PIXEL_DATA8(&in_data, &world, nullptr, &same), 0);
                const void* const none = nullptr;
                EXPECT_EQ(bytes, k == 0 ? world.data : none);
                EXPECT_EQ(words, k == 1 ? world.data : none);
                EXPECT_EQ(floats, k == 2 ? world.data : none);
                EXPECT_EQ(same, bytes);
                EXPECT_EQ(worlds->PF_DisposeWorld(in_data.effect_ref, &world), 0);
            }
        });
    });
}

}  // namespace
}  // namespace orv::test
