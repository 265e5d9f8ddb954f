// Whole compositions.
#include <gtest/gtest.h>

#include "draw/sceneRenderer.h"
#include "host/draw_project.h"
#include "host/image_bytes.h"
#include "image/imageFile.h"
#include "support/caseName.h"
#include "support/imageCompare.h"

namespace orv {
namespace {

image RenderMain(const project& scene, double t = 0.0, const renderQuality& quality = {})
{
    CallingRunner effects;
    return SceneRenderer(scene, quality, effects).RenderComposition(scene.compositions[0], t);
}

TEST(Scene, LayersLieFromTheListsEndToItsStart)
{
    const image picture =
        RenderMain(OneComposition(3, 1, {SolidLayer(1, 1, kRed), SolidLayer(2, 1, kGreen)}));
    EXPECT_EQ(PixelOf(picture, 0, 0), kRedPixel);
    EXPECT_EQ(PixelOf(picture, 1, 0), kGreenPixel);
    EXPECT_EQ(PixelOf(picture, 2, 0), kNoPixel);
}

TEST(Scene, OnlyLayersThatShowAreDrawn)
{
    layer late = SolidLayer(1, 1, kRed), hidden = late, matte = late, clear = late;
    late.ip = 5.0;
    hidden.hidden = true;
    matte.matteSource = true;
    clear.transform.opacity = Constant({0.0});
    const project scene = OneComposition(1, 1,
                                         {late, hidden, matte, clear, Shown(layerType::empty, 1, 1),
                                          Shown(layerType::null, 0, 0), SolidLayer(1, 1, kBlue)});
    EXPECT_EQ(PixelOf(RenderMain(scene, 4.0), 0, 0), kBluePixel);
    EXPECT_EQ(PixelOf(RenderMain(scene, 5.0), 0, 0), kRedPixel);
}

TEST(Scene, OpacityCountsOnce)
{
    layer half = SolidLayer(1, 1, kRed);
    half.transform.opacity = Constant({50.0});
    const image picture = RenderMain(OneComposition(1, 1, {half}), 0.0, {1, 1, 16});
    EXPECT_EQ(picture, Row(16, {16384, 32768, 0, 0}));
}

// ------------------------------------------------------------------ depth

struct depthCase {
    const char* name;
    std::vector<layer> layers;
    std::array<int, 4> seen;
};
class DepthOrder : public testing::TestWithParam<depthCase> {};
TEST_P(DepthOrder, DecidesWithinARunOfThreeDLayers)
{
    const image picture = RenderMain(OneComposition(36, 36, GetParam().layers));
    EXPECT_EQ(PixelOf(picture, 18, 18), GetParam().seen);
}
const layer kNear = InThreeD(At(SolidLayer(36, 36, kRed), 0, 0, -2));
const layer kFar = InThreeD(At(SolidLayer(36, 36, kGreen), 0, 0, 20));
const layer kAsFar = InThreeD(At(SolidLayer(36, 36, kBlue), 0, 0, 20));
const layer kFlat = At(SolidLayer(1, 1, kBlue), 0, 0);
layer NotDrawn()
{
    layer l = SolidLayer(36, 36, kBlue);
    l.hidden = true;
    return l;
}
const depthCase kLists[] = {{"TheNearerIsOnTop", {kFar, kNear}, kRedPixel},
                            {"AsListed", {kNear, kFar}, kRedPixel},
                            {"EqualDepthsKeepTheListsOrder", {kFar, kAsFar}, kGreenPixel},
                            {"AFlatLayerSeparates", {kFar, kFlat, kNear}, kGreenPixel},
                            {"OneThatIsNotDrawnDoesNot", {kFar, NotDrawn(), kNear}, kRedPixel},
                            {"TheCentreCounts",
                             // its left edge is nearer, at z = -5, its centre farther
                             {[] {
                                  layer l = InThreeD(At(SolidLayer(36, 36, kGreen), 9, 0, -5));
                                  l.transform.rotationY = Constant({-60.0});
                                  return l;
                              }(),
                              kNear},
                             kRedPixel}};
INSTANTIATE_TEST_SUITE_P(Lists, DepthOrder, testing::ValuesIn(kLists), caseName{});

TEST(Scene, FlatChildrenOfThreeDParentsUseXAndY)
{
    layer parent = InThreeD(At(Shown(layerType::null, 0, 0), 2, 1, 300));
    layer child = SolidLayer(1, 1, kRed);
    child.parent = 1;
    const image picture = RenderMain(OneComposition(4, 3, {child, parent}));
    EXPECT_EQ(PixelOf(picture, 2, 1), kRedPixel);
    EXPECT_EQ(PixelOf(picture, 1, 1), kNoPixel);
}

// ------------------------------------------------------------------ precompositions

/// A composition whose one pixel is red in frames 0 to 4 and green from frame 5 on.
std::vector<layer> RedThenGreen()
{
    layer red = SolidLayer(1, 1, kRed), green = SolidLayer(1, 1, kGreen);
    red.op = green.ip = 5.0;
    return {red, green};
}

TEST(Precomposition, HasTheSizeOfTheLayerThatShowsIt)
{
    // Shown with 2 x 1 pixels, a 3 x 3 solid inside is cut; placed at (1, 1).
    project scene = OneComposition(4, 3, {At(Nested(1, 2, 1), 1, 1)});
    AddComposition(scene, 9, 9, {SolidLayer(3, 3, kRed)});
    const image picture = RenderMain(scene);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x) {
            const bool inside = y == 1 && (x == 1 || x == 2);
            EXPECT_EQ(PixelOf(picture, x, y), inside ? kRedPixel : kNoPixel) << x << ", " << y;
        }
    }
}

