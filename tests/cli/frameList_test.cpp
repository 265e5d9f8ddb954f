#include "cli/frameList.h"

#include <string>

#include <gtest/gtest.h>

#include "cli/expectFailure.h"
#include "support/caseName.h"

namespace orv {
namespace {

struct listCase {
    const char* name;
    const char* text;
    std::vector<int> frames;
};

class FrameLists : public testing::TestWithParam<listCase> {};

TEST_P(FrameLists, GiveTheirFramesInOrder)
{
    EXPECT_EQ(ExpandFrames(ParseFrameList(GetParam().text), -5, 101), GetParam().frames);
}

const listCase kForms[] = {{"One", "7", {7}},
                           {"Range", "0-3", {0, 1, 2, 3}},
                           {"StepMeetsTheEnd", "0-100x25", {0, 25, 50, 75, 100}},
                           {"StepMissesTheEnd", "0-9x4", {0, 4, 8}},
                           {"Mixed", "1,3,8-9", {1, 3, 8, 9}},
                           {"Backwards", "3-0", {3, 2, 1, 0}},
                           {"BackwardsWithStep", "9-0x4", {9, 5, 1}},
                           {"BelowZero", "-5--3,-1-0", {-5, -4, -3, -1, 0}},
                           {"TwiceIsTwice", "2,2-3", {2, 2, 3}},
                           {"StepBeyondTheRange", "4-6x2000000000", {4}}};
INSTANTIATE_TEST_SUITE_P(Forms, FrameLists, testing::ValuesIn(kForms), caseName{});

TEST(FrameList, RefusesWhatItCannotRead)
{
    for (const char* item : {"", "a", "1-", "-", "1-2-3", "1x2", "1-2x", "1-9x0", "1-9x-2", " 1",
                             "1.5", "0x10", "99999999999"}) {
        EXPECT_EQ(FailureOf([&] { ParseFrameList(item); }),
                  std::string("2: --frames: '") + item +
                      "' is none of N, FIRST-LAST and FIRST-LASTxSTEP");
    }
    EXPECT_EQ(FailureOf([] { ParseFrameList("1,,2"); }),
              "2: --frames: '' is none of N, FIRST-LAST and FIRST-LASTxSTEP");
}

TEST(FrameList, RefusesFramesOutsideTheScene)
{
    const auto expand = [](const char* text) {
        return FailureOf([&] { ExpandFrames(ParseFrameList(text), 10, 20); });
    };
    EXPECT_EQ(expand("10-19"), "nothing");
    EXPECT_EQ(expand("9"), "2: --frames: 9 is outside the scene's frames 10 to 19");
    EXPECT_EQ(expand("12-20"), "2: --frames: 20 is outside the scene's frames 10 to 19");
}

TEST(FrameList, RefusesListsThatWouldFillTheMemory)
{
    std::string text = "0-999999";
    for (int k = 0; k < 1000; ++k) text += ",0-999999";
    EXPECT_EQ(FailureOf([&] { ExpandFrames(ParseFrameList(text), 0, 1000000); }),
              "2: --frames: more than 1000000 frames");
}

}  // namespace
}  // namespace orv
