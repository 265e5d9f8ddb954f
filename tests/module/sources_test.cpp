// Where the ribbon's picture comes from, and when it is read again.
#include <dlfcn.h>

#include <cstdlib>

#include <gtest/gtest.h>

#include "module/rig.h"

namespace orv::test {
namespace {

const std::string kStraightMask = PolygonMask({{12, 24}, {52, 24}}, false);
const std::string kSourceAndMask = Value(2, "2") + Value(29, "1");

image Flat(const argb& color)
{
    image picture(40, 16, 8);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 40; ++x) SetPixel(picture, x, y, color);
    return picture;
}

TEST(Sources, AStillPictureIsReadOnceInTenFrames)
{
    ribbonScene scene{.masks = kStraightMask};
    // The reveal moves: every frame is another picture of one source.
    scene.values =
        kSourceAndMask + R"({"ix": 24, "v": {"k": [{"t": 0, "s": [20]}, {"t": 9, "s": [90]}]}}, )";
    Rig rig(scene.json(), {{"source.png", Flat({255, 9, 8, 7})}});
    for (int frame = 0; frame < 10; ++frame) rig.Composition(frame);
    EXPECT_EQ(rig.host().counters().renders, 10);
    EXPECT_EQ(rig.host().counters().sourceCopies, 1);
}

TEST(Sources, AnotherResolutionOrDepthIsReadAgain)
{
    ribbonScene scene{.masks = kStraightMask, .values = kSourceAndMask};
    Rig rig(scene.json(), {{"source.png", Flat({255, 9, 8, 7})}});
    rig.Composition(0);
    rig.SetQuality({2, 2, 8});
    rig.Composition(0);
    EXPECT_EQ(rig.host().counters().sourceCopies, 2) << "another resolution is another picture";
    rig.SetQuality({2, 2, 16});
    rig.Composition(0);
    EXPECT_EQ(rig.host().counters().sourceCopies, 3) << "another depth too";
}

/// Red until frame 5, blue from then on, in a composition that is the ribbon's source.
std::string SwitchingScene()
{
    ribbonScene scene{.masks = kStraightMask};
    scene.values = Value(2, "3") + Value(29, "1");
    scene.moreLayers =
        R"(, {"ty": 0, "ind": 3, "nm": "moving", "refId": "switch", "w": 40, "h": 16, "hd": true, "ip": 0, "op": 10, "ks": {}})";
    std::string json = scene.json();
    json.insert(json.find("\"assets\": [") + 11, R"({"id": "switch", "layers": [
 {"ty": 1, "sw": 40, "sh": 16, "sc": "#ff0000", "ip": 0, "op": 5, "ks": {}},
 {"ty": 1, "sw": 40, "sh": 16, "sc": "#0000ff", "ip": 5, "op": 10, "ks": {}}]}, )");
    return json;
}

TEST(Sources, AMovingCompositionIsRightInAnyOrderOfFrames)
{
    Rig rig(SwitchingScene(), {{"source.png", Flat({255, 9, 8, 7})}});
    const argb red{255, 255, 0, 0}, blue{255, 0, 0, 255};
    EXPECT_EQ(PixelAt(rig.Layer("ribbon", 0), 32, 24), red);
    EXPECT_EQ(PixelAt(rig.Layer("ribbon", 7), 32, 24), blue);
    EXPECT_EQ(PixelAt(rig.Layer("ribbon", 0), 32, 24), red);
}

TEST(Sources, TheSelectorReadsTheSourceAtItsOwnFrame)
{
    std::string json = SwitchingScene();
    const std::string mask = Value(29, "1");
    json.insert(json.find(mask), Value(3, "2") + Value(4, "7"));
    Rig rig(json, {{"source.png", Flat({255, 9, 8, 7})}});
    EXPECT_EQ(PixelAt(rig.Layer("ribbon", 0), 32, 24), (argb{255, 0, 0, 255}));
}

