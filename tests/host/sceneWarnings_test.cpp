// What the loader tells without refusing the file, and what it makes of it. With --strict each
// warning refuses the file with the same text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/sceneFixture.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

struct doubtfulScene {
    const char* name;
    std::string text;
    const char* warning;
};

class DoubtfulScene : public testing::TestWithParam<doubtfulScene> {};

TEST_P(DoubtfulScene, WarnsOnce)
{
    EXPECT_EQ(Load(GetParam().text).warnings, std::vector<std::string>{GetParam().warning});
}

TEST_P(DoubtfulScene, IsRefusedWhenStrict)
{
    EXPECT_EQ(LoadError(GetParam().text, true), GetParam().warning);
}

const doubtfulScene kLayers[] = {
    {"ShapeLayer", Scene(R"({"ty":4,"ip":0,"op":1})"),
     "scene.json: layers[0].ty: shape layers are not drawn: transparent"},
    {"TextLayer", Scene(R"({"ty":5,"ip":0,"op":1})"),
     "scene.json: layers[0].ty: text layers are not drawn: transparent"},
    {"AudioLayer", Scene(R"({"ty":6,"ip":0,"op":1})"),
     "scene.json: layers[0].ty: layers of this type are not supported, skipped"},
    {"UnknownParent", Scene(Solid(R"("parent":8)")),
     "scene.json: layers[0].parent: no layer has ind 8, no parent"},
    {"UnknownAsset", Scene(R"({"ty":2,"ip":0,"op":1,"refId":"a"})"),
     "scene.json: layers[0].refId: no asset has the id \"a\", the layer has no pixels"},
    {"DuplicateInd", Scene(Solid(R"("ind":1)") + "," + Solid(R"("ind":1)")),
     "scene.json: layers[1].ind: 1 is also the ind of layers[0], which is meant by it"},
    {"BlendMode", Scene(Solid(R"("bm":3)")),
     "scene.json: layers[0].bm: blend modes are not supported, ignored"},
    {"TrackMatte", Scene(Solid(R"("tt":1)")),
     "scene.json: layers[0].tt: track mattes are not supported, ignored"},
    {"AutoOrientation", Scene(Solid(R"("ao":1)")),
     "scene.json: layers[0].ao: auto-orientation is not supported, ignored"},
    {"LayerStyles", Scene(Solid(R"("sy":[{"ty":1}])")),
     "scene.json: layers[0].sy: layer styles are not supported, ignored"},
    {"CollapsedTransforms", Scene(Solid(R"("ct":1)")),
     "scene.json: layers[0].ct: collapsed transforms are not supported, ignored"},
    {"Skew", Scene(Solid(R"("ks":{"sk":{"k":5}})")),
     "scene.json: layers[0].ks.sk: skew is not supported, ignored"},
    {"TurnOutOfThePlane", Scene(Solid(R"("ks":{"ry":{"k":[{"t":0,"s":[0]},{"t":4,"s":[9]}]}})")),
     "scene.json: layers[0].ks.ry: not 0 on a 2D layer, ignored"},
    {"FlatOrientation", Scene(Solid(R"("ks":{"or":{"k":[0,0,1]}})")),
     "scene.json: layers[0].ks.or: not 0 on a 2D layer, ignored"},
    {"Expression", Scene(Solid(R"("ks":{"r":{"k":5,"x":"time*5"}})")),
     "scene.json: layers[0].ks.r.x: expressions are not run, ignored"},
    {"SlotExpressionUsedTwice",
     Scene(Solid(R"("ks":{"r":{"sid":"s"},"o":{"sid":"s"}})"),
           R"("slots":{"s":{"p":{"k":5,"x":"time"}}})"),
     "scene.json: slots.s.p.x: expressions are not run, ignored"},
    {"MaskExpansion", Scene(SolidWithMask(R"({"k":{"v":[],"i":[],"o":[]}})", R"("x":{"k":2})")),
     "scene.json: layers[0].masksProperties[0].x: mask expansion is not supported, ignored"},
    {"MaskFeather", Scene(SolidWithMask(R"({"k":{"v":[],"i":[],"o":[]}})", R"("f":{"k":[0,2]})")),
     "scene.json: layers[0].masksProperties[0].f: mask feather is not supported, ignored"},
    {"VertexCounts",
     Scene(SolidWithMask(
         R"({"k":[{"t":0,"s":[{"v":[],"i":[],"o":[]}]},{"t":5,"s":[{"v":[[0,0]],"i":[[0,0]],"o":[[0,0]]}]}]})")),
     "scene.json: layers[0].masksProperties[0].pt.k[0]: the paths at t = 0 and t = 5 have 0 "
     "and 1 vertices, the first holds"},
    {"ConeFeather",
     Scene(R"({"ty":14,"ip":0,"op":1,"kal":{"light":{"type":"spot","coneFeather":120}}})"),
     "scene.json: layers[0].kal.light.coneFeather: 120 is outside 0..100, clamped"},
    {"NegativeAperture", Scene(R"({"ty":13,"ip":0,"op":1,"pe":{"k":9},"kal":{"aperture":-1}})"),
     "scene.json: layers[0].kal.aperture: -1 is below 0, clamped"},
    {"MotionBlurSamples", Scene("", R"("mb":{"spf":100})"),
     "scene.json: mb.spf: 100 is outside 2..64, clamped"}};
