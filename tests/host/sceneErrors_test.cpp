// Each way in which a scene file can be wrong, with the whole message that its author gets.
#include <gtest/gtest.h>

#include <string>

#include "host/sceneFixture.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

struct brokenScene {
    const char* name;
    std::string text;
    const char* message;
};

class BrokenScene : public testing::TestWithParam<brokenScene> {};

TEST_P(BrokenScene, IsRefusedWithPlaceAndReason)
{
    EXPECT_EQ(LoadError(GetParam().text), GetParam().message);
}

const brokenScene kText[] = {
    {"Unclosed", "{\"fr\": 25,\n  \"ip\"",
     "scene.json:2:7: syntax error while parsing object separator - unexpected end "
     "of input; expected ':'"},
    {"WrongLiteral", "{\"fr\": nil}",
     "scene.json:1:9: syntax error while parsing value - invalid literal; last "
     "read: '\"fr\": ni'"},
    {"Empty", "",
     "scene.json:1:1: syntax error while parsing value - unexpected end of input; "
     "expected '[', '{', or a literal"},
    {"List", "[1]", "scene.json:1:1: found a list, expected one object"},
    {"Text", "\"x\"", "scene.json:1:1: found the text \"x\", expected one object"},
    {"BadUtf8", "{\"nm\": \"a\xC3(\"}", "scene.json:1:10: found byte C3, which is not UTF-8"},
    {"SurrogateUtf8", "{\n\"\xED\xA0\x80\": 1}",
     "scene.json:2:2: found byte ED, which is not UTF-8"},
    {"Zip", "PK\x03\x04rest", "scene.json:1:1: found zip data, expected JSON: unpack it"},
    {"Gzip", "\x1F\x8B\x08rest", "scene.json:1:1: found gzip data, expected JSON: unpack it"}};
INSTANTIATE_TEST_SUITE_P(Text, BrokenScene, testing::ValuesIn(kText), caseName{});

