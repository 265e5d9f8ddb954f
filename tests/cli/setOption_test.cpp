#include "cli/setOption.h"

#include <gtest/gtest.h>

#include "cli/expectFailure.h"
#include "support/caseName.h"

namespace orv {
namespace {

paramDeclaration Declare(int index, paramKind kind, const char* name)
{
    paramDeclaration param;
    param.index = index;
    param.kind = kind;
    param.name = name;
    return param;
}

effectDeclaration TestEffect()
{
    effectDeclaration declaration{.matchName = "KAL_Orv", .displayName = "KAL Orv", .params = {}};
    std::vector<paramDeclaration>& params = declaration.params;
    params = {
        Declare(0, paramKind::layer, ""),           Declare(1, paramKind::groupStart, "Group"),
        Declare(2, paramKind::layer, "Source"),     Declare(3, paramKind::floatSlider, "Extrusion"),
        Declare(4, paramKind::slider, "Layers"),    Declare(5, paramKind::angle, "Twist"),
        Declare(6, paramKind::checkbox, "Stretch"), Declare(7, paramKind::popup, "Mode"),
        Declare(8, paramKind::color, "Tint"),       Declare(9, paramKind::point3D, "Anchor"),
        Declare(10, paramKind::path, "Mask"),       Declare(11, paramKind::path, "Reference"),
        Declare(12, paramKind::path, "Reference")};
    params[3].validMin = static_cast<double>(0.1F);
    params[3].validMax = 1000.0;
    params[4].validMax = 500.0;
    params[7].choices = {"2D", "3D (composition)"};
    return declaration;
}

layer MakeLayer(int index, int ind, const char* name, int masks, bool bearsEffect)
{
    layer made;
    made.index = index;
    made.ind = ind;
    made.name = name;
    made.masks.resize(static_cast<std::size_t>(masks));
    for (std::size_t k = 0; k < made.masks.size(); ++k)
        made.masks[k].name = "path " + std::to_string(k + 1);
    if (bearsEffect) {
        effect instance;
        instance.matchName = "KAL_Orv";
        made.effects.push_back(instance);
    }
    return made;
}

/// Two layers with the effect, one picture, two named by numbers; the `ind`s are not the positions.
project TestScene()
{
    project scene;
    scene.compositions.resize(1);
    scene.compositions[0].layers = {
        MakeLayer(0, 10, "left", 2, true), MakeLayer(1, 20, "right", 1, true),
        MakeLayer(2, 30, "picture", 0, false), MakeLayer(3, 40, "7", 0, false),
        MakeLayer(4, 50, "20", 0, false)};
    return scene;
}

std::vector<double> ValueOn(const project& scene, std::size_t position, int param)
{
    const auto& values = scene.compositions[0].layers[position].effects[0].values;
    const auto found = values.find(param);
    return found == values.end() ? std::vector<double>{} : found->second.constant;
}

struct valueCase {
    const char* name;
    const char* text;
    int param;
    std::vector<double> value;
};

class SetValues : public testing::TestWithParam<valueCase> {};

TEST_P(SetValues, AreReadByTheParametersKind)
{
    project scene = TestScene();
    ApplySets(scene, TestEffect(), {ParseSet(GetParam().text)});
    EXPECT_EQ(ValueOn(scene, 0, GetParam().param), GetParam().value);
    EXPECT_EQ(ValueOn(scene, 1, GetParam().param), GetParam().value);
}

const valueCase kKinds[] = {{"Number", "Extrusion=2.5", 3, {2.5}},
                            {"FloatsLowerEnd", "Extrusion=0.1", 3, {0.1}},
                            {"ByIndex", "4=12", 4, {12}},
                            {"Turns", "Twist=-810.5", 5, {-810.5}},
                            {"On", "Stretch=On", 6, {1}},
                            {"Zero", "Stretch=0", 6, {0}},
                            {"ChoiceNumber", "Mode=2", 7, {2}},
                            {"ChoiceText", "Mode=3d (Composition)", 7, {2}},
                            {"Color", "Tint=1,0.5,0", 8, {1, 0.5, 0, 1}},
                            {"ColorWithAlpha", "Tint=1,0.5,0,0.25", 8, {1, 0.5, 0, 0.25}},
                            {"HexColor", "Tint=#ff0033", 8, {1, 0, 0.2, 1}},
                            {"HexColorWithAlpha", "Tint=#FF003300", 8, {1, 0, 0.2, 0}},
                            {"Point", "Anchor=320,-10.5,1e2", 9, {320, -10.5, 100}},
                            {"LayerByInd", "Source=30", 2, {3}},
                            {"LayerByName", "Source=picture", 2, {3}},
                            {"LayerByNumberAsName", "Source=7", 2, {4}},
                            {"NumberIsIndFirst", "Source=20", 2, {2}},
                            {"NoLayer", "Source=none", 2, {0}},
                            {"MaskByPosition", "Mask=1", 10, {1}},
                            {"MaskByName", "Mask=path 1", 10, {1}},
                            {"SameNameByIndex", "12=1", 12, {1}}};
INSTANTIATE_TEST_SUITE_P(Kinds, SetValues, testing::ValuesIn(kKinds), caseName{});

struct refusalCase {
    const char* name;
    const char* text;
    const char* reason;
};

class SetRefusals : public testing::TestWithParam<refusalCase> {};

TEST_P(SetRefusals, NameTheRequestAndTheReason)
{
    project scene = TestScene();
    EXPECT_EQ(FailureOf([&] { ApplySets(scene, TestEffect(), {ParseSet(GetParam().text)}); }),
              std::string("2: --set '") + GetParam().text + "': " + GetParam().reason);
}

const refusalCase kReasons[] = {
    {"NoValue", "Twist", "write NAME=VALUE or NAME@LAYER=VALUE"},
    {"NoName", "=3", "the parameter's name or index is missing"},
    {"NoOwner", "Twist@=3", "the layer is missing"},
    {"UnknownName", "Twirl=3", "KAL Orv has no parameter 'Twirl'"},
    {"InputLayer", "0=3", "parameters have the indices 1 to 12"},
    {"IndexTooHigh", "13=3", "parameters have the indices 1 to 12"},
    {"AmbiguousName", "Reference=1", "the parameters 11 and 12 have this name; use the index"},
    {"Group", "Group=1", "a group start has no value"},
    {"NotANumber", "Extrusion=much", "'Extrusion' takes a number"},
    {"NotFinite", "Extrusion=nan", "'Extrusion' takes a number"},
    {"TooLow", "Extrusion=0.09", "'Extrusion' takes 0.1 to 1000"},
    {"TooHigh", "Layers=501", "'Layers' takes 0 to 500"},
    {"NotWhole", "Layers=1.5", "'Layers' takes a whole number"},
    {"NotASwitch", "Stretch=2", "'Stretch' takes on or off"},
    {"NoSuchChoice", "Mode=3", "'Mode' takes 1 to 2: 2D, 3D (composition)"},
    {"ColorTooBright", "Tint=1,2,0", "'Tint' takes r,g,b or r,g,b,a, each 0..1, or #rrggbb[aa]"},
    {"ColorBadHex", "Tint=#ff00gg", "'Tint' takes r,g,b or r,g,b,a, each 0..1, or #rrggbb[aa]"},
    {"PointTooShort", "Anchor=1,2", "'Anchor' takes x,y,z in pixels"},
    {"NoSuchLayer", "Source=41", "there is no layer '41'"},
    {"NoSuchMaskSomewhere", "Mask=2",
     "masks of layer 'right' have the positions 1 to 1; 0 is none"},
    {"NoSuchMaskName", "Mask@left=path 3", "layer 'left' has no mask 'path 3'"},
    {"OwnerWithoutEffect", "Twist@picture=3", "no layer 'picture' has the effect KAL Orv"}};
INSTANTIATE_TEST_SUITE_P(Reasons, SetRefusals, testing::ValuesIn(kReasons), caseName{});

TEST(SetOption, OneLayerMayBeMeant)
{
    project scene = TestScene();
    scene.compositions[0].layers[0].name = "8";
    ApplySets(scene, TestEffect(), {ParseSet("Twist@20=5"), ParseSet("Mask@8=path 2")});
    EXPECT_TRUE(ValueOn(scene, 0, 5).empty());
    EXPECT_EQ(ValueOn(scene, 1, 5), std::vector{5.0});
    EXPECT_EQ(ValueOn(scene, 0, 10), std::vector{2.0});
    EXPECT_TRUE(ValueOn(scene, 1, 10).empty());
}

TEST(SetOption, ReplacesKeyFrames)
{
    project scene = TestScene();
    property moving;
    moving.keys.resize(2);
    scene.compositions[0].layers[0].effects[0].values[5] = moving;
    ApplySets(scene, TestEffect(), {ParseSet("Twist=1"), ParseSet("Twist=90")});
    EXPECT_FALSE(scene.compositions[0].layers[0].effects[0].values[5].animated());
    EXPECT_EQ(ValueOn(scene, 0, 5), std::vector{90.0});
}

}  // namespace
}  // namespace orv