INSTANTIATE_TEST_SUITE_P(Layers, DoubtfulScene, testing::ValuesIn(kLayers), caseName{});

const doubtfulScene kUnknownKeys[] = {
    {"AtTheTop", Scene("", R"("kal":{"deepth":8})"),
     "scene.json: kal.deepth: unknown key, ignored"},
    {"OnASolid", Scene(Solid(R"("kal":{"dof":1})")),
     "scene.json: layers[0].kal.dof: unknown key, ignored"},
    {"OnACamera", Scene(R"({"ty":13,"ip":0,"op":1,"pe":{"k":9},"kal":{"depthOfField":1}})"),
     "scene.json: layers[0].kal.depthOfField: unknown key, ignored"},
    {"OnALight",
     Scene(R"({"ty":14,"ip":0,"op":1,"kal":{"light":{"type":"point","colour":[1,1,1]}}})"),
     "scene.json: layers[0].kal.light.colour: unknown key, ignored"},
    {"OnAValue", Scene(SolidWithEffect(R"({"ix":32,"v":{"k":1},"kal":{"mask":"a"}})")),
     "scene.json: layers[0].ef[0].ef[0].kal.mask: unknown key, ignored"}};
INSTANTIATE_TEST_SUITE_P(UnknownKeys, DoubtfulScene, testing::ValuesIn(kUnknownKeys), caseName{});

const doubtfulScene kEffects[] = {
    {"NotLoaded", Scene(Solid(R"("ef":[{"mn":"Other","ef":[{"ix":"?"}]}])")),
     "scene.json: layers[0].ef[0]: the effect \"Other\" is not loaded, skipped"},
    {"AboveTheRange", Scene(SolidWithEffect(R"({"ix":250,"v":{"k":1001}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k: 1001 is outside "
     "0.1..1000, clamped"},
    {"KeyBelowTheRange",
     Scene(SolidWithEffect(R"({"ix":32,"v":{"k":[{"t":0,"s":[0]},{"t":1,"s":[-2000000]}]}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k[1].s: -2000000 is outside "
     "-1000000..1000000, clamped"},
    {"NoSuchChoice", Scene(SolidWithEffect(R"({"ix":279,"v":{"k":3}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k: 3 is outside 1..2, clamped"},
    {"BrightColour", Scene(SolidWithEffect(R"({"ix":254,"v":{"k":[1,2,0]}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k: 2 is outside 0..1, clamped"}};
INSTANTIATE_TEST_SUITE_P(Effects, DoubtfulScene, testing::ValuesIn(kEffects), caseName{});

TEST(Scene, IgnoresUnknownFieldsWithoutAWord)
{
    EXPECT_TRUE(Load(Scene(Solid(R"("cl":"x","tags":[1,{"a":null}])"), R"("fonts":{"list":7})"))
                    .warnings.empty());
}

}  // namespace
}  // namespace orv::test
