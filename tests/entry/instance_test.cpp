// The life of the module and of an instance under the real host.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "entry/instanceRig.h"
#include "entry/records.h"
#include "entry/renderLevel.h"
#include "gl/GL_base.h"
#include "support/caseName.h"

namespace {

using AESDK_OpenGL::S_EffectCommonData;

constexpr const char* kMotionBlur = R"("mb": {"sa": 180, "sp": -90, "spf": 3}, )";
constexpr const char* kBlurredLayer = R"("mb": true, )";
constexpr const char* kMode3D = R"({"ix": 279, "v": {"k": 2}}, )";
/// "Mask" stays unset: a frame is a copy of its input, without any drawing.
const instanceScene kPlain{};

const std::pair<std::string, std::string> kHostOpenGL{"AE_OpenGL", "Enabled2"};

struct preferenceCase {
    const char* name;
    int apiMajor;
    orv::preferenceStore before, after;
};
class HostOpenGLPreference : public testing::TestWithParam<preferenceCase> {};
TEST_P(HostOpenGLPreference, IsTurnedOffInOldHostsThatHaveIt)
{
    orv::pluginOptions options;
    options.apiMajor = GetParam().apiMajor;
    options.preferences = GetParam().before;
    InstanceRig rig(kPlain.json(), options);
    EXPECT_EQ(rig.host().preferences(), GetParam().after);
}
const preferenceCase kHosts[] = {{"Old", 10, {{kHostOpenGL, 1}}, {{kHostOpenGL, 0}}},
                                 {"OldWithoutTheKey", 10, {}, {}},
                                 {"New", 11, {{kHostOpenGL, 1}}, {{kHostOpenGL, 1}}}};
INSTANTIATE_TEST_SUITE_P(Hosts, HostOpenGLPreference, testing::ValuesIn(kHosts), caseName{});

TEST(Lifecycle, ResetUpDiscardsWhatAProjectHeld)
{
    const std::vector<std::uint8_t> saved(400, 0xA5);
    for (const std::vector<std::uint8_t>& bytes : {saved, std::vector<std::uint8_t>{}}) {
        InstanceRig rig(kPlain.json());
        ASSERT_EQ(rig.Send(PF_Cmd_SEQUENCE_SETUP), PF_Err_NONE);
        rig.host().ReplaceSequenceData(rig.At(0), bytes);
        EXPECT_EQ(rig.Send(PF_Cmd_SEQUENCE_RESETUP), PF_Err_NONE);
        EXPECT_EQ(rig.Send(PF_Cmd_FRAME_SETUP), PF_Err_NONE);
        EXPECT_EQ(rig.Send(PF_Cmd_RENDER), PF_Err_NONE);
        EXPECT_NO_THROW(rig.host().Close());
    }
}

TEST(Lifecycle, BytesOfAnotherInTheRecordsPlaceAreNoRecord)
{
    InstanceRig rig(kPlain.json());
    ASSERT_EQ(rig.Send(PF_Cmd_SEQUENCE_SETUP), PF_Err_NONE);
    rig.With(rig.At(0), [](PF_InData& in_data) {
        ASSERT_NE(SequenceRecord(in_data.sequence_data), nullptr);
        std::memset(*in_data.sequence_data, 0xA5, sizeof(SequenceData));
    });
    EXPECT_EQ(rig.Send(PF_Cmd_SEQUENCE_RESETUP), PF_Err_NONE);
    rig.With(rig.At(0),
             [](PF_InData& in_data) { EXPECT_NE(SequenceRecord(in_data.sequence_data), nullptr); });
    EXPECT_NO_THROW(rig.host().Close());
}

TEST(Lifecycle, TheRecordHoldsLevelAndTexturesUntilSetDown)
{
    InstanceRig rig(kPlain.json());
    ASSERT_EQ(rig.Send(PF_Cmd_SEQUENCE_SETUP), PF_Err_NONE);
    ASSERT_EQ(rig.Send(PF_Cmd_FRAME_SETUP), PF_Err_NONE);

    const AESDK_OpenGL::SaveRestoreOGLContext before;
    AESDK_OpenGL::SetContext(S_EffectCommonData.context);
    std::array<GLuint, 2> textures{};
    glGenTextures(2, textures.data());
    for (const GLuint name : textures) glBindTexture(GL_TEXTURE_2D, name);
    rig.With(rig.At(0), [&](PF_InData& in_data) {
        SequenceData* record = SequenceRecord(in_data.sequence_data);
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(record->slot, 1);
        EXPECT_EQ(record->renderLevel, ChooseRenderLevel(S_EffectCommonData.maxTextureSize, 200));
        record->sourceTextures = {textures[0]};
        record->backTextures = {textures[1]};
    });

    EXPECT_EQ(rig.Send(PF_Cmd_SEQUENCE_SETDOWN), PF_Err_NONE);
    AESDK_OpenGL::SetContext(S_EffectCommonData.context);
    for (const GLuint name : textures) EXPECT_FALSE(glIsTexture(name));
}

struct flagCase {
    const char* name;
    instanceScene scene;
    bool camera, shutter;
};
class DynamicFlags : public testing::TestWithParam<flagCase> {};
TEST_P(DynamicFlags, FollowCameraModeAndMotionBlur)
{
    InstanceRig rig(GetParam().scene.json());
    ASSERT_EQ(rig.Send(PF_Cmd_SEQUENCE_SETUP), PF_Err_NONE);
    ASSERT_EQ(rig.Send(PF_Cmd_QUERY_DYNAMIC_FLAGS), PF_Err_NONE);
    const auto [flags, flags2] = rig.host().Flags(rig.At(0));
    EXPECT_EQ(flags, GetParam().shutter ? 0x06080000 : 0x06000000);
    EXPECT_EQ(flags2, GetParam().camera ? 7 : 1);
}
const flagCase kScenes[] = {
    {"Plain", kPlain, false, false},
    {"Composition3D", {.values = kMode3D}, true, false},
    {"Blurred", {.top = kMotionBlur, .onLayer = kBlurredLayer}, false, true},
    {"LayerSwitchOff", {.top = kMotionBlur}, false, false},
    {"TooFewSamples", {.top = R"("mb": {"spf": 2}, )", .onLayer = kBlurredLayer}, false, false},
    // The sum may change over time, so the host still has to know.
    {"ShutterSumZero",
     {.values = kMode3D, .top = R"("mb": {"sa": 90, "sp": -90}, )", .onLayer = kBlurredLayer},
     true,
     true}};
INSTANTIATE_TEST_SUITE_P(Scenes, DynamicFlags, testing::ValuesIn(kScenes), caseName{});

TEST(Commands, ReplaceARecordWithoutMemoryWhicheverHostCallFails)
{
    InstanceRig rig(kPlain.json());
    orv::callGate& gate = rig.host().gate();
    bool reached = true;
    for (std::int64_t failing = 1; reached; ++failing) {
        rig.host().ReplaceSequenceData(rig.At(0), {});
        gate.made = 0;
        gate.failOn = failing;
        EXPECT_NO_THROW((void)rig.Send(PF_Cmd_SEQUENCE_RESETUP))
            << "call " << failing << ", " << gate.failedCall;
        reached = gate.made >= failing;
        gate.failOn = 0;
        EXPECT_NO_THROW((void)rig.Send(PF_Cmd_SEQUENCE_SETDOWN));
    }
}

TEST(Commands, GiveEverythingBackWhicheverHostCallFails)
{
    // Send throws when the command leaves anything checked out.
    for (const PF_Cmd cmd : {PF_Cmd_SEQUENCE_RESETUP, PF_Cmd_QUERY_DYNAMIC_FLAGS, PF_Cmd_RENDER}) {
        InstanceRig rig(kPlain.json());
        ASSERT_EQ(rig.Send(PF_Cmd_SEQUENCE_SETUP), PF_Err_NONE);
        orv::callGate& gate = rig.host().gate();
        bool reached = true;
        for (std::int64_t failing = 1; reached; ++failing) {
            gate.made = 0;
            gate.failOn = failing;
            EXPECT_NO_THROW((void)rig.Send(cmd))
                << cmd << ", call " << failing << ", " << gate.failedCall;
            reached = gate.made >= failing;
        }
        gate.failOn = 0;
        EXPECT_NO_THROW(rig.host().Close()) << cmd;
    }
}

}  // namespace
