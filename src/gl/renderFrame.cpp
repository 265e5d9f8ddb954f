#include "gl/renderFrame.h"

#include <algorithm>
#include <new>
#include <span>
#include <string>

#include "Util/firstError.h"
#include "Util/returnMessage.h"
#include "camera/compCamera.h"
#include "gl/accumulate.h"
#include "gl/composite.h"
#include "gl/framePass.h"
#include "gl/readBack.h"
#include "gl/sizeWarning.h"

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

bool ListsMatch(const frameInstant& instant)
{
    const ribbonSamples& ribbon = instant.shape.ribbon;
    const std::size_t size = ribbon.posA.size();
    return ribbon.posB.size() == size && ribbon.texA.size() == size && ribbon.texB.size() == size;
}

PF_Err ReadFrameCamera(const renderHost& host, const frameSettings& settings,
                       const paramSnapshot& values, camData& camera)
{
    camera = MakeCamData(settings.denX);
    const PF_Err err = CompCamera(&host.in_data, values.composition3D(), &camera);
    if (!values.composition3D()) camera.depthOfField = 0.0f;
    return err;
}

frameScene MakeScene(const frameSource& source)
{
    return {.settings = source.settings,
            .textures = source.textures,
            .roles = ChooseTextureRoles(source.textures, source.values),
            .lights = MakeLightSettings(source.values),
            .eyeDistance = EyeDistance2D(source.settings.denX, source.camera.zoom),
            .depthOfField = source.camera.depthOfField != 0.0f};
}

std::span<const passKind> PassesOf(const frameScene& scene)
{
    static constexpr passKind kOne[] = {passKind::single};
    static constexpr passKind kTwo[] = {passKind::encodeBlur, passKind::blurred};
    return scene.depthOfField ? std::span<const passKind>(kTwo) : std::span<const passKind>(kOne);
}

/// Whether what was drawn could be drawn at all.
PF_Err CheckTarget(const renderHost& host)
{
    const std::string status = AESDK_OpenGL::CheckFramebufferStatus();
    if (status == "OK") return PF_Err_NONE;
    return FailWithMessage(host.in_data, host.out_data, status);
}

/// A single instant's cells serve all passes. Those of many are made when they are drawn.
PF_Err DrawPasses(const renderHost& host, const frameScene& scene, std::span<frameInstant> instants)
{
    const bool still = instants.size() == 1;
    if (still) instants.front().list = SortedCells(instants.front());
    TargetCopy encoding;
    FirstError steps;
    for (const passKind pass : PassesOf(scene)) {
        steps.then([&] { return host.abort(); })
            .then([&] {
                return still ? host.gl(DrawPass(scene, instants.front(), pass, encoding))
                             : DrawSamples(host, scene, instants, pass, encoding);
            })
            .then([&] { return CheckTarget(host); });
    }
    return steps.code();
}

PF_Err DrawFrame(const frameSource& source, std::span<frameInstant> instants, PF_LayerDef& output)
{
    const renderHost& host = source.host;
    RenderedImage image;
    return FirstError{}
        .then([&] { return PF_FILL(&host.in_data, nullptr, nullptr, &output); })
        .then([&] { return DrawPasses(host, MakeScene(source), instants); })
        .then([&] { return host.abort(); })
        .then([&] { return image.Read(host, source.settings); })
        .then([&] {
            return Composite(host, image.world(), source.values.popup(kCompositeMode), output);
        })
        .always([&] { return image.close(); })
        .code();
}

PF_Err RenderWithMask(const renderHost& host, const frameSettings& settings,
                      const paramSnapshot& values, const instantReader& readInstants,
                      PF_LayerDef& output)
{
    frameTextures textures;
    camData camera;
    const frameSource source{host, settings, textures, values, camera};
    std::vector<frameInstant> instants;
    return FirstError{}
        .then([&] { return PrepareTextures(host, settings, values, textures); })
        .then([&] { return ReadFrameCamera(host, settings, values, camera); })
        .then([&] { return readInstants(source, instants); })
        .then([&] {
            return std::all_of(instants.begin(), instants.end(), ListsMatch)
                       ? DrawFrame(source, instants, output)
                       : CopyInput(host, output);
        })
        .code();
}

}  // namespace

PF_Err RenderInstants(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                      PF_LayerDef* output, const instantReader& readInstants)
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
    return RenderWithMask(host, settings, values, readInstants, *output);
} catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
}

PF_Err LayInstant(const frameSource& source, A_long time, frameInstant& instant)
{
    const auto& [host, settings, textures, values, camera] = source;
    if (!textures.ready) return PF_Err_NONE;
    instant.mesh = MakeMeshSettings(instant.values, {.sourceWidth = textures.width,
                                                     .sourceHeight = textures.height,
                                                     .viewWidth = settings.viewWidth,
                                                     .viewHeight = settings.viewHeight,
                                                     .denX = settings.denX,
                                                     .denY = settings.denY});
    std::string reason;
    const PF_Err err =
        BuildShape(host.in_data, instant.values, instant.mesh, time, instant.shape, reason);
    if (reason.empty()) return err;
    return FailWithMessage(host.in_data, host.out_data, reason, err);
}
