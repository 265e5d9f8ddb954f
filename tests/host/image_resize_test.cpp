// Other depths, other sizes, rows over threads.
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

#include "host/image_bytes.h"
#include "image/imageFile.h"
#include "image/parallel.h"

namespace orv {
namespace {

TEST(ConvertDepth, IsToTheNearestAndComesBack)
{
    image plain(64, 1, 8);
    for (std::size_t i = 0; i < 256; ++i) plain.bytes[i] = static_cast<std::uint8_t>(i);
    const image deep = ConvertDepth(plain, 16);
    EXPECT_EQ(deep.row16(0)[0], 0);
    EXPECT_EQ(deep.row16(0)[1], 129) << "32768/255 = 128.502";
    EXPECT_EQ(deep.row16(0)[255], 32768);
    EXPECT_EQ(ConvertDepth(deep, 8), plain);
    EXPECT_EQ(ConvertDepth(Row(16, {64, 65, 16384, 32768}), 8), Row(8, {0, 1, 128, 255}))
        << "64 is 0.498 of a step";
}

TEST(PreviewImage, IsTheMeanWeightedByAlpha)
{
    // 3 x 2 at divisor 2: a whole cell and one that has only a column.
    image source(3, 2, 8);
    const std::uint8_t top[12] = {255, 100, 0, 0, 0, 255, 255, 255, 200, 7, 8, 9};
    const std::uint8_t bottom[12] = {255, 50, 0, 0, 0, 255, 255, 255, 100, 7, 8, 9};
    std::copy(std::begin(top), std::end(top), source.row(0));
    std::copy(std::begin(bottom), std::end(bottom), source.row(1));
    // alpha (255 + 0 + 255 + 0)/4 = 127.5; red (100 + 50)/2; transparent white counts nothing
    EXPECT_EQ(PreviewImage(source, 2, 2), Row(8, {128, 75, 0, 0, 150, 7, 8, 9}));
    EXPECT_EQ(PreviewImage(source, 1, 1), source);
    const image wide = PreviewImage(source, 1, 2);
    EXPECT_EQ(wide.width, 3);
    EXPECT_EQ(wide.height, 1);
}

TEST(PreviewImage, KeepsTheMeanOfSixteenBits)
{
    EXPECT_EQ(PreviewImage(Row(16, {32768, 0, 1, 32768, 32768, 32768, 2, 32767}), 2, 1),
              Row(16, {32768, 16384, 2, 32768}));
}

TEST(FitImage, CentresAndKeepsTheAspect)
{
    // 2 x 1 into 8 x 8: scaled by 4 to 8 x 4, rows 2 to 5
    const image fitted = FitImage(Row(8, {255, 40, 50, 60, 255, 40, 50, 60}), 8, 8);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            const std::uint8_t* p = fitted.row(y) + std::ptrdiff_t{4} * x;
            const bool inside = y >= 2 && y < 6;
            EXPECT_EQ(p[0], inside ? 255 : 0) << x << ", " << y;
            EXPECT_EQ(p[2], inside ? 50 : 0) << x << ", " << y;
        }
    }
    const image same = Noise(5, 4, 16, 2);
    EXPECT_EQ(FitImage(same, 5, 4), same);
}

TEST(FitImage, InterpolatesLinearlyAndAveragesWhenSmaller)
{
    // 2 -> 4: centres at -0.25, 0.25, 0.75, 1.25 of the source, clamped at its ends
    EXPECT_EQ(FitImage(Row(8, {255, 0, 0, 0, 255, 200, 0, 0}), 4, 2).row(0)[4 * 1 + 1], 50);
    // 4 -> 2: a triangle 2 wide to either side, at the left edge over pixels 0, 1, 2 with the
    // weights 3/4, 3/4, 1/4 of distances 0.5, 0.5, 1.5: (3 x 0 + 3 x 0 + 1 x 140)/7 = 20
    EXPECT_EQ(FitImage(Row(8, {255, 0, 0, 0, 255, 0, 0, 0, 255, 140, 0, 0, 255, 140, 0, 0}), 2, 1)
                  .row(0)[1],
              20);
}

TEST(ParallelRows, CoversEachRowOnceWhateverTheWorkers)
{
    for (const int count : {0, 1, 2, 7, 64, 1001}) {
        std::vector<std::atomic<int>> visits(static_cast<std::size_t>(count));
        ParallelRows(count, 1, [&](int worker, int begin, int end) {
            EXPECT_LT(worker, WorkerCount(count, 1));
            for (int i = begin; i < end; ++i) ++visits[static_cast<std::size_t>(i)];
        });
        for (const auto& each : visits) EXPECT_EQ(each, 1) << "of " << count;
    }
    EXPECT_EQ(WorkerCount(10, 100), 1);
}

TEST(ParallelRows, ThrowsWhatTheLowestWorkerThrew)
{
    const auto failing = [](int worker, int, int) {
        throw std::runtime_error("worker " + std::to_string(worker));
    };
    try {
        ParallelRows(1000, 1, failing);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "worker 0");
    }
}

}  // namespace
}  // namespace orv
