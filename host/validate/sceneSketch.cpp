#include "validate/sceneSketch.h"

#include <optional>
#include <span>
#include <string_view>

#include <fmt/format.h>

namespace orv {
namespace {

constexpr int kFirstMask = 1, kOn = 1;

struct knownValue {
    int id;  ///< disk ID
    std::string_view value;
};

/// Values by which a known module uses all that it has, in few steps. A module that is not in the
/// list gets its switches on.
constexpr std::string_view kTurning = R"([{"t": 0, "s": [0]}, {"t": 10, "s": [300]}])";
constexpr knownValue kRibbonValues[] = {
    {1, "1"},        // mesh definition, percent: the coarsest
    {15, "2"},       // sub-sampling
    {12, kTurning},  // twist at end
    {266, "1"},      // stretch with verts match
    {8, "1"},        // stretch along path
    {51, "6"},       // Z at vertex 1
    {162, "130"},    // scale at vertex 2
    {7, "6"},        // extrusion
    {9, "2"},        // its slices
    {154, "5"},      // contour definition
    {31, "1"},       // lights
    {10, "2"},       // camera mode: the composition's camera
    {2, "2"},        // over the original
};

std::span<const knownValue> ValuesOf(const std::string& matchName)
{
    if (matchName == "KAL_Orv") return kRibbonValues;
    return {};
}

/// Four flat quarters, red, green, blue and white.
std::string QuarterLayers(const sceneSketch& sketch)
{
    constexpr std::string_view kColors[] = {"#ff0000", "#00ff00", "#0000ff", "#ffffff"};
    const int left = (sketch.sourceWidth + 1) / 2, upper = (sketch.sourceHeight + 1) / 2;
    std::string layers;
    for (int quarter = 0; quarter < 4; ++quarter) {
        layers += fmt::format(
            R"({}{{"ty": 1, "ind": {}, "sw": {}, "sh": {}, "sc": "{}", "ip": 0, "op": {},
  "ks": {{"p": {{"k": [{}, {}, 0]}}}}}})",
            quarter == 0 ? "" : ", ", quarter + 1, left, upper, kColors[quarter], sketch.frames,
            quarter % 2 * left, quarter / 2 * upper);
    }
    return layers;
}

std::string Joined(const std::vector<std::string>& texts)
{
    return fmt::format("{}", fmt::join(texts, ", "));
}

std::string Values(const sceneSketch& sketch)
{
    std::string values;
    for (const auto& [index, value] : sketch.values)
        values += fmt::format(R"({}{{"ix": {}, "v": {{"k": {}}}}})", values.empty() ? "" : ", ",
                              index, value);
    return values;
}

constexpr int kOtherInd = 6;

constexpr const char* kMoreLayers = R"(,
 {"ty": 1, "ind": 6, "nm": "other", "sw": 20, "sh": 12, "sc": "#c04010", "hd": true,
  "ip": 0, "op": 10, "ks": {}},
 {"ty": 13, "ind": 3, "ip": 0, "op": 10, "pe": {"k": 300},
  "ks": {"p": {"k": [{"t": 0, "s": [16, 16, -300]}, {"t": 10, "s": [20, 14, -290]}]}},
  "kal": {"dof": 1, "focusDistance": 290, "aperture": 4, "blurLevel": 60}},
 {"ty": 14, "ind": 4, "ip": 0, "op": 10, "ks": {"p": {"k": [8, -20, -40]}, "a": {"k": [16, 16, 0]}},
  "kal": {"light": {"type": "spot", "intensity": 90, "coneAngle": 70}}},
 {"ty": 14, "ind": 5, "ip": 0, "op": 10, "ks": {},
  "kal": {"light": {"type": "ambient", "intensity": 40}}})";

/// A value that holds for a frame at a time, the one and the other in turn.
std::string InTurn(int first, int second, int frames)
{
    std::string keys;
    for (int t = 0; t < frames; ++t)
        keys += fmt::format(R"({}{{"t": {}, "h": 1, "s": [{}]}})", t == 0 ? "" : ", ", t,
                            t % 2 == 0 ? first : second);
    return "[" + keys + "]";
}

/// From the default to the slider's end.
std::string Moving(const paramDeclaration& param, int frames)
{
    return fmt::format(R"([{{"t": 0, "s": [{}]}}, {{"t": {}, "s": [{}]}}])", param.initial.front(),
                       frames, param.sliderMax);
}

/// A value of a parameter of an unknown module that sets something going.
std::optional<std::string> LivelyValue(const paramDeclaration& param, int frames)
{
    if (param.kind == paramKind::checkbox) return std::to_string(kOn);
    const bool moves = param.kind == paramKind::floatSlider || param.kind == paramKind::slider;
    if (moves && param.canVary) return Moving(param, frames);
    return std::nullopt;
}

}  // namespace

