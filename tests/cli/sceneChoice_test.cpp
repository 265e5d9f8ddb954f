#include "cli/sceneChoice.h"

#include <gtest/gtest.h>

#include "cli/expectFailure.h"

namespace orv {
namespace {

layer Named(const char* name, std::optional<int> ind, int size)
{
    layer made;
    made.name = name;
    made.ind = ind;
    made.width = made.height = size;
    return made;
}

TEST(ChooseLayer, TakesANumberAsIndFirst)
{
    composition comp;
    comp.layers = {Named("2", 1, 8), Named("logo", 2, 8), Named("7", std::nullopt, 8)};
    EXPECT_EQ(&ChooseLayer(comp, "2"), &comp.layers[1]);
    EXPECT_EQ(&ChooseLayer(comp, "logo"), &comp.layers[1]);
    EXPECT_EQ(&ChooseLayer(comp, "7"), &comp.layers[2]);
}

TEST(ChooseLayer, RefusesWhatIsNotOneLayerWithPixels)
{
    composition comp;
    comp.layers = {Named("a", 1, 8), Named("a", 2, 8), Named("camera", 3, 0)};
    const auto refusal = [&](const char* text) {
        return FailureOf([&] { ChooseLayer(comp, text); });
    };
    EXPECT_EQ(refusal("a"), "2: --layer: several layers are named 'a'; use the `ind`");
    EXPECT_EQ(refusal("b"), "2: --layer: the composition has no layer 'b'; it has: a, a, camera");
    EXPECT_EQ(refusal("camera"), "2: --layer: layer 'camera' has no pixels");
}

TEST(ChooseComposition, KnowsAssetsOnly)
{
    project scene;
    scene.compositions.resize(2);
    scene.compositions[1].id = "intro";
    EXPECT_EQ(&ChooseComposition(scene, "intro"), &scene.compositions[1]);
    EXPECT_EQ(FailureOf([&] { ChooseComposition(scene, "outro"); }),
              "2: --comp: the scene has no composition 'outro'; it has: intro");
}

}  // namespace
}  // namespace orv
