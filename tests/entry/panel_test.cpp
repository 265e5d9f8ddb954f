// The two commands about the effect's controls, under the real host.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "entry/instanceRig.h"
#include "geometry/paramIndex.h"
#include "gl/GL_base.h"
#include "support/caseName.h"

namespace {

using AESDK_OpenGL::S_EffectCommonData;
using indexSet = std::set<int>;

std::string Value(PF_ParamIndex index, int value)
{
    return R"({"ix": )" + std::to_string(index) + R"(, "v": {"k": )" + std::to_string(value) +
           "}}, ";
}

/// A mask of that many vertices on a parabola.
std::string Mask(int vertices, bool closed)
{
    std::string v, zero;
    for (int k = 0; k < vertices; ++k) {
        const std::string comma = k == 0 ? "" : ", ";
        v += comma + "[" + std::to_string(k) + ", " + std::to_string(k * k) + "]";
        zero += comma + "[0, 0]";
    }
    return std::string(R"({"mode": "n", "pt": {"k": {"c": )") + (closed ? "true" : "false") +
           R"(, "v": [)" + v + R"(], "i": [)" + zero + R"(], "o": [)" + zero + "]}}}";
}

instanceScene SceneWith(const std::string& values, const std::string& masks = "")
{
    return {.values = values, .onLayer = R"("masksProperties": [)" + masks + "], "};
}

/// An instance that has been set up.
class PanelRig : public InstanceRig {
public:
    explicit PanelRig(const instanceScene& scene) : InstanceRig(scene.json())
    {
        EXPECT_EQ(Send(PF_Cmd_SEQUENCE_SETUP), PF_Err_NONE);
    }

    /// Sends the command as if at `t`; returns how many host calls it took.
    std::int64_t Update(double t = 0.0)
    {
        host().gate() = {};
        const orv::effectFrame frame = At(t);
        std::string message;
        EXPECT_EQ(host().Send(PF_Cmd_UPDATE_PARAMS_UI, &frame, nullptr, nullptr, message),
                  PF_Err_NONE);
        return host().gate().made;
    }

