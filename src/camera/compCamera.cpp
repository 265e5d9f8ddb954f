#include "camera/compCamera.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "Util/AEGP_SuiteHandler.h"
#include "Util/firstError.h"
#include "camera/matrices.h"

namespace {

/// Whom the host is asked about, and for when. Filled step by step.
struct sceneQuery {
    PF_InData& in_data;
    AEGP_SuiteHandler& suites;
    AEGP_LayerH layer = nullptr;  ///< the effect's own
    AEGP_CompH comp = nullptr;
    AEGP_LayerH cameraLayer = nullptr;  ///< the active camera; null: none, or 2D mode
    A_Time time{0, 1};                  ///< composition time; stays 0 in 2D mode
};

float Narrow(double value)
{
    return static_cast<float>(value);
}

PF_Err ReadStream(sceneQuery& scene, AEGP_LayerH layer, AEGP_LayerStream which,
                  AEGP_StreamVal2& value)
{
    return scene.suites.StreamSuite9().AEGP_GetLayerStreamValue(
        layer, which, AEGP_LTimeMode_CompTime, &scene.time, /*pre_expressionB=*/0, &value, nullptr);
}

/// A stream of one number, times `factor`. On failure `field` keeps its value.
PF_Err ReadNumber(sceneQuery& scene, AEGP_LayerH layer, AEGP_LayerStream which, float& field,
                  double factor = 1.0)
{
    AEGP_StreamVal2 value{};
    const PF_Err err = ReadStream(scene, layer, which, value);
    if (err == PF_Err_NONE) field = Narrow(value.one_d * factor);
    return err;
}

PF_Err ReadMatrixFromView(sceneQuery& scene, AEGP_LayerH layer, A_Matrix4& matrix)
{
    return scene.suites.LayerSuite13().AEGP_GetLayerToWorldXformFromView(layer, &scene.time,
                                                                         &scene.time, &matrix);
}

// -------------------------------------------------------------------------------------------------
// Camera
// -------------------------------------------------------------------------------------------------

PF_Err FindComposition(sceneQuery& scene)
{
    return FirstError{}
        .then([&] {
            return scene.suites.PFInterfaceSuite1().AEGP_GetEffectLayer(scene.in_data.effect_ref,
                                                                        &scene.layer);
        })
        .then([&] {
            return scene.suites.LayerSuite12().AEGP_GetLayerParentComp(scene.layer, &scene.comp);
        })
        .code();
}

/// Also brings the query from the layer's time to the composition's.
PF_Err FindCamera(sceneQuery& scene, A_long layerTime)
{
    const PF_ProgPtr effect = scene.in_data.effect_ref;
    const AEGP_PFInterfaceSuite1& effects = scene.suites.PFInterfaceSuite1();
    return FirstError{}
        .then([&] {
            return effects.AEGP_ConvertEffectToCompTime(effect, layerTime, scene.in_data.time_scale,
                                                        &scene.time);
        })
        .then([&] { return effects.AEGP_GetEffectCamera(effect, &scene.time, &scene.cameraLayer); })
        .code();
}

PF_Err ReadCompSize(sceneQuery& scene, camData& camera)
{
    AEGP_ItemH item = nullptr;
    return FirstError{}
        .then([&] { return scene.suites.CompSuite18().AEGP_GetItemFromComp(scene.comp, &item); })
        .then([&] {
            return scene.suites.ItemSuite13().AEGP_GetItemDimensions(item, &camera.compWidth,
                                                                     &camera.compHeight);
        })
        .code();
}

/// Centred on the layer, looking along +z at the plane z = 0 from `distance`.
void PlaceDefaultCamera(const PF_InData& in_data, A_FpLong distance, camData& camera)
{
    double(&position)[4] = camera.cameraMatrix.mat[3];
    position[0] = static_cast<double>(static_cast<float>(in_data.width) * 0.5f);
    position[1] = static_cast<double>(static_cast<float>(in_data.height) * 0.5f);
    position[2] = static_cast<double>(Narrow(-distance));
    camera.zoom = static_cast<float>(in_data.downsample_x.den) * Narrow(distance);
}

/// Camera streams that are taken as they are.
struct cameraStream {
    AEGP_LayerStream which;
    float camData::*field;
};
constexpr std::array kCameraStreams{
    cameraStream{AEGP_LayerStream_DEPTH_OF_FIELD, &camData::depthOfField},
    cameraStream{AEGP_LayerStream_FOCUS_DISTANCE, &camData::focusDistance},
    cameraStream{AEGP_LayerStream_APERTURE, &camData::aperture},
    cameraStream{AEGP_LayerStream_BLUR_LEVEL, &camData::blurLevel},
};

PF_Err ReadCamera(sceneQuery& scene, camData& camera)
{
    const AEGP_LayerH layer = scene.cameraLayer;
    FirstError steps;
    steps.then([&] { return ReadMatrixFromView(scene, layer, camera.cameraMatrix); }).then([&] {
        return ReadNumber(scene, layer, AEGP_LayerStream_ZOOM, camera.zoom,
                          scene.in_data.downsample_x.den);
    });
    for (const cameraStream& stream : kCameraStreams) {
        steps.then([&] { return ReadNumber(scene, layer, stream.which, camera.*stream.field); });
    }
    return steps.code();
}

// -------------------------------------------------------------------------------------------------
// Lights
// -------------------------------------------------------------------------------------------------

/// A light's percent as a factor; more than 30000 times is of no use to anyone.
float LightIntensity(A_FpLong percent)
{
    constexpr double kPercent = static_cast<double>(0.01f);
    const double factor = percent * kPercent;
    return factor > 0.0 ? Narrow(std::min(factor, 30000.0)) : 0.0f;  // a NaN is dark, too
}

PF_Err ReadLightColor(sceneQuery& scene, AEGP_LayerH layer, lightData& light)
{
    AEGP_StreamVal2 value{};
    const PF_Err err = ReadStream(scene, layer, AEGP_LayerStream_COLOR, value);
    if (err != PF_Err_NONE) return err;
    light.color[0] = value.color.alphaF;
    light.color[1] = value.color.redF;
    light.color[2] = value.color.greenF;
    light.color[3] = value.color.blueF;
    return PF_Err_NONE;
}

PF_Err ReadLightPosition(sceneQuery& scene, AEGP_LayerH layer, lightData& light)
{
    A_Matrix4 matrix{};
    const PF_Err err =
        scene.suites.LayerSuite13().AEGP_GetLayerToWorldXform(layer, &scene.time, &matrix);
    if (err == PF_Err_NONE)
        std::transform(matrix.mat[3], matrix.mat[3] + 3, light.position, Narrow);
    return err;
}

/// Fills what the light's type has; `light.type` is set.
PF_Err ReadLight(sceneQuery& scene, AEGP_LayerH layer, lightData& light)
{
    FirstError steps;
    steps.then([&] { return ReadLightColor(scene, layer, light); });
    if (light.type != AEGP_LightType_AMBIENT) {
        steps.then([&] { return ReadLightPosition(scene, layer, light); });
    }
    if (light.type == AEGP_LightType_SPOT) {
        steps
            .then([&] {
                return ReadNumber(scene, layer, AEGP_LayerStream_CONE_ANGLE, light.coneAngle);
            })
            .then([&] {
                return ReadNumber(scene, layer, AEGP_LayerStream_CONE_FEATHER, light.coneFeather);
            });
    }
    if (light.type == AEGP_LightType_SPOT || light.type == AEGP_LightType_PARALLEL) {
        steps.then([&] { return ReadMatrixFromView(scene, layer, light.transform); });
    }
    return steps.code();
}

/// Takes the light layer into the next free slot, unless it is off, dark or one too many. A slot
/// that was taken counts also when reading the rest of the light fails.
PF_Err TakeLight(sceneQuery& scene, AEGP_LayerH layer, camData& camera)
{
    AEGP_LightType type = AEGP_LightType_PARALLEL;
    AEGP_LayerFlags flags = 0;
    FirstError steps;
    steps.then([&] { return scene.suites.LightSuite2().AEGP_GetLightType(layer, &type); })
        .then([&] { return scene.suites.LayerSuite12().AEGP_GetLayerFlags(layer, &flags); });
    if (!steps.ok() || (flags & AEGP_LayerFlag_VIDEO_ACTIVE) == 0) return steps.code();
    if (camera.numLights == kMaxLights) return PF_Err_NONE;

    AEGP_StreamVal2 intensity{};
    steps.then([&] { return ReadStream(scene, layer, AEGP_LayerStream_INTENSITY, intensity); });
    if (!steps.ok() || intensity.one_d == 0.0) return steps.code();

    lightData& light = camera.lights[static_cast<std::size_t>(camera.numLights++)];
    light.type = type;
    light.intensity = LightIntensity(intensity.one_d);
    return ReadLight(scene, layer, light);
}

PF_Err VisitLayer(sceneQuery& scene, A_long index, camData& camera)
{
    const AEGP_LayerSuite11& layers = scene.suites.LayerSuite11();
    AEGP_LayerH layer = nullptr;
    AEGP_ObjectType type = AEGP_ObjectType_NONE;
    return FirstError{}
        .then([&] { return layers.AEGP_GetCompLayerByIndex(scene.comp, index, &layer); })
        .then([&] { return layers.AEGP_GetLayerObjectType(layer, &type); })
        .then([&] {
            return type == AEGP_ObjectType_LIGHT ? TakeLight(scene, layer, camera) : PF_Err_NONE;
        })
        .code();
}

/// Gathers up to kMaxLights lights, the topmost layer first.
PF_Err ReadLights(sceneQuery& scene, camData& camera)
{
    camera.numLights = 0;
    A_long count = 0;
    PF_Err err = scene.suites.LayerSuite11().AEGP_GetCompNumLayers(scene.comp, &count);
    for (A_long index = 0; err == PF_Err_NONE && index < count; ++index) {
        err = VisitLayer(scene, index, camera);
    }
    return err;
}

bool IsFinite(const A_Matrix4& matrix)
{
    for (const auto& row : matrix.mat) {
        if (!std::all_of(std::begin(row), std::end(row),
                         [](double v) { return std::isfinite(v); })) {
            return false;
        }
    }
    return true;
}

bool IsFinite(const lightData& light)
{
    const auto finite = [](double v) { return std::isfinite(v); };
    return IsFinite(light.transform) &&
           std::all_of(std::begin(light.color), std::end(light.color), finite) &&
           std::all_of(std::begin(light.position), std::end(light.position), finite);
}

/// Nothing can be drawn through a camera that is nowhere, or that has no zoom. A wrong picture
/// would be the only other answer.
PF_Err CheckScene(const camData& camera)
{
    const auto lightsEnd = camera.lights.begin() + camera.numLights;
    const bool usable = IsFinite(camera.cameraMatrix) && std::isfinite(camera.zoom) &&
                        camera.zoom > 0.0f && std::isfinite(camera.focusDistance) &&
                        std::isfinite(camera.aperture) && std::isfinite(camera.blurLevel) &&
                        std::all_of(camera.lights.begin(), lightsEnd,
                                    [](const lightData& light) { return IsFinite(light); });
    return usable ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
}

/// A failure skips what would be asked of the host after it, not what is computed.
PF_Err ReadScene(PF_InData& in_data, bool composition3D, camData& camera, A_long layerTime)
{
    AEGP_SuiteHandler suites(in_data.pica_basicP);
    sceneQuery scene{in_data, suites};
    FirstError steps;
    steps.then([&] { return FindComposition(scene); });

    if (composition3D) {
        steps.then([&] { return FindCamera(scene, layerTime); });
        if (scene.cameraLayer != nullptr) {
            steps.then([&] { return ReadCompSize(scene, camera); });
        } else {
            camera.compWidth = in_data.width;
            camera.compHeight = in_data.height;
        }
    }

    A_FpLong distance = 0.0;
    steps.then([&] {
        return suites.CameraSuite2().AEGP_GetDefaultCameraDistanceToImagePlane(scene.comp,
                                                                               &distance);
    });
    PlaceDefaultCamera(in_data, distance, camera);
    if (scene.cameraLayer != nullptr) {
        steps.then([&] { return ReadCamera(scene, camera); });
    }
    camera.cameraInverse = invertMatrix4(camera.cameraMatrix);

    return steps.then([&] { return ReadLights(scene, camera); })
        .then([&] { return composition3D ? CheckScene(camera) : PF_Err{PF_Err_NONE}; })
        .code();
}

}  // namespace

PF_Err CompCamera(PF_InData* in_data, bool composition3D, camData* camera)
{
    return ReadScene(*in_data, composition3D, *camera, in_data->current_time);
}

PF_Err CompCameraT(PF_InData* in_data, bool composition3D, camData* camera, A_long t)
{
    camera->cameraMatrix = IdentityMatrix4();
    return ReadScene(*in_data, composition3D, *camera, std::max<A_long>(t, 0));
}
