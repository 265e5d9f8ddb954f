// Commands that need neither a project nor GL.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "entry/KAL_Orv.h"
#include "entry/tinyHost.h"

namespace {

class DispatchTest : public testing::Test {
protected:
    PF_Err Send(PF_Cmd cmd)
    {
        return EntryPointFunc(cmd, &host_.in_data, &host_.out_data, nullptr, nullptr, nullptr);
    }
    tinyHost host_;
};

TEST_F(DispatchTest, UnknownCommandsSucceedAndChangeNothing)
{
    std::memset(&host_.out_data, 0x5A, sizeof host_.out_data);
    const PF_OutData before = host_.out_data;
    for (const PF_Cmd cmd : {-1, 2, 7, 9, 12, 15, 16, 17, 19, 100}) {
        EXPECT_EQ(Send(cmd), PF_Err_NONE) << cmd;
        EXPECT_EQ(std::memcmp(&host_.out_data, &before, sizeof before), 0) << cmd;
    }
    EXPECT_TRUE(host_.acquired.empty());
}

TEST_F(DispatchTest, AMissingSuiteFailsTheCommand)
{
    host_.missing = {"PF ANSI Suite", 1};
    EXPECT_EQ(Send(PF_Cmd_ABOUT), PF_Err_BAD_CALLBACK_PARAM);
    host_.in_data.pica_basicP = nullptr;
    EXPECT_EQ(Send(PF_Cmd_GLOBAL_SETUP), PF_Err_BAD_CALLBACK_PARAM);
}

TEST_F(DispatchTest, AnInstanceWithoutARecordIsNotDrawn)
{
    std::array<std::uint8_t, 16> pixels{};
    pixels.fill(77);
    PF_LayerDef output{};
    output.data = pixels.data();
    output.rowbytes = 8;
    output.width = output.height = 2;
    EXPECT_EQ(Send(PF_Cmd_FRAME_SETUP), PF_Err_NONE);
    EXPECT_EQ(
        EntryPointFunc(PF_Cmd_RENDER, &host_.in_data, &host_.out_data, nullptr, &output, nullptr),
        PF_Err_NONE);
    for (const std::uint8_t value : pixels) EXPECT_EQ(value, 77);
    EXPECT_STREQ(host_.out_data.return_msg, "");
}

}  // namespace
