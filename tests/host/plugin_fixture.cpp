#include "host/plugin_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace orv::test {

namespace {

PF_ParamDef Named(PF_ParamType type, A_long id, const char* name)
{
    PF_ParamDef def{};
    def.param_type = type;
    def.uu.id = id;
    std::strncpy(def.name, name, sizeof def.name - 1);
    return def;
}

std::vector<PF_ParamDef> EasyParams()
{
    std::vector<PF_ParamDef> defs{
        Named(PF_Param_GROUP_START, 101, "Group"), Named(PF_Param_LAYER, 102, "Source"),
        Named(PF_Param_LAYER, 103, "Back"),        Named(PF_Param_FLOAT_SLIDER, 104, "Amount"),
        Named(PF_Param_SLIDER, 105, "Count"),      Named(PF_Param_ANGLE, 106, "Turn"),
        Named(PF_Param_POPUP, 107, "Choice"),      Named(PF_Param_CHECKBOX, 108, "Switch"),
        Named(PF_Param_COLOR, 109, "Ink"),         Named(PF_Param_POINT_3D, 110, "Place"),
        Named(PF_Param_PATH, 111, "Mask"),         Named(PF_Param_GROUP_END, 112, "")};
    const auto at = [&](int index) -> PF_ParamDefUnion& {
        return defs[static_cast<std::size_t>(index - 1)].u;
    };
    at(kAmount).fs_d.value = 25.0;
    at(kAmount).fs_d.dephault = 25.0f;
    at(kAmount).fs_d.valid_max = 1000.0f;
    at(kCount).sd.dephault = 3;
    at(kCount).sd.valid_max = 10;
    at(kChoice).pd.dephault = 2;
    at(kChoice).pd.num_choices = 3;
    at(kChoice).pd.namesptr = "One|Two|Three";
    at(kSwitch).bd.nameptr = "beside";
    at(kInk).cd.dephault = {255, 255, 255, 255};
    at(kPlace).point3d_d.x_dephault = at(kPlace).point3d_d.y_dephault =
        at(kPlace).point3d_d.z_dephault = 50.0;
    return defs;
}

PF_Err AddEasyParams(PF_InData& in_data, PF_OutData& out_data)
{
    std::vector<PF_ParamDef> defs = EasyParams();
    for (PF_ParamDef& def : defs) {
        if (const PF_Err err = in_data.inter.add_param(in_data.effect_ref, -1, &def)) return err;
    }
    out_data.num_params = kParamCount;
    return PF_Err_NONE;
}

maskPath Polygon(bool closed, std::vector<vec2> vertices)
{
    const std::size_t count = vertices.size();
    return {closed, std::move(vertices), std::vector<vec2>(count), std::vector<vec2>(count)};
}

layer MakeLayer(int index, layerType type, const char* name)
{
    layer made;
    made.index = index;
    made.type = type;
    made.name = name;
    made.ip = 0.0;
    made.op = 50.0;
    return made;
}

layer Wave()
{
    layer wave = MakeLayer(0, layerType::solid, "wave");
    wave.start = 5.0;
    wave.stretch = 2.0;
    wave.width = 200;
    wave.height = 100;
    mask triangle, line;
    triangle.path.constant = Polygon(true, {{0, 0}, {30, 0}, {0, 40}});
    pathKeyFrame from, to;
    from.value = Polygon(false, {{10, 20}, {110, 20}});
    to.t = 20;
    to.value = Polygon(false, {{10, 20}, {110, 220}});
    line.path.keys = {from, to};
    wave.masks = {triangle, line};
    wave.effects.emplace_back();
    return wave;
}

layer Camera()
{
    layer camera = MakeLayer(1, layerType::camera, "camera");
    camera.transform.position = Linear({{0, {0, 90, -500}}, {20, {200, 90, -500}}});
    camera.camera.zoom = Linear({{0, {300}}, {20, {400}}});
    camera.camera.depthOfField = Constant({1});
    camera.camera.aperture = Constant({-4});
    return camera;
}

layer Spot()
{
    layer spot = MakeLayer(2, layerType::light, "spot");
    spot.transform.position = Constant({7, 8, -9});
    spot.light.type = lightType::spot;
    spot.light.intensity = Linear({{0, {0}}, {20, {200}}});
    spot.light.color = Constant({1, 0.5, 0.25});
    spot.light.coneAngle = Constant({60});
    return spot;
}

}  // namespace

effectScript& Script()
{
    static effectScript script;
    return script;
}

