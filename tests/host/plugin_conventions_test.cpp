// What the host tells an effect, with numbers worked out by hand, at composition frames 10 and 12
// (layer frames 2.5 and 3.5: start 5, stretch 2) and at preview divisors 1 and (2, 3). Paths and
// worlds: plugin_path_test.cpp, plugin_worldSuites_test.cpp.
#include <gtest/gtest.h>

#include <cmath>

#include "host/plugin_fixture.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

struct commandCase {
    const char* name;
    double t;
    renderQuality quality;
    A_long currentTime;  ///< 512 ticks a frame
    A_long worldWidth, worldHeight;
};
class Commands : public testing::TestWithParam<commandCase> {};

TEST_P(Commands, TellTimesSizesAndWorlds)
{
    const commandCase& c = GetParam();
    Stage stage;
    stage.With(c.t, c.quality, [&](PF_InData& in_data, PF_ParamDef* params[]) {
        EXPECT_EQ(in_data.current_time, c.currentTime);
        EXPECT_EQ(in_data.time_step, 512);
        EXPECT_EQ(in_data.time_scale, 12800U);
        EXPECT_EQ(in_data.total_time, 25 * 512);  // 50 frames stretched to half as many
        EXPECT_EQ(in_data.width, 200);
        EXPECT_EQ(in_data.height, 100);
        EXPECT_EQ(in_data.downsample_x.num, 1);
        EXPECT_EQ(in_data.downsample_x.den, static_cast<A_u_long>(c.quality.divisorX));
        EXPECT_EQ(in_data.downsample_y.den, static_cast<A_u_long>(c.quality.divisorY));
        EXPECT_EQ(in_data.version.major, 13);
        EXPECT_EQ(in_data.num_params, kParamCount);
        EXPECT_EQ(in_data.extent_hint.right, c.worldWidth);
        EXPECT_EQ(in_data.extent_hint.bottom, c.worldHeight);

        const PF_LayerDef& input = params[kInput]->u.ld;
        EXPECT_EQ(input.width, c.worldWidth);
        EXPECT_EQ(input.height, c.worldHeight);
        EXPECT_GT(input.rowbytes, 4 * c.worldWidth);
        EXPECT_EQ(static_cast<const PF_Pixel8*>(input.data)->red, 0x11);
    });
}
const commandCase kTimes[] = {{"First", 10, kFull, 1280, 200, 100},
                              {"Later", 12, kFull, 1792, 200, 100},
                              {"FirstReduced", 10, kReduced, 1280, 100, 34},
                              {"LaterReduced", 12, kReduced, 1792, 100, 34}};
INSTANTIATE_TEST_SUITE_P(Times, Commands, testing::ValuesIn(kTimes), caseName{});

// ---- values

/// Keys at frames 0 and 20 everywhere, so that 10 is the middle and 12 three fifths.
void Animate(project& scene)
{
    std::map<int, property>& values = scene.compositions[0].layers[0].effects[0].values;
    values[kSource] = Constant({5});  // "banner"
    values[kAmount] = Linear({{0, {0}}, {20, {100}}});
    values[kCount] = Linear({{0, {0}}, {20, {9}}});
    values[kTurn] = Linear({{0, {-720}}, {20, {901}}});
    values[kChoice] = Linear({{0, {1}}, {11, {3}}});
    values[kSwitch] = Linear({{0, {0}}, {11, {1}}});
    values[kInk] = Linear({{0, {0, 1, 0.25, 1}}, {20, {1, 1, 0.25, 0}}});
    values[kPlace] = Linear({{0, {0, 30, 12}}, {20, {100, 30, 12}}});
    values[kMask] = Constant({2});
}

