#include "cli/outputPattern.h"

#include <gtest/gtest.h>

#include "cli/expectFailure.h"
#include "support/caseName.h"

namespace orv {
namespace {

struct patternCase {
    const char* name;
    const char* pattern;
    int frame;
    const char* file;
};

class OutputPatterns : public testing::TestWithParam<patternCase> {};

TEST_P(OutputPatterns, PutTheFrameNumberIn)
{
    EXPECT_EQ(FrameFile(ParseOutputPattern(GetParam().pattern), GetParam().frame), GetParam().file);
}

const patternCase kForms[] = {{"Hashes", "out/f.####.png", 7, "out/f.0007.png"},
                              {"OneHash", "f#.exr", 12, "f12.exr"},
                              {"Percent", "f.%04d.png", 7, "f.0007.png"},
                              {"PercentWithoutWidth", "f%d.png", 7, "f7.png"},
                              {"WiderThanTheField", "f.##.png", 12345, "f.12345.png"},
                              {"BelowZero", "f.####.png", -5, "f.-005.png"},
                              {"OnlyTheNumber", "####.png", 3, "0003.png"},
                              {"HashesInTheFolderStay", "a##/%02d/f.#.png", 3, "a##/%02d/f.3.png"},
                              {"OtherPercentsStay", "50%.%s.##.png", 3, "50%.%s.03.png"},
                              {"NoNumber", "still.png", 3, "still.png"},
                              {"Video", "/v/clip.mov", 3, "/v/clip.mov"}};
INSTANTIATE_TEST_SUITE_P(Forms, OutputPatterns, testing::ValuesIn(kForms), caseName{});

TEST(OutputPattern, ChoosesTheFormatByExtension)
{
    EXPECT_EQ(ParseOutputPattern("a.#.png").kind, outputKind::png);
    EXPECT_EQ(ParseOutputPattern("a.#.exr").kind, outputKind::exr);
    EXPECT_EQ(ParseOutputPattern("A.#.PNG").kind, outputKind::png);
    for (const char* video : {"a.mp4", "a.mov", "a.webm", "a.gif", "A.MP4"})
        EXPECT_EQ(ParseOutputPattern(video).kind, outputKind::video) << video;
}

TEST(OutputPattern, RefusesWhatNamesNoFrames)
{
    const auto refusal = [](const char* text) {
        return FailureOf([&] { ParseOutputPattern(text); });
    };
    const std::string extension = "the extension must be .png, .exr, .mp4, .mov, .webm or .gif";
    EXPECT_EQ(refusal("f.####"), "2: output 'f.####': " + extension);
    EXPECT_EQ(refusal("f.tiff"), "2: output 'f.tiff': " + extension);
    EXPECT_EQ(refusal("out/"), "2: output 'out/': there is no file name");
    EXPECT_EQ(refusal(""), "2: output '': there is no file name");
    EXPECT_EQ(refusal("##.%04d.png"),
              "2: output '##.%04d.png': the frame number may stand there only once");
    EXPECT_EQ(refusal("f.%099d.png"),
              "2: output 'f.%099d.png': a frame number has at most 20 digits");
    EXPECT_EQ(refusal("f.####.mp4"),
              "2: output 'f.####.mp4': a video is one file and takes no frame number");
}

TEST(OutputPattern, DefaultTakesTheScenesNameAsItIs)
{
    EXPECT_EQ(FrameFile(DefaultOutputPattern("scenes/wave.json"), 3), "wave.0003.png");
    EXPECT_EQ(FrameFile(DefaultOutputPattern("a#b.%d.json"), 3), "a#b.%d.0003.png");
}

}  // namespace
}  // namespace orv