std::string StraightMask(const std::vector<std::pair<double, double>>& vertices, bool closed)
{
    std::vector<std::string> points, tangents;
    for (const auto& [x, y] : vertices) {
        points.push_back(fmt::format("[{}, {}]", x, y));
        tangents.emplace_back("[0, 0]");
    }
    return fmt::format(
        R"({{"mode": "n", "pt": {{"k": {{"c": {}, "v": [{}], "i": [{}], "o": [{}]}}}}}})", closed,
        Joined(points), Joined(tangents), Joined(tangents));
}

sceneSketch UsualSketch(const effectDeclaration& declaration)
{
    sceneSketch sketch;
    // Some effects read a path on the source: this one lies on both pictures.
    sketch.masks = {StraightMask({{4, 6}, {38, 14}}, false)};
    for (const paramDeclaration& each : declaration.params) {
        if (each.index == 0) continue;
        if (each.kind == paramKind::path) sketch.values[each.index] = std::to_string(kFirstMask);
        if (each.kind == paramKind::layer) sketch.values[each.index] = std::to_string(kSourceInd);
    }
    return sketch;
}

sceneSketch EverythingSketch(const effectDeclaration& declaration)
{
    sceneSketch sketch = UsualSketch(declaration);
    sketch.width = sketch.height = 32;
    sketch.sourceWidth = 16;
    sketch.sourceHeight = 8;
    // The first one lies on the source, too.
    sketch.masks = {StraightMask({{1, 4}, {8, 3}, {15, 5}}, false),
                    StraightMask({{4, 18}, {16, 12}, {28, 18}}, false),
                    StraightMask({{2, 16}, {9, 16}, {30, 16}}, false),
                    StraightMask({{0, 0}, {32, 0}, {32, 32}, {0, 32}}, true)};
    sketch.moreLayers = kMoreLayers;
    sketch.onLayer = R"("mb": true, )";
    sketch.top = R"(, "mb": {"sa": 180, "sp": -90, "spf": 3})";

    // One mask for each path parameter, in turn. Layer parameters name another layer from frame to
    // frame, and no two neighbours the same.
    std::size_t paths = 0, layers = 0;
    const std::span<const knownValue> known = ValuesOf(declaration.matchName);
    for (const paramDeclaration& each : declaration.params) {
        if (each.index == 0) continue;
        std::string& value = sketch.values[each.index];
        if (each.kind == paramKind::path)
            value = std::to_string(1 + paths++ % sketch.masks.size());
        else if (each.kind == paramKind::layer)
            value = layers++ % 2 == 0 ? InTurn(kSourceInd, kOtherInd, sketch.frames)
                                      : InTurn(kOtherInd, kSourceInd, sketch.frames);
        else if (known.empty())
            value = LivelyValue(each, sketch.frames).value_or("");
        for (const knownValue& given : known)
            if (given.id == each.id) value = std::string(given.value);
        if (value.empty()) sketch.values.erase(each.index);
    }
    return sketch;
}

std::string SceneText(const sceneSketch& sketch, const effectDeclaration& declaration)
{
    return fmt::format(
        R"({{"fr": 25, "ip": 0, "op": {frames}, "w": {w}, "h": {h}, "kal": {{"depth": {depth}}}{top},
"assets": [{{"id": "quarters", "layers": [{quarters}]}}],
"layers": [
 {{"ty": 1, "ind": {effectInd}, "nm": "effect", "sw": {w}, "sh": {h}, "sc": "{color}", {onLayer}"ip": 0, "op": {frames}, "ks": {{}},
  "masksProperties": [{masks}], "ef": [{{"ty": 5, "mn": "{name}", "en": 1, "ef": [{values}]}}]}},
 {{"ty": 0, "ind": {sourceInd}, "nm": "source", "refId": "quarters", "w": {sw}, "h": {sh}, "hd": true, "ip": 0, "op": {frames}, "ks": {{}}}}{more}]}})",
        fmt::arg("frames", sketch.frames), fmt::arg("w", sketch.width),
        fmt::arg("h", sketch.height), fmt::arg("depth", sketch.depth), fmt::arg("top", sketch.top),
        fmt::arg("quarters", QuarterLayers(sketch)), fmt::arg("effectInd", kEffectInd),
        fmt::arg("color", sketch.color), fmt::arg("onLayer", sketch.onLayer),
        fmt::arg("masks", Joined(sketch.masks)), fmt::arg("name", declaration.matchName),
        fmt::arg("values", Values(sketch)), fmt::arg("sourceInd", kSourceInd),
        fmt::arg("sw", sketch.sourceWidth), fmt::arg("sh", sketch.sourceHeight),
        fmt::arg("more", sketch.moreLayers));
}

}  // namespace orv
