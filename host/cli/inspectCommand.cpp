// `orv inspect`: what a scene file holds, as text or JSON made from the same records.
#include <cstdio>
#include <memory>

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "animation/evaluate.h"
#include "cli/cameraInspection.h"
#include "cli/commandTable.h"
#include "cli/effectProbe.h"
#include "cli/namedValue.h"
#include "cli/pluginPath.h"
#include "plugin/pluginHost.h"
#include "scene/loader.h"

namespace orv {
namespace {

using json = nlohmann::ordered_json;

struct inspectOptions {
    probeOptions probe;
    bool asJson = false, camera = false;
};

const char* TypeName(layerType type)
{
    switch (type) {
        case layerType::precomposition:
            return "precomposition";
        case layerType::solid:
            return "solid";
        case layerType::image:
            return "image";
        case layerType::null:
            return "null";
        case layerType::camera:
            return "camera";
        case layerType::light:
            return "light";
        case layerType::empty:
            return "empty";
        case layerType::skipped:
            return "skipped";
    }
    return "";
}

const char* ModeName(maskMode mode)
{
    switch (mode) {
        case maskMode::none:
            return "none";
        case maskMode::add:
            return "add";
        case maskMode::subtract:
            return "subtract";
        case maskMode::intersect:
            return "intersect";
        case maskMode::lighten:
            return "lighten";
        case maskMode::darken:
            return "darken";
        case maskMode::difference:
            return "difference";
    }
    return "";
}

bool Differs(const paramDeclaration& param, const property& value)
{
    return value.animated() || value.constant != param.initial;
}

/// As the scene writes it: layers by their `ind`, which need not be their position.
json WrittenValue(const paramDeclaration& param, const std::vector<double>& value,
                  const composition& comp)
{
    const auto position = static_cast<std::size_t>(value.front());
    if (param.kind == paramKind::layer && position >= 1 && position <= comp.layers.size())
        return json(comp.layers[position - 1].ind.value_or(0));
    return value.size() == 1 ? json(value.front()) : json(value);
}

json ValueJson(const project& scene, const paramDeclaration& param, const property& value,
               const composition& comp, const layer& owner)
{
    const std::vector<double> now =
        Evaluate(value, static_cast<double>(scene.firstFrame), param.initial);
    return {{"index", param.index},
            {"name", param.name},
            {"value", WrittenValue(param, now, comp)},
            {"text", NamedValue(param, now, comp, owner)},
            {"keys", value.animated() ? value.keys.size() : 0}};
}

json EffectJson(const project& scene, const effect& instance, const effectDeclaration& declaration,
                const composition& comp, const layer& owner)
{
    json values = json::array();
    for (const auto& [index, value] : instance.values) {
        const paramDeclaration& param = declaration.params[static_cast<std::size_t>(index)];
        if (Differs(param, value)) values.push_back(ValueJson(scene, param, value, comp, owner));
    }
    return {{"matchName", instance.matchName},
            {"name", instance.name},
            {"enabled", instance.enabled},
            {"loaded", instance.loaded},
            {"values", std::move(values)}};
}

json MaskJson(const project& scene, const mask& each)
{
    const maskPath path = EvaluatePath(each.path, static_cast<double>(scene.firstFrame));
    return {
        {"name", each.name},         {"mode", ModeName(each.mode)},
        {"inverted", each.inverted}, {"vertices", path.vertex.size()},
        {"closed", path.closed},     {"keys", each.path.animated() ? each.path.keys.size() : 0}};
}

json LayerJson(const project& scene, const composition& comp, const layer& each,
               const effectDeclaration& declaration)
{
    json masks = json::array(), effects = json::array();
    for (const mask& m : each.masks) masks.push_back(MaskJson(scene, m));
    for (const effect& instance : each.effects)
        effects.push_back(EffectJson(scene, instance, declaration, comp, each));
    return {{"position", each.index + 1},
            {"ind", each.ind ? json(*each.ind) : json(nullptr)},
            {"name", each.name},
            {"type", TypeName(each.type)},
            {"width", each.width},
            {"height", each.height},
            {"in", each.ip},
            {"out", each.op},
            {"hidden", each.hidden},
            {"threeD", each.threeD},
            {"motionBlur", each.motionBlur},
            {"masks", std::move(masks)},
            {"effects", std::move(effects)}};
}

json SceneJson(const project& scene, const effectDeclaration& declaration)
{
    json compositions = json::array();
    for (const composition& comp : scene.compositions) {
        json layers = json::array();
        for (const layer& each : comp.layers)
            layers.push_back(LayerJson(scene, comp, each, declaration));
        compositions.push_back({{"id", comp.id},
                                {"name", comp.name},
                                {"width", comp.width},
                                {"height", comp.height},
                                {"motionBlur", comp.motionBlur.enabled},
                                {"layers", std::move(layers)}});
    }
    return {{"file", scene.file},
            {"name", scene.name},
            {"frameRate", scene.frameRate},
            {"firstFrame", scene.firstFrame},
            {"endFrame", scene.endFrame},
            {"depth", scene.depth},
            {"downsample", {scene.downsampleX, scene.downsampleY}},
            {"compositions", std::move(compositions)}};
}

std::string Text(const json& value)
{
    return value.get<std::string>();
}

std::string KeysText(const json& owner)
{
    const auto keys = owner["keys"].get<int>();
    return keys > 0 ? fmt::format(", {} key frames", keys) : "";
}

void PrintLayer(const json& each)
{
    std::string line = fmt::format("  {:>3}  ", each["position"].get<int>());
    if (!each["ind"].is_null()) line += fmt::format("[{}] ", each["ind"].get<int>());
    line += fmt::format("\"{}\" {}", Text(each["name"]), Text(each["type"]));
    if (each["width"].get<int>() > 0)
        line += fmt::format(" {}x{}", each["width"].get<int>(), each["height"].get<int>());
    for (const auto& [key, word] :
         {std::pair{"threeD", ", 3D"}, {"motionBlur", ", motion blur"}, {"hidden", ", hidden"}})
        if (each[key].get<bool>()) line += word;
    fmt::print("{}\n", line);

    for (const json& m : each["masks"])
        fmt::print("         mask \"{}\": {} vertices, {}, mode {}{}{}\n", Text(m["name"]),
                   m["vertices"].get<std::size_t>(), m["closed"].get<bool>() ? "closed" : "open",
                   Text(m["mode"]), m["inverted"].get<bool>() ? ", inverted" : "", KeysText(m));
    for (const json& instance : each["effects"]) {
        fmt::print("         effect {}{}{}\n", Text(instance["matchName"]),
                   instance["loaded"].get<bool>() ? "" : " (not loaded)",
                   instance["enabled"].get<bool>() ? "" : " (off)");
        for (const json& value : instance["values"])
            fmt::print("           {:>3} {} = {}{}\n", value["index"].get<int>(),
                       Text(value["name"]), Text(value["text"]), KeysText(value));
    }
}

void PrintText(const json& scene)
{
    fmt::print("{}: frames {} to {} at {:g} a second, {} bits per channel\n", Text(scene["file"]),
               scene["firstFrame"].get<int>(), scene["endFrame"].get<int>() - 1,
               scene["frameRate"].get<double>(), scene["depth"].get<int>());
    for (const json& comp : scene["compositions"]) {
        const std::string id = Text(comp["id"]);
        fmt::print("\n{} {}x{}{}\n",
                   id.empty() ? "main composition" : fmt::format("composition \"{}\"", id),
                   comp["width"].get<int>(), comp["height"].get<int>(),
                   comp["motionBlur"].get<bool>() ? ", motion blur" : "");
        for (const json& each : comp["layers"]) PrintLayer(each);
    }
}

int Inspect(const inspectOptions& options)
{
    if (options.camera) {
        InspectCamera(options.probe, options.asJson);
        return 0;
    }
    const probeOptions& given = options.probe;
    PluginHost plugin(PluginPath(given.plugin), {});
    const project scene =
        LoadScene(given.scene, {given.allowOutside, given.strict, {plugin.declaration()}},
                  [](const std::string& text) { fmt::print(stderr, "warning: {}\n", text); });
    const json all = SceneJson(scene, plugin.declaration());
    if (options.asJson)
        fmt::print("{}\n", all.dump(1, ' ', false, json::error_handler_t::replace));
    else
        PrintText(all);
    plugin.Close();
    return 0;
}

}  // namespace

std::function<int()> SetUpInspect(CLI::App& command)
{
    const auto options = std::make_shared<inspectOptions>();
    AddSceneOptions(command, options->probe);
    command.add_flag("--json", options->asJson, "Print one JSON object");
    CLI::Option* const camera = command.add_flag(
        "--camera", options->camera, "Show the camera and lights that the effect reads instead");
    for (CLI::Option* each : AddInstanceOptions(command, options->probe)) each->needs(camera);
    command.footer(
        "Shows compositions, layers, masks and effects with the parameters that differ from their\n"
        "defaults; animated values as they are at the scene's first frame.\n"
        "\n"
        "--camera shows the camera record of one instance at one frame (world space: x right, y\n"
        "down, z into the screen, pixels) and the matrices that the effect gives to OpenGL, for "
        "row\n"
        "vectors: clip = (x, y, -z, 1) * model-view * projection.\n"
        "\n"
        "Examples:\n"
        "  orv inspect scene.json\n"
        "  orv inspect scene.json --json\n"
        "  orv inspect scene.json --camera --frame 12\n");
    return [options] { return Inspect(*options); };
}

}  // namespace orv
