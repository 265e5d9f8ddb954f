// What an effect must not do, and how the host tells.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>

#include "host/plugin_fixture.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

constexpr const char* kPlace = "scripted on layer \"wave\" at frame 10: RENDER: ";

using frameUse = void (*)(PF_InData&, PF_ParamDef*[]);
struct faultCase {
    const char* name;
    frameUse use;
    const char* fault;
};
class Faults : public testing::TestWithParam<faultCase> {};

TEST_P(Faults, AreToldWithKindAndCountAndOnlyOnce)
{
    Stage stage;
    EXPECT_EQ(stage.FaultOf(GetParam().use), kPlace + std::string(GetParam().fault));
    EXPECT_EQ(stage.FaultOf([](PF_InData&, PF_ParamDef*[]) {}), "");
    EXPECT_NO_THROW(stage.host->Close());
}

template <class Suite>
const Suite& Suite_(PF_InData& in_data, const char* name, std::int32_t version)
{
    return *Acquired<Suite>(in_data, name, version).operator->();
}
const PF_WorldSuite2& Worlds(PF_InData& in_data)
{
    return Suite_<PF_WorldSuite2>(in_data, kPFWorldSuite, 2);
}
const PF_HandleSuite2& Handles(PF_InData& in_data)
{
    return Suite_<PF_HandleSuite2>(in_data, kPFHandleSuite, 2);
}
const AEGP_MaskSuite6& Masks(PF_InData& in_data)
{
    return Suite_<AEGP_MaskSuite6>(in_data, kAEGPMaskSuite, 6);
}
const PF_PathQuerySuite1& Paths(PF_InData& in_data)
{
    return Suite_<PF_PathQuerySuite1>(in_data, kPFPathQuerySuite, 1);
}
const AEGP_StreamSuite9& Streams(PF_InData& in_data)
{
    return Suite_<AEGP_StreamSuite9>(in_data, kAEGPStreamSuite, 9);
}
const AEGP_PFInterfaceSuite1& Effects(PF_InData& in_data)
{
    return Suite_<AEGP_PFInterfaceSuite1>(in_data, kAEGPPFInterfaceSuite, 1);
}
PF_PathOutlinePtr CheckedOut(PF_InData& in_data)
{
    PF_PathID id = 0;
    PF_PathOutlinePtr path = nullptr;
    (void)Paths(in_data).PF_PathInfo(in_data.effect_ref, 0, &id);
    (void)Paths(in_data).PF_CheckoutPath(in_data.effect_ref, id, 0, 512, 12800, &path);
    return path;
}
AEGP_EffectRefH NewEffect(PF_InData& in_data)
{
    AEGP_EffectRefH effect = nullptr;
    (void)Effects(in_data).AEGP_GetNewEffectForEffect(0, in_data.effect_ref, &effect);
    return effect;
}

const faultCase kLeaks[] = {
    {"Suites",
     [](PF_InData& in, PF_ParamDef*[]) {
         const void* suite = nullptr;
         (void)in.pica_basicP->AcquireSuite(kPFWorldSuite, 2, &suite);
         (void)in.pica_basicP->AcquireSuite(kPFWorldSuite, 2, &suite);
     },
     "not given back: 2 suites (PF World Suite 2)"},
    {"Handle", [](PF_InData& in, PF_ParamDef*[]) { (void)Handles(in).host_new_handle(8); },
     "not given back: 1 handle"},
    {"LockedHandle",
     [](PF_InData& in, PF_ParamDef*[]) {
         (void)Handles(in).host_lock_handle(Handles(in).host_new_handle(8));
     },
     "not given back: 1 handle; not given back: 1 handle lock"},
    {"Worlds",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_EffectWorld worlds[3]{};
         for (PF_EffectWorld& each : worlds) {
             (void)Worlds(in).PF_NewWorld(in.effect_ref, 4, 4, 1, PF_PixelFormat_ARGB128, &each);
         }
         (void)Worlds(in).PF_DisposeWorld(in.effect_ref, &worlds[1]);
     },
     "not given back: 2 worlds"},
    {"Parameter",
     [](PF_InData& in, PF_ParamDef*[]) {
         static PF_ParamDef def{};
         (void)PF_CHECKOUT_PARAM(&in, kAmount, 0, 512, 12800, &def);
     },
     "not given back: 1 checked-out parameter (index 4)"},
    {"Mask",
     [](PF_InData& in, PF_ParamDef*[]) {
         AEGP_LayerH layer = nullptr;
         AEGP_MaskRefH mask = nullptr;
         (void)Effects(in).AEGP_GetEffectLayer(in.effect_ref, &layer);
         (void)Masks(in).AEGP_GetLayerMaskByIndex(layer, 0, &mask);
     },
     "not given back: 1 mask"},
    {"PathAndSegment",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_PathSegPrepPtr prepared = nullptr;
         (void)Suite_<PF_PathDataSuite1>(in, kPFPathDataSuite, 1)
             .PF_PathPrepareSegLength(in.effect_ref, CheckedOut(in), 1, 100, &prepared);
     },
     "not given back: 1 checked-out path; not given back: 1 prepared segment"},
    {"EffectStreamAndValue",
     [](PF_InData& in, PF_ParamDef*[]) {
         AEGP_StreamRefH stream = nullptr;
         AEGP_StreamValue2 value{};
         const A_Time now{0, 25};
         (void)Streams(in).AEGP_GetNewEffectStreamByIndex(0, NewEffect(in), kAmount, &stream);
         (void)Streams(in).AEGP_GetNewStreamValue(0, stream, 0, &now, 0, &value);
     },
     "not given back: 1 effect reference; not given back: 1 stream; "
     "not given back: 1 stream value"}};
