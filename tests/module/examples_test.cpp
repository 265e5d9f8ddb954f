// The example scenes: every parameter is put to use in one of them, every value that they set can
// be seen, and their pictures stay as they are. At a quarter of their size.
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "draw/sceneRenderer.h"
#include "plugin/pluginEffectRunner.h"
#include "plugin/pluginHost.h"
#include "scene/loader.h"
#include "support/caseName.h"
#include "support/golden.h"

namespace orv::test {
namespace {

constexpr int kDivisor = 4;
constexpr int kFirstZ = 43, kFirstScale = 146, kVertices = 100;
constexpr int kAllowMaximumTextureSize = 282;

struct exampleCase {
    const char* name;
    /// Frames at which a value may show; the golden is of the first.
    std::array<int, 2> frames;
    std::vector<int> goldenDepths = {8};
};

const std::vector<exampleCase>& Examples()
{
    static const std::vector<exampleCase> examples{
        {"demo", {20, 35}},        {"wave", {40, 10}},          {"loop", {30, 10}},
        {"vertices", {30, 5}},     {"overlay", {20, 8}},        {"band", {20, 39}, {8, 16}},
        {"flight", {20, 5}},       {"focus", {0, 39}, {8, 16}}, {"spots", {40, 10}},
        {"lights", {20, 0}},       {"spiral", {39, 2}},         {"twist_blur", {20, 30}},
        {"camera_blur", {20, 12}}, {"two_boxes", {10, 29}},
    };
    return examples;
}

std::filesystem::path ExamplesFolder()
{
    return std::filesystem::path(std::getenv("ORV_SOURCE_DIR")) / "examples";
}

/// An example with the module that draws it. Its values may be taken out.
class Example {
public:
    explicit Example(const std::string& name)
        : host_(std::getenv("ORV_PLUGIN"), Warnings()), runner_(host_)
    {
        loadOptions options;
        options.strict = true;
        options.effects.push_back(host_.declaration());
        scene_ = LoadScene((ExamplesFolder() / (name + ".json")).string(), options, {});
    }

    image Render(double t, int depth = 8, int divisor = kDivisor)
    {
        SceneRenderer renderer(scene_, {divisor, divisor, depth}, runner_);
        return renderer.RenderComposition(scene_.compositions.front(), t);
    }
    std::vector<effect*> effects()
    {
        std::vector<effect*> found;
        for (layer& each : scene_.compositions.front().layers)
            for (effect& e : each.effects) found.push_back(&e);
        return found;
    }
    [[nodiscard]] const effectDeclaration& declaration() const { return host_.declaration(); }

private:
    static pluginOptions Warnings()
    {
        pluginOptions options;
        options.warn = [](const std::string& text) { ADD_FAILURE() << text; };
        return options;
    }

