#include "gl/render.h"

#include <new>
#include <string>

#include "Util/firstError.h"
#include "Util/returnMessage.h"
#include "camera/compCamera.h"
#include "gl/composite.h"
#include "gl/framePass.h"
#include "gl/frameScene.h"
#include "gl/readBack.h"
#include "gl/sizeWarning.h"
#include "gl/sourceTextures.h"

namespace {

PF_Err CopyInput(const renderHost& host, PF_LayerDef& output)
{
    return PF_COPY(&host.in_data, &host.input(), &output, nullptr, nullptr);
}

void ShowSizeWarning(const renderHost& host, const frameSettings& settings)
{
    const std::string text =
        UpdateSizeWarning({.layerWidth = host.in_data.width,
                           .layerHeight = host.in_data.height,
                           .worldWidth = settings.frameWidth,
                           .worldHeight = settings.frameHeight,
                           .denX = settings.denX,
                           .denY = settings.denY,
                           .maxTextureSize = AESDK_OpenGL::S_EffectCommonData.maxTextureSize},
                          host.global().sizeWarningShown);
    if (!text.empty()) SetReturnMessage(host.in_data, host.out_data, text);
}

/// Lays the mesh's samples. Without a source image there is nothing to lay.
PF_Err BuildInstantShape(const renderHost& host, const frameSettings& settings,
                         const frameTextures& textures, frameInstant& instant)
{
    if (!textures.ready) return PF_Err_NONE;
    instant.mesh = MakeMeshSettings(instant.values, {.sourceWidth = textures.width,
                                                     .sourceHeight = textures.height,
                                                     .viewWidth = settings.viewWidth,
                                                     .viewHeight = settings.viewHeight,
                                                     .denX = settings.denX,
                                                     .denY = settings.denY});
    std::string reason;
    const PF_Err err = BuildShape(host.in_data, instant.values, instant.mesh,
                                  host.in_data.current_time, instant.shape, reason);
    if (reason.empty()) return err;
    return FailWithMessage(host.in_data, host.out_data, reason, err);
}

bool ListsMatch(const ribbonSamples& ribbon)
{
    const std::size_t size = ribbon.posA.size();
    return ribbon.posB.size() == size && ribbon.texA.size() == size && ribbon.texB.size() == size;
}

PF_Err ReadCamera(const renderHost& host, const frameSettings& settings, camData& camera)
{
    camera = MakeCamData(settings.denX);
    const PF_Err err = CompCamera(&host.in_data, settings.composition3D, &camera);
    if (!settings.composition3D) camera.depthOfField = 0.0f;
    return err;
}

drawList SortedCells(const frameInstant& instant)
{
    // Render space mirrors the host's z.
    const A_FpLong* const position = instant.camera.cameraMatrix.mat[3];
    const double eye[3] = {position[0], position[1], -position[2]};
    return BuildDrawList(instant.shape, instant.mesh, eye);
}

/// Whether what was drawn could be drawn at all.
PF_Err CheckTarget(const renderHost& host)
{
    const std::string status = AESDK_OpenGL::CheckFramebufferStatus();
    if (status == "OK") return PF_Err_NONE;
    return FailWithMessage(host.in_data, host.out_data, status);
}

PF_Err DrawPasses(const renderHost& host, const frameScene& scene, const frameInstant& instant)
{
    TargetCopy encoding;
    const auto draw = [&](passKind pass) {
        return FirstError(host.abort())
            .then([&] { return host.gl(DrawPass(scene, instant, pass, encoding)); })
            .then([&] { return CheckTarget(host); })
            .code();
    };
    if (instant.camera.depthOfField == 0.0f) return draw(passKind::single);
    return FirstError{}
        .then([&] { return draw(passKind::encodeBlur); })
        .then([&] { return draw(passKind::blurred); })
        .code();
}

PF_Err DrawFrame(const renderHost& host, const frameSettings& settings,
                 const frameTextures& textures, frameInstant& instant, PF_LayerDef& output)
{
    RenderedImage image;
    return FirstError{}
        .then([&] { return PF_FILL(&host.in_data, nullptr, nullptr, &output); })
        .then([&] { return ReadCamera(host, settings, instant.camera); })
        .then([&] {
            instant.list = SortedCells(instant);
            const frameScene scene{
                .settings = settings,
                .textures = textures,
                .roles = ChooseTextureRoles(textures, instant.values),
                .lights = MakeLightSettings(instant.values),
                .eyeDistance = EyeDistance2D(settings.denX, instant.camera.zoom)};
            return DrawPasses(host, scene, instant);
        })
        .then([&] { return host.abort(); })
        .then([&] { return image.Read(host, settings); })
        .then([&] {
            return Composite(host, image.world(), instant.values.popup(kCompositeMode), output);
        })
        .always([&] { return image.close(); })
        .code();
}

PF_Err RenderFrame(const renderHost& host, const frameSettings& settings,
                   const paramSnapshot& values, PF_LayerDef& output)
{
    frameTextures textures;
    frameInstant instant;
    instant.values = values;
    return FirstError{}
        .then([&] { return PrepareTextures(host, settings, values, textures); })
        .then([&] { return BuildInstantShape(host, settings, textures, instant); })
        .then([&] {
            return ListsMatch(instant.shape.ribbon)
                       ? DrawFrame(host, settings, textures, instant, output)
                       : CopyInput(host, output);
        })
        .code();
}

}  // namespace

PF_Err Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output)
try {
    AEGP_SuiteHandler suites(in_data->pica_basicP);
    const renderHost host{*in_data, *out_data, params, suites};
    const paramSnapshot values = ReadParams(*in_data, params);
    frameSettings settings;
    if (const PF_Err err = ReadFrameSettings(host, values, settings); err != PF_Err_NONE) {
        return err;
    }
    if (values.paths.mask == 0) return CopyInput(host, *output);

    ShowSizeWarning(host, settings);
    return RenderFrame(host, settings, values, *output);
} catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
}