INSTANTIATE_TEST_SUITE_P(Leaks, Faults, testing::ValuesIn(kLeaks), caseName{});

const faultCase kGivenBackTwice[] = {
    {"Suite",
     [](PF_InData& in, PF_ParamDef*[]) { (void)in.pica_basicP->ReleaseSuite(kPFWorldSuite, 2); },
     "ReleaseSuite gave back what is not out"},
    {"World",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_EffectWorld world{};
         (void)Worlds(in).PF_NewWorld(in.effect_ref, 4, 4, 1, PF_PixelFormat_ARGB32, &world);
         PF_EffectWorld copy = world;
         EXPECT_EQ(Worlds(in).PF_DisposeWorld(in.effect_ref, &world), 0);
         EXPECT_EQ(Worlds(in).PF_DisposeWorld(in.effect_ref, &copy), PF_Err_BAD_CALLBACK_PARAM);
     },
     "PF_DisposeWorld: this world is not the host's"},
    {"Handle",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_Handle handle = Handles(in).host_new_handle(8);
         Handles(in).host_dispose_handle(handle);
         Handles(in).host_dispose_handle(handle);
     },
     "host_dispose_handle: this handle is not the host's"},
    {"Path",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_PathID id = 0;
         (void)Paths(in).PF_PathInfo(in.effect_ref, 0, &id);
         PF_PathOutlinePtr path = CheckedOut(in);
         EXPECT_EQ(Paths(in).PF_CheckinPath(in.effect_ref, id, 0, path), 0);
         EXPECT_NE(Paths(in).PF_CheckinPath(in.effect_ref, id, 0, path), 0);
     },
     "PF_CheckinPath gave back what is not out"},
    {"Parameter",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_ParamDef def{};
         EXPECT_NE(PF_CHECKIN_PARAM(&in, &def), 0);
     },
     "checkin_param gave back what is not out"}};
INSTANTIATE_TEST_SUITE_P(GivenBackTwice, Faults, testing::ValuesIn(kGivenBackTwice), caseName{});

const faultCase kForeign[] = {
    {"Layer",
     [](PF_InData& in, PF_ParamDef*[]) {
         A_long count = 0;
         EXPECT_EQ(Masks(in).AEGP_GetLayerNumMasks(reinterpret_cast<AEGP_LayerH>(&count), &count),
                   PF_Err_BAD_CALLBACK_PARAM);
     },
     "AEGP_GetLayerNumMasks: this layer is not the host's"},
    {"EffectRef",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_PathID id = 0;
         EXPECT_NE(Paths(in).PF_PathInfo(nullptr, 0, &id), 0);
     },
     "PF_PathInfo: this effect_ref is not the host's"},
    {"OwnWorldDisposed",
     [](PF_InData& in, PF_ParamDef* params[]) {
         EXPECT_NE(Worlds(in).PF_DisposeWorld(in.effect_ref, &params[0]->u.ld), 0);
     },
     "PF_DisposeWorld: this world is not the host's"},
    {"CopyOutside",
     [](PF_InData& in, PF_ParamDef* params[]) {
         PF_Rect wide{0, 0, 201, 1};
         PF_LayerDef* world = &params[0]->u.ld;
         EXPECT_NE(PF_COPY(&in, world, world, &wide, nullptr), 0);
     },
     "copy was given a rectangle that is not within its world"},
    {"AddParam",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_ParamDef def{};
         EXPECT_EQ(in.inter.add_param(in.effect_ref, -1, &def), PF_Err_INVALID_CALLBACK);
     },
     "add_param was called outside PARAMS_SETUP"}};
