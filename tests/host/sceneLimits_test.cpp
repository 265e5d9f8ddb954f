// Scenes at and beyond what the loader accepts. All of them end quickly.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

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
    const auto withMasks = [](int count) {
        const std::string mask = R"({"pt":{"k":{"v":[],"i":[],"o":[]}}})";
        return Scene(Solid(fmt::format(R"("masksProperties":[{}])", Listed(mask, count))));
    };
    EXPECT_EQ(LoadError(withMasks(1000)), "loaded");
    EXPECT_EQ(LoadError(withMasks(1001)),
              "scene.json: layers[0].masksProperties: 1001 masks, the limit is 1000");

    const auto withVertices = [](int count) {
        const std::string points = Listed("[0,0]", count);
        return Scene(
            SolidWithMask(fmt::format(R"({{"k":{{"v":[{0}],"i":[{0}],"o":[{0}]}}}})", points)));
    };
    EXPECT_EQ(LoadError(withVertices(10000)), "loaded");
    EXPECT_EQ(LoadError(withVertices(10001)),
              "scene.json: layers[0].masksProperties[0].pt.k.v: 10001 vertices, the limit is "
              "10000");

    const auto withKeys = [](int count) {
        const std::string keys = Listed(R"({"t":0,"s":[0]})", count);
        return Scene(Solid(fmt::format(R"("ks":{{"r":{{"k":[{}]}}}})", keys)));
    };
    EXPECT_EQ(LoadError(withKeys(100000)), "loaded");
    EXPECT_EQ(LoadError(withKeys(100001)),
              "scene.json: layers[0].ks.r.k: 100001 key frames, the limit is 100000");
}

TEST(SceneLimits, SlotsCountForEachUse)
{
    // A slot of 1 + 1 + 5 x 100000 values, each use of which is as many keys in memory.
    const std::string key = R"({"t":0,"s":[0],"h":1})";
    const std::string slots =
        fmt::format(R"("slots":{{"a":{{"p":{{"k":[{}]}}}}}})", Listed(key, 100000));
    const auto used = [&](int times) {
        return Scene(Listed(Solid(R"("ks":{"r":{"sid":"a"}})"), times), slots);
    };
    EXPECT_EQ(LoadError(used(9)), "loaded");
    EXPECT_EQ(LoadError(used(10)),
              "scene.json: layers[9].ks.r.sid: the slots in use come to more than the limit of "
              "5000000 JSON values");
}

TEST(SceneLimits, NumbersAreKeptToTheLastBit)
{
    const std::vector<std::pair<const char*, double>> kNumbers{
        {"1e9", 1e9},
        {"-1000000000", -1e9},
        {"-0.0", -0.0},
        {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
        {"2.2250738585072011e-308", 0x0.fffffffffffffp-1022},
        {"1e-400", 0.0},
        {"0.30000000000000004", 0x1.3333333333334p-2},
        {"123456789.12345678", 0x1.d6f34547e6b74p+26},
        {"999999999.99999994", 0x1.dcd64ffffffffp+29}};
    for (const auto& [text, expected] : kNumbers) {
        const project scene =
            Load(Scene(Solid(fmt::format(R"("ks":{{"r":{{"k":{}}}}})", text)))).scene;
        const double read = scene.compositions[0].layers[0].transform.rotation.constant.at(0);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(expected))
            << text;
    }
    for (const char* text : {"1000000000.0000001", "-1e10", "1e308", "99999999999999999999"}) {
        EXPECT_TRUE(LoadError(Scene(Solid(fmt::format(R"("st":{})", text))))
                        .ends_with("is beyond the limit of 1e9"))
            << text;
    }
}

TEST(SceneLimits, OfEqualKeysTheLastCounts)
{
    const project scene =
        Load(Scene(Solid(R"("ty":9,"ks":{"r":{"k":1},"r":{"k":2}},"nm":"a","nm":"b","ty":1)")))
            .scene;
    const layer& l = scene.compositions[0].layers[0];
    EXPECT_EQ(l.type, layerType::solid);
    EXPECT_EQ(l.name, "b");
    EXPECT_EQ(l.transform.rotation.constant, std::vector{2.0});
}

TEST(SceneLimits, HugeTextsLoadButAreNotRepeated)
{
    const std::string huge(std::size_t{20} << 20, 'x');
    EXPECT_EQ(
        Load(Scene(Solid(fmt::format(R"("nm":"{}")", huge)))).scene.compositions[0].layers[0].name,
        huge);
    for (const std::string& scene :
         {Scene(Solid(fmt::format(R"("nm":5,"{}":1)", huge))),
          Scene(Solid(fmt::format(R"("ip":"{}")", huge))),
          Scene("", fmt::format(R"("kal":{{"{}":1e9999}})", huge)),
          Scene("", fmt::format(R"("kal":{{"depth":{}1}})", std::string(1 << 20, '1'))),
          fmt::format(R"({{"fr":"{})", huge), huge}) {
        const std::string error = LoadError(scene);
        EXPECT_NE(error, "loaded");
        EXPECT_LT(error.size(), 1000U) << error.substr(0, 1000);
    }
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
