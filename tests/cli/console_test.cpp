#include "cli/console.h"

#include <cstdlib>

#include <gtest/gtest.h>

namespace orv {
namespace {

/// What a console writes, in memory.
class Written {
public:
    Written() : file_(open_memstream(&text_, &size_)) {}
    ~Written()
    {
        std::fclose(file_);
        std::free(text_);
    }
    Written(const Written&) = delete;
    Written& operator=(const Written&) = delete;
    std::FILE* file() { return file_; }
    std::string text()
    {
        std::fflush(file_);
        return {text_, size_};
    }

private:
    char* text_ = nullptr;
    std::size_t size_ = 0;
    std::FILE* file_;
};

TEST(ProgressBar, TellsRateAndTimeLeft)
{
    EXPECT_EQ(ProgressBar(0, 48, 1.0, 10), "[..........] 0/48");
    // 12 in 4 s are 3 a second; 36 more take 12 s.
    EXPECT_EQ(ProgressBar(12, 48, 4.0, 10), "[##........] 12/48  3 frames/s  0:12 left");
    EXPECT_EQ(ProgressBar(48, 48, 96.0, 10), "[##########] 48/48  0.5 frames/s");
}

TEST(ClockText, GrowsAnHourFieldWhenNeeded)
{
    EXPECT_EQ(ClockText(0.0), "0:00");
    EXPECT_EQ(ClockText(6.2), "0:07");
    EXPECT_EQ(ClockText(750.0), "12:30");
    EXPECT_EQ(ClockText(11100.0), "3:05:00");
}

TEST(Console, WritesOneLineAFrameWithoutATerminal)
{
    Written written;
    Console console(written.file(), false, false);
    console.StartFrames(2);
    console.FrameDone(7, "f.0007.png", 0.25);
    console.Warn("odd");
    EXPECT_EQ(written.text(), "frame 7 (1/2) 0.250 s  f.0007.png\nwarning: odd\n");
}

TEST(Console, KeepsTheBarBelowMessagesOnATerminal)
{
    Written written;
    {
        Console console(written.file(), true, false);
        console.StartFrames(2);
        console.Warn("odd");
    }
    const std::string bar = "\r\x1b[K[..............................] 0/2";
    EXPECT_EQ(written.text(), bar + "\r\x1b[Kwarning: odd\n" + bar + "\n");
}

TEST(Console, QuietKeepsWarningsAndErrors)
{
    Written written;
    {
        Console console(written.file(), true, true);
        console.StartFrames(1);
        console.Note("unimportant");
        console.Warn("odd");
        console.Error("bad");
        console.FrameDone(0, "f.png", 1.0);
    }
    EXPECT_EQ(written.text(), "warning: odd\nerror: bad\n");
}

}  // namespace
}  // namespace orv