INSTANTIATE_TEST_SUITE_P(Foreign, Faults, testing::ValuesIn(kForeign), caseName{});

const faultCase kMemory[] = {
    {"BehindARow",
     [](PF_InData&, PF_ParamDef* params[]) {
         static_cast<PF_Pixel8*>(params[0]->u.ld.data)[200].red ^= 1;
     },
     "something was written outside the rows of a world of 200 x 100 pixels: behind row 0"},
    {"InTheInput",
     [](PF_InData&, PF_ParamDef* params[]) {
         static_cast<PF_Pixel8*>(params[0]->u.ld.data)[199].red ^= 1;
     },
     "the input's pixels were changed"},
    {"BehindAHandle",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_Handle handle = Handles(in).host_new_handle(8);
         static_cast<char*>(*handle)[8] = 1;
         Handles(in).host_dispose_handle(handle);
     },
     "something was written behind the end of a handle's memory"},
    {"LockedHandleDisposed",
     [](PF_InData& in, PF_ParamDef*[]) {
         PF_Handle handle = Handles(in).host_new_handle(8);
         EXPECT_EQ(Handles(in).host_lock_handle(handle), *handle);
         Handles(in).host_dispose_handle(handle);
     },
     "host_dispose_handle was given a locked handle"}};
INSTANTIATE_TEST_SUITE_P(Memory, Faults, testing::ValuesIn(kMemory), caseName{});

TEST(Handles, LocksAreCountedAndUnlockingMoreDoesNothing)
{
    Stage stage;
    EXPECT_EQ(stage.FaultOf([](PF_InData& in, PF_ParamDef*[]) {
        PF_Handle handle = Handles(in).host_new_handle(8);
        EXPECT_EQ(Handles(in).host_lock_handle(handle), *handle);
        EXPECT_EQ(Handles(in).host_lock_handle(handle), *handle);
        EXPECT_EQ(*static_cast<std::uint64_t*>(*handle), 0U);
        for (int k = 0; k < 3; ++k) Handles(in).host_unlock_handle(handle);
        Handles(in).host_dispose_handle(handle);
    }),
              "");
}

// ---- commands

TEST(Render, SendsAFramesCommandsInOrder)
{
    Stage stage;
    Script().received.clear();
    (void)stage.host->Render(stage.Frame(10), stage.Input());
    (void)stage.host->Render(stage.Frame(11), stage.Input());
    const std::vector<PF_Cmd> expected{PF_Cmd_SEQUENCE_SETUP, PF_Cmd_FRAME_SETUP, PF_Cmd_RENDER,
                                       PF_Cmd_FRAME_SETDOWN,  PF_Cmd_FRAME_SETUP, PF_Cmd_RENDER,
                                       PF_Cmd_FRAME_SETDOWN};
    EXPECT_EQ(Script().received, expected);
    Script().received.clear();
    stage.host->Close();
    EXPECT_EQ(Script().received,
              (std::vector<PF_Cmd>{PF_Cmd_SEQUENCE_SETDOWN, PF_Cmd_GLOBAL_SETDOWN}));
}

TEST(Render, AnInstanceThatKeepsItsDataIsFoundOut)
{
    Stage stage;
    Script().onCommand = [](PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef*[],
                            PF_LayerDef*) -> PF_Err {
        if (cmd == PF_Cmd_SEQUENCE_SETUP) out.sequence_data = Handles(in).host_new_handle(4);
        return PF_Err_NONE;
    };
    (void)stage.host->Render(stage.Frame(10), stage.Input());
    try {
        stage.host->Close();
        FAIL() << "the handle was not missed";
    } catch (const failure& fault) {
        EXPECT_EQ(fault.kind(), failureKind::plugin);
        EXPECT_STREQ(fault.what(), "scripted: SEQUENCE_SETDOWN: not given back: 1 handle");
    }
    EXPECT_EQ(Script().received.back(), PF_Cmd_GLOBAL_SETDOWN);
}