struct valueCase {
    const char* name;
    double t;
    renderQuality quality;
    double amount;
    A_long count;
    double turn;
    A_long choice, on;
    int red, alpha;  // of 255
    double x, y, z;
};
class Values : public testing::TestWithParam<valueCase> {
protected:
    static void Expect(const valueCase& c, PF_InData& in_data, PF_ParamDef* params[])
    {
        EXPECT_DOUBLE_EQ(params[kAmount]->u.fs_d.value, c.amount);
        EXPECT_EQ(params[kCount]->u.sd.value, c.count);
        EXPECT_EQ(params[kTurn]->u.ad.value, std::lround(c.turn * 65536.0));
        EXPECT_EQ(params[kChoice]->u.pd.value, c.choice);
        EXPECT_EQ(params[kSwitch]->u.bd.value, c.on);
        EXPECT_EQ(params[kInk]->u.cd.value.red, c.red);
        EXPECT_EQ(params[kInk]->u.cd.value.green, 255);
        EXPECT_EQ(params[kInk]->u.cd.value.blue, 64);  // 63.75
        EXPECT_EQ(params[kInk]->u.cd.value.alpha, c.alpha);
        EXPECT_DOUBLE_EQ(params[kPlace]->u.point3d_d.x_value, c.x);
        EXPECT_DOUBLE_EQ(params[kPlace]->u.point3d_d.y_value, c.y);
        EXPECT_DOUBLE_EQ(params[kPlace]->u.point3d_d.z_value, c.z);
        const Acquired<PF_PathQuerySuite1> paths(in_data, kPFPathQuerySuite, 1);
        PF_PathID first = 0, second = 0;
        EXPECT_EQ(paths->PF_PathInfo(in_data.effect_ref, 0, &first), 0);
        EXPECT_EQ(paths->PF_PathInfo(in_data.effect_ref, 1, &second), 0);
        EXPECT_EQ(params[kMask]->u.path_d.path_id, second);
        EXPECT_NE(first, second);
        EXPECT_NE(first, 0U);
    }
};

TEST_P(Values, FollowTheKeyFrames)
{
    Stage stage;
    Animate(stage.scene);
    stage.With(GetParam().t, GetParam().quality, [&](PF_InData& in_data, PF_ParamDef* params[]) {
        Expect(GetParam(), in_data, params);
    });
}

// The same instant asked for from another frame: 12 is one layer frame (512 ticks) after 10.
TEST_P(Values, AreTheSameWhenCheckedOutFromAnotherTime)
{
    Stage stage;
    Animate(stage.scene);
    stage.With(22 - GetParam().t, GetParam().quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
        const A_long time = GetParam().t == 10 ? 1280 : 1792;
        std::vector<PF_ParamDef> defs(kParamCount);
        std::vector<PF_ParamDef*> params;
        for (int index = 0; index < kParamCount; ++index) {
            params.push_back(&defs[static_cast<std::size_t>(index)]);
            if (index == kInput) continue;
            EXPECT_EQ(PF_CHECKOUT_PARAM(&in_data, index, time, 512, 12800, params.back()), 0);
        }
        Expect(GetParam(), in_data, params.data());
        for (int index = 1; index < kParamCount; ++index) {
            EXPECT_EQ(PF_CHECKIN_PARAM(&in_data, params[static_cast<std::size_t>(index)]), 0);
        }
    });
}

