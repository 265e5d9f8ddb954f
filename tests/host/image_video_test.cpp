// Videos: every frame arrives, interrupted ones play, failures are told.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "host/image_bytes.h"
#include "image/childProcess.h"
#include "image/video.h"
#include "support/caseName.h"
#include "support/tempFolder.h"

namespace orv {
namespace {

/// What ffprobe says of the first stream: "width,height,frames".
std::string Probe(const std::string& file)
{
    ChildProcess probe({"ffprobe", "-v", "error", "-select_streams", "v:0", "-count_frames",
                        "-show_entries", "stream=width,height,nb_read_frames", "-of", "csv=p=0",
                        file});
    EXPECT_EQ(probe.Finish(), 0) << probe.Errors();
    std::string text = probe.Output();
    while (!text.empty() && (text.back() == '\n' || text.back() == ',')) text.pop_back();
    return text;
}

/// The first frame as 8-bit R, G, B, A.
byteList FirstFrame(const std::string& file)
{
    ChildProcess decode({"ffmpeg", "-v", "error", "-nostdin", "-i", file, "-frames:v", "1", "-vf",
                         "scale=in_color_matrix=bt709:out_color_matrix=bt709", "-f", "rawvideo",
                         "-pix_fmt", "rgba", "pipe:1"});
    EXPECT_EQ(decode.Finish(), 0) << decode.Errors();
    const std::string bytes = decode.Output();
    return {bytes.begin(), bytes.end()};
}

image Filled(int width, int height, int depth, const std::array<int, 4>& argb)
{
    image picture(width, height, depth);
    for (std::size_t i = 0; i < picture.bytes.size() / (picture.pixelBytes() / 4); ++i) {
        if (depth == 16) {
            picture.row16(0)[i] = static_cast<std::uint16_t>(argb[i % 4]);
        } else {
            picture.row(0)[i] = static_cast<std::uint8_t>(argb[i % 4]);
        }
    }
    return picture;
}

struct videoCase {
    const char* name;
    const char* file;
    int depth;
    const char* probed;
    std::array<int, 4> rgba;  ///< of half-transparent orange; GIF and MP4 have no such alpha
    bool alpha;
};
class Videos : public testing::TestWithParam<videoCase> {};
TEST_P(Videos, HoldEveryFrameInItsColours)
{
    const videoCase& c = GetParam();
    const TempFolder folder;
    const std::string file = folder.file(c.file);
    EXPECT_TRUE(IsVideoFile(file));
    EXPECT_EQ(VideoKeepsAlpha(file), c.alpha);

    VideoWriter writer(file, 33, 21, c.depth, 29.97);
    const image frame = c.depth == 16 ? Filled(33, 21, 16, {16448, 32768, 16448, 0})
                                      : Filled(33, 21, 8, {128, 255, 128, 0});
    for (int i = 0; i < 5; ++i) writer.Add(frame);
    writer.Finish();

    EXPECT_EQ(Probe(file), c.probed);
    EXPECT_EQ(folder.fileCount(), 1) << "the partial file has become the video";
    const byteList pixels = FirstFrame(file);
    ASSERT_GE(pixels.size(), 33U * 21U * 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        // lossy, through luminance and chrominance
        EXPECT_NEAR(pixels[4 * 5 + i], c.rgba[i], 6) << "channel " << i;
    }
}
const videoCase kKinds[] = {{"Mp4", "a.mp4", 8, "34,22,5", {128, 64, 0, 255}, false},
                            {"Mp4Deep", "a.MP4", 16, "34,22,5", {128, 64, 0, 255}, false},
                            {"Mov", "a.mov", 16, "34,22,5", {255, 128, 0, 128}, true},
                            {"MovPlain", "a.mov", 8, "34,22,5", {255, 128, 0, 128}, true},
                            {"Gif", "a.gif", 8, "33,21,5", {255, 128, 0, 255}, true}};
INSTANTIATE_TEST_SUITE_P(Kinds, Videos, testing::ValuesIn(kKinds), caseName{});

TEST(Video, WebmHoldsEveryFrame)
{
    const TempFolder folder;
    VideoWriter writer(folder.file("a.webm"), 32, 20, 8, 25.0);
    for (int i = 0; i < 3; ++i) writer.Add(Filled(32, 20, 8, {255, 0, 0, i * 100}));
    writer.Finish();
    EXPECT_EQ(Probe(folder.file("a.webm")), "32,20,3");
    EXPECT_TRUE(VideoKeepsAlpha("a.webm"));
}

TEST(Video, InterruptedOnesKeepTheirPartialNameAndPlay)
{
    const TempFolder folder;
    {
        VideoWriter writer(folder.file("a.mp4"), 32, 20, 8, 25.0);
        for (int i = 0; i < 4; ++i) writer.Add(Filled(32, 20, 8, {255, 0, 0, 200}));
    }
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.mp4")));
    EXPECT_EQ(Probe(folder.file("a.partial.mp4")), "32,20,4");

    // without a frame nothing is worth keeping
    {
        const VideoWriter writer(folder.file("b.mp4"), 32, 20, 8, 25.0);
    }
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(Video, OneRunAtATimeWritesAFile)
{
    const TempFolder folder;
    VideoWriter first(folder.file("a.gif"), 8, 8, 8, 10.0);
    EXPECT_EQ(
        FailureText(failureKind::output, [&] { VideoWriter(folder.file("a.gif"), 8, 8, 8, 10.0); }),
        folder.file("a.gif") + ": cannot be written: another run is writing " +
            folder.file("a.partial.gif"));
    first.Add(Filled(8, 8, 8, {255, 1, 2, 3}));
    first.Finish();
    EXPECT_EQ(Probe(folder.file("a.gif")), "8,8,1");
}

/// PATH leads to a folder of ours for the test's duration.
class SearchPath {
public:
    explicit SearchPath(const std::string& folder) : before_(std::getenv("PATH"))
    {
        ::setenv("PATH", folder.c_str(), 1);
    }
    ~SearchPath() { ::setenv("PATH", before_.c_str(), 1); }
    SearchPath(const SearchPath&) = delete;
    SearchPath& operator=(const SearchPath&) = delete;

private:
    std::string before_;
};

void WriteProgram(const std::string& file, const std::string& text)
{
    WriteWholeFile(file, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}

TEST(Video, AMissingEncoderIsNamed)
{
    const TempFolder folder;
    const SearchPath nothing(folder.path().string());
    EXPECT_EQ(
        FailureText(failureKind::output, [&] { VideoWriter(folder.file("a.mp4"), 8, 8, 8, 10.0); }),
        folder.file("a.mp4") +
            ": cannot be written: the program ffmpeg, which encodes videos, is not "
            "installed");
    EXPECT_EQ(folder.fileCount(), 0);
}

TEST(Video, AnEncoderThatDiesOrLosesFramesIsAFailure)
{
    const TempFolder folder;
    const std::string file = folder.file("a.mp4");
    const image frame = Filled(512, 512, 8, {255, 0, 0, 0});

    // It ends without reading: sending raises no signal.
    WriteProgram(folder.file("ffmpeg"), "#!/bin/sh\necho 'disk on fire' >&2\nexit 3\n");
    const SearchPath ours(folder.path().string());
    EXPECT_EQ(FailureText(failureKind::output,
                          [&] {
                              VideoWriter writer(file, 512, 512, 8, 10.0);
                              for (int i = 0; i < 100; ++i) writer.Add(frame);
                          }),
              file + ": cannot be written: ffmpeg stopped early (exit code 3): disk on fire");
    EXPECT_EQ(folder.fileCount(), 1) << "nothing stays beside the program";

    // It reads everything and says that it encoded one frame only.
    WriteProgram(folder.file("ffmpeg"),
                 "#!/bin/sh\nwhile read -r line; do :; done\necho frame=1\nexit 0\n");
    VideoWriter writer(file, 512, 512, 8, 10.0);
    writer.Add(frame);
    writer.Add(frame);
    EXPECT_EQ(FailureText(failureKind::output, [&] { writer.Finish(); }),
              file + ": cannot be written: ffmpeg wrote 1 frames of 2");
    EXPECT_EQ(folder.fileCount(), 1);
}

}  // namespace
}  // namespace orv