TEST(Render, AnErrorFailsTheFrameWithItsMessage)
{
    Stage stage;
    Script().onCommand = [](PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef*[],
                            PF_LayerDef*) -> PF_Err {
        if (cmd != PF_Cmd_RENDER) return PF_Err_NONE;
        in.utils->ansi.sprintf(out.return_msg, "%d\r%s", 7, "lines");
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    };
    try {
        (void)stage.host->Render(stage.Frame(10), stage.Input());
        FAIL() << "no failure";
    } catch (const failure& fault) {
        EXPECT_EQ(fault.kind(), failureKind::frame);
        EXPECT_STREQ(fault.what(), "scripted on layer \"wave\" at frame 10: 7 lines (error 512)");
    }
    EXPECT_EQ(Script().received.back(), PF_Cmd_FRAME_SETDOWN);
}

TEST(Render, AMessageWithoutAnErrorIsAWarningOnce)
{
    Stage stage;
    Script().onCommand = [](PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef*[],
                            PF_LayerDef*) -> PF_Err {
        if (cmd == PF_Cmd_RENDER) PF_STRCPY(&in, out.return_msg, "careful");
        return PF_Err_NONE;
    };
    for (int k = 0; k < 3; ++k) (void)stage.host->Render(stage.Frame(10 + k), stage.Input());
    EXPECT_EQ(stage.warnings, (std::vector<std::string>{"scripted: careful"}));
}

TEST(Render, AnswersThatBreakTheContractAreToldApart)
{
    struct answer {
        std::function<void(PF_InData&, PF_OutData&, PF_LayerDef*)> give;
        std::string fault;
    };
    const answer answers[] = {
        {[](PF_InData&, PF_OutData&, PF_LayerDef* output) {
             static_cast<PF_Pixel16*>(output->data)->green = 32769;
         },
         "a 16-bit channel of the output is above 32768"},
        {[](PF_InData& in, PF_OutData& out, PF_LayerDef*) {
             in.utils->ansi.sprintf(out.return_msg, "%0300d", 1);
         },
         "a message of 300 bytes was written where 255 fit"},
        {[](PF_InData&, PF_OutData& out, PF_LayerDef*) {
             std::memset(out.return_msg, 'x', sizeof out.return_msg);
         },
         "return_msg holds more than 255 bytes"},
        {[](PF_InData&, PF_OutData& out, PF_LayerDef*) {
             static void* memory = nullptr;
             out.sequence_data = &memory;
         },
         "sequence_data holds a handle that is not the host's"},
        {[](PF_InData&, PF_OutData&, PF_LayerDef*) { throw 512; }, "an exception left the effect"}};
    for (const answer& each : answers) {
        Stage stage;
        Script().onCommand = [&](PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef*[],
                                 PF_LayerDef* output) -> PF_Err {
            if (cmd == PF_Cmd_RENDER) each.give(in, out, output);
            return PF_Err_NONE;
        };
        const renderQuality deep{.depth = 16};
        try {
            (void)stage.host->Render(stage.Frame(10, deep), stage.Input(deep));
            ADD_FAILURE() << "not noticed: " << each.fault;
        } catch (const failure& fault) {
            EXPECT_EQ(fault.kind(), failureKind::plugin);
            EXPECT_EQ(fault.what(), kPlace + each.fault);
        }
    }
}

TEST(Render, PixelsThatNeedOtherEffectsAreDrawnBetweenTwoTries)
{
    Stage stage;
    stage.scene.compositions[0].layers[0].effects[0].values[kSource] = Constant({5});
    stage.images.moving = true;
    stage.images.needsEffectsAt = 12;
    std::vector<int> reds;
    Script().onCommand = [&](PF_Cmd cmd, PF_InData& in, PF_OutData&, PF_ParamDef*[],
                             PF_LayerDef*) -> PF_Err {
        if (cmd != PF_Cmd_RENDER) return PF_Err_NONE;
        PF_ParamDef def{};
        const PF_Err err = PF_CHECKOUT_PARAM(&in, kSource, 1792, 512, 12800, &def);
        reds.push_back(def.u.ld.data != nullptr ? static_cast<PF_Pixel8*>(def.u.ld.data)->red : -1);
        (void)PF_CHECKIN_PARAM(&in, &def);
        return err;
    };
    (void)stage.host->Render(stage.Frame(10), stage.Input());
    EXPECT_EQ(reds, (std::vector{-1, 5}));
}