TEST(Precomposition, RunsInItsLayersTime)
{
    layer stretched = Nested(1, 1, 1);  // frame t shows (t - 2)/2
    stretched.start = 2.0;
    stretched.stretch = 2.0;
    project scene = OneComposition(1, 1, {stretched});
    AddComposition(scene, 1, 1, RedThenGreen());
    EXPECT_EQ(PixelOf(RenderMain(scene, 11.0), 0, 0), kRedPixel);
    EXPECT_EQ(PixelOf(RenderMain(scene, 12.0), 0, 0), kGreenPixel);

    // Remapped: seconds 1 to 0 over 10 frames at 10 frames a second, backwards from frame 10.
    scene.frameRate = 10.0;
    scene.compositions[0].layers[0].timeRemap = Moving(1.0, 0.0);
    EXPECT_EQ(PixelOf(RenderMain(scene, 5.0), 0, 0), kGreenPixel);
    EXPECT_EQ(PixelOf(RenderMain(scene, 6.0), 0, 0), kRedPixel);
}

TEST(Precomposition, IsDrawnOnceAFrame)
{
    layer inner = SolidLayer(1, 1, kRed);
    inner.effects = {RunningEffect()};
    project scene = OneComposition(2, 1, {Nested(1, 1, 1), At(Nested(1, 1, 1), 1, 0)});
    AddComposition(scene, 1, 1, {inner});
    CallingRunner effects;
    SceneRenderer renderer(scene, {}, effects);
    renderer.RenderComposition(scene.compositions[0], 0.0);
    EXPECT_EQ(effects.runs, 1);
    renderer.RenderComposition(scene.compositions[0], 0.0);
    EXPECT_EQ(effects.runs, 2);
}

// ------------------------------------------------------------------ effects