    indexSet Disabled() { return Where(&orv::controlState::disabled); }
    indexSet Hidden() { return Where(&orv::controlState::hidden); }

private:
    indexSet Where(bool orv::controlState::*field)
    {
        indexSet found;
        const std::vector<orv::controlState> controls = host().Controls(At(0));
        for (std::size_t i = 0; i < controls.size(); ++i)
            if (controls[i].*field) found.insert(static_cast<int>(i));
        return found;
    }
};

struct greyCase {
    const char* name;
    int cameraMode, stretchAlongPath;
    indexSet disabled;
};
class GreyControls : public testing::TestWithParam<greyCase> {};
TEST_P(GreyControls, AreThoseWithoutMeaning)
{
    const greyCase& c = GetParam();
    PanelRig rig(
        SceneWith(Value(kCameraMode, c.cameraMode) + Value(kStretchAlongPath, c.stretchAlongPath)));
    rig.Update();
    EXPECT_EQ(rig.Disabled(), c.disabled);
}
const greyCase kSettings[] = {{"Flat", 1, 0, {34, 250, 251}},
                              {"FlatStretched", 1, 1, {250, 251}},
                              {"Deep", 2, 0, {34}},
                              {"DeepStretched", 2, 1, {}}};
INSTANTIATE_TEST_SUITE_P(Settings, GreyControls, testing::ValuesIn(kSettings), caseName{});

/// The vertices of both runs that are shown; -1 when they differ.
int VisibleVertices(const indexSet& hidden)
{
    const auto shown = [&](PF_ParamIndex first) {
        int count = 0;
        while (count < kVertexParamCount && !hidden.contains(first + count)) ++count;
        // From there on all are hidden.
        for (int k = count; k < kVertexParamCount; ++k)
            if (!hidden.contains(first + k)) return -1;
        return count;
    };
    return shown(kZAtVertex1) == shown(kScaleAtVertex1) ? shown(kZAtVertex1) : -1;
}

struct vertexCase {
    const char* name;
    int chosen;  ///< position of the mask
    std::string masks;
    int visible;
};
class VertexControls : public testing::TestWithParam<vertexCase> {};
TEST_P(VertexControls, AreShownAsFarAsTheMaskGoes)
{
    PanelRig rig(SceneWith(Value(kMask, GetParam().chosen), GetParam().masks));
    rig.Update();
    EXPECT_EQ(VisibleVertices(rig.Hidden()), GetParam().visible);
}
const vertexCase kMasks[] = {
    {"NoneChosen", 0, Mask(5, false), 1},
    {"Open", 1, Mask(5, false), 5},
    {"Closed", 1, Mask(5, true), 6},
    {"SecondOfThree", 2, Mask(9, true) + ", " + Mask(3, false) + ", " + Mask(7, true), 3},
    {"LastThatFits", 1, Mask(100, false), 100},
    {"MoreThanControls", 1, Mask(120, true), 100}};
INSTANTIATE_TEST_SUITE_P(Masks, VertexControls, testing::ValuesIn(kMasks), caseName{});

TEST(StretchControls, AreTheReferenceMaskOrThePoints)
{
    const auto hiddenOfGroup = [](int vertsMatch) {
        PanelRig rig(SceneWith(Value(kStretchWithVertsMatch, vertsMatch)));
        rig.Update();
        indexSet hidden = rig.Hidden();
        std::erase_if(hidden, [](int index) {
            return (index >= kZAtVertex1 && index < kZAtVertex1 + kVertexParamCount) ||
                   (index >= kScaleAtVertex1 && index < kScaleAtVertex1 + kVertexParamCount);
        });
        return hidden;
    };
    EXPECT_EQ(hiddenOfGroup(0), (indexSet{31}));
    EXPECT_EQ(hiddenOfGroup(1), (indexSet{32, 33, 34, 35}));
}

TEST(Panel, IsHandedBackOnceAndOnlyWhatChanged)
{
    // "Camera mode" goes from 3D to 2D and back; all else stays.
    PanelRig rig(SceneWith(R"({"ix": 279, "v": {"k": [{"t": 0, "s": [2], "h": 1},
        {"t": 1, "s": [1], "h": 1}, {"t": 2, "s": [2], "h": 1}]}}, )"));
    rig.Update(0);
    const std::int64_t unchanged = rig.Update(0);
    EXPECT_EQ(rig.Update(0), unchanged);
    // One call for each of the two controls of the extrusion.
    EXPECT_EQ(rig.Update(1), unchanged + 2);
    EXPECT_EQ(rig.Disabled(), (indexSet{34, 250, 251}));
    EXPECT_EQ(rig.Update(1), unchanged);
    EXPECT_EQ(rig.Update(2), unchanged + 2);
    EXPECT_EQ(rig.Disabled(), (indexSet{34}));
    EXPECT_EQ(rig.Update(2), unchanged);
}

const instanceScene kBusyPanel =
    SceneWith(Value(kMask, 2) + Value(kCameraMode, 1), Mask(4, true) + ", " + Mask(3, false));

TEST(Panel, GivesEverythingBackWhicheverHostCallFails)
{
    PanelRig expected(kBusyPanel);
    const std::int64_t calls = expected.Update();
    int reported = 0;
    // The calls about one control after the other are alike.
    for (std::int64_t k = 1; k <= calls; k += k < 60 ? 1 : 17) {
        PanelRig rig(kBusyPanel);
        orv::callGate& gate = rig.host().gate();
        gate = {};
        gate.failOn = k;
        PF_Err err = PF_Err_NONE;
        // Send throws when the command leaves anything checked out.
        ASSERT_NO_THROW(err = rig.Send(PF_Cmd_UPDATE_PARAMS_UI)) << k << ", " << gate.failedCall;
        reported += err != PF_Err_NONE ? 1 : 0;
        const std::string call = gate.failedCall;
        gate = {};
        rig.Update();
        EXPECT_EQ(rig.Hidden(), expected.Hidden()) << call;
        // Of two controls that go together the first one tells: the other may have stayed behind.
        if (call != "PF_UpdateParamUI") {
            EXPECT_EQ(rig.Disabled(), expected.Disabled()) << call;
        }
    }
    EXPECT_GT(reported, 20);
}