TEST_P(Values, AreStreamedAsAUserReadsThem)
{
    const valueCase& c = GetParam();
    Stage stage;
    Animate(stage.scene);
    stage.With(0, c.quality, [&](PF_InData& in_data, PF_ParamDef* params[]) {
        const Acquired<AEGP_PFInterfaceSuite1> effects(in_data, kAEGPPFInterfaceSuite, 1);
        const Acquired<AEGP_StreamSuite9> streams(in_data, kAEGPStreamSuite, 9);
        const Acquired<AEGP_EffectSuite3> effect3(in_data, kAEGPEffectSuite, 3);
        AEGP_EffectRefH effect = nullptr;
        ASSERT_EQ(effects->AEGP_GetNewEffectForEffect(0, in_data.effect_ref, &effect), 0);
        const auto value = [&](PF_ParamIndex index, AEGP_LTimeMode mode, A_Time time) {
            AEGP_StreamRefH stream = nullptr;
            AEGP_StreamValue2 got{};
            EXPECT_EQ(streams->AEGP_GetNewEffectStreamByIndex(0, effect, index, &stream), 0);
            EXPECT_EQ(streams->AEGP_GetNewStreamValue(0, stream, mode, &time, 0, &got), 0);
            const AEGP_StreamVal2 val = got.val;
            EXPECT_EQ(streams->AEGP_DisposeStreamValue(&got), 0);
            EXPECT_EQ(streams->AEGP_DisposeStream(stream), 0);
            return val;
        };
        const A_Time inLayer{c.t == 10 ? 1280 : 1792, 12800};
        const A_Time inComposition{static_cast<A_long>(c.t), 25};
        const auto layerTime = AEGP_LTimeMode_LayerTime, compTime = AEGP_LTimeMode_CompTime;
        EXPECT_DOUBLE_EQ(value(kAmount, layerTime, inLayer).one_d, c.amount);
        EXPECT_DOUBLE_EQ(value(kAmount, compTime, inComposition).one_d, c.amount);
        EXPECT_DOUBLE_EQ(value(kCount, layerTime, inLayer).one_d, c.count);
        EXPECT_DOUBLE_EQ(value(kTurn, layerTime, inLayer).one_d, c.turn);
        EXPECT_DOUBLE_EQ(value(kChoice, layerTime, inLayer).one_d, c.choice);
        EXPECT_DOUBLE_EQ(value(kSwitch, layerTime, inLayer).one_d, c.on);
        const AEGP_ColorVal ink = value(kInk, layerTime, inLayer).color;
        EXPECT_DOUBLE_EQ(ink.alphaF, c.t == 10 ? 0.5 : 0.4);
        EXPECT_DOUBLE_EQ(ink.redF, c.t == 10 ? 0.5 : 0.6);
        EXPECT_DOUBLE_EQ(ink.blueF, 0.25);
        const AEGP_ThreeDVal place = value(kPlace, layerTime, inLayer).three_d;
        EXPECT_DOUBLE_EQ(place.x, c.t == 10 ? 50 : 60);  // full resolution always
        EXPECT_DOUBLE_EQ(place.y, 30);
        EXPECT_DOUBLE_EQ(place.z, 12);
        EXPECT_EQ(value(kMask, layerTime, inLayer).mask_id,
                  static_cast<A_long>(params[kMask]->u.path_d.path_id));
        EXPECT_EQ(effect3->AEGP_DisposeEffect(effect), 0);
    });
}
const valueCase kValuesTimes[] = {
    {"First", 10, kFull, 50, 5, 90.5, 1, 0, 128, 128, 50, 30, 12},
    {"Later", 12, kFull, 60, 5, 252.6, 3, 1, 153, 102, 60, 30, 12},
    {"FirstReduced", 10, kReduced, 50, 5, 90.5, 1, 0, 128, 128, 25, 10, 6},
    {"LaterReduced", 12, kReduced, 60, 5, 252.6, 3, 1, 153, 102, 30, 10, 6}};
INSTANTIATE_TEST_SUITE_P(Times, Values, testing::ValuesIn(kValuesTimes), caseName{});

TEST(Defaults, StandWhereTheSceneSetsNothing)
{
    Stage stage;
    AtEachFrame([&](double t, const renderQuality& quality) {
        const bool full = quality.divisorX == 1;
        stage.With(t, quality, [&](PF_InData&, PF_ParamDef* params[]) {
            EXPECT_EQ(params[kAmount]->u.fs_d.value, 25.0);
            EXPECT_EQ(params[kChoice]->u.pd.value, 2);
            EXPECT_EQ(params[kInk]->u.cd.value.blue, 255);
            // Half of 200 x 100; a layer has no depth.
            EXPECT_DOUBLE_EQ(params[kPlace]->u.point3d_d.x_value, full ? 100.0 : 50.0);
            EXPECT_DOUBLE_EQ(params[kPlace]->u.point3d_d.y_value, full ? 50.0 : 50.0 / 3);
            EXPECT_EQ(params[kPlace]->u.point3d_d.z_value, 0.0);
            EXPECT_EQ(params[kMask]->u.path_d.path_id, 0U);
            EXPECT_EQ(params[kSource]->u.ld.data, nullptr);
            EXPECT_EQ(params[kSource]->u.ld.width, 0);
        });
    });
}

