// The comparator and the golden helper, which the other tests rely on.
#include <gtest/gtest.h>

#include "image/imageFile.h"
#include "support/golden.h"
#include "support/imageCompare.h"
#include "support/tempFolder.h"

namespace orv {
namespace {

/// 10 x 10 of one opaque grey: 400 values.
image Grey(std::uint8_t value)
{
    image picture(10, 10, 8);
    for (std::size_t i = 0; i < picture.bytes.size(); ++i) {
        picture.bytes[i] = i % 4 == 0 ? 255 : value;
    }
    return picture;
}

TEST(ImageCompare, FindsTheWorstValueAndCountsThoseAboveTheLimit)
{
    const image expected = Grey(100);
    image actual = expected;
    actual.row(3)[4 * 7 + 2] = 110;  // green of (7, 3)
    actual.row(9)[4 * 9 + 3] = 97;   // blue of (9, 9)

    const imageDifference found = Measure(actual, expected, 2.0 / 255.0);
    EXPECT_NEAR(found.worst, 10.0 / 255.0, 1e-12) << "rounding of a subtraction";
    EXPECT_EQ(found.x, 7);
    EXPECT_EQ(found.y, 3);
    EXPECT_EQ(found.channel, 2);
    EXPECT_DOUBLE_EQ(found.shareAbove, 2.0 / 400.0);
    EXPECT_DOUBLE_EQ(Measure(actual, expected, 5.0 / 255.0).shareAbove, 1.0 / 400.0);
}

TEST(ImageCompare, EachOfTheThreeNumbersDecides)
{
    const image expected = Grey(100);
    image actual = expected;
    actual.row(0)[1] = 108;

    const double share = 1.0 / 400.0;
    EXPECT_TRUE(ImagesMatch(actual, expected, {2.0 / 255.0, share, 9.0 / 255.0}));
    EXPECT_TRUE(ImagesMatch(actual, expected, {9.0 / 255.0, 0.0, 9.0 / 255.0}));
    EXPECT_FALSE(ImagesMatch(actual, expected, {2.0 / 255.0, share * 0.9, 9.0 / 255.0}));
    EXPECT_FALSE(ImagesMatch(actual, expected, {2.0 / 255.0, share, 7.0 / 255.0}));
    EXPECT_FALSE(ImagesMatch(actual, expected, kExact));
    EXPECT_TRUE(ImagesMatch(expected, expected, kExact));
}

TEST(ImageCompare, ColoursCountAsFarAsTheyAreSeen)
{
    image expected(1, 1, 16), actual(1, 1, 16);
    actual.row16(0)[1] = 32768;  // red, but transparent
    EXPECT_TRUE(ImagesMatch(actual, expected, kExact));
    expected.row16(0)[0] = actual.row16(0)[0] = 16384;
    EXPECT_DOUBLE_EQ(Measure(actual, expected, 0.0).worst, 0.5);
}

TEST(ImageCompare, OtherSizesAndDepthsDiffer)
{
    EXPECT_FALSE(ImagesMatch(image(2, 1, 8), image(1, 2, 8)));
    EXPECT_FALSE(ImagesMatch(image(1, 1, 8), image(1, 1, 16)));
}

TEST(Golden, ComparesReportsAndRewritesOnlyWhenTold)
{
    const TempFolder folder;
    goldenPlace place{folder.file("goldens"), folder.file("reports"), false};
    const auto reported = [&](const char* file) {
        return std::filesystem::exists(place.reports + "/" + file);
    };

    EXPECT_FALSE(MatchesGolden(Grey(50), "grey", {}, place)) << "there is none yet";
    EXPECT_FALSE(std::filesystem::exists(place.goldens));
    EXPECT_TRUE(reported("grey.actual.png"));

    place.rewrite = true;
    EXPECT_TRUE(MatchesGolden(Grey(50), "grey", {}, place));
    place.rewrite = false;
    EXPECT_TRUE(MatchesGolden(Grey(50), "grey", kExact, place));

    EXPECT_FALSE(reported("grey.difference.png"));
    EXPECT_FALSE(MatchesGolden(Grey(70), "grey", {}, place));
    EXPECT_TRUE(reported("grey.difference.png"));
    EXPECT_TRUE(MatchesGolden(Grey(50), "grey", kExact, place)) << "a failure changes no golden";
}

}  // namespace
}  // namespace orv
