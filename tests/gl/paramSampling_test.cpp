// The values of the streams against those of the command's own parameters, under the real host.
#include "gl/paramSampling.h"

#include <gtest/gtest.h>

#include <functional>

#include "entry/instanceRig.h"

namespace {

/// Every kind of parameter, moving evenly from frame 0 to frame 10.
const std::string kMovingValues = R"(
    {"ix": 4, "v": {"k": [{"t": 0, "s": [0]}, {"t": 10, "s": [100]}]}},
    {"ix": 7, "v": {"k": [{"t": 0, "s": [50]}, {"t": 10, "s": [90]}]}},
    {"ix": 19, "v": {"k": [{"t": 0, "s": [-90]}, {"t": 10, "s": [270]}]}},
    {"ix": 279, "v": {"k": [{"t": 0, "s": [1], "h": 1}, {"t": 5, "s": [2], "h": 1}]}},
    {"ix": 35, "v": {"k": [{"t": 0, "s": [0], "h": 1}, {"t": 5, "s": [1], "h": 1}]}},
    {"ix": 254, "v": {"k": [{"t": 0, "s": [0, 0.2, 1]}, {"t": 10, "s": [0.4, 0.6, 0.2]}]}},
    {"ix": 268, "v": {"k": [{"t": 0, "s": [10, 20, 30]}, {"t": 10, "s": [20, 40, 60]}]}},
    {"ix": 269, "v": {"k": [{"t": 0, "s": [1, 2, -3]}, {"t": 10, "s": [2, 4, -6]}]}}, )";

void WithHost(InstanceRig& rig, const orv::effectFrame& frame,
              const std::function<void(const renderHost&)>& use)
{
    rig.host().WithFrame(frame, rig.Input(frame),
                         [&](PF_InData& in_data, PF_OutData& out_data, PF_ParamDef* params[]) {
                             AEGP_SuiteHandler suites(in_data.pica_basicP);
                             use({in_data, out_data, params, suites});
                         });
}

void ExpectSame(const paramSnapshot& sampled, const paramSnapshot& read)
{
    EXPECT_EQ(sampled.value, read.value);
    EXPECT_EQ(sampled.anchor, read.anchor);
    EXPECT_EQ(sampled.position, read.position);
    EXPECT_EQ(sampled.contourColor, read.contourColor);
}

TEST(SampledParams, AreAtTheFramesTimeWhatTheCommandWasGiven)
{
    InstanceRig rig(instanceScene{.values = kMovingValues}.json());
    for (const int divisor : {1, 2}) {
        // Frame 5: a colour of whole 255ths, an angle of whole 65536ths.
        WithHost(rig, rig.At(5.0, divisor), [&](const renderHost& host) {
            paramSnapshot sampled;
            const paramSnapshot read = ReadParams(host.in_data, host.params);
            ASSERT_EQ(SampleParams(host, host.in_data.current_time, sampled), PF_Err_NONE);
            EXPECT_EQ(sampled[kTwistAtStart], 90.0f);
            EXPECT_TRUE(sampled.composition3D());
            EXPECT_TRUE(sampled.on(kStretchAlongPath));
            ExpectSame(sampled, read);
        });
    }
}

TEST(SampledParams, AreThoseOfAnotherTime)
{
    InstanceRig rig(instanceScene{.values = kMovingValues}.json());
    WithHost(rig, rig.At(2.0, 2), [&](const renderHost& host) {
        paramSnapshot values = ReadParams(host.in_data, host.params);
        values.paths.mask = 77;
        // Two frames and a half on.
        const A_long time = host.in_data.current_time + host.in_data.time_step * 5 / 2;
        ASSERT_EQ(SampleParams(host, time, values), PF_Err_NONE);
        EXPECT_EQ(values[kSourceTime], 45.0f);
        EXPECT_EQ(values[kSourceXScale], 68.0f);
        EXPECT_EQ(values[kTwistAtStart], 72.0f);
        EXPECT_FALSE(values.composition3D());
        EXPECT_FALSE(values.on(kStretchAlongPath));
        // Colours are 0..1 and points at full resolution, as streams have them.
        EXPECT_EQ(values.contourColor, (point3{0.18f, 0.38f, 0.64f}));
        EXPECT_EQ(values.anchor, (point3{14.5f, 29.0f, 43.5f}));
        EXPECT_EQ(values.position, (point3{1.45f, 2.9f, -4.35f}));
        EXPECT_EQ(values.paths.mask, 77u);
    });
}

}  // namespace