// With a stretch of 3 a whole frame of the composition is no whole tick of the layer.
TEST(Times, TheCommandsOwnTickMeansTheExactInstant)
{
    Stage stage;
    layer& wave = stage.scene.compositions[0].layers[0];
    wave.stretch = 3.0;  // frame 10 is layer frame 5 / 3: tick 853.33, given as 853
    wave.effects[0].values[kSwitch] = Linear({{0, {0}}, {10, {1}}});
    stage.With(10, kFull, [](PF_InData& in_data, PF_ParamDef*[]) {
        ASSERT_EQ(in_data.current_time, 853);
        for (const auto& [time, on] : {std::pair{853, 1}, std::pair{852, 0}}) {
            PF_ParamDef def{};
            EXPECT_EQ(PF_CHECKOUT_PARAM(&in_data, kSwitch, time, 512, 12800, &def), 0);
            EXPECT_EQ(def.u.bd.value, on) << time;
            EXPECT_EQ(PF_CHECKIN_PARAM(&in_data, &def), 0);
        }
        const Acquired<AEGP_PFInterfaceSuite1> times(in_data, kAEGPPFInterfaceSuite, 1);
        A_Time composition{};
        EXPECT_EQ(times->AEGP_ConvertEffectToCompTime(in_data.effect_ref, 853, 12800, &composition),
                  0);
        EXPECT_EQ(composition.value, 5120);
        EXPECT_EQ(composition.scale, 12800U);
    });
}

// ---- layers

void ExpectWorld(const PF_LayerDef& world, int width, int height, int red)
{
    EXPECT_EQ(world.width, width);
    EXPECT_EQ(world.height, height);
    EXPECT_EQ(static_cast<const PF_Pixel8*>(world.data)->red, red);
}

TEST(LayerParameters, TwoThatNameOneLayerCarryTheSameData)
{
    Stage stage;
    std::map<int, property>& values = stage.scene.compositions[0].layers[0].effects[0].values;
    values[kSource] = Constant({5});
    values[kBack] = Linear({{0, {5}}, {11, {1}}});  // "banner", then the effect's own layer
    AtEachFrame([&](double t, const renderQuality& quality) {
        const bool full = quality.divisorX == 1;
        stage.With(t, quality, [&](PF_InData& in_data, PF_ParamDef* params[]) {
            const PF_LayerDef &source = params[kSource]->u.ld, &back = params[kBack]->u.ld;
            ExpectWorld(source, full ? 60 : 30, full ? 30 : 10, 5);
            EXPECT_EQ(source.data == back.data, t == 10);
            EXPECT_NE(back.data, params[kInput]->u.ld.data);
            if (t == 12) ExpectWorld(back, full ? 200 : 100, full ? 100 : 34, 1);
            PF_ParamDef checkedOut{};
            EXPECT_EQ(
                PF_CHECKOUT_PARAM(&in_data, kSource, in_data.current_time, 512, 12800, &checkedOut),
                0);
            EXPECT_EQ(checkedOut.u.ld.data, source.data);
            EXPECT_EQ(PF_CHECKIN_PARAM(&in_data, &checkedOut), 0);
        });
    });
}

TEST(LayerParameters, ALayerWithoutPixelsIsTransparentInTheCompositionsSize)
{
    Stage stage;
    stage.scene.compositions[0].layers[0].effects[0].values[kSource] = Constant({6});
    AtEachFrame([&](double t, const renderQuality& quality) {
        const bool full = quality.divisorX == 1;
        stage.With(t, quality, [&](PF_InData&, PF_ParamDef* params[]) {
            ExpectWorld(params[kSource]->u.ld, full ? 320 : 160, full ? 180 : 60, 0);
        });
    });
}

TEST(Sizes, AShapeLayerIsAsLargeAsItsCompositionIsShown)
{
    Stage stage;
    layer& shape = stage.scene.compositions[0].layers[0];
    shape.type = layerType::empty;
    shape.width = 320;
    shape.height = 180;
    effectFrame frame = stage.Frame(10, kReduced);
    frame.shown.width = 90;
    frame.shown.height = 31;
    const image input(45, 11, 8);
    stage.host->WithFrame(frame, input, [](PF_InData& in_data, PF_OutData&, PF_ParamDef* params[]) {
        EXPECT_EQ(in_data.width, 90);
        EXPECT_EQ(in_data.height, 31);
        EXPECT_EQ(in_data.extent_hint.right, 45);
        EXPECT_EQ(in_data.extent_hint.bottom, 11);
        EXPECT_EQ(params[kPlace]->u.point3d_d.x_value, 0.5 * 90 / 2);
    });
}