TEST(Send, LeavesTheOutputAsItWasWhereNothingIsDrawn)
{
    Stage stage;
    image output(200, 100, 8);
    std::fill(output.bytes.begin(), output.bytes.end(), std::uint8_t{0x3C});
    const image before = output;
    const image input = stage.Input();
    const effectFrame frame = stage.Frame(10);
    std::string message;
    Script().received.clear();
    EXPECT_EQ(stage.host->Send(PF_Cmd_RENDER, &frame, &input, &output, message), 0);
    EXPECT_EQ(output, before);
    EXPECT_EQ(Script().received, (std::vector<PF_Cmd>{PF_Cmd_RENDER}));
}

// ---- the gate

TEST(Gate, AFailedCheckOutIsStillToBeCheckedIn)
{
    Stage stage;
    (void)stage.FaultOf([](PF_InData&, PF_ParamDef*[]) {});
    stage.host->gate() = {.failOn = 1, .failedCall = {}, .missingSuite = {}};
    static PF_ParamDef def{};
    EXPECT_EQ(stage.FaultOf([](PF_InData& in, PF_ParamDef*[]) {
        def.u.fs_d.value = 5.0;
        EXPECT_EQ(PF_CHECKOUT_PARAM(&in, kAmount, 0, 512, 12800, &def),
                  PF_Err_INTERNAL_STRUCT_DAMAGED);
        EXPECT_EQ(def.u.fs_d.value, 0.0);
    }),
              kPlace + std::string("not given back: 1 checked-out parameter (index 4)"));
}

TEST(Gate, AllCallsOfANameCanBeRefusedAndWhatIsAskedForIsLogged)
{
    Stage stage;
    callLog log;
    stage.host->gate() = {.code = 99,
                          .failedCall = {},
                          .missingSuite = {},
                          .refusedCall = "host_new_handle",
                          .log = &log};
    stage.With(10, {}, [](PF_InData& in, PF_ParamDef*[]) {
        const void* suite = nullptr;
        ASSERT_EQ(in.pica_basicP->AcquireSuite(kPFHandleSuite, 2, &suite), 0);
        for (int k = 0; k < 2; ++k)
            EXPECT_EQ(static_cast<const PF_HandleSuite2*>(suite)->host_new_handle(8), nullptr);
        EXPECT_EQ(in.pica_basicP->ReleaseSuite(kPFHandleSuite, 2), 0);
    });
    EXPECT_EQ(log.calls, (std::vector<std::string>{"AcquireSuite", "host_new_handle",
                                                   "host_new_handle", "ReleaseSuite"}));
    EXPECT_EQ(log.suites, std::vector<std::string>{kPFHandleSuite});
    EXPECT_EQ(stage.host->gate().failedCall, "host_new_handle");
}

TEST(Abort, AnswersFromTheAskedCheckOnAndWhenInterrupted)
{
    bool interrupted = false;
    pluginOptions options;
    options.interrupted = [&] { return interrupted; };
    Stage stage(options);
    stage.host->gate().abortOn = 3;
    stage.With(10, {}, [&](PF_InData& in, PF_ParamDef*[]) {
        EXPECT_EQ(PF_ABORT(&in), 0);
        interrupted = true;
        EXPECT_EQ(PF_ABORT(&in), PF_Interrupt_CANCEL);
        interrupted = false;
        EXPECT_EQ(PF_ABORT(&in), PF_Interrupt_CANCEL);
        EXPECT_EQ(PF_ABORT(&in), PF_Interrupt_CANCEL);
    });
    EXPECT_EQ(stage.host->gate().abortChecks, 4);
}

// ---- services

TEST(Iterate, RunsEachOnceAndTellsTheFirstFailure)
{
    Stage stage;
    stage.With(10, {}, [](PF_InData& in, PF_ParamDef*[]) {
        const Acquired<AEGP_IterateSuite1> iterate(in, kAEGPIterateSuite, 1);
        std::vector<std::atomic<int>> runs(1000);
        EXPECT_EQ(iterate->AEGP_IterateGeneric(1000, &runs,
                                               [](void* all, A_long, A_long i, A_long) -> PF_Err {
                                                   ++(*static_cast<std::vector<std::atomic<int>>*>(
                                                       all))[static_cast<std::size_t>(i)];
                                                   return PF_Err_NONE;
                                               }),
                  0);
        EXPECT_TRUE(std::ranges::all_of(runs, [](const auto& each) { return each == 1; }));
        EXPECT_EQ(iterate->AEGP_IterateGeneric(10, nullptr,
                                               [](void*, A_long, A_long i, A_long) -> PF_Err {
                                                   return i >= 4 ? 40 + i : 0;
                                               }),
                  44);
    });
}

