#include "module/rig.h"

#include <cstdlib>
#include <stdexcept>

#include <fmt/format.h>

#include "image/imageFile.h"

namespace orv::test {

argb PixelAt(const image& picture, int x, int y)
{
    if (x < 0 || y < 0 || x >= picture.width || y >= picture.height)
        throw std::out_of_range(
            fmt::format("pixel {}, {} of {} x {}", x, y, picture.width, picture.height));
    if (picture.depth == 16) {
        const std::uint16_t* p = picture.row16(y) + 4 * x;
        return {p[0], p[1], p[2], p[3]};
    }
    const std::uint8_t* p = picture.row(y) + 4 * x;
    return {p[0], p[1], p[2], p[3]};
}

void SetPixel(image& picture, int x, int y, const argb& color)
{
    const int channels[4] = {color.a, color.r, color.g, color.b};
    for (int c = 0; c < 4; ++c) {
        if (picture.depth == 16)
            picture.row16(y)[4 * x + c] = static_cast<std::uint16_t>(channels[c]);
        else
            picture.row(y)[4 * x + c] = static_cast<std::uint8_t>(channels[c]);
    }
}

void PrintTo(const argb& color, std::ostream* out)
{
    *out << fmt::format("(a {}, r {}, g {}, b {})", color.a, color.r, color.g, color.b);
}

Rig::Rig(const std::string& scene, const std::map<std::string, image>& pictures,
         pluginOptions options)
{
    const char* module = std::getenv("ORV_PLUGIN");
    if (module == nullptr) throw std::runtime_error("ORV_PLUGIN is not set");
    for (const auto& [name, picture] : pictures)
        WritePng(picture, (folder_.path() / name).string());

    const warningSink collect = [this](const std::string& text) { warnings_.push_back(text); };
    options.warn = collect;
    host_ = std::make_unique<PluginHost>(module, std::move(options));
    loadOptions loading;
    loading.effects.push_back(host_->declaration());
    scene_ = LoadSceneText(scene, (folder_.path() / "test.json").string(), loading, collect);
    runner_ = std::make_unique<PluginEffectRunner>(*host_);
    SetQuality({scene_.downsampleX, scene_.downsampleY, scene_.depth});
}

Rig::~Rig() = default;

void Rig::SetQuality(const renderQuality& quality)
{
    renderer_ = std::make_unique<SceneRenderer>(scene_, quality, *runner_);
}

image Rig::Composition(double t)
{
    return renderer_->RenderComposition(scene_.compositions.front(), t);
}

image Rig::Layer(const std::string& name, double t)
{
    const composition& main = scene_.compositions.front();
    for (const layer& each : main.layers)
        if (each.name == name) return renderer_->RenderLayer(main, each, t);
    throw std::out_of_range("no layer " + name);
}

std::string ribbonScene::json() const
{
    return fmt::format(
        R"({{"fr": 25, "ip": 0, "op": {frames}, "w": {w}, "h": {h}, "kal": {{"depth": {depth}}}{top},
"assets": [{{"id": "source", "w": {sw}, "h": {sh}, "p": "source.png"}}],
"layers": [
 {{"ty": 1, "ind": 1, "nm": "ribbon", "sw": {w}, "sh": {h}, "sc": "{color}", {onLayer}"ip": 0, "op": {frames}, "ks": {{}},
  "masksProperties": [{masks}],
  "ef": [{{"ty": 5, "mn": "KAL_Orv", "en": 1, "ef": [{values}]}}]}},
 {{"ty": 2, "ind": 2, "nm": "source", "refId": "source", "hd": true, "ip": 0, "op": {frames}, "ks": {{}}}}{more}]}})",
        fmt::arg("frames", frames), fmt::arg("w", w), fmt::arg("h", h), fmt::arg("depth", depth),
        fmt::arg("top", top), fmt::arg("sw", sourceW), fmt::arg("sh", sourceH),
        fmt::arg("color", color), fmt::arg("masks", masks), fmt::arg("values", values + "{}"),
        fmt::arg("more", moreLayers), fmt::arg("onLayer", onLayer));
}

std::string Value(int index, const std::string& value)
{
    return fmt::format(R"({{"ix": {}, "v": {{"k": {}}}}}, )", index, value);
}

std::string PolygonMask(const std::vector<std::pair<double, double>>& vertices, bool closed)
{
    std::string v, zero;
    for (const auto& [x, y] : vertices) {
        v += fmt::format("{}[{}, {}]", v.empty() ? "" : ", ", x, y);
        zero += fmt::format("{}[0, 0]", zero.empty() ? "" : ", ");
    }
    return fmt::format(
        R"({{"nm": "path", "mode": "n", "pt": {{"k": {{"c": {}, "v": [{}], "i": [{}], "o": [{}]}}}}}})",
        closed, v, zero, zero);
}

}  // namespace orv::test
