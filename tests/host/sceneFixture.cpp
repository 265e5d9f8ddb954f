#include "host/sceneFixture.h"

#include <fmt/format.h>

#include <array>
#include <cstddef>

namespace orv::test {
namespace {

struct testParam {
    int index, id;
    paramKind kind;
    const char* name;
    std::vector<double> initial;
    double validMin = 0.0, validMax = 0.0;
    bool canVary = true;
    std::vector<std::string> choices;
};

const std::vector<testParam>& TestParams()
{
    static const std::vector<testParam> kParams{
        {1, 18, paramKind::groupStart, "Source parameters", {}, 0, 0, true, {}},
        {2, 3, paramKind::layer, "Source", {0}, 0, 0, true, {}},
        {6, 22, paramKind::popup, "Rotation", {1}, 0, 0, false, {"0", "90", "180", "270"}},
        {14, 268, paramKind::path, "Reference mask", {0}, 0, 0, true, {}},
        {18, 15, paramKind::slider, "Mesh sub-sampling", {2}, 2, 100, false, {}},
        {19, 11, paramKind::angle, "Twist at start", {0}, 0, 0, true, {}},
        {27, 19, paramKind::groupEnd, "", {}, 0, 0, true, {}},
        {29, 4, paramKind::path, "Mask", {0}, 0, 0, true, {}},
        {31, 267, paramKind::path, "Reference mask", {0}, 0, 0, true, {}},
        {32, 5, paramKind::floatSlider, "Start point", {0}, -1e6, 1e6, true, {}},
        {35, 8, paramKind::checkbox, "Stretch along path", {0}, 0, 1, true, {}},
        {37, 14, paramKind::angle, "Twist at mask end", {0}, 0, 0, true, {}},
        {250,
         7,
         paramKind::floatSlider,
         "Extrusion",
         {0.1},
         static_cast<double>(0.1F),
         1000,
         true,
         {}},
        {251, 9, paramKind::slider, "Extrusion num layers", {1}, 0, 500, false, {}},
        {254, 155, paramKind::color, "Contour color", {1, 1, 1, 1}, 0, 1, true, {}},
        {269, 273, paramKind::point3D, "Position", {50, 50, 50}, 0, 0, true, {}},
        {279, 10, paramKind::popup, "Camera mode", {1}, 0, 0, true, {"2D", "3D (composition)"}},
    };
    return kParams;
}

std::string Joined(std::string_view first, std::string_view members)
{
    return members.empty() ? std::string(first) : fmt::format("{},{}", first, members);
}

}  // namespace

effectDeclaration TestEffect()
{
    constexpr int kParamCount = 283;
    effectDeclaration effect{"KAL_Orv", "KAL Orv", std::vector<paramDeclaration>(kParamCount)};
    for (int index = 0; index < kParamCount; ++index) {
        paramDeclaration& param = effect.params[static_cast<std::size_t>(index)];
        param.index = index;
        if (index == 0) continue;
        param.id = 1000 + index;
        param.kind = paramKind::floatSlider;
        param.name = fmt::format("Parameter {}", index);
        param.initial = {0.0};
        param.validMax = 100.0;
    }
    for (const testParam& each : TestParams()) {
        paramDeclaration& param = effect.params[static_cast<std::size_t>(each.index)];
        param.id = each.id;
        param.kind = each.kind;
        param.name = each.name;
        param.initial = each.initial;
        param.validMin = each.validMin;
        param.validMax = each.validMax;
        param.canVary = each.canVary;
        param.choices = each.choices;
    }
    return effect;
}

loadedScene Load(std::string_view text, bool strict)
{
    static const effectDeclaration kEffect = TestEffect();
    loadedScene result;
    const loadOptions options{false, strict, {kEffect}};
    result.scene = LoadSceneText(text, "scene.json", options, [&](const std::string& warning) {
        result.warnings.push_back(warning);
    });
    return result;
}

std::string LoadError(std::string_view text, bool strict)
{
    try {
        (void)Load(text, strict);
    } catch (const failure& problem) {
        return problem.kind() == failureKind::scene ? problem.what() : "wrong kind of failure";
    }
    return "loaded";
}

std::string Scene(std::string_view layers, std::string_view members)
{
    return fmt::format(
        "{{{}}}",
        Joined(fmt::format(R"("fr":25,"ip":0,"op":10,"w":100,"h":50,"layers":[{}])", layers),
               members));
}

std::string Solid(std::string_view members)
{
    return fmt::format("{{{}}}",
                       Joined(R"("ty":1,"ip":0,"op":10,"sw":20,"sh":10,"sc":"#ff8000")", members));
}

std::string SolidWithEffect(std::string_view entries, std::string_view members)
{
    return Solid(Joined(fmt::format(R"("ef":[{{"mn":"KAL_Orv","ef":[{}]}}])", entries), members));
}

std::string SolidWithMask(std::string_view pt, std::string_view members)
{
    return Solid(fmt::format(R"("masksProperties":[{{{}}}])",
                             Joined(fmt::format(R"("pt":{})", pt), members)));
}

}  // namespace orv::test
