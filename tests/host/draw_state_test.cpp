// Digests of what pictures depend on: same pixels may share one, other pixels never do.
#include <gtest/gtest.h>

#include <set>

#include "draw/sceneRenderer.h"
#include "host/draw_project.h"
#include "support/caseName.h"

namespace orv {
namespace {

using stateBytes = std::array<std::uint8_t, 16>;

/// The states of the main composition's layer 0.
class StateOf {
public:
    explicit StateOf(project scene, const renderQuality& quality = {})
        : scene_(std::move(scene)), renderer_(scene_, quality, effects_)
    {
    }
    stateBytes own(double t, std::size_t layer = 0)
    {
        return renderer_.images().OwnPixelsState(shown(), comp().layers[layer], t);
    }
    stateBytes input(double t, int effectIndex)
    {
        return renderer_.images().InputState(shown(), comp().layers[0], effectIndex, t);
    }
    bool needsEffects(double t)
    {
        return renderer_.images().NeedsEffects(shown(), comp().layers[0], t);
    }
    void render(double t) { renderer_.RenderComposition(comp(), t); }

private:
    const composition& comp() { return scene_.compositions[0]; }
    shownComposition shown() { return {&scene_, &comp(), comp().width, comp().height}; }

    project scene_;
    CallingRunner effects_;
    SceneRenderer renderer_;
};

TEST(OwnPixelsState, OfAStillLayerChangesOnlyAtItsEnds)
{
    layer solid = SolidLayer(4, 4, kRed);
    solid.ip = 2.0;
    solid.op = 9.0;
    solid.transform.rotation = Moving(0, 90);  // no part of its own pixels
    StateOf state(OneComposition(4, 4, {solid}));
    EXPECT_EQ(state.own(2.0), state.own(8.5));
    EXPECT_NE(state.own(2.0), state.own(1.0));
    EXPECT_NE(state.own(2.0), state.own(9.0));
}

TEST(OwnPixelsState, TellsLayersApartByWhatTheyShow)
{
    layer picture = Shown(layerType::image, 4, 4), other = picture;
    picture.image = 0;
    other.image = 1;
    StateOf state(
        OneComposition(8, 8,
                       {SolidLayer(4, 4, kRed), SolidLayer(4, 4, kGreen), SolidLayer(4, 5, kRed),
                        picture, other, Shown(layerType::empty, 0, 0), SolidLayer(4, 4, kRed)}));
    std::set<stateBytes> states;
    for (std::size_t i = 0; i < 6; ++i) states.insert(state.own(0.0, i));
    EXPECT_EQ(states.size(), 6U);
    EXPECT_EQ(state.own(0.0, 6), state.own(0.0, 0)) << "two layers of equal pixels";
}

TEST(OwnPixelsState, BelongsToOneRendering)
{
    const project scene = OneComposition(4, 4, {SolidLayer(4, 4, kRed)});
    std::set<stateBytes> states;
    for (const renderQuality& each :
         {renderQuality{1, 1, 8}, {2, 1, 8}, {1, 2, 8}, {1, 1, 16}, {1, 1, 8}}) {
        states.insert(StateOf(scene, each).own(0.0));
    }
    EXPECT_EQ(states.size(), 5U);
}

struct nestedCase {
    const char* name;
    void (*change)(project&);  ///< of a main composition that shows two more, one in the other
    bool differs;              ///< the states of frames 0 and 7
};
class NestedState : public testing::TestWithParam<nestedCase> {};
TEST_P(NestedState, FollowsWhatMovesInside)
{
    project scene = OneComposition(4, 4, {Nested(1, 4, 4)});
    AddComposition(scene, 4, 4, {Nested(2, 4, 4), Shown(layerType::camera, 0, 0)});
    AddComposition(scene, 4, 4, {SolidLayer(4, 4, kRed)});
    GetParam().change(scene);
    StateOf state(scene);
    const stateBytes first = state.own(0.0);
    EXPECT_EQ(state.own(7.0) != first, GetParam().differs);
    EXPECT_EQ(state.own(0.0), first);
}
const nestedCase kChanges[] = {
    {"Nothing", [](project&) {}, false},
    {"OutsideOnly",
     [](project& p) { p.compositions[0].layers[0].transform.opacity = Moving(0, 100); }, false},
    {"DeepTransform",
     [](project& p) { p.compositions[2].layers[0].transform.rotation = Moving(0, 90); }, true},
    {"DeepEnd", [](project& p) { p.compositions[2].layers[0].op = 3.0; }, true},
    {"Mask",
     [](project& p) {
         mask m;
         m.opacity = Moving(0, 100);
         p.compositions[2].layers[0].masks = {m};
     },
     true},
    {"Camera", [](project& p) { p.compositions[1].layers[1].camera.zoom = Moving(10, 20); }, true},
    {"TimeRemap", [](project& p) { p.compositions[1].layers[0].timeRemap = Moving(0, 1); }, true},
    {"AnEffect", [](project& p) { p.compositions[2].layers[0].effects = {RunningEffect()}; }, true},
    {"AnEffectThatIsOff",
     [](project& p) {
         p.compositions[2].layers[0].effects = {RunningEffect()};
         p.compositions[2].layers[0].effects[0].enabled = false;
     },
     false}};
INSTANTIATE_TEST_SUITE_P(Changes, NestedState, testing::ValuesIn(kChanges), caseName{});

TEST(InputState, AddsMasksAndEarlierEffects)
{
    layer l = SolidLayer(4, 4, kRed);
    l.effects.assign(2, RunningEffect());
    project plain = OneComposition(4, 4, {l});
    StateOf still(plain);
    EXPECT_EQ(still.input(0.0, 0), still.input(7.0, 0));
    EXPECT_NE(still.input(0.0, 1), still.input(7.0, 1)) << "an effect may draw by the clock";
    EXPECT_NE(still.input(0.0, 1), still.input(0.0, 0));

    mask m;
    m.path.constant = Rectangle(0, 0, 2, 2);
    m.opacity = Moving(0, 100);
    project masked = plain;
    masked.compositions[0].layers[0].masks = {m};
    StateOf moving(masked);
    EXPECT_NE(moving.input(0.0, 0), moving.input(7.0, 0));
    EXPECT_EQ(moving.own(0.0), moving.own(7.0));

    masked.compositions[0].layers[0].masks[0].mode = maskMode::none;
    StateOf unclipped(masked);
    EXPECT_EQ(unclipped.input(0.0, 0), unclipped.input(7.0, 0));
}

TEST(NeedsEffects, UntilTheCompositionIsDrawnInThisFrame)
{
    layer inner = SolidLayer(4, 4, kRed);
    project scene = OneComposition(4, 4, {Nested(1, 4, 4)});
    AddComposition(scene, 4, 4, {inner});
    EXPECT_FALSE(StateOf(scene).needsEffects(0.0));

    scene.compositions[1].layers[0].effects = {RunningEffect()};
    StateOf state(scene);
    EXPECT_TRUE(state.needsEffects(0.0));
    state.render(0.0);
    EXPECT_FALSE(state.needsEffects(0.0));
    EXPECT_TRUE(state.needsEffects(1.0));
}

}  // namespace
}  // namespace orv