TEST(Sources, TheOwnLayerIsTheSourceWhenNoneIsChosen)
{
    // The layer is 64 x 48 and cropped to its upper third: 16 pixels high, its own colour.
    ribbonScene scene{.color = "#40c080", .masks = PolygonMask({{0, 8}, {64, 8}}, false)};
    scene.values = Value(29, "1") + Value(12, "66.7");
    Rig rig(scene.json(), {{"source.png", Flat({255, 9, 8, 7})}});
    const image first = rig.Layer("ribbon", 0), again = rig.Layer("ribbon", 1);
    EXPECT_EQ(first.height, 48);
    // The view is the crop, so the picture is the crop scaled to the layer: its middle is the
    // ribbon's.
    EXPECT_EQ(PixelAt(first, 32, 8), (argb{255, 0x40, 0xc0, 0x80}));
    EXPECT_EQ(first, again) << "textures that are used again must not change the picture";
}

/// Sends RENDER with parameters that no scene can give: "Mask" names a mask that is not there.
image RenderWithLostMask(Rig& rig)
{
    void* module = dlopen(std::getenv("ORV_PLUGIN"), RTLD_NOW | RTLD_NOLOAD);
    const auto entry = reinterpret_cast<PF_EntryPoint>(dlsym(module, "EntryPointFunc"));
    dlclose(module);
    const composition& main = rig.scene().compositions.front();
    const effectFrame frame{{&rig.scene(), &main, main.width, main.height},
                            &main.layers.front(),
                            0,
                            0.0,
                            {1, 1, 8},
                            &rig.images()};
    image result(main.width, main.height, 8);
    rig.host().WithFrame(
        frame, image(main.width, main.height, 8),
        [&](PF_InData& in_data, PF_OutData& out_data, PF_ParamDef* params[]) {
            params[29]->u.path_d.path_id = 123456;
            const void* suite = nullptr;
            ASSERT_EQ(
                in_data.pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion1, &suite), 0);
            const auto& worlds = *static_cast<const PF_WorldSuite1*>(suite);
            PF_LayerDef output{};
            ASSERT_EQ(worlds.new_world(in_data.effect_ref, main.width, main.height,
                                       PF_NewWorldFlag_CLEAR_PIXELS, &output),
                      0);
            EXPECT_EQ(entry(PF_Cmd_FRAME_SETUP, &in_data, &out_data, params, nullptr, nullptr),
                      PF_Err_NONE);
            EXPECT_EQ(entry(PF_Cmd_RENDER, &in_data, &out_data, params, &output, nullptr),
                      PF_Err_NONE);
            for (int y = 0; y < main.height; ++y)
                std::copy_n(static_cast<const std::uint8_t*>(output.data) +
                                static_cast<std::ptrdiff_t>(y) * output.rowbytes,
                            result.rowBytes(), result.row(y));
            EXPECT_EQ(worlds.dispose_world(in_data.effect_ref, &output), 0);
            in_data.pica_basicP->ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion1);
        });
    return result;
}

TEST(Sources, ALostMaskLaysTheSourceFlatInTheMiddle)
{
    // 40 x 16 in 64 x 48: x 12..51, y 16..31. In flat mode all lies at the mask's end, so the
    // reveal must pass it.
    for (const bool revealed : {false, true}) {
        ribbonScene scene{.masks = kStraightMask};
        scene.values = kSourceAndMask + Value(41, revealed ? "150" : "100");
        Rig rig(scene.json(), {{"source.png", Flat({255, 200, 30, 60})}});
        const image out = RenderWithLostMask(rig);
        EXPECT_EQ(PixelAt(out, 32, 24), (revealed ? argb{255, 200, 30, 60} : argb{}));
        EXPECT_EQ(PixelAt(out, 15, 19), (revealed ? argb{255, 200, 30, 60} : argb{}));
        EXPECT_EQ(PixelAt(out, 9, 24).a, 0);
        EXPECT_EQ(PixelAt(out, 32, 35).a, 0);
    }
}

}  // namespace
}  // namespace orv::test
