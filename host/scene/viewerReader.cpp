// viewerReader.cpp: cameras and lights.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "scene/propertyReader.h"
#include "scene/transformReader.h"

namespace orv {
namespace {

constexpr std::array kLightTypes{
    std::pair{std::string_view("parallel"), lightType::parallel},
    std::pair{std::string_view("spot"), lightType::spot},
    std::pair{std::string_view("point"), lightType::point},
    std::pair{std::string_view("ambient"), lightType::ambient},
};

void RequireAboveZero(std::vector<double>& value, const JsonNode& place)
{
    if (!value.empty() && value.front() > 0.0) return;
    place.fail(fmt::format("the zoom must be above 0, found {}",
                           value.empty() ? "none" : NumberText(value.front())));
}

/// Brings each component into low..high, with a warning.
propertyRule ClampedRule(double low, double high, const std::string& range)
{
    return {.check = [=](std::vector<double>& value, const JsonNode& place) {
        for (double& component : value) {
            if (component >= low && component <= high) continue;
            place.warn(fmt::format("{} is {}, clamped", NumberText(component), range));
            component = std::clamp(component, low, high);
        }
    }};
}

propertyRule AtLeastZero()
{
    return ClampedRule(0.0, 1e9, "below 0");
}

propertyRule SwitchRule()
{
    return {.switches = true, .holds = true, .check = [](std::vector<double>& value, const auto&) {
                for (double& component : value) component = component != 0.0 ? 1.0 : 0.0;
            }};
}

lightType ReadLightType(const JsonNode& node)
{
    for (const auto& [name, type] : kLightTypes) {
        if (node.text() == name) return type;
    }
    node.fail(fmt::format("{} is no light type, expected parallel, spot, point or ambient",
                          Quoted(node.text())));
}

/// The member `key` of `kal`; the constant `initial` when it is missing.
property ReadOr(std::vector<double> initial, const JsonNode& kal, std::string_view key,
                const propertyRule& rule, const readContext& context)
{
    if (!kal.find(key)) return {std::move(initial), {}};
    return ReadPlainOrPropertyAt(kal, key, rule, context);
}

const jsonValue kNoMembers{jsonValue::object{}};

}  // namespace

cameraProps ReadCamera(const JsonNode& layerNode, const readContext& context)
{
    cameraProps camera;
    camera.zoom =
        ReadProperty(layerNode.required("pe", "a property"), {.check = RequireAboveZero}, context);

    const JsonNode kal = layerNode.find("kal").value_or(JsonNode(kNoMembers, "", context.messages));
    WarnUnknownKeys(kal, {"dof", "focusDistance", "aperture", "blurLevel"});
    camera.depthOfField = ReadOr({0.0}, kal, "dof", SwitchRule(), context);
    if (kal.find("focusDistance")) {
        camera.focusDistance = ReadPlainOrPropertyAt(kal, "focusDistance", AtLeastZero(), context);
    }
    camera.aperture = ReadOr({0.0}, kal, "aperture", AtLeastZero(), context);
    camera.blurLevel = ReadOr({100.0}, kal, "blurLevel", AtLeastZero(), context);
    return camera;
}

lightProps ReadLight(const JsonNode& layerNode, const readContext& context)
{
    const JsonNode kal = layerNode.required("kal", "an object with \"light\"");
    WarnUnknownKeys(kal, {"light"});
    const JsonNode node = kal.required("light", "an object");
    WarnUnknownKeys(node, {"type", "intensity", "color", "coneAngle", "coneFeather"});

    lightProps light;
    light.type = ReadLightType(node.required("type", "a text"));
    light.intensity = ReadOr({100.0}, node, "intensity", {}, context);
    light.color = ReadOr({1.0, 1.0, 1.0}, node, "color", {.components = 3}, context);
    light.coneAngle = ReadOr({90.0}, node, "coneAngle", {}, context);
    light.coneFeather =
        ReadOr({50.0}, node, "coneFeather", ClampedRule(0.0, 100.0, "outside 0..100"), context);
    return light;
}

}  // namespace orv
