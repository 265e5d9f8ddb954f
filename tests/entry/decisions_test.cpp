// What the entry decides from plain values: render level, motion blur, slots.
#include <gtest/gtest.h>

#include <array>

#include "entry/motionBlurQuery.h"
#include "entry/records.h"
#include "entry/renderLevel.h"
#include "entry/tinyHost.h"
#include "support/caseName.h"

namespace {

struct levelCase {
    const char* name;
    int maxTextureSize;
    double frameEdge;
    int level;
};
class RenderLevel : public testing::TestWithParam<levelCase> {};
TEST_P(RenderLevel, IsTheSmallestThatExistsAndCoversTheFrame)
{
    EXPECT_EQ(ChooseRenderLevel(GetParam().maxTextureSize, GetParam().frameEdge), GetParam().level);
}
const levelCase kSizes[] = {{"HdNeedsTheLargest", 4096, 1920, 0},
                            {"HalfHdFitsTheNext", 4096, 960, 1},
                            {"LevelsBelow1024DoNotExist", 4096, 100, 1},
                            {"EdgeIsEnough", 8192, 2048, 1},
                            {"AHairTooMuch", 8192, 2048.5, 0},
                            {"Smallest", 8192, 1024, 2},
                            {"Middle", 16384, 2049, 1},
                            {"OnlyOneLevel", 2048, 100, 0},
                            {"NothingFits", 8192, 30000, 0}};
INSTANTIATE_TEST_SUITE_P(Sizes, RenderLevel, testing::ValuesIn(kSizes), caseName{});

struct blurCase {
    const char* name;
    motionBlurState state;
    bool usesShutter, blurs;
    double shutter;
};
constexpr A_Ratio kHalf{180, 360}, kQuarter{90, 360}, kMinusQuarter{-90, 360}, kUnknown{0, 0};

class MotionBlurChoice : public testing::TestWithParam<blurCase> {};
TEST_P(MotionBlurChoice, NeedsSwitchesSamplesAndShutter)
{
    const blurCase& c = GetParam();
    EXPECT_EQ(UsesShutter(c.state), c.usesShutter);
    EXPECT_EQ(BlursFrames(c.state), c.blurs);
    EXPECT_EQ(ShutterFrames(c.state), c.shutter);
}
const blurCase kStates[] = {
    {"AllOn", {3, kHalf, kMinusQuarter, 8, 8}, true, true, 0.25},
    {"OtherFlagsToo", {16, kHalf, kHalf, 9, 12}, true, true, 1.0},
    {"TwoSamples", {2, kHalf, kMinusQuarter, 8, 8}, false, false, 0.25},
    {"CompositionOff", {3, kHalf, kMinusQuarter, 7, 8}, false, false, 0.25},
    {"LayerOff", {3, kHalf, kMinusQuarter, 8, 7}, false, false, 0.25},
    // The host still has to know that the shutter matters: it may be animated.
    {"SumOfZero", {3, kQuarter, kMinusQuarter, 8, 8}, true, false, 0.0},
    {"AngleUnknown", {3, kUnknown, kHalf, 8, 8}, false, false, 0.0},
    {"PhaseUnknown", {3, kHalf, kUnknown, 8, 8}, false, false, 0.0},
    {"NothingKnown", {}, false, false, 0.0}};
INSTANTIATE_TEST_SUITE_P(States, MotionBlurChoice, testing::ValuesIn(kStates), caseName{});

class RecordsTest : public testing::Test {
protected:
    PF_Handle NewInstance()
    {
        PF_Handle handle = TinyHandleSuite().host_new_handle(sizeof(SequenceData));
        ConstructSequenceRecord(*handle, global_);
        return handle;
    }
    void EndInstance(PF_Handle handle)
    {
        DisposeSequenceHandle(TinyHandleSuite(), handle);
        GiveSlotBack(global_);
    }
    tinyHost host_;
    GlobalData global_;
};

TEST_F(RecordsTest, SlotsAreCountedUpAndGivenBack)
{
    const std::array<PF_Handle, 3> handles{NewInstance(), NewInstance(), NewInstance()};
    for (std::size_t i = 0; i < handles.size(); ++i) {
        EXPECT_EQ(SequenceRecord(handles[i])->slot, static_cast<int>(i) + 1);
    }
    EndInstance(handles[0]);
    PF_Handle fourth = NewInstance();
    EXPECT_EQ(SequenceRecord(fourth)->slot, 3);

    EndInstance(fourth);
    EndInstance(handles[1]);
    EndInstance(handles[2]);
    EXPECT_EQ(global_.slotCount, 1);
    GiveSlotBack(global_);
    EXPECT_EQ(global_.slotCount, 1);
    EXPECT_EQ(host_.handlesOut, 0);
}

TEST_F(RecordsTest, SlotsWrapAfter9999)
{
    global_.slotCount = 9999;
    PF_Handle last = NewInstance();
    PF_Handle wrapped = NewInstance();
    EXPECT_EQ(SequenceRecord(last)->slot, 9999);
    EXPECT_EQ(SequenceRecord(wrapped)->slot, 0);
    EndInstance(last);
    EndInstance(wrapped);
}

}  // namespace
