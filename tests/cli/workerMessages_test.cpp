// What workers say, also when they have run wild.
#include <stdexcept>

#include <gtest/gtest.h>

#include "cli/workerMessages.h"

namespace orv {
namespace {

constexpr int kWidth = 3, kHeight = 2;

readyMessage Ready()
{
    runStart start;
    start.frames = {4, 7};
    start.format = {.width = kWidth, .height = kHeight, .depth = 8, .exr = exrPixel::half};
    start.composition = "caf\xe9";  // not UTF-8
    return {start};
}

TEST(WorkerMessages, ComeThroughWhereverTheyAreCut)
{
    frameAnswer answer;
    answer.figures.frame = 7;
    answer.figures.uploads = 3;
    answer.notes = {"a \"note\"\nof two lines"};
    answer.picture = image(kWidth, kHeight, 8);
    for (std::size_t i = 0; i < answer.picture.bytes.size(); ++i)
        answer.picture.bytes[i] = i % 2 == 0 ? '\n' : '{';
    std::string sent = MessageLine(Ready()) + MessageLine(frameMessage{answer});
    sent.append(answer.picture.bytes.begin(), answer.picture.bytes.end());
    sent += MessageLine(closedMessage{});

    MessageReader reader;
    std::vector<workerMessage> got;
    for (const char each : sent) {
        reader.Append({&each, 1});
        while (std::optional<workerMessage> message = reader.Next())
            got.push_back(std::move(*message));
    }
    ASSERT_EQ(got.size(), 3U);
    EXPECT_EQ(std::get<readyMessage>(got[0]).start.frames, (std::vector<int>{4, 7}));
    const frameAnswer& back = std::get<frameMessage>(got[1]).answer;
    EXPECT_EQ(back.figures.frame, 7);
    EXPECT_EQ(back.figures.uploads, 3);
    EXPECT_EQ(back.notes, answer.notes);
    EXPECT_EQ(back.picture, answer.picture);
    EXPECT_TRUE(std::holds_alternative<closedMessage>(got[2]));
}

class BrokenMessage : public testing::TestWithParam<const char*> {};
TEST_P(BrokenMessage, IsRefused)
{
    MessageReader reader;
    reader.Append(GetParam());
    EXPECT_THROW((void)reader.Next(), std::exception);
}
INSTANTIATE_TEST_SUITE_P(Lines, BrokenMessage,
                         testing::Values("\n", "{}\n", "[]\n", "{\"is\": 3}\n",
                                         "{\"is\": \"lunch\"}\n",
                                         "{\"is\": \"frame\", \"frame\": \"seven\"}\n",
                                         "{\"is\": \"failure\", \"kind\": 9, \"text\": \"\"}\n"));

TEST(WorkerMessages, ALineWithoutAnEndIsRefused)
{
    MessageReader reader;
    const std::string megabyte(std::size_t{1} << 20, '{');
    const auto readAll = [&] {
        for (int i = 0; i < 64; ++i) {
            reader.Append(megabyte);
            (void)reader.Next();
        }
    };
    EXPECT_THROW(readAll(), std::runtime_error);
}

TEST(WorkerMessages, APictureOfNoSizeIsRefused)
{
    readyMessage ready = Ready();
    ready.start.format.width = -1;
    MessageReader reader;
    reader.Append(MessageLine(ready));
    EXPECT_THROW((void)reader.Next(), std::runtime_error);
}

}  // namespace
}  // namespace orv