    PluginHost host_;
    project scene_;
    PluginEffectRunner runner_;
};

/// Of the hundred values of a vertex run these are looked at; the others differ by number alone.
bool IsSampled(int index)
{
    static const std::set<int> vertices{1, 2, 5, 10, 33, 50, 75, 90, 99, 100};
    for (const int first : {kFirstZ, kFirstScale})
        if (index >= first && index < first + kVertices)
            return vertices.contains(index - first + 1);
    return true;
}

/// What cannot be seen: see docs/examples.md.
bool IsInvisible(int index)
{
    return index == kAllowMaximumTextureSize;
}

bool IsSettable(const paramDeclaration& param)
{
    return param.kind != paramKind::groupStart && param.kind != paramKind::groupEnd;
}

/// 16 bits per channel as 8.
image Narrowed(const image& deep)
{
    image narrow(deep.width, deep.height, 8);
    for (int y = 0; y < deep.height; ++y)
        for (int i = 0; i < 4 * deep.width; ++i)
            narrow.row(y)[i] =
                static_cast<std::uint8_t>(std::lround(deep.row16(y)[i] * 255.0 / 32768.0));
    return narrow;
}

/// Opaque 8-bit pictures of even size: the mean of each two by two pixels.
image Halved(const image& picture)
{
    image half(picture.width / 2, picture.height / 2, 8);
    for (int y = 0; y < half.height; ++y)
        for (int x = 0; x < half.width; ++x)
            for (int c = 0; c < 4; ++c) {
                const auto at = [&](int u, int v) {
                    return static_cast<int>(picture.row(2 * y + v)[4 * (2 * x + u) + c]);
                };
                half.row(y)[4 * x + c] =
                    static_cast<std::uint8_t>((at(0, 0) + at(1, 0) + at(0, 1) + at(1, 1) + 2) / 4);
            }
    return half;
}

}  // namespace

class ExampleScenes : public testing::TestWithParam<exampleCase> {};

TEST_P(ExampleScenes, ShowEveryValueThatTheySet)
{
    Example example(GetParam().name);
    std::vector<image> whole;
    for (const int frame : GetParam().frames) whole.push_back(example.Render(frame));
    for (effect* e : example.effects()) {
        std::vector<int> indices;
        for (const auto& [index, value] : e->values)
            if (IsSampled(index) && !IsInvisible(index)) indices.push_back(index);
        for (const int index : indices) {
            auto value = e->values.extract(index);
            bool seen = false;
            for (std::size_t k = 0; k < whole.size() && !seen; ++k)
                seen = example.Render(GetParam().frames[k]) != whole[k];
            EXPECT_TRUE(seen) << example.declaration().params[static_cast<std::size_t>(index)].name
                              << " (" << index << ") of " << e->where;
            e->values.insert(std::move(value));
        }
    }
    // The values are all back, and nothing else has changed.
    EXPECT_EQ(example.Render(GetParam().frames[0]), whole[0]);
}

TEST_P(ExampleScenes, LookAsTheyDid)
{
    Example example(GetParam().name);
    for (const int depth : GetParam().goldenDepths) {
        const std::string name =
            std::string("example_") + GetParam().name + (depth == 16 ? "_16" : "");
        EXPECT_TRUE(MatchesGolden(example.Render(GetParam().frames[0], depth), name));
    }
}

TEST_P(ExampleScenes, LookAlikeInBothDepths)
{
    Example example(GetParam().name);
    const int frame = GetParam().frames[0];
    const image shallow = example.Render(frame, 8), deep = Narrowed(example.Render(frame, 16));
    // 8 bits round between the stages, and a pixel of a rim may fall to either side of a limit of
    // the smoothing or of the blur.
    EXPECT_LT(Measure(deep, shallow, 3.0 / 255.0).shareAbove, 0.005);
}

TEST_P(ExampleScenes, LookAlikeInBothSizes)
{
    Example example(GetParam().name);
    const int frame = GetParam().frames[0];
    const image whole = example.Render(frame, 8, 1), half = example.Render(frame, 8, 2);
    const imageDifference difference = Measure(half, Halved(whole), 24.0 / 255.0);
    // Rims and fine stripes differ, since they are smoothed in pixels of their own size.
    EXPECT_LT(difference.shareAbove, 0.03);
}

INSTANTIATE_TEST_SUITE_P(All, ExampleScenes, testing::ValuesIn(Examples()), caseName{});

TEST(Examples, AreAllKnownHere)
{
    std::set<std::string> known, there;
    for (const exampleCase& each : Examples()) known.insert(each.name);
    for (const auto& entry : std::filesystem::directory_iterator(ExamplesFolder()))
        if (entry.path().extension() == ".json") there.insert(entry.path().stem().string());
    EXPECT_EQ(known, there);
}

TEST(Examples, PutEveryParameterToUse)
{
    std::set<int> settable, used;
    for (const exampleCase& each : Examples()) {
        Example example(each.name);
        for (const paramDeclaration& param : example.declaration().params)
            if (param.index != 0 && IsSettable(param)) settable.insert(param.index);
        for (const effect* e : example.effects())
            for (const auto& [index, value] : e->values) used.insert(index);
    }
    EXPECT_EQ(settable.size(), 264U);
    EXPECT_EQ(used, settable);
}

}  // namespace orv::test
