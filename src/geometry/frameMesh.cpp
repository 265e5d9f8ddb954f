#include "geometry/frameMesh.h"

#include "Util/firstError.h"
#include "Util/guards.h"
#include "camera/compCamera.h"

#include "geometry/meshSettings.h"
#include "geometry/paramSnapshot.h"
#include "geometry/sourceCrop.h"

namespace {

/// Takes the source's size and crop from its image; nothing of one without pixels is usable.
void TakeSource(const PF_LayerDef& image, const paramSnapshot& values, frameMesh& mesh)
{
    if (image.data == nullptr) return;
    mesh.imageWidth = image.width;
    mesh.imageHeight = image.height;
    mesh.crop = CropLayer(image, values);
}

/// The layer that "Source" names.
PF_Err TakeChosenSource(PF_InData& in_data, const paramSnapshot& values, frameMesh& mesh)
{
    CheckedOutParam source(in_data, kSource,
                           SourceTime(values, in_data.current_time, in_data.time_step));
    return FirstError{source.error()}
        .then([&] {
            TakeSource(source.def().u.ld, values, mesh);
            return PF_Err_NONE;
        })
        .always([&] { return source.close(); })
        .code();
}

/// Sizes of the frame's images. Without a source of its own the effect's input is the source, and
/// its crop is the view.
PF_Err ReadSizes(PF_InData& in_data, PF_ParamDef* const params[], const paramSnapshot& values,
                 frameMesh& mesh)
{
    const PF_LayerDef& input = params[kInputLayer]->u.ld;
    const bool ownLayer = params[kSource]->u.ld.data == nullptr;
    PF_Err error = PF_Err_NONE;
    if (ownLayer) {
        TakeSource(input, values, mesh);
    } else {
        error = TakeChosenSource(in_data, values, mesh);
    }
    const cropRect& crop = mesh.crop;
    mesh.hasSource = crop.usable;
    mesh.sizes = {.sourceWidth = crop.width,
                  .sourceHeight = crop.height,
                  .viewWidth = ownLayer && crop.usable ? crop.width : input.width,
                  .viewHeight = ownLayer && crop.usable ? crop.height : input.height,
                  .denX = static_cast<int>(in_data.downsample_x.den),
                  .denY = static_cast<int>(in_data.downsample_y.den)};
    return error;
}

}  // namespace

PF_Err BuildFrameMesh(PF_InData& in_data, PF_ParamDef* const params[], frameMesh& mesh,
                      std::string& reason)
{
    const paramSnapshot values = ReadParams(in_data, params);
    mesh = {};
    mesh.composition3D = values.composition3D();
    mesh.camera = MakeCamData(static_cast<int>(in_data.downsample_x.den));
    meshSettings settings;
    return FirstError{}
        .then([&] { return ReadSizes(in_data, params, values, mesh); })
        .then([&] { return CompCamera(&in_data, mesh.composition3D, &mesh.camera); })
        .then([&] {
            if (!mesh.hasSource) return static_cast<PF_Err>(PF_Err_NONE);
            settings = MakeMeshSettings(values, mesh.sizes);
            return BuildShape(in_data, values, settings, in_data.current_time, mesh.shape, reason);
        })
        .then([&] {
            const double(&position)[4] = mesh.camera.cameraMatrix.mat[3];
            mesh.cells =
                BuildDrawList(mesh.shape, settings, {position[0], position[1], -position[2]});
            return PF_Err_NONE;
        })
        .code();
}