// ---- parameters

struct setUpCase {
    const char* name;
    std::function<PF_Err(PF_InData&, PF_OutData&)> add;
    const char* fault;
};
PF_ParamDef Slider(A_long id)
{
    PF_ParamDef def{};
    def.param_type = PF_Param_SLIDER;
    def.uu.id = id;
    return def;
}
PF_Err Add(PF_InData& in, PF_OutData& out, std::vector<PF_ParamDef> defs, PF_ParamIndex index = -1)
{
    for (PF_ParamDef& def : defs) {
        if (const PF_Err err = in.inter.add_param(in.effect_ref, index, &def)) return err;
    }
    out.num_params = static_cast<A_long>(defs.size()) + 1;
    return PF_Err_NONE;
}

TEST(ParamsSetUp, RefusesWhatCannotBe)
{
    PF_ParamDef group = Slider(7), popup = Slider(8);
    group.param_type = PF_Param_GROUP_START;
    popup.param_type = PF_Param_POPUP;
    std::strcpy(popup.name, "Pick");
    popup.u.pd = {.value = 1, .num_choices = 3, .dephault = 1, .namesptr = "a|b"};
    const setUpCase cases[] = {
        {"WrongIndex",
         [](PF_InData& in, PF_OutData& out) {
             return Add(in, out, {Slider(1), Slider(2)}, 1);
         },
         "scripted: PARAMS_SETUP: parameter added at index 1 when 2 are there (error 513)"},
        {"WrongCount",
         [](PF_InData& in, PF_OutData& out) {
             (void)Add(in, out, {Slider(1)});
             out.num_params = 1;
             return PF_Err{0};
         },
         "scripted: PARAMS_SETUP: num_params is 1 after 1 parameters were added"},
        {"SameId",
         [](PF_InData& in, PF_OutData& out) {
             return Add(in, out, {Slider(5), Slider(5)});
         },
         "scripted: PARAMS_SETUP: parameters 1 and 2 have the same disk ID 5"},
        {"OpenGroup", [=](PF_InData& in, PF_OutData& out) { return Add(in, out, {group}); },
         "scripted: PARAMS_SETUP: 1 parameter groups are not closed"},
        {"Choices", [=](PF_InData& in, PF_OutData& out) { return Add(in, out, {popup}); },
         "scripted: PARAMS_SETUP: parameter 1 (\"Pick\"): 3 choices are announced and 2 named "
         "(error 516)"}};
    for (const setUpCase& each : cases) {
        Script().onParams = each.add;
        try {
            const Stage stage;
            ADD_FAILURE() << each.name << " was accepted";
        } catch (const failure& fault) {
            EXPECT_EQ(fault.kind(), failureKind::plugin);
            EXPECT_STREQ(fault.what(), each.fault);
        }
        Script() = {};
    }
}

TEST(ParamsSetUp, DeclaresInTheWordsOfAScene)
{
    Script().onParams = [](PF_InData& in, PF_OutData& out) {
        PF_ParamDef thickness = Slider(1), turn = Slider(2);
        thickness.param_type = PF_Param_FLOAT_SLIDER;
        thickness.u.fs_d.value = 0.1;
        thickness.u.fs_d.valid_min = thickness.u.fs_d.dephault = 0.1f;
        thickness.u.fs_d.valid_max = 1000.0f;
        thickness.u.fs_d.display_flags = PF_ValueDisplayFlag_PERCENT;
        thickness.flags = PF_ParamFlag_CANNOT_TIME_VARY;
        turn.param_type = PF_Param_ANGLE;
        turn.u.ad.dephault = 90 * 65536 + 32768;
        return Add(in, out, {thickness, turn});
    };
    const Stage stage;
    const std::vector<paramDeclaration>& params = stage.host->declaration().params;
    ASSERT_EQ(params.size(), 3U);
    EXPECT_EQ(params[1].validMin, 0.1);  // not the float next to it
    EXPECT_EQ(params[1].initial, (std::vector{0.1}));
    EXPECT_TRUE(params[1].percent);
    EXPECT_FALSE(params[1].canVary);
    EXPECT_EQ(params[2].initial, (std::vector{90.5}));
    EXPECT_TRUE(params[2].canVary);
}

}  // namespace
}  // namespace orv::test
