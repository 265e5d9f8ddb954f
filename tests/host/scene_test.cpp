// What the loader makes of sound scene files.
#include "scene/loader.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "host/sceneFixture.h"
#include "image/imageFile.h"
#include "support/caseName.h"
#include "support/tempFolder.h"

namespace orv::test {
namespace {

using numbers = std::vector<double>;

/// The examples of the format's document, in its order.
std::vector<std::string> DocumentExamples()
{
    const char* folder = std::getenv("ORV_SOURCE_DIR");
    std::ifstream stream(fmt::format("{}/docs/scene-format.md", folder == nullptr ? "." : folder));
    std::stringstream content;
    content << stream.rdbuf();
    const std::string text = content.str();
    const std::string opening = "```json\n", closing = "\n```";
    std::vector<std::string> examples;
    for (std::size_t at = text.find(opening); at != std::string::npos;
         at = text.find(opening, at + 1)) {
        const std::size_t start = at + opening.size();
        examples.push_back(text.substr(start, text.find(closing, start) - start));
    }
    return examples;
}

loadedScene LoadBeside(const TempFolder& folder, const std::string& text, bool allowOutside = false)
{
    loadedScene result;
    result.scene =
        LoadSceneText(text, folder.file("scene.json"), {allowOutside, false, {TestEffect()}},
                      [&](const std::string& warning) { result.warnings.push_back(warning); });
    return result;
}

TEST(SceneExamples, TheFlatRibbonOfTheDocumentLoads)
{
    const std::vector<std::string> examples = DocumentExamples();
    ASSERT_EQ(examples.size(), 2U);
    const TempFolder folder;
    std::filesystem::create_directory(folder.path() / "images");
    WritePng(image(320, 40, 8), folder.file("images/stripes.png"));

    const loadedScene loaded = LoadBeside(folder, examples[0]);
    EXPECT_TRUE(loaded.warnings.empty());
    const composition& main = loaded.scene.compositions.at(0);
    EXPECT_EQ(main.width, 640);
    ASSERT_EQ(main.layers.size(), 2U);
    EXPECT_TRUE(main.layers[1].hidden);
    EXPECT_EQ(loaded.scene.images.at(0).pixels->width, 320);
    const layer& ribbon = main.layers[0];
    EXPECT_EQ(ribbon.masks.at(0).path.keys.size(), 2U);
    // Source is the second layer, Mask the first mask, the path is stretched, the end turned.
    const std::map<int, property>& values = ribbon.effects.at(0).values;
    ASSERT_EQ(values.size(), 4U);
    EXPECT_EQ(values.at(2).constant, numbers{2.0});
    EXPECT_EQ(values.at(29).constant, numbers{1.0});
    EXPECT_EQ(values.at(35).constant, numbers{1.0});
    EXPECT_EQ(values.at(37).constant, numbers{180.0});
}

TEST(SceneExamples, TheSpatialRibbonOfTheDocumentLoads)
{
    const loadedScene loaded = Load(DocumentExamples().at(1));
    EXPECT_TRUE(loaded.warnings.empty());
    EXPECT_EQ(loaded.scene.depth, 16);
    const composition& main = loaded.scene.compositions.at(0);
    EXPECT_TRUE(main.motionBlur.enabled);
    EXPECT_EQ(main.motionBlur.samples, 8);
    ASSERT_EQ(main.layers.size(), 6U);
    EXPECT_EQ(main.layers[1].parent, 0);
    EXPECT_TRUE(main.layers[1].transform.anchorGiven);
    EXPECT_EQ(main.layers[1].camera.focusDistance->constant, numbers{1333.0});
    EXPECT_EQ(main.layers[2].light.type, lightType::spot);
    EXPECT_EQ(main.layers[3].light.color.constant, (numbers{1.0, 1.0, 1.0}));
    const std::map<int, property>& values = main.layers[4].effects.at(0).values;
    EXPECT_EQ(values.at(2).constant, numbers{6.0});
    EXPECT_EQ(values.at(32).keys.size(), 2U);
    EXPECT_EQ(values.at(250).constant, numbers{4.0});
}

TEST(SceneHeader, RoundsFramesThatExportersWriteALittleOff)
{
    const project scene =
        Load(R"({"fr":25,"ip":0.0004,"op":29.0000011811942,"w":99.6,"h":50,"layers":[]})").scene;
    EXPECT_EQ(scene.firstFrame, 0);
    EXPECT_EQ(scene.endFrame, 29);
    EXPECT_EQ(scene.compositions[0].width, 100);
}

struct blurCase {
    const char* name;
    const char* members;
    bool mainOn, innerOn;
    double innerAngle;
};
class MotionBlurSwitch : public testing::TestWithParam<blurCase> {};

TEST_P(MotionBlurSwitch, IsInheritedUnlessSaidOtherwise)
{
    const project scene = Load(Scene("", GetParam().members)).scene;
    EXPECT_EQ(scene.compositions.at(0).motionBlur.enabled, GetParam().mainOn);
    EXPECT_EQ(scene.compositions.at(1).motionBlur.enabled, GetParam().innerOn);
    EXPECT_EQ(scene.compositions.at(1).motionBlur.shutterAngle, GetParam().innerAngle);
}

const blurCase kScenes[] = {
    {"Nowhere", R"("assets":[{"id":"a","layers":[]}])", false, false, 180},
    {"Inherited", R"("mb":{"sa":90},"assets":[{"id":"a","layers":[]}])", true, true, 90},
    {"Own", R"("assets":[{"id":"a","layers":[],"mb":{"sa":45}}])", false, true, 45},
    {"ForcedOff", R"("kal":{"motionBlur":false},"mb":{},"assets":[{"id":"a","layers":[],"mb":{}}])",
     false, false, 180},
    {"ForcedOn", R"("kal":{"motionBlur":1},"assets":[{"id":"a","layers":[]}])", true, true, 180}};
INSTANTIATE_TEST_SUITE_P(Scenes, MotionBlurSwitch, testing::ValuesIn(kScenes), caseName{});

const layer& OnlyLayer(const loadedScene& loaded)
{
    return loaded.scene.compositions[0].layers[0];
}

TEST(SceneProperty, TakesTheLastValueOfOldFilesFromTheKeyBefore)
{
    const loadedScene loaded = Load(
        Scene(Solid(R"("ks":{"r":{"k":[{"t":0,"s":[1],"e":[99]},{"t":4,"s":[2],"e":[3]},{"t":8}]},
                 "o":{"k":[{"t":0,"s":[1],"e":[9],"h":1},{"t":4}]}})")));
    const transformProps& props = OnlyLayer(loaded).transform;
    ASSERT_EQ(props.rotation.keys.size(), 3U);
    EXPECT_EQ(props.rotation.keys[1].value, numbers{2.0});
    EXPECT_EQ(props.rotation.keys[2].value, numbers{3.0});
    EXPECT_EQ(props.opacity.keys[1].value, numbers{1.0});
}

TEST(SceneProperty, ReadsSlotsPlainNumbersAndSingleKeys)
{
    const loadedScene loaded =
        Load(Scene(Solid(R"("ks":{"r":{"sid":"turn","k":1},"o":{"sid":"none","k":[7]},
                 "a":{"k":[{"t":3,"s":[4,5,6]}]},"p":{"s":true,"y":{"k":8}}})"),
                   R"("slots":{"turn":{"p":{"k":30}},"empty":{}})"));
    const transformProps& props = OnlyLayer(loaded).transform;
    EXPECT_EQ(props.rotation.constant, numbers{30.0});
    EXPECT_EQ(props.opacity.constant, numbers{7.0});
    EXPECT_EQ(props.anchor.constant, (numbers{4.0, 5.0, 6.0}));
    EXPECT_FALSE(props.anchor.animated());
    EXPECT_TRUE(props.split);
    EXPECT_EQ(props.positionY.constant, numbers{8.0});
}

TEST(SceneProperty, ClampsTheTimesOfHandlesButNotTheirValues)
{
    const loadedScene loaded = Load(Scene(
        Solid(R"("ks":{"r":{"k":[{"t":0,"s":[1],"o":{"x":-1,"y":-2},"i":{"x":[0.5,3],"y":[4]}},
                 {"t":9,"s":[2]}]}})")));
    const keyFrame& key = OnlyLayer(loaded).transform.rotation.keys.at(0);
    EXPECT_EQ(key.out.x, numbers{0.0});
    EXPECT_EQ(key.out.y, numbers{-2.0});
    EXPECT_EQ(key.in.x, (numbers{0.5, 1.0}));
    EXPECT_EQ(key.in.y, numbers{4.0});
}

struct valueCase {
    const char* name;
    const char* entry;
    int index;
    numbers value;
};
class EffectValue : public testing::TestWithParam<valueCase> {};

TEST_P(EffectValue, IsResolvedAndComplete)
{
    const loadedScene loaded = Load(Scene(
        Solid(R"("ind":4)") + "," + SolidWithEffect(GetParam().entry, R"("ind":9,"masksProperties":[
                     {"nm":"a","pt":{"k":{"v":[],"i":[],"o":[]}}},
                     {"nm":"b","pt":{"k":{"v":[],"i":[],"o":[]}}}])")));
    const effect& shown = loaded.scene.compositions[0].layers[1].effects.at(0);
    ASSERT_EQ(shown.values.count(GetParam().index), 1U);
    EXPECT_EQ(shown.values.at(GetParam().index).constant, GetParam().value);
}

const valueCase kKinds[] = {
    {"ByIndex", R"({"ix":32,"v":{"k":5}})", 32, {5}},
    {"ByMatchName", R"({"mn":"KAL_Orv-0005","nm":"Mask","v":{"k":5}})", 32, {5}},
    {"ByName", R"({"nm":"Start point","v":{"k":[5]}})", 32, {5}},
    {"EmptyEntryIsSkipped", R"({},{"ix":32,"v":{"k":5}})", 32, {5}},
    {"GroupsHaveNone", R"({"ix":1,"v":0},{"ix":27},{"ix":32,"v":{"k":5}})", 32, {5}},
    {"AtTheSinglePrecisionLimit", R"({"ix":250,"v":{"k":0.1}})", 250, {0.1}},
    {"SeveralTurns", R"({"ix":19,"v":{"k":-1085.5}})", 19, {-1085.5}},
    {"PopupIsRounded", R"({"ix":279,"v":{"k":1.6}})", 279, {2}},
    {"CheckboxTakesTrue", R"({"ix":35,"v":{"k":true}})", 35, {1}},
    {"ColourWithoutAlpha", R"({"ix":254,"v":{"k":[0,0.5,1]}})", 254, {0, 0.5, 1, 1}},
    // The solid is 20 x 10 and without depth.
    {"PointIsCompleted", R"({"ix":269,"v":{"k":[3]}})", 269, {3, 5, 0}},
    {"LayerByInd", R"({"ix":2,"v":{"k":9}})", 2, {2}},
    {"NoLayer", R"({"ix":2,"v":{"k":0}})", 2, {0}},
    {"MaskByPosition", R"({"ix":29,"v":{"k":2}})", 29, {2}},
    {"MaskNameWins", R"({"ix":29,"v":{"k":1},"kal":{"mask":"b"}})", 29, {2}},
    {"MaskNameAlone", R"({"ix":29,"kal":{"mask":"a"}})", 29, {1}},
    {"SingleKeyWhereNothingMayVary", R"({"ix":18,"v":{"k":[{"t":0,"s":[7]}]}})", 18, {7}}};
INSTANTIATE_TEST_SUITE_P(Kinds, EffectValue, testing::ValuesIn(kKinds), caseName{});

TEST(EffectValues, ThatCannotBeMixedHold)
{
    const loadedScene loaded = Load(Scene(SolidWithEffect(
        R"({"ix":279,"v":{"k":[{"t":0,"s":[1],"e":[2]},{"t":5}]}},
           {"ix":2,"v":{"k":[{"t":0,"s":[0]},{"t":5,"s":[3]}]}})",
        R"("ind":3)")));
    const std::map<int, property>& values = OnlyLayer(loaded).effects[0].values;
    EXPECT_TRUE(values.at(279).keys.at(0).hold);
    EXPECT_EQ(values.at(279).keys.at(1).value, numbers{2.0});
    EXPECT_TRUE(values.at(2).keys.at(0).hold);
    EXPECT_EQ(values.at(2).keys.at(1).value, numbers{1.0});
}

TEST(SceneCompositions, TakeTheSizeOfTheFirstLayerThatShowsThem)
{
    const std::string shown =
        R"({"ty":0,"ip":0,"op":1,"refId":"a","w":30,"h":20},
           {"ty":0,"ip":0,"op":1,"refId":"a","w":60,"h":40})";
    const project scene = Load(Scene(shown, R"("assets":[
        {"id":"unused","layers":[]},{"id":"a","layers":[{"ty":4,"ip":0,"op":1}]}])"))
                              .scene;
    EXPECT_EQ(scene.compositions.at(1).width, 100);
    EXPECT_EQ(scene.compositions.at(1).height, 50);
    EXPECT_EQ(scene.compositions.at(2).width, 30);
    EXPECT_EQ(scene.compositions.at(2).layers.at(0).height, 20);
}

TEST(SceneTransform, TurnsFlatLayersByROrRzAndSpatialOnesByRzOnly)
{
    const loadedScene loaded = Load(Scene(Solid(R"("ks":{"r":{"k":1},"rz":{"k":2}})") + "," +
                                          Solid(R"("ks":{"rz":{"k":2}})") + "," +
                                          Solid(R"("ddd":1,"ks":{"r":{"k":1},"rz":{"k":2}})")));
    const std::vector<layer>& layers = loaded.scene.compositions[0].layers;
    EXPECT_EQ(layers[0].transform.rotation.constant, numbers{1.0});
    EXPECT_EQ(layers[1].transform.rotation.constant, numbers{2.0});
    EXPECT_EQ(layers[2].transform.rotation.constant, numbers{2.0});
}

}  // namespace
}  // namespace orv::test
