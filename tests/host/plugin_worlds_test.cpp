// Worlds: layout, copying, filling, alpha.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "plugin/worldOperations.h"
#include "plugin/worlds.h"
#include "support/caseName.h"

namespace orv {
namespace {

PF_Pixel8& At8(const hostWorld& world, A_long x, A_long y)
{
    return reinterpret_cast<PF_Pixel8*>(world.row(y))[x];
}
PF_Pixel16& At16(const hostWorld& world, A_long x, A_long y)
{
    return reinterpret_cast<PF_Pixel16*>(world.row(y))[x];
}
std::vector<int> Values(const PF_Pixel8& p)
{
    return {p.alpha, p.red, p.green, p.blue};
}
std::vector<int> Values(const PF_Pixel16& p)
{
    return {p.alpha, p.red, p.green, p.blue};
}

class WorldLayout : public testing::TestWithParam<PF_PixelFormat> {};

TEST_P(WorldLayout, RowsArePaddedToWholePixelsAndWatched)
{
    WorldStore store;
    const A_long pixel = PixelBytes(GetParam());
    hostWorld* world = store.New(5, 3, GetParam(), true);
    ASSERT_NE(world, nullptr);
    EXPECT_GT(world->world.rowbytes, 5 * pixel);
    EXPECT_EQ(world->world.rowbytes % pixel, 0);
    EXPECT_NE(store.New(5, 3, GetParam(), true)->world.rowbytes, world->world.rowbytes);

    std::memset(world->row(2), 0xFF, static_cast<std::size_t>(5 * pixel));
    EXPECT_EQ(PaddingDamage(*world), "");
    const std::pair<std::uint8_t*, const char*> outsides[] = {
        {world->row(1) + 5 * pixel, "behind row 1"}, {world->row(3) - 1, "behind row 2"},
        {world->row(0) - 1, "before the first row"}, {world->row(-1), "before the first row"},
        {world->row(3), "behind the last row"},      {world->row(4) - 1, "behind the last row"}};
    for (const auto& [outside, place] : outsides) {
        const std::uint8_t before = *outside;
        *outside = static_cast<std::uint8_t>(before + 1);
        EXPECT_EQ(PaddingDamage(*world),
                  std::string("something was written outside the rows of a world of 5 x 3 "
                              "pixels: ") +
                      place);
        *outside = before;
    }
    EXPECT_EQ(PaddingDamage(*world), "");
}
INSTANTIATE_TEST_SUITE_P(Formats, WorldLayout,
                         testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                         PF_PixelFormat_ARGB128));

TEST(WorldStore, KnowsItsWorldsByTheirPixels)
{
    WorldStore store;
    hostWorld* world = store.New(4, 4, PF_PixelFormat_ARGB32, true);
    PF_EffectWorld copy = world->world;
    EXPECT_EQ(store.Find(&copy), world);
    copy.rowbytes += 4;
    EXPECT_EQ(store.Find(&copy), nullptr);
    PF_Pixel8 foreign{};
    copy = world->world;
    copy.data = &foreign;
    EXPECT_EQ(store.Find(&copy), nullptr);
    copy = world->world;
    store.Free(*world);
    EXPECT_EQ(store.Find(&copy), nullptr);
}

TEST(WorldStore, AClearWorldIsClearInMemoryThatWasUsed)
{
    WorldStore store;
    for (int k = 0; k < 3; ++k) {
        hostWorld* world = store.New(64, 64, PF_PixelFormat_ARGB32, true);
        for (A_long y = 0; y < 64; ++y) {
            for (A_long x = 0; x < 64; ++x) {
                ASSERT_EQ(At8(*world, x, y).green, 0);
                At8(*world, x, y).green = 77;
            }
        }
        ASSERT_EQ(PaddingDamage(*world), "");
        store.Free(*world);
    }
}

TEST(WorldChecksum, SeesEveryPixel)
{
    WorldStore store;
    hostWorld* world = store.New(7, 5, PF_PixelFormat_ARGB32, true);
    const std::uint64_t before = Checksum(*world);
    for (A_long y = 0; y < 5; ++y) {
        for (A_long x = 0; x < 7; ++x) {
            At8(*world, x, y).green = 1;
            EXPECT_NE(Checksum(*world), before) << x << ", " << y;
            At8(*world, x, y).green = 0;
        }
    }
    EXPECT_EQ(Checksum(*world), before);
}

// ---- copying

TEST(CopyWorld, EqualSizesCopyBytesBetweenRectangles)
{
    WorldStore store;
    hostWorld* from = store.New(4, 4, PF_PixelFormat_ARGB64, true);
    hostWorld* to = store.New(3, 3, PF_PixelFormat_ARGB64, true);
    At16(*from, 1, 2) = {0, 65535, 40000, 7};  // hidden and out of range: bytes all the same
    CopyWorld(*from, {1, 2, 3, 4}, *to, {1, 1, 3, 3});
    EXPECT_EQ(Values(At16(*to, 1, 1)), (std::vector{0, 65535, 40000, 7}));
    EXPECT_EQ(Values(At16(*to, 0, 0)), (std::vector{0, 0, 0, 0}));
}

TEST(CopyWorld, ShiftsWithinOneWorld)
{
    WorldStore store;
    hostWorld* world = store.New(1, 4, PF_PixelFormat_ARGB32, true);
    for (A_long y = 0; y < 4; ++y) At8(*world, 0, y).red = static_cast<A_u_char>(10 + y);
    CopyWorld(*world, {0, 0, 1, 3}, *world, {0, 1, 1, 4});
    for (A_long y = 1; y < 4; ++y) EXPECT_EQ(At8(*world, 0, y).red, 9 + y);
}

// Twice as wide: centres lie at -0.25, 0.25, 0.75, 1.25 of two source pixels.
TEST(CopyWorld, ScalesAtPixelCentresWithClampedEdges)
{
    WorldStore store;
    hostWorld* from = store.New(2, 1, PF_PixelFormat_ARGB32, true);
    hostWorld* to = store.New(4, 1, PF_PixelFormat_ARGB32, true);
    At8(*from, 0, 0) = {255, 0, 100, 8};
    At8(*from, 1, 0) = {255, 200, 0, 8};
    CopyWorld(*from, from->world.extent_hint, *to, to->world.extent_hint);
    EXPECT_EQ(Values(At8(*to, 0, 0)), (std::vector{255, 0, 100, 8}));
    EXPECT_EQ(Values(At8(*to, 1, 0)), (std::vector{255, 50, 75, 8}));
    EXPECT_EQ(Values(At8(*to, 2, 0)), (std::vector{255, 150, 25, 8}));
    EXPECT_EQ(Values(At8(*to, 3, 0)), (std::vector{255, 200, 0, 8}));
}

// Half as high: each centre lies between two rows.
TEST(CopyWorld, HiddenColoursDoNotBleedWhenScaled)
{
    WorldStore store;
    hostWorld* from = store.New(1, 2, PF_PixelFormat_ARGB32, true);
    hostWorld* to = store.New(1, 1, PF_PixelFormat_ARGB32, true);
    At8(*from, 0, 0) = {0, 0, 0, 0};
    At8(*from, 0, 1) = {200, 250, 100, 50};
    CopyWorld(*from, from->world.extent_hint, *to, to->world.extent_hint);
    EXPECT_EQ(Values(At8(*to, 0, 0)), (std::vector{100, 250, 100, 50}));
}

TEST(FillWorld, ScalesAnEightBitColour)
{
    WorldStore store;
    hostWorld* world = store.New(3, 2, PF_PixelFormat_ARGB64, true);
    FillWorld(*world, {1, 0, 2, 2}, {255, 128, 1, 0});
    // 128 and 1 of 255 on the scale of 32768: 16448.25 and 128.5.
    EXPECT_EQ(Values(At16(*world, 1, 1)), (std::vector{32768, 16448, 129, 0}));
    EXPECT_EQ(Values(At16(*world, 0, 1)), (std::vector{0, 0, 0, 0}));
    EXPECT_EQ(Values(At16(*world, 2, 0)), (std::vector{0, 0, 0, 0}));
}

// ---- alpha

TEST(Alpha, MultiplyAndDivideRoundToTheNearestAndClamp)
{
    WorldStore store;
    hostWorld* world = store.New(4, 1, PF_PixelFormat_ARGB32, true);
    At8(*world, 0, 0) = {51, 255, 128, 3};  // a fifth: 51, 25.6, 0.6
    At8(*world, 1, 0) = {0, 9, 9, 9};
    At8(*world, 2, 0) = {255, 9, 8, 7};
    At8(*world, 3, 0) = {18, 9, 17, 200};
    hostWorld* divided = store.New(4, 1, PF_PixelFormat_ARGB32, true);
    CopyWorld(*world, world->world.extent_hint, *divided, divided->world.extent_hint);

    Premultiply(*world);
    EXPECT_EQ(Values(At8(*world, 0, 0)), (std::vector{51, 51, 26, 1}));
    EXPECT_EQ(Values(At8(*world, 1, 0)), (std::vector{0, 9, 9, 9}));
    EXPECT_EQ(Values(At8(*world, 2, 0)), (std::vector{255, 9, 8, 7}));

    Unpremultiply(*divided);
    EXPECT_EQ(Values(At8(*divided, 1, 0)), (std::vector{0, 9, 9, 9}));
    // 9 * 255 / 18 = 127.5, 17 * 255 / 18 = 240.83, 200 is more than its alpha.
    EXPECT_EQ(Values(At8(*divided, 3, 0)), (std::vector{18, 128, 241, 255}));
}

TEST(Alpha, SixteenBitsCountTo32768)
{
    WorldStore store;
    hostWorld* world = store.New(1, 1, PF_PixelFormat_ARGB64, true);
    At16(*world, 0, 0) = {16384, 10001, 16384, 1};
    Unpremultiply(*world);
    EXPECT_EQ(Values(At16(*world, 0, 0)), (std::vector{16384, 20002, 32768, 2}));
    Premultiply(*world);
    EXPECT_EQ(Values(At16(*world, 0, 0)), (std::vector{16384, 10001, 16384, 1}));
}

struct transferCase {
    const char* name;
    PF_Pixel8 from, to;
    bool inFront;
    double opacity;
    PF_Pixel8 expected;
};
class Transfer : public testing::TestWithParam<transferCase> {};
TEST_P(Transfer, LaysOneOverTheOther)
{
    const transferCase& c = GetParam();
    WorldStore store;
    hostWorld* from = store.New(1, 1, PF_PixelFormat_ARGB32, true);
    hostWorld* to = store.New(1, 1, PF_PixelFormat_ARGB32, true);
    At8(*from, 0, 0) = c.from;
    At8(*to, 0, 0) = c.to;
    TransferWorld(*from, from->world.extent_hint, *to, 0, 0, c.inFront, c.opacity);
    EXPECT_EQ(Values(At8(*to, 0, 0)), Values(c.expected));
}
// Half over half, alphas 0.4 (102) and 0.8 (204): 0.4 + 0.8 * 0.6 = 0.88 (224.4); red of the upper
// counts 0.4 / 0.88: 100 * 0.4545 + 200 * 0.5455 = 154.5.
const transferCase kPixels[] = {
    {"OpaqueInFrontHides", {255, 1, 2, 3}, {200, 9, 9, 9}, true, 1, {255, 1, 2, 3}},
    {"TransparentInFrontLeaves", {0, 1, 2, 3}, {0, 9, 8, 7}, true, 1, {0, 9, 8, 7}},
    {"HalfInFrontMixes", {102, 100, 0, 0}, {204, 200, 0, 0}, true, 1, {224, 155, 0, 0}},
    {"BehindOpaqueLeaves", {255, 1, 2, 3}, {255, 9, 9, 9}, false, 1, {255, 9, 9, 9}},
    {"BehindNothingShows", {99, 1, 2, 3}, {0, 9, 9, 9}, false, 1, {99, 1, 2, 3}},
    {"NothingBehindNothingLeaves", {0, 1, 2, 3}, {0, 9, 8, 7}, false, 1, {0, 9, 8, 7}},
    {"HalfBehindMixes", {204, 200, 0, 0}, {102, 100, 0, 0}, false, 1, {224, 155, 0, 0}},
    {"OpacityThinsTheSource", {255, 100, 0, 0}, {204, 200, 0, 0}, true, 0.4, {224, 155, 0, 0}}};
INSTANTIATE_TEST_SUITE_P(Pixels, Transfer, testing::ValuesIn(kPixels), caseName{});

TEST(Transfer16, PartsOutsideTheTargetAreLeftOut)
{
    WorldStore store;
    hostWorld* from = store.New(3, 3, PF_PixelFormat_ARGB64, true);
    hostWorld* to = store.New(3, 3, PF_PixelFormat_ARGB64, true);
    for (A_long y = 0; y < 3; ++y) {
        for (A_long x = 0; x < 3; ++x) {
            At16(*from, x, y) = {32768, static_cast<A_u_short>(10 * y + x), 0, 0};
        }
    }
    TransferWorld(*from, {0, 0, 3, 3}, *to, -1, 2, true, 1.0);
    EXPECT_EQ(At16(*to, 0, 2).red, 1);
    EXPECT_EQ(At16(*to, 1, 2).red, 2);
    EXPECT_EQ(At16(*to, 2, 2).alpha, 0);
    EXPECT_EQ(At16(*to, 0, 1).alpha, 0);
    EXPECT_EQ(PaddingDamage(*to), "");
}

TEST(ChannelRange, OneTooMuchIsFound)
{
    WorldStore store;
    hostWorld* world = store.New(9, 9, PF_PixelFormat_ARGB64, true);
    At16(*world, 8, 8).blue = 32768;
    EXPECT_TRUE(ChannelsInRange(*world));
    At16(*world, 8, 8).blue = 32769;
    EXPECT_FALSE(ChannelsInRange(*world));
}

}  // namespace
}  // namespace orv
