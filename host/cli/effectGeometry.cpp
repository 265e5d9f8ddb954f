#include "cli/effectGeometry.h"

#include <string>

#include <fmt/format.h>

#include "geometry/paramSnapshot.h"
#include "scene/errors.h"

namespace orv {
namespace {

viewSize ViewOf(const frameSizes& sizes)
{
    const double width = sizes.viewWidth, height = sizes.viewHeight;
    return {.W = width * sizes.denX, .H = height * sizes.denY, .VW = width, .VH = height};
}

effectGeometry Build(PF_InData& in_data, PF_ParamDef* const params[], const std::string& where)
{
    effectGeometry geometry;
    std::string reason;
    PF_Err error = PF_Err_NONE;
    try {
        error = BuildFrameMesh(in_data, params, geometry.mesh, reason);
    } catch (PF_Err thrown) {
        error = thrown;
    }
    if (error != PF_Err_NONE)
        throw failure(failureKind::frame,
                      fmt::format("{}: {} (error {})", where,
                                  reason.empty() ? "the mesh cannot be built" : reason, error));
    geometry.view = ViewOf(geometry.mesh.sizes);
    const point3 color = ReadParams(in_data, params).contourColor;
    geometry.contourColor[0] = static_cast<double>(color.x);
    geometry.contourColor[1] = static_cast<double>(color.y);
    geometry.contourColor[2] = static_cast<double>(color.z);
    return geometry;
}

}  // namespace

effectGeometry ReadGeometry(EffectProbe& probe)
{
    const std::string where =
        fmt::format("layer '{}', frame {}", probe.owner().name, probe.frame());
    effectGeometry geometry;
    probe.Reach([&](const effectFrame& frame, const image& input) {
        probe.plugin().WithFrame(frame, input,
                                 [&](PF_InData& in_data, PF_OutData&, PF_ParamDef* params[]) {
                                     geometry = Build(in_data, params, where);
                                 });
    });
    return geometry;
}

glMatrices MatricesOf(const effectGeometry& geometry)
{
    const frameMesh& mesh = geometry.mesh;
    if (!mesh.composition3D) {
        const double distance = EyeDistance2D(mesh.sizes.denX, mesh.camera.zoom);
        return {.projection = ProjectionMatrix2D(geometry.view),
                .modelView = ViewMatrix(FrontLookAt(geometry.view, distance))};
    }
    camData camera = mesh.camera;
    SetUpVector(camera);
    return {.projection = ProjectionMatrix(
                MakeLens(geometry.view, camera.zoom, mesh.cells.nearPlane, mesh.cells.farPlane)),
            .modelView = ViewMatrix(CameraLookAt(geometry.view, camera))};
}

}  // namespace orv
