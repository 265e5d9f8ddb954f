#include "stage.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include <fmt/format.h>

namespace orv {

std::string SceneText(const waveScene& scene)
{
    constexpr const char* layers = R"(
        {{"ty": 1, "ind": 1, "nm": "ribbon", "mb": true, "sw": 1920, "sh": 1080, "sc": "#000000",
          "ip": 0, "op": 100, "ks": {{}}, "masksProperties": [{{"mode": "n", "pt": {{"k": {{"c": false,
            "v": [[160, 540], [700, 300], [1220, 780], [1760, 540]],
            "i": [[0, 0], [-180, 0], [-180, 0], [-160, 80]],
            "o": [[160, -80], [180, 0], [180, 0], [0, 0]]}}}}}}],
          "ef": [{{"ty": 5, "mn": "KAL_Orv", "ef": [{}{{"ix": 29, "v": {{"k": {}}}}},
            {{"ix": 35, "v": {{"k": 1}}}}, {{"ix": 2, "v": {}}}]}}]}},
        {{"ty": 1, "ind": 2, "nm": "band", "sw": 1600, "sh": 160, "sc": "#d03020", "hd": true,
          "ip": 0, "op": 100, "ks": {{}}}},
        {{"ty": 1, "ind": 3, "nm": "other band", "sw": 1600, "sh": 160, "sc": "#20d030",
          "hd": true, "ip": 0, "op": 100, "ks": {{}}}})";
    const std::string blur =
        scene.blurSamples > 0
            ? fmt::format(R"("mb": {{"sa": 180, "sp": 0, "spf": {}}}, )", scene.blurSamples)
            : "";
    return fmt::format(R"({{"fr": 25, "ip": 0, "op": 100, "w": {}, "h": {}, {}"layers": [{}{}]}})",
                       kWidth, kHeight, blur,
                       fmt::format(fmt::runtime(layers), scene.values, scene.mask, scene.source),
                       scene.layers);
}

Stage::Stage(PluginHost& plugin, const waveScene& scene, int depth)
    : plugin_(plugin),
      scene_(LoadSceneText(SceneText(scene), "bench.json", {false, false, {plugin.declaration()}},
                           [](const std::string&) {})),
      quality_{1, 1, depth},
      runner_(plugin),
      renderer_(scene_, quality_, runner_),
      input_(kWidth, kHeight, depth)
{
}

image Stage::RunEffect(int frame)
{
    return plugin_.Render(Frame(frame), input_);
}

image Stage::DrawScene(int frame)
{
    return renderer_.RenderComposition(scene_.compositions.front(), frame);
}

void Stage::Geometry(frameMesh& mesh)
{
    plugin_.WithFrame(Frame(0), input_,
                      [&](PF_InData& in_data, PF_OutData&, PF_ParamDef* params[]) {
                          std::string reason;
                          if (BuildFrameMesh(in_data, params, mesh, reason) != PF_Err_NONE)
                              throw std::runtime_error("no mesh: " + reason);
                      });
}

image Stage::Band()
{
    return renderer_.images().OwnPixels(Shown(), scene_.compositions.front().layers[1], 0.0);
}

shownComposition Stage::Shown() const
{
    return {&scene_, &scene_.compositions.front(), kWidth, kHeight};
}

effectFrame Stage::Frame(int frame)
{
    return {Shown(),  &scene_.compositions.front().layers.front(),
            0,        static_cast<double>(frame),
            quality_, &renderer_.images()};
}

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace orv