PF_Err ScriptedEntry(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                     PF_LayerDef* output, void*)
{
    effectScript& script = Script();
    script.received.push_back(cmd);
    if (cmd == PF_Cmd_PARAMS_SETUP) {
        return script.onParams ? script.onParams(*in_data, *out_data)
                               : AddEasyParams(*in_data, *out_data);
    }
    return script.onCommand ? script.onCommand(cmd, *in_data, *out_data, params, output)
                            : PF_Err_NONE;
}

property Constant(std::initializer_list<double> value)
{
    return {.constant = value, .keys = {}};
}

property Linear(std::initializer_list<std::pair<double, std::vector<double>>> keys)
{
    property made;
    for (const auto& [t, value] : keys) {
        keyFrame key;
        key.t = t;
        key.value = value;
        made.keys.push_back(key);
    }
    return made;
}

project EasyScene()
{
    project scene;
    scene.endFrame = 50;
    composition main;
    main.width = 320;
    main.height = 180;
    main.motionBlur = {.enabled = true, .shutterAngle = 180, .shutterPhase = -90, .samples = 5};
    layer lamp = MakeLayer(3, layerType::light, "lamp");
    lamp.light.type = lightType::ambient;
    lamp.hidden = true;
    layer banner = MakeLayer(4, layerType::solid, "banner");
    banner.width = 60;
    banner.height = 30;
    main.layers = {Wave(), Camera(), Spot(), lamp, banner, MakeLayer(5, layerType::null, "null")};
    scene.compositions.push_back(main);
    return scene;
}

// ---- images

const image& FlatImages::OwnPixels(const shownComposition&, const layer& l, double t)
{
    drawnAt.push_back(t);
    last_ = image((l.width + quality.divisorX - 1) / quality.divisorX,
                  (l.height + quality.divisorY - 1) / quality.divisorY, quality.depth);
    std::fill(last_.bytes.begin(), last_.bytes.end(), static_cast<std::uint8_t>(l.index + 1));
    return last_;
}

bool FlatImages::NeedsEffects(const shownComposition&, const layer&, double t)
{
    return t == needsEffectsAt && std::ranges::find(drawnAt, t) == drawnAt.end();
}

std::array<std::uint8_t, 16> FlatImages::OwnPixelsState(const shownComposition&, const layer&,
                                                        double t)
{
    std::array<std::uint8_t, 16> state{};
    if (moving) std::memcpy(state.data(), &t, sizeof t);
    return state;
}

std::array<std::uint8_t, 16> FlatImages::InputState(const shownComposition&, const layer&,
                                                    int effectIndex, double t)
{
    std::array<std::uint8_t, 16> state{static_cast<std::uint8_t>(effectIndex)};
    if (moving) std::memcpy(state.data() + 1, &t, sizeof t);
    return state;
}

// ---- stage

Stage::Stage(pluginOptions options)
{
    options.warn = [this](const std::string& text) { warnings.push_back(text); };
    host = std::make_unique<PluginHost>(&ScriptedEntry, "scripted", std::move(options));
}

Stage::~Stage()
{
    host.reset();
    Script() = {};
}

effectFrame Stage::Frame(double t, const renderQuality& quality)
{
    images.quality = quality;
    const composition& main = scene.compositions.front();
    return {.shown = {&scene, &main, main.width, main.height},
            .owner = &main.layers.front(),
            .effectIndex = 0,
            .t = t,
            .quality = quality,
            .images = &images};
}

image Stage::Input(const renderQuality& quality) const
{
    image input((200 + quality.divisorX - 1) / quality.divisorX,
                (100 + quality.divisorY - 1) / quality.divisorY, quality.depth);
    std::fill(input.bytes.begin(), input.bytes.end(), std::uint8_t{0x11});
    return input;
}

void Stage::With(double t, const renderQuality& quality,
                 const std::function<void(PF_InData&, PF_ParamDef* params[])>& use)
{
    host->WithFrame(
        Frame(t, quality), Input(quality),
        [&](PF_InData& in_data, PF_OutData&, PF_ParamDef* params[]) { use(in_data, params); });
}

std::string Stage::FaultOf(const std::function<void(PF_InData&, PF_ParamDef* params[])>& use)
{
    try {
        With(10, {}, use);
    } catch (const failure& fault) {
        return fault.kind() == failureKind::plugin ? fault.what() : "";
    }
    return "";
}

void AtEachFrame(const std::function<void(double t, const renderQuality& quality)>& check)
{
    for (const double t : {10.0, 12.0}) {
        for (const renderQuality& quality : {kFull, kReduced}) {
            SCOPED_TRACE(testing::Message() << "frame " << t << ", divisor " << quality.divisorX);
            check(t, quality);
        }
    }
}

}  // namespace orv::test
