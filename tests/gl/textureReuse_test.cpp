#include "gl/textureReuse.h"
#include "support/caseName.h"

#include <gtest/gtest.h>

namespace {

textureInputs Inputs()
{
    return {.downsample = 2,
            .rotation = 1,
            .cropLeft = 1.5,
            .cropRight = 2.5,
            .cropTop = 3.5,
            .cropBottom = 4.5,
            .contourInset = false,
            .pixelFormat = PF_PixelFormat_ARGB32,
            .worldWidth = 960,
            .worldHeight = 540};
}

struct changeCase {
    const char* name;
    void (*change)(textureInputs&);
};
class TextureInputs : public testing::TestWithParam<changeCase> {};

}  // namespace

TEST_P(TextureInputs, AnyChangeIsNoticedAndRemembered)
{
    SequenceData record;
    StoreInputs(Inputs(), record);
    ASSERT_EQ(CachedInputs(record), Inputs());

    textureInputs changed = Inputs();
    GetParam().change(changed);
    EXPECT_NE(changed, CachedInputs(record));
    StoreInputs(changed, record);
    EXPECT_EQ(changed, CachedInputs(record));
}
const changeCase kEach[] = {
    {"Downsample", [](textureInputs& i) { i.downsample = 1; }},
    {"Rotation", [](textureInputs& i) { i.rotation = 3; }},
    {"CropLeft", [](textureInputs& i) { i.cropLeft = 1.25; }},
    {"CropRight", [](textureInputs& i) { i.cropRight = 0; }},
    {"CropTop", [](textureInputs& i) { i.cropTop = 4.5; }},
    {"CropBottom", [](textureInputs& i) { i.cropBottom = 3.5; }},
    {"ContourMask", [](textureInputs& i) { i.contourInset = true; }},
    {"Depth", [](textureInputs& i) { i.pixelFormat = PF_PixelFormat_ARGB64; }},
    {"Width", [](textureInputs& i) { i.worldWidth = 961; }},
    {"Height", [](textureInputs& i) { i.worldHeight = 541; }}};
INSTANTIATE_TEST_SUITE_P(Each, TextureInputs, testing::ValuesIn(kEach), caseName{});

TEST(HasTextures, AsksForABackFaceOnlyWhenOneIsNamed)
{
    SequenceData record;
    record.slot = 2;
    EXPECT_FALSE(HasTextures(record, false));
    record.sourceTextures = {5, 6};
    EXPECT_FALSE(HasTextures(record, false)) << "the list ends before the slot";
    record.sourceTextures = {0, 0, 7};
    EXPECT_TRUE(HasTextures(record, false));
    EXPECT_FALSE(HasTextures(record, true));
    record.backTextures = {0, 0, 0};
    EXPECT_FALSE(HasTextures(record, true));
    record.backTextures[2] = 8;
    EXPECT_TRUE(HasTextures(record, true));
}