const brokenScene kLimits[] = {
    {"Overflow", Scene(Solid(R"("st":1e999)")),
     "scene.json: layers[0].st: 1e999 is beyond the limit of 1e9"},
    {"LargeNumber", Scene("", R"("odd key":[0,-1000000001])"),
     "scene.json: [\"odd key\"][1]: -1000000001 is beyond the limit of 1e9"},
    {"Width", R"({"fr":25,"ip":0,"op":1,"w":30001,"h":50,"layers":[]})",
     "scene.json: w: 30001 is outside 1..30000"},
    {"Area", R"({"fr":25,"ip":0,"op":1,"w":8193,"h":8192,"layers":[]})",
     "scene.json: 8193 x 8192 are 67117056 pixels, the limit is 67108864"},
    {"SolidHeight", Scene(R"({"ty":1,"ip":0,"op":1,"sw":1,"sh":0.4,"sc":"#000000"})"),
     "scene.json: layers[0].sh: 0 is outside 1..30000"},
    {"Rate", R"({"fr":1000,"ip":0,"op":1,"w":1,"h":1,"layers":[]})",
     "scene.json: fr: 1000 is outside the limits: above 0, at most 999"},
    {"RateOfZero", R"({"fr":0,"ip":0,"op":1,"w":1,"h":1,"layers":[]})",
     "scene.json: fr: 0 is outside the limits: above 0, at most 999"},
    {"Frames", R"({"fr":25,"ip":-1,"op":1000000,"w":1,"h":1,"layers":[]})",
     "scene.json: op: 1000001 frames, the limit is 1000000"},
    {"EndBeforeStart", R"({"fr":25,"ip":5,"op":5,"w":1,"h":1,"layers":[]})",
     "scene.json: op: 5 is not after ip, which is 5"},
    {"NoWholeFrame", R"({"fr":25,"ip":0.2,"op":0.8,"w":1,"h":1,"layers":[]})",
     "scene.json: op: no frame lies between ip 0.2 and op 0.8"}};
INSTANTIATE_TEST_SUITE_P(Limits, BrokenScene, testing::ValuesIn(kLimits), caseName{});

const brokenScene kFields[] = {
    {"Missing", R"({"fr":25,"ip":0,"op":1,"w":1,"layers":[]})",
     "scene.json: h: required field is missing, expected a number"},
    {"LayerField", Scene(R"({"ty":3,"op":1})"),
     "scene.json: layers[0].ip: required field is missing, expected a number"},
    {"TextForNumber", Scene(Solid(R"("st":"0")")),
     "scene.json: layers[0].st: expected a number, found the text \"0\""},
    {"NullForNumber", Scene(Solid(R"("sr":null)")),
     "scene.json: layers[0].sr: expected a number, found null"},
    {"NumberForList", Scene("", R"("assets":3)"),
     "scene.json: assets: expected a list, found the number 3"},
    {"ListForLayer", Scene(R"([])"), "scene.json: layers[0]: expected an object, found a list"},
    {"SwitchOfTwo", Scene(Solid(R"("hd":2)")),
     "scene.json: layers[0].hd: expected a switch (true, false, 1 or 0), found the "
     "number 2"},
    {"FractionalInd", Scene(Solid(R"("ind":1.5)")),
     "scene.json: layers[0].ind: expected a whole number, found the number 1.5"},
    {"Stretch", Scene(Solid(R"("sr":0)")),
     "scene.json: layers[0].sr: a stretch of 0 is not possible"},
    {"Colour", Scene(Solid(R"("sc":"#12345g")")),
     "scene.json: layers[0].sc: \"#12345g\" is no colour, expected #rrggbb"},
    {"DuplicateKeyLastCounts", Scene(Solid(R"("sr":1,"sr":0)")),
     "scene.json: layers[0].sr: a stretch of 0 is not possible"},
    {"Zoom", Scene(R"({"ty":13,"ip":0,"op":1,"pe":{"k":[{"t":0,"s":[9]},{"t":1,"s":[0]}]}})"),
     "scene.json: layers[0].pe.k[1].s: the zoom must be above 0, found 0"},
    {"NoZoom", Scene(R"({"ty":13,"ip":0,"op":1,"pe":{"k":[]}})"),
     "scene.json: layers[0].pe.k: the zoom must be above 0, found none"},
    {"LightType", Scene(R"({"ty":14,"ip":0,"op":1,"kal":{"light":{"type":"sun"}}})"),
     "scene.json: layers[0].kal.light.type: \"sun\" is no light type, expected "
     "parallel, spot, point or ambient"},
    {"Light", Scene(R"({"ty":14,"ip":0,"op":1})"),
     "scene.json: layers[0].kal: required field is missing, expected an object with "
     "\"light\""},
    {"Version", Scene("", R"("kal":{"version":2})"),
     "scene.json: kal.version: version 2 is newer than this program knows, the "
     "highest is 1"},
    {"Depth", Scene("", R"("kal":{"depth":32})"),
     "scene.json: kal.depth: a depth of 32 is not possible, expected 8 or 16"},
    {"Downsample", Scene("", R"("kal":{"downsample":[2,9]})"),
     "scene.json: kal.downsample[1]: 9 is no preview divisor, expected 1 to 8"},
    {"DownsampleFraction", Scene("", R"("kal":{"downsample":1.5})"),
     "scene.json: kal.downsample: 1.5 is no preview divisor, expected 1 to 8"}};
INSTANTIATE_TEST_SUITE_P(Fields, BrokenScene, testing::ValuesIn(kFields), caseName{});

const brokenScene kProperties[] = {
    {"Plain", Scene(Solid(R"("ks":{"r":5})")),
     "scene.json: layers[0].ks.r: expected an object, found the number 5"},
    {"NoValue", Scene(Solid(R"("ks":{"r":{"a":0}})")),
     "scene.json: layers[0].ks.r.k: required field is missing, expected a value or "
     "key frames"},
    {"TextInVector", Scene(Solid(R"("ks":{"p":{"k":[1,"2",3]}})")),
     "scene.json: layers[0].ks.p.k[1]: expected a number, found the text \"2\""},
    {"Descending", Scene(Solid(R"("ks":{"r":{"k":[{"t":5,"s":[1]},{"t":3,"s":[2]}]}})")),
     "scene.json: layers[0].ks.r.k[1].t: key frames must ascend in time, 3 comes after 5"},
    {"NoStart", Scene(Solid(R"("ks":{"r":{"k":[{"t":0,"s":[1]},{"t":4},{"t":9,"s":[2]}]}})")),
     "scene.json: layers[0].ks.r.k[1].s: required field is missing: the key frame "
     "at t = 4 is not the last, another follows at t = 9"},
    {"SingleWithoutStart", Scene(Solid(R"("ks":{"r":{"k":[{"t":0,"e":[1]}]}})")),
     "scene.json: layers[0].ks.r.k[0].s: required field is missing, expected a value"},
    {"NoEndAnywhere", Scene(Solid(R"("ks":{"r":{"k":[{"t":0,"s":[1]},{"t":4}]}})")),
     "scene.json: layers[0].ks.r.k[0].e: required field is missing, expected the "
     "value of the last key frame"},
    {"HalfAHandle",
     Scene(Solid(R"("ks":{"r":{"k":[{"t":0,"s":[1],"o":{"x":0}},{"t":4,"s":[1]}]}})")),
     "scene.json: layers[0].ks.r.k[0].o.y: required field is missing, expected a number or "
     "a list of numbers"},
    {"InSlot",
     Scene(Solid(R"("ks":{"r":{"sid":"turn","k":0}})"), R"("slots":{"turn":{"p":{"k":"x"}}})"),
     "scene.json: slots.turn.p.k: expected a number, found the text \"x\""}};
INSTANTIATE_TEST_SUITE_P(Properties, BrokenScene, testing::ValuesIn(kProperties), caseName{});

const brokenScene kMasks[] = {
    {"Lengths", Scene(SolidWithMask(R"({"k":{"v":[[0,0],[1,1]],"i":[[0,0]],"o":[[0,0],[1,1]]}})")),
     "scene.json: layers[0].masksProperties[0].pt.k: v, i and o have 2, 1 and 2 points, "
     "expected equal numbers"},
    {"NoTangents", Scene(SolidWithMask(R"({"k":[{"t":0,"s":[{"v":[]}]}]})")),
     "scene.json: layers[0].masksProperties[0].pt.k[0].s[0].i: required field is "
     "missing, expected a list of points"},
    {"Mode", Scene(SolidWithMask(R"({"k":{"v":[],"i":[],"o":[]}})", R"("mode":"x")")),
     "scene.json: layers[0].masksProperties[0].mode: \"x\" is no mask mode, "
     "expected n, a, s, i, l, d or f"},
    {"NoPath", Scene(Solid(R"("masksProperties":[{}])")),
     "scene.json: layers[0].masksProperties[0].pt: required field is missing, "
     "expected a path property"}};
INSTANTIATE_TEST_SUITE_P(Masks, BrokenScene, testing::ValuesIn(kMasks), caseName{});

const brokenScene kReferences[] = {
    {"DuplicateId", Scene("", R"("assets":[{"id":"7","layers":[]},{"id":7,"layers":[]}])"),
     "scene.json: assets[1].id: the id \"7\" is already that of assets[0]"},
    {"NoId", Scene("", R"("assets":[{"layers":[]}])"),
     "scene.json: assets[0].id: required field is missing, expected a text"},
    {"ParentCycle",
     Scene(Solid(R"("ind":1,"parent":2)") + "," + Solid(R"("ind":2,"parent":3)") + "," +
           Solid(R"("ind":3,"parent":2)")),
     "scene.json: layers[1].parent: the parents form a cycle: 2 -> 3 -> 2"},
    {"OwnParent", Scene(Solid(R"("ind":4,"parent":4)")),
     "scene.json: layers[0].parent: the parents form a cycle: 4 -> 4"},
    {"ImageForComposition",
     Scene(R"({"ty":0,"ip":0,"op":1,"w":1,"h":1,"refId":"a"})",
           R"("assets":[{"id":"a","p":"a.png"}])"),
     "scene.json: layers[0].refId: the asset \"a\" is an image, expected a composition"},
    {"OtherForImage", Scene(R"({"ty":2,"ip":0,"op":1,"refId":"a"})", R"("assets":[{"id":"a"}])"),
     "scene.json: layers[0].refId: the asset \"a\" is neither a composition nor an "
     "image, expected an image"},
    {"CompositionInItself",
     Scene(
         R"({"ty":0,"ip":0,"op":1,"w":1,"h":1,"refId":"a"})",
         R"("assets":[{"id":"a","layers":[{"ty":0,"ip":0,"op":1,"w":1,"h":1,"refId":"b"}]},{"id":"b","layers":[{"ty":0,"ip":0,"op":1,"w":1,"h":1,"refId":"a"}]}])"),
     "scene.json: assets[1].layers[0].refId: a composition contains itself: a -> b -> a"}};
INSTANTIATE_TEST_SUITE_P(References, BrokenScene, testing::ValuesIn(kReferences), caseName{});

const brokenScene kParameters[] = {
    {"IndexZero", Scene(SolidWithEffect(R"({"ix":0,"v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0].ix: index 0 is the layer itself and cannot be set"},
    {"IndexBeyond", Scene(SolidWithEffect(R"({"ix":283,"v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0].ix: no parameter has the index 283, there "
     "are 1 to 282"},
    {"UnknownId", Scene(SolidWithEffect(R"({"mn":"KAL_Orv-0002","v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0].mn: \"KAL_Orv-0002\" names no parameter, "
     "expected \"KAL_Orv-\" and a disk ID in four digits"},
    {"ShortId", Scene(SolidWithEffect(R"({"mn":"KAL_Orv-5","v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0].mn: \"KAL_Orv-5\" names no parameter, "
     "expected \"KAL_Orv-\" and a disk ID in four digits"},
    {"UnknownName", Scene(SolidWithEffect(R"({"nm":"Strat point","v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0].nm: no parameter is named \"Strat point\""},
    {"AmbiguousName", Scene(SolidWithEffect(R"({"nm":"Reference mask","v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0].nm: \"Reference mask\" is the name of "
     "parameters 14 and 31, use ix or mn"},
    {"NoName", Scene(SolidWithEffect(R"({"v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0]: names no parameter, expected ix, mn or nm"},
    {"IndexAndIdDiffer", Scene(SolidWithEffect(R"({"ix":5,"mn":"KAL_Orv-0005","v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0]: ix 5 is parameter 5 \"Parameter 5\", mn "
     "\"KAL_Orv-0005\" is parameter 32 \"Start point\""},
    {"SetTwice",
     Scene(SolidWithEffect(R"({"ix":32,"v":{"k":1}},{"nm":"Start point","v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[1]: parameter 32 \"Start point\" is already set by "
     "layers[0].ef[0].ef[0]"},
    {"NoValue", Scene(SolidWithEffect(R"({"ix":32})")),
     "scene.json: layers[0].ef[0].ef[0].v: required field is missing, expected a property"},
    {"TextValue", Scene(SolidWithEffect(R"({"ix":32,"v":{"k":"1"}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k: expected a number, found the text \"1\""},
    {"SwitchForSlider", Scene(SolidWithEffect(R"({"ix":32,"v":{"k":true}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k: expected a number, found true"},
    {"CannotVary",
     Scene(SolidWithEffect(R"({"ix":18,"v":{"k":[{"t":0,"s":[3]},{"t":1,"s":[4]}]}})")),
     "scene.json: layers[0].ef[0].ef[0].v: 2 key frames, but parameter 18 \"Mesh "
     "sub-sampling\" cannot vary over time"},
    {"UnknownLayer",
     Scene(SolidWithEffect(R"({"ix":2,"v":{"k":9}})", R"("ind":3)") + "," + Solid(R"("ind":5)")),
     "scene.json: layers[0].ef[0].ef[0].v.k: no layer of this composition has ind "
     "9, there are 3, 5"},
    {"LayerWithoutInds",
     Scene(SolidWithEffect(R"({"ix":2,"v":{"k":[{"t":0,"s":[0]},{"t":2,"s":[1]}]}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k[1].s: no layer of this composition has ind 1, "
     "no layer has an ind"},
    {"FractionalLayer", Scene(SolidWithEffect(R"({"ix":2,"v":{"k":0.5}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k: 0.5 is not a whole number"},
    {"MaskBeyond", Scene(SolidWithEffect(R"({"ix":29,"v":{"k":1}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k: mask 1 does not exist, the layer has 0"},
    {"NegativeMask", Scene(SolidWithEffect(R"({"ix":29,"v":{"k":-1}})")),
     "scene.json: layers[0].ef[0].ef[0].v.k: mask -1 does not exist, the layer has 0"},
    {"UnknownMask",
     Scene(SolidWithEffect(
         R"({"ix":29,"kal":{"mask":"c"}})",
         R"("masksProperties":[{"nm":"a","pt":{"k":{"v":[],"i":[],"o":[]}}},{"nm":"b","pt":{"k":{"v":[],"i":[],"o":[]}}}])")),
     "scene.json: layers[0].ef[0].ef[0].kal.mask: no mask is named \"c\", the layer has "
     "\"a\", \"b\""},
    {"AmbiguousMask",
     Scene(SolidWithEffect(
         R"({"ix":29,"kal":{"mask":"a"}})",
         R"("masksProperties":[{"nm":"a","pt":{"k":{"v":[],"i":[],"o":[]}}},{"nm":"a","pt":{"k":{"v":[],"i":[],"o":[]}}}])")),
     "scene.json: layers[0].ef[0].ef[0].kal.mask: \"a\" is the name of masks 1 and 2"}};
INSTANTIATE_TEST_SUITE_P(Parameters, BrokenScene, testing::ValuesIn(kParameters), caseName{});

}  // namespace
}  // namespace orv::test
