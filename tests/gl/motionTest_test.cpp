#include "gl/motionTest.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

#include "gl/paramSampling.h"
#include "support/caseName.h"

namespace {

constexpr std::size_t kSamples = 4;

std::vector<frameInstant> StillSamples()
{
    frameInstant sample;
    sample.shape.flat = false;
    sample.shape.ribbon.posA.assign(40, {1, 2, 3});
    sample.shape.ribbon.pathPos.assign(40, 0.5);
    sample.shape.contour.tex.assign(30, {4, 5, 6});
    sample.camera.cameraMatrix.mat[3][2] = -700.0;
    return std::vector<frameInstant>(kSamples, sample);
}

struct motionCase {
    const char* name;
    bool moves;
    std::function<void(std::vector<frameInstant>&)> change;
};
class Motion : public testing::TestWithParam<motionCase> {};

TEST_P(Motion, IsFoundByExactComparison)
{
    std::vector<frameInstant> samples = StillSamples();
    GetParam().change(samples);
    EXPECT_EQ(FrameMoves(samples), GetParam().moves);
}
const motionCase kChanges[] = {
    {"None", false, [](auto&) {}},
    {"LastPointOfTheRibbon", true, [](auto& s) { s[1].shape.ribbon.posA.back().z += 1e-6f; }},
    {"LastPointOfTheContour", true, [](auto& s) { s[2].shape.contour.tex.back().x = 4.5f; }},
    {"MaskThatDisappears", true, [](auto& s) { s[0].shape.flat = true; }},
    {"MoreSteps", true, [](auto& s) { s[0].shape.ribbon.posA.emplace_back(); }},
    {"NotANumber", true,
     [](auto& s) {
         for (frameInstant& each : s)
             each.shape.ribbon.pathPos[7] = std::numeric_limits<double>::quiet_NaN();
     }},
    {"Camera", true, [](auto& s) { s[0].camera.cameraMatrix.mat[1][2] = 1e-12; }},
    // The camera is asked about at both ends only.
    {"CameraInBetween", false, [](auto& s) { s[1].camera.cameraMatrix.mat[3][0] = 5; }},
    {"Anchor", true, [](auto& s) { s[3].values.anchor.y = 1; }},
    {"Position", true, [](auto& s) { s[1].values.position.z = 1; }},
    {"FirstOfThePlacement", true, [](auto& s) { s[1].values.value[kScaleX] = 1; }},
    {"LastOfThePlacement", true, [](auto& s) { s[1].values.value[kCameraMode] = 1; }},
    // What shows in no mesh and no placement is not looked at.
    {"OtherValues", false, [](auto& s) { s[1].values.value[kRevealStart] = 1; }}};
INSTANTIATE_TEST_SUITE_P(Changes, Motion, testing::ValuesIn(kChanges), caseName{});

TEST(SampleTimes, RunFromTheShuttersEndBackToTheFrame)
{
    const auto times = [](A_long now, A_long step, int count, double shutter) {
        return SampleTimes(now, step, count, shutter);
    };
    // 180 degrees at 25 frames a second, in thousandths of a second.
    EXPECT_EQ(times(1000, 40, 3, 0.5), (std::vector<A_long>{1020, 1010, 1000}));
    // Cut, not rounded: 106.666, 103.333.
    EXPECT_EQ(times(100, 40, 4, 0.25), (std::vector<A_long>{110, 106, 103, 100}));
    // Phase beyond the angle: before the frame, cut towards 0 on both sides of it.
    EXPECT_EQ(times(100, 40, 5, -0.25), (std::vector<A_long>{90, 92, 95, 97, 100}));
    EXPECT_EQ(times(0, 10, 3, -0.25), (std::vector<A_long>{-2, -1, 0}));
    // 720 degrees reach two frames on; what no time can be stops at the last one.
    EXPECT_EQ(times(0, 10, 2, 2.0), (std::vector<A_long>{20, 0}));
    EXPECT_EQ(times(2'000'000'000, 500'000'000, 2, 1.0),
              (std::vector<A_long>{std::numeric_limits<A_long>::max(), 2'000'000'000}));
}

}  // namespace
