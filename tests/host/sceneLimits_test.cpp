// Scenes at and beyond what the loader accepts. All of them end quickly.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>

#include "host/sceneFixture.h"

namespace orv::test {
namespace {

std::string Repeated(const std::string& text, int times)
{
    std::string result;
    for (int k = 0; k < times; ++k) result += text;
    return result;
}

/// `count` items with commas between them.
std::string Listed(const std::string& item, int count)
{
    return item + Repeated("," + item, count - 1);
}

TEST(SceneLimits, NestingOf128LevelsIsAllowedAndNoMore)
{
    // The object and 127 lists.
    const auto nested = [](int lists) {
        return Scene("", fmt::format(R"("x":{}{})", Repeated("[", lists), Repeated("]", lists)));
    };
    EXPECT_EQ(LoadError(nested(127)), "loaded");
    EXPECT_EQ(LoadError(nested(128)),
              fmt::format("scene.json: x{}: nested deeper than the limit of 128 levels",
                          Repeated("[0]", 127)));
}

TEST(SceneLimits, ManyBracketsAreRefusedWithoutDescendingIntoThem)
{
    EXPECT_EQ(LoadError(Repeated("[", 300000)),
              "scene.json:1:1: found a list, expected one object");
    EXPECT_EQ(LoadError("{\"x\":" + Repeated("[", 300000)),
              fmt::format("scene.json: x{}: nested deeper than the limit of 128 levels",
                          Repeated("[0]", 127)));
}

TEST(SceneLimits, CountOfValues)
{
    // The object, five numbers and two lists are 8 values.
    EXPECT_EQ(LoadError(Scene("", "\"x\":[" + Listed("0", 4'999'993) + "]")),
              "scene.json: more than the limit of 5000000 JSON values");
}

TEST(SceneLimits, CountOfLayersHoldsForAllCompositionsTogether)
{
    const std::string null = R"({"ty":3,"ip":0,"op":1})";
    const auto scene = [&](int main, int inner) {
        return Scene(Listed(null, main),
                     fmt::format(R"("assets":[{{"id":"a","layers":[{}]}}])", Listed(null, inner)));
    };
    EXPECT_EQ(LoadError(scene(9000, 1000)), "loaded");
    EXPECT_EQ(LoadError(scene(9000, 1001)),
              "scene.json: assets[0].layers[1000]: more layers than the limit of 10000 in a file");
}

TEST(SceneLimits, CountOfMasksVerticesAndKeys)
{
    const std::string mask = R"({"pt":{"k":{"v":[],"i":[],"o":[]}}})";
    EXPECT_EQ(LoadError(Scene(Solid(fmt::format(R"("masksProperties":[{}])", Listed(mask, 1001))))),
              "scene.json: layers[0].masksProperties: 1001 masks, the limit is 1000");
    const std::string points = Listed("[0,0]", 10001);
    EXPECT_EQ(LoadError(Scene(
                  SolidWithMask(fmt::format(R"({{"k":{{"v":[{}],"i":[],"o":[]}}}})", points)))),
              "scene.json: layers[0].masksProperties[0].pt.k.v: 10001 vertices, the limit is "
              "10000");
    const std::string keys = Listed(R"({"t":0,"s":[0]})", 100001);
    EXPECT_EQ(LoadError(Scene(Solid(fmt::format(R"("ks":{{"r":{{"k":[{}]}}}})", keys)))),
              "scene.json: layers[0].ks.r.k: 100001 key frames, the limit is 100000");
}

std::string Showing(const std::string& id)
{
    return fmt::format(R"({{"ty":0,"ip":0,"op":1,"w":1,"h":1,"refId":"{}"}})", id);
}

/// Composition k shows composition k + 1 `times` times; the last one is empty.
std::string Chain(int compositions, int times)
{
    std::string assets;
    for (int k = 0; k < compositions; ++k) {
        const bool isLast = k + 1 == compositions;
        assets += fmt::format(R"({}{{"id":{},"layers":[{}]}})", k == 0 ? "" : ",", k,
                              isLast ? "" : Listed(Showing(std::to_string(k + 1)), times));
    }
    return Scene(Showing("0"), fmt::format(R"("assets":[{}])", assets));
}

TEST(SceneLimits, PrecompositionsNest64Deep)
{
    EXPECT_EQ(LoadError(Chain(64, 1)), "loaded");
    EXPECT_EQ(LoadError(Chain(65, 1)),
              "scene.json: assets[63].layers[0].refId: precompositions nest deeper than the limit "
              "of 64");
}

TEST(SceneLimits, NestingIsFoundWhereverTheChainWasMeasuredFirst)
{
    // The main composition meets the inner end of the chain before its outer end.
    std::string scene = Chain(65, 1);
    const std::string outer = Showing("0");
    scene.replace(scene.find(outer), outer.size(), Showing("40") + "," + outer);
    EXPECT_EQ(LoadError(scene),
              "scene.json: assets[39].layers[0].refId: precompositions nest deeper than the limit "
              "of 64");
}

TEST(SceneLimits, DrawsAreSummedOncePerComposition)
{
    // Main shows 0; each of 0..15 shows the next twice: 1 + 2 + 4 + ... + 2^15 = 65535 draws.
    EXPECT_EQ(LoadError(Chain(16, 2)), "loaded");
    EXPECT_EQ(LoadError(Chain(17, 2)),
              "scene.json: layers: 131071 layer draws in a frame, the limit is 100000");
    // 2^64 - 1 draws, which a double rounds, would take forever to count one by one.
    EXPECT_EQ(LoadError(Chain(64, 2)),
              "scene.json: layers: 1.8446744073709552e+19 layer draws in a frame, the limit is "
              "100000");
}

TEST(SceneLimits, ALongChainOfParentsLoads)
{
    std::string layers;
    for (int k = 1; k < 10000; ++k) {
        layers += fmt::format(R"({}{{"ty":3,"ip":0,"op":1,"ind":{},"parent":{}}})",
                              k == 1 ? "" : ",", k, k + 1);
    }
    EXPECT_EQ(LoadError(Scene(layers + R"(,{"ty":3,"ip":0,"op":1,"ind":10000})")), "loaded");
}

}  // namespace
}  // namespace orv::test
