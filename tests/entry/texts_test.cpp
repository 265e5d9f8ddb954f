// Paths and texts in other encodings.
#include <gtest/gtest.h>

#include "Util/utf16.h"
#include "entry/shaderPath.h"
#include "support/caseName.h"

namespace {

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
const pathCase kPaths[] = {
    {"Bundle", "Disk:Applications:Host:Plug-ins:KAL Orv.plugin:Contents:MacOS:KAL Orv",
     "/Applications/Host/Plug-ins/KAL Orv.plugin/Contents/MacOS/v.vert"},
    {"OneFolder", "Disk:folder:KAL Orv", "/folder/v.vert"},
    {"VolumeRoot", "Disk:KAL Orv", "/v.vert"},
    {"NoVolume", ":opt:KAL Orv", "/opt/v.vert"},
    {"NoColon", "KAL Orv", "/v.vert"},
    {"Nothing", "", "/v.vert"}};
INSTANTIATE_TEST_SUITE_P(Paths, ShaderPath, testing::ValuesIn(kPaths), caseName{});

TEST(Utf16, BecomesUtf8)
{
    EXPECT_EQ(Utf8FromUtf16(reinterpret_cast<const A_UTF16Char*>(u"Größe: 1 € 𝄞")), "Größe: 1 € 𝄞");
    const A_UTF16Char broken[] = {'a', 0xD834, 'b', 0xDD1E, 0xD834, 0};
    EXPECT_EQ(Utf8FromUtf16(broken), "a\uFFFDb\uFFFD\uFFFD");
}

}  // namespace