TEST(Effects, RunInOrderOnMaskedPixels)
{
    layer l = SolidLayer(2, 1, kRed);
    mask m;
    m.path.constant = Rectangle(0, 0, 1, 1);
    l.masks = {m};
    l.effects.assign(4, RunningEffect());
    l.effects[1].enabled = false;
    l.effects[2].loaded = false;
    std::vector<int> order;
    std::vector<image> inputs;
    CallingRunner effects([&](const layer&, int index, double, LayerImages&, const image& input) {
        order.push_back(index);
        inputs.push_back(input);
        image output = input;
        output.row(0)[3] = static_cast<std::uint8_t>(index + 1);  // blue of the first pixel
        return output;
    });
    const project scene = OneComposition(2, 1, {l});
    const image picture =
        SceneRenderer(scene, {}, effects).RenderComposition(scene.compositions[0], 0.0);
    EXPECT_EQ(order, (std::vector<int>{0, 3}));
    EXPECT_EQ(inputs.at(0), Row(8, {255, 255, 0, 0, 0, 255, 0, 0}));
    EXPECT_EQ(inputs.at(1), Row(8, {255, 255, 0, 1, 0, 255, 0, 0}));
    EXPECT_EQ(picture, Row(8, {255, 255, 0, 4, 0, 0, 0, 0}));
}

TEST(Effects, ALayersOutputComesBeforeOpacityAndTransform)
{
    layer l = At(SolidLayer(2, 1, kRed), 100, 100);
    l.transform.opacity = Constant({10.0});
    l.hidden = true;
    const project scene = OneComposition(4, 4, {l, Shown(layerType::null, 0, 0)});
    CallingRunner effects;
    SceneRenderer renderer(scene, {}, effects);
    const composition& comp = scene.compositions[0];
    EXPECT_EQ(renderer.RenderLayer(comp, comp.layers[0], 0.0),
              Row(8, {255, 255, 0, 0, 255, 255, 0, 0}));
    EXPECT_EQ(
        FailureText(failureKind::frame, [&] { renderer.RenderLayer(comp, comp.layers[1], 0.0); }),
        "layer 2 has no pixels to render");
}

TEST(Effects, AnOutputOfAnotherSizeFailsTheFrame)
{
    layer l = SolidLayer(2, 1, kRed);
    l.name = "band";
    l.effects = {RunningEffect()};
    const project scene = OneComposition(2, 1, {l});
    CallingRunner effects(
        [](const layer&, int, double, LayerImages&, const image&) { return image(1, 1, 8); });
    SceneRenderer renderer(scene, {}, effects);
    EXPECT_EQ(FailureText(failureKind::frame,
                          [&] { renderer.RenderComposition(scene.compositions[0], 0.0); }),
              "\"band\": effect 1 gave 1 x 1 pixels for 2 x 1");
}

// ------------------------------------------------------------------ images and previews

project WithImage(const image& pixels)
{
    layer l = Shown(layerType::image, pixels.width, pixels.height);
    l.image = 0;
    project scene = OneComposition(pixels.width, pixels.height, {l});
    imageAsset asset;
    asset.width = pixels.width;
    asset.height = pixels.height;
    asset.pixels = std::make_shared<const image>(pixels);
    scene.images.push_back(asset);
    return scene;
}

/// Opaque, smooth in both directions.
image Gradient(int width, int height)
{
    image picture(width, height, 8);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::array<int, 4> argb{255, 255 * x / width, 255 * y / height, 128};
            for (std::size_t c = 0; c < 4; ++c) {
                picture.row(y)[4 * static_cast<std::size_t>(x) + c] =
                    static_cast<std::uint8_t>(argb[c]);
            }
        }
    }
    return picture;
}

TEST(Preview, AnImageIsItsMean)
{
    const image picture = Gradient(33, 17);
    EXPECT_EQ(RenderMain(WithImage(picture), 0.0, {2, 4, 8}), PreviewImage(picture, 2, 4));
    EXPECT_EQ(RenderMain(WithImage(picture), 0.0, {1, 1, 16}), ConvertDepth(picture, 16));
}

}  // namespace
}  // namespace orv