TEST(LayerParameters, AStillSourceIsDrawnOnce)
{
    Stage stage;
    stage.scene.compositions[0].layers[0].effects[0].values[kSource] = Constant({5});
    const auto nothing = [](PF_InData&, PF_ParamDef*[]) {};
    for (const double t : {10, 11, 12}) stage.With(t, kFull, nothing);
    EXPECT_EQ(stage.images.drawnAt, (std::vector<double>{10}));
    stage.images.moving = true;
    for (const double t : {10, 11, 10}) stage.With(t, kFull, nothing);
    EXPECT_EQ(stage.images.drawnAt, (std::vector<double>{10, 10, 11}));
}

bool SameState(PF_InData& in_data, PF_ParamIndex first, A_long firstTime, PF_ParamIndex second,
               A_long secondTime)
{
    const Acquired<PF_ParamUtilsSuite3> utils(in_data, kPFParamUtilsSuite, 3);
    const A_Time times[2] = {{firstTime, 12800}, {secondTime, 12800}}, none{0, 12800};
    PF_State states[2]{};
    A_Boolean same = 0;
    EXPECT_EQ(utils->PF_GetCurrentState(in_data.effect_ref, first, &times[0], &none, &states[0]),
              0);
    EXPECT_EQ(utils->PF_GetCurrentState(in_data.effect_ref, second, &times[1], &none, &states[1]),
              0);
    EXPECT_EQ(utils->PF_AreStatesIdentical(in_data.effect_ref, &states[0], &states[1], &same), 0);
    return same != 0;
}

TEST(States, DifferWithTheLayerAndWithWhatItShows)
{
    Stage stage;
    std::map<int, property>& values = stage.scene.compositions[0].layers[0].effects[0].values;
    values[kSource] = Constant({5});
    values[kBack] = Linear({{0, {5}}, {11, {1}}});
    for (const bool moving : {false, true}) {
        stage.images.moving = moving;
        AtEachFrame([&](double t, const renderQuality& quality) {
            stage.With(t, quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
                EXPECT_TRUE(SameState(in_data, kSource, 1280, kSource, 1280));
                EXPECT_EQ(SameState(in_data, kSource, 1280, kSource, 1792), !moving);
                EXPECT_EQ(SameState(in_data, kInput, 1280, kInput, 1792), !moving);
                EXPECT_TRUE(SameState(in_data, kSource, 1280, kBack, 1280));
                EXPECT_FALSE(SameState(in_data, kSource, 1792, kBack, 1792));
            });
        });
    }
}

// ---- composition, camera, lights

struct viewCase {
    const char* name;
    double t;
    renderQuality quality;
    A_long currentTime;
    double cameraX, zoom, intensity;
};
class Views : public testing::TestWithParam<viewCase> {};