TEST(Panel, StopsWhereverItIsAborted)
{
    PanelRig rig(kBusyPanel);
    orv::callGate& gate = rig.host().gate();
    rig.Update();
    // Two masks, the effect, and 205 controls.
    const std::int64_t checks = gate.abortChecks;
    EXPECT_EQ(checks, 2 + 1 + 205);
    for (std::int64_t k = 1; k <= checks; ++k) {
        gate = {};
        gate.abortOn = k;
        PF_Err err = PF_Err_NONE;
        ASSERT_NO_THROW(err = rig.Send(PF_Cmd_UPDATE_PARAMS_UI)) << k;
        EXPECT_EQ(err, PF_Interrupt_CANCEL) << k;
        EXPECT_EQ(gate.abortChecks, k);
    }
}

TEST(UserChangedParam, DoesNothingWithoutAMask)
{
    PanelRig rig(SceneWith(Value(kAllowMaximumTextureSize, 1), Mask(3, false)));
    const AESDK_OpenGL::AESDK_OpenGL_EffectCommonData before = S_EffectCommonData;
    rig.host().gate() = {};
    EXPECT_EQ(rig.Send(PF_Cmd_USER_CHANGED_PARAM), PF_Err_NONE);
    EXPECT_EQ(rig.host().gate().made, 0);
    EXPECT_EQ(S_EffectCommonData.maxTextureSize, before.maxTextureSize);
    EXPECT_EQ(S_EffectCommonData.frameBufferA, before.frameBufferA);
}

TEST(UserChangedParam, RebuildsTheTargetsForTheSizeAllowed)
{
    GLint largest = 0;
    for (const int allowed : {0, 1}) {
        PanelRig rig(
            SceneWith(Value(kMask, 1) + Value(kAllowMaximumTextureSize, allowed), Mask(3, false)));
        (void)rig.Send(PF_Cmd_USER_CHANGED_PARAM);
        const AESDK_OpenGL::SaveRestoreOGLContext before;
        AESDK_OpenGL::SetContext(S_EffectCommonData.context);
        glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB, &largest);
        EXPECT_EQ(S_EffectCommonData.maxTextureSize, allowed ? largest : largest / 2);
        EXPECT_TRUE(S_EffectCommonData.resourcesReady);
        EXPECT_NE(S_EffectCommonData.frameBufferA[0], 0u);
        // What GL said about the old targets is not left for the next command.
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }
}

TEST(UserChangedParam, ReturnsWhateverHostCallFailed)
{
    PanelRig rig(SceneWith(Value(kMask, 1), Mask(3, false)));
    orv::callGate& gate = rig.host().gate();
    gate = {};
    (void)rig.Send(PF_Cmd_USER_CHANGED_PARAM);
    const std::int64_t calls = gate.made;
    std::set<std::string> failed;
    for (std::int64_t k = 1; k <= calls; ++k) {
        gate = {};
        gate.failOn = k;
        PF_Err err = PF_Err_NONE;
        ASSERT_NO_THROW(err = rig.Send(PF_Cmd_USER_CHANGED_PARAM)) << k;
        if (gate.failedCall == "AEGP_ExecuteScript") {
            EXPECT_EQ(err, PF_Err_INTERNAL_STRUCT_DAMAGED);
        }
        failed.insert(gate.failedCall);
    }
    EXPECT_TRUE(failed.contains("AEGP_ExecuteScript"));
}

}  // namespace
