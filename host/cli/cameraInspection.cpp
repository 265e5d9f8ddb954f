#include "cli/cameraInspection.h"

#include <array>
#include <span>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "cli/effectGeometry.h"

namespace orv {
namespace {

using json = nlohmann::ordered_json;

const char* TypeName(std::int32_t type)
{
    switch (type) {
        case AEGP_LightType_PARALLEL:
            return "parallel";
        case AEGP_LightType_SPOT:
            return "spot";
        case AEGP_LightType_POINT:
            return "point";
        case AEGP_LightType_AMBIENT:
            return "ambient";
        default:
            return "unknown";
    }
}

json MatrixJson(const A_Matrix4& matrix)
{
    json rows = json::array();
    for (const auto& row : matrix.mat) rows.push_back({row[0], row[1], row[2], row[3]});
    return rows;
}

json LightJson(const lightData& light)
{
    json made = {{"type", TypeName(light.type)},
                 {"intensity", light.intensity},
                 {"color", {light.color[1], light.color[2], light.color[3]}}};
    if (light.type != AEGP_LightType_AMBIENT)
        made["position"] = {light.position[0], light.position[1], light.position[2]};
    if (light.type == AEGP_LightType_SPOT) {
        made["coneAngle"] = light.coneAngle;
        made["coneFeather"] = light.coneFeather;
    }
    if (light.type == AEGP_LightType_SPOT || light.type == AEGP_LightType_PARALLEL)
        made["matrix"] = MatrixJson(light.transform);
    return made;
}

json CameraJson(const camData& camera)
{
    json lights = json::array();
    for (const lightData& each :
         std::span(camera.lights).first(static_cast<std::size_t>(camera.numLights)))
        lights.push_back(LightJson(each));
    return {{"matrix", MatrixJson(camera.cameraMatrix)},
            {"inverse", MatrixJson(camera.cameraInverse)},
            {"zoom", camera.zoom},
            {"depthOfField", camera.depthOfField},
            {"focusDistance", camera.focusDistance},
            {"aperture", camera.aperture},
            {"blurLevel", camera.blurLevel},
            {"lights", std::move(lights)}};
}

json AllJson(const EffectProbe& probe, const effectGeometry& geometry)
{
    const frameMesh& mesh = geometry.mesh;
    const glMatrices matrices = MatricesOf(geometry);
    const double nearPlane = mesh.composition3D ? mesh.cells.nearPlane : kViewNear2D;
    const double farPlane = mesh.composition3D ? mesh.cells.farPlane : kViewDepth2D;
    return {{"layer", probe.owner().name},
            {"effect", probe.effectIndex() + 1},
            {"frame", probe.frame()},
            {"mode", mesh.composition3D ? "3D" : "2D"},
            {"camera", CameraJson(mesh.camera)},
            {"gl",
             {{"projection", MatrixJson(matrices.projection)},
              {"modelView", MatrixJson(matrices.modelView)},
              {"viewport", {0, 0, geometry.view.VW, geometry.view.VH}},
              {"near", nearPlane},
              {"far", farPlane}}}};
}

// ---- text

void PrintMatrix(const char* name, const json& matrix)
{
    fmt::print("{}\n", name);
    for (const json& row : matrix) {
        // Adding 0 drops the sign of a zero.
        for (const json& entry : row) fmt::print(" {:>14.6f}", entry.get<double>() + 0.0);
        fmt::print("\n");
    }
}

void PrintLight(const json& light)
{
    const auto triple = [&](const char* name) {
        const json& v = light[name];
        return fmt::format("{:g}, {:g}, {:g}", v[0].get<double>(), v[1].get<double>(),
                           v[2].get<double>());
    };
    fmt::print("light: {}, intensity {:g}, color {}", light["type"].get<std::string>(),
               light["intensity"].get<double>(), triple("color"));
    if (light.contains("position")) fmt::print(", position {}", triple("position"));
    if (light.contains("coneAngle"))
        fmt::print(", cone {:g} degrees, feather {:g} %", light["coneAngle"].get<double>(),
                   light["coneFeather"].get<double>());
    fmt::print("\n");
}

void PrintText(const json& all)
{
    const json& camera = all["camera"];
    fmt::print("layer \"{}\", effect {}, frame {}: {}\n", all["layer"].get<std::string>(),
               all["effect"].get<int>(), all["frame"].get<int>(),
               all["mode"] == "3D" ? "3D (composition)" : "2D, the camera is not used");
    PrintMatrix("camera to world (rows: x, y, direction, position)", camera["matrix"]);
    PrintMatrix("world to camera", camera["inverse"]);
    fmt::print(
        "zoom {:g}; depth of field {}, focus distance {:g}, aperture {:g}, blur level {:g} %\n",
        camera["zoom"].get<double>(), camera["depthOfField"] != 0.0 ? "on" : "off",
        camera["focusDistance"].get<double>(), camera["aperture"].get<double>(),
        camera["blurLevel"].get<double>());
    for (const json& light : camera["lights"]) PrintLight(light);
    const json& gl = all["gl"];
    PrintMatrix("GL model-view (row vectors)", gl["modelView"]);
    PrintMatrix("GL projection (row vectors)", gl["projection"]);
    fmt::print("viewport {:g} x {:g}, planes at {:g} and {:g}\n", gl["viewport"][2].get<double>(),
               gl["viewport"][3].get<double>(), gl["near"].get<double>(), gl["far"].get<double>());
}

}  // namespace

void InspectCamera(const probeOptions& options, bool asJson)
{
    EffectProbe probe(options);
    const json all = AllJson(probe, ReadGeometry(probe));
    if (asJson)
        fmt::print("{}\n", all.dump(1, ' ', false, json::error_handler_t::replace));
    else
        PrintText(all);
    probe.Close();
}

}  // namespace orv
