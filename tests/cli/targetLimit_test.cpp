#include "cli/targetLimit.h"

#include <gtest/gtest.h>

#include "cli/expectFailure.h"
#include "cli/glInfo.h"

namespace orv {
namespace {

TEST(LargestTargetEdge, IsAQuarterOfWhatOpenGLGivesAndAtLeast2048)
{
    EXPECT_EQ(LargestTargetEdge(16384), 4096);
    EXPECT_EQ(LargestTargetEdge(32768), 8192);
    EXPECT_EQ(LargestTargetEdge(8192), 2048);
    EXPECT_EQ(LargestTargetEdge(4096), 2048);
    EXPECT_EQ(LargestTargetEdge(16384, /*maximum=*/true), 8192);
}

class CountingRunner final : public EffectRunner {
public:
    image Run(const shownComposition&, const layer&, int, double, const renderQuality&,
              LayerImages&, const image& input) override
    {
        ++runs;
        return input;
    }
    int runs = 0;
};

class NoImages final : public LayerImages {
public:
    const image& OwnPixels(const shownComposition&, const layer&, double) override
    {
        return nothing_;
    }
    std::array<std::uint8_t, 16> OwnPixelsState(const shownComposition&, const layer&,
                                                double) override
    {
        return {};
    }
    std::array<std::uint8_t, 16> InputState(const shownComposition&, const layer&, int,
                                            double) override
    {
        return {};
    }

private:
    image nothing_;
};

TEST(TargetLimit, RefusesOnlyFramesThatTheEffectWouldCutOff)
{
    effectDeclaration declaration{.matchName = "KAL_Orv", .displayName = "", .params = {}};
    declaration.params.resize(3);
    declaration.params[1].index = 1;
    declaration.params[1].name = "Mask";
    declaration.params[2].index = 2;
    declaration.params[2].name = "Allow maximum texture size";
    CountingRunner inner;
    TargetLimitRunner limited(inner, declaration);

    layer owner;
    owner.name = "wide";
    owner.effects.resize(2);
    for (effect& each : owner.effects) each.matchName = "KAL_Orv";
    owner.effects[0].values[1].constant = {1.0};
    NoImages images;
    const int edge = LargestTargetEdge(QueryGl().maxRectangleSize);
    const auto run = [&](int instance, int width) {
        return FailureOf(
            [&] { limited.Run({}, owner, instance, 0.0, {}, images, image(width, 2, 8)); });
    };

    EXPECT_EQ(run(0, edge), "nothing");
    EXPECT_EQ(run(1, edge + 1), "nothing") << "without a mask the input is copied";
    const std::string limit = std::to_string(edge);
    EXPECT_EQ(run(0, edge + 1), "1: layer 'wide': a frame of " + std::to_string(edge + 1) +
                                    "x2 does not fit the largest render target, " + limit + "x" +
                                    limit +
                                    " (\"Allow maximum texture size\" is off); render with "
                                    "--downsample, or --allow-truncated to cut it off");
    EXPECT_EQ(inner.runs, 2);
}

}  // namespace
}  // namespace orv