TEST_P(Views, ShowCameraAndLightsAtFullResolution)
{
    const viewCase& c = GetParam();
    Stage stage;
    stage.With(c.t, c.quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
        const Acquired<AEGP_PFInterfaceSuite1> effects(in_data, kAEGPPFInterfaceSuite, 1);
        const Acquired<AEGP_LayerSuite11> layers11(in_data, kAEGPLayerSuite, 11);
        const Acquired<AEGP_LayerSuite12> layers12(in_data, kAEGPLayerSuite, 12);
        const Acquired<AEGP_LayerSuite13> layers13(in_data, kAEGPLayerSuite, 13);
        const Acquired<AEGP_StreamSuite9> streams(in_data, kAEGPStreamSuite, 9);
        A_Time time{};
        ASSERT_EQ(
            effects->AEGP_ConvertEffectToCompTime(in_data.effect_ref, c.currentTime, 12800, &time),
            0);
        EXPECT_EQ(time.value, static_cast<A_long>(512 * c.t));
        AEGP_LayerH own = nullptr, camera = nullptr, spot = nullptr, second = nullptr;
        AEGP_CompH comp = nullptr;
        ASSERT_EQ(effects->AEGP_GetEffectLayer(in_data.effect_ref, &own), 0);
        ASSERT_EQ(layers12->AEGP_GetLayerParentComp(own, &comp), 0);
        ASSERT_EQ(effects->AEGP_GetEffectCamera(in_data.effect_ref, &time, &camera), 0);
        ASSERT_EQ(layers11->AEGP_GetCompLayerByIndex(comp, 1, &second), 0);
        ASSERT_EQ(layers11->AEGP_GetCompLayerByIndex(comp, 2, &spot), 0);
        EXPECT_EQ(camera, second);

        A_Matrix4 matrix{};
        EXPECT_EQ(layers13->AEGP_GetLayerToWorldXformFromView(camera, &time, &time, &matrix), 0);
        const A_Matrix4 expected{
            {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {c.cameraX, 90, -500, 1}}};
        for (int k = 0; k < 16; ++k) {
            EXPECT_NEAR(matrix.mat[k / 4][k % 4], expected.mat[k / 4][k % 4], 1e-12) << k;
        }
        EXPECT_EQ(layers13->AEGP_GetLayerToWorldXform(spot, &time, &matrix), 0);
        EXPECT_EQ(matrix.mat[3][2], -9);
        EXPECT_EQ(layers13->AEGP_GetLayerToWorldXform(camera, &time, &matrix), 0);
        EXPECT_NEAR(matrix.mat[3][0], c.cameraX, 1e-12);

        const auto value = [&](AEGP_LayerH of, AEGP_LayerStream which) {
            AEGP_StreamVal2 val{};
            AEGP_StreamType type = AEGP_StreamType_NO_DATA;
            EXPECT_EQ(streams->AEGP_GetLayerStreamValue(of, which, AEGP_LTimeMode_CompTime, &time,
                                                        0, &val, &type),
                      0);
            EXPECT_EQ(type, which == AEGP_LayerStream_COLOR ? AEGP_StreamType_COLOR
                                                            : AEGP_StreamType_OneD);
            return val;
        };
        EXPECT_DOUBLE_EQ(value(camera, AEGP_LayerStream_ZOOM).one_d, c.zoom);
        EXPECT_DOUBLE_EQ(value(camera, AEGP_LayerStream_FOCUS_DISTANCE).one_d, c.zoom);
        EXPECT_EQ(value(camera, AEGP_LayerStream_DEPTH_OF_FIELD).one_d, 1.0);
        EXPECT_EQ(value(camera, AEGP_LayerStream_APERTURE).one_d, 0.0);  // -4 counts as 0
        EXPECT_EQ(value(camera, AEGP_LayerStream_BLUR_LEVEL).one_d, 100.0);
        EXPECT_DOUBLE_EQ(value(spot, AEGP_LayerStream_INTENSITY).one_d, c.intensity);
        EXPECT_EQ(value(spot, AEGP_LayerStream_CONE_ANGLE).one_d, 60.0);
        EXPECT_EQ(value(spot, AEGP_LayerStream_CONE_FEATHER).one_d, 50.0);
        const AEGP_ColorVal color = value(spot, AEGP_LayerStream_COLOR).color;
        EXPECT_EQ(color.alphaF, 1.0);
        EXPECT_EQ(color.redF, 1.0);
        EXPECT_EQ(color.greenF, 0.5);
        EXPECT_EQ(color.blueF, 0.25);
    });
}
const viewCase kViewsTimes[] = {{"First", 10, kFull, 1280, 100, 350, 100},
                                {"Later", 12, kFull, 1792, 120, 360, 120},
                                {"FirstReduced", 10, kReduced, 1280, 100, 350, 100},
                                {"LaterReduced", 12, kReduced, 1792, 120, 360, 120}};
INSTANTIATE_TEST_SUITE_P(Times, Views, testing::ValuesIn(kViewsTimes), caseName{});

