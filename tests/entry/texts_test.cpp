// Strings, numbers in words, paths.
#include <gtest/gtest.h>

#include <limits>

#include "Util/intToString.h"
#include "Util/utf16.h"
#include "entry/KAL_Orv_Strings.h"
#include "entry/shaderPath.h"

namespace {

TEST(Strings, AreFoundByPositionNotById)
{
    EXPECT_STREQ(GetStringPtr(0), "");
    EXPECT_STREQ(GetStringPtr(1), "KAL Orv");
    EXPECT_STREQ(GetStringPtr(2), "Mask based distortion.");
    EXPECT_STREQ(GetStringPtr(3), "Error loading suite.");
    EXPECT_STREQ(GetStringPtr(4), "Error releasing suite.");
}

TEST(IntToString, WritesPlainDecimals)
{
    EXPECT_EQ(intToString(100), "100");
    EXPECT_EQ(intToString(-5), "-5");
    EXPECT_EQ(intToString(0), "0");
    EXPECT_EQ(intToString(std::numeric_limits<std::int32_t>::min()), "-2147483648");
}

struct pathCase {
    const char* name;
    const char* path;
    const char* result;
};
class ShaderPath : public testing::TestWithParam<pathCase> {};
TEST_P(ShaderPath, LiesBesideTheExecutable)
{
    EXPECT_EQ(CreateShaderPath(GetParam().path, "v.vert"), GetParam().result);
}
INSTANTIATE_TEST_SUITE_P(
    Paths, ShaderPath,
    testing::Values(
        pathCase{"Bundle", "Disk:Applications:Host:Plug-ins:KAL Orv.plugin:Contents:MacOS:KAL Orv",
                 "/Applications/Host/Plug-ins/KAL Orv.plugin/Contents/MacOS/v.vert"},
        pathCase{"OneFolder", "Disk:folder:KAL Orv", "/folder/v.vert"},
        pathCase{"VolumeRoot", "Disk:KAL Orv", "/v.vert"},
        pathCase{"NoVolume", ":opt:KAL Orv", "/opt/v.vert"},
        pathCase{"NoColon", "KAL Orv", "/v.vert"}, pathCase{"Nothing", "", "/v.vert"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(Utf16, BecomesUtf8)
{
    EXPECT_EQ(Utf8FromUtf16(reinterpret_cast<const A_UTF16Char*>(u"Größe: 1 € 𝄞")), "Größe: 1 € 𝄞");
    const A_UTF16Char broken[] = {'a', 0xD834, 'b', 0xDD1E, 0xD834, 0};
    EXPECT_EQ(Utf8FromUtf16(broken), "a\uFFFDb\uFFFD\uFFFD");
}

}  // namespace