TEST(Project, TypesFlagsAndMotionBlur)
{
    Stage stage;
    stage.scene.compositions[0].layers[0].motionBlur = true;
    AtEachFrame([&](double t, const renderQuality& quality) {
        stage.With(t, quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
            const Acquired<AEGP_PFInterfaceSuite1> effects(in_data, kAEGPPFInterfaceSuite, 1);
            const Acquired<AEGP_LayerSuite11> layers11(in_data, kAEGPLayerSuite, 11);
            const Acquired<AEGP_LayerSuite12> layers12(in_data, kAEGPLayerSuite, 12);
            const Acquired<AEGP_CompSuite18> comps18(in_data, kAEGPCompSuite, 18);
            const Acquired<AEGP_CompSuite19> comps19(in_data, kAEGPCompSuite, 19);
            const Acquired<AEGP_ItemSuite13> items(in_data, kAEGPItemSuite, 13);
            const Acquired<AEGP_CameraSuite2> cameras(in_data, kAEGPCameraSuite, 2);
            const Acquired<AEGP_LightSuite2> lights(in_data, kAEGPLightSuite, 2);
            AEGP_LayerH own = nullptr;
            AEGP_CompH comp = nullptr;
            AEGP_ItemH item = nullptr;
            ASSERT_EQ(effects->AEGP_GetEffectLayer(in_data.effect_ref, &own), 0);
            ASSERT_EQ(layers12->AEGP_GetLayerParentComp(own, &comp), 0);
            ASSERT_EQ(comps18->AEGP_GetItemFromComp(comp, &item), 0);

            A_long count = 0, width = 0, height = 0, samples = 0;
            EXPECT_EQ(layers11->AEGP_GetCompNumLayers(comp, &count), 0);
            EXPECT_EQ(count, 6);
            EXPECT_EQ(items->AEGP_GetItemDimensions(item, &width, &height), 0);
            EXPECT_EQ(width, 320);
            EXPECT_EQ(height, 180);
            const AEGP_ObjectType types[] = {AEGP_ObjectType_AV, AEGP_ObjectType_CAMERA,
                                             AEGP_ObjectType_LIGHT, AEGP_ObjectType_LIGHT};
            const AEGP_LayerFlags flags[] = {9, 1, 1, 0};  // motion blur 8, video 1
            for (int k = 0; k < 4; ++k) {
                AEGP_LayerH each = nullptr;
                AEGP_ObjectType type = AEGP_ObjectType_NONE;
                AEGP_LayerFlags flag = -1;
                EXPECT_EQ(layers11->AEGP_GetCompLayerByIndex(comp, k, &each), 0);
                EXPECT_EQ(layers11->AEGP_GetLayerObjectType(each, &type), 0);
                EXPECT_EQ(layers12->AEGP_GetLayerFlags(each, &flag), 0);
                EXPECT_EQ(type, types[k]) << k;
                EXPECT_EQ(flag, flags[k]) << k;
                AEGP_LightType light = -1;
                if (type != AEGP_ObjectType_LIGHT) continue;
                EXPECT_EQ(lights->AEGP_GetLightType(each, &light), 0);
                EXPECT_EQ(light, k == 2 ? AEGP_LightType_SPOT : AEGP_LightType_AMBIENT);
            }
            AEGP_CompFlags compFlags = 0;
            A_Ratio angle{}, phase{};
            double distance = 0.0;
            EXPECT_EQ(comps19->AEGP_GetCompFlags(comp, &compFlags), 0);
            EXPECT_EQ(compFlags, 8);
            EXPECT_EQ(comps19->AEGP_GetCompSuggestedMotionBlurSamples(comp, &samples), 0);
            EXPECT_EQ(samples, 5);
            EXPECT_EQ(comps19->AEGP_GetCompShutterAnglePhase(comp, &angle, &phase), 0);
            EXPECT_DOUBLE_EQ(static_cast<double>(angle.num) / angle.den, 0.5);
            EXPECT_DOUBLE_EQ(static_cast<double>(phase.num) / phase.den, -0.25);
            EXPECT_EQ(cameras->AEGP_GetDefaultCameraDistanceToImagePlane(comp, &distance), 0);
            EXPECT_DOUBLE_EQ(distance, 320.0 * 50 / 36);
        });
    });
}

TEST(Project, NoCameraIsNoError)
{
    Stage stage;
    stage.scene.compositions[0].layers[1].hidden = true;
    AtEachFrame([&](double t, const renderQuality& quality) {
        stage.With(t, quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
            const Acquired<AEGP_PFInterfaceSuite1> effects(in_data, kAEGPPFInterfaceSuite, 1);
            const A_Time time{static_cast<A_long>(t), 25};
            AEGP_LayerH camera = reinterpret_cast<AEGP_LayerH>(&in_data);
            EXPECT_EQ(effects->AEGP_GetEffectCamera(in_data.effect_ref, &time, &camera), 0);
            EXPECT_EQ(camera, nullptr);
        });
    });
}

}  // namespace
}  // namespace orv::test
