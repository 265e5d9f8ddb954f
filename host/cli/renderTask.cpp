#include "cli/renderTask.h"

#include <span>

#include <fmt/format.h>

#include "cli/sceneChoice.h"
#include "scene/errors.h"

namespace orv {
namespace {

std::vector<int> ChooseFrames(const project& scene, const renderOptions& options)
{
    const frameRange all{scene.firstFrame, scene.endFrame - 1, 1};
    std::vector<int> frames =
        ExpandFrames(options.frames.empty() ? std::span(&all, 1) : std::span(options.frames),
                     scene.firstFrame, scene.endFrame);
    const outputPattern& output = options.output;
    if (frames.size() > 1 && !output.numbered() && output.kind != outputKind::video)
        throw failure(failureKind::usage,
                      fmt::format("output '{}' needs a frame number (#### or %04d) for {} frames",
                                  FrameFile(output, 0), frames.size()));
    return frames;
}

}  // namespace

void OverrideScene(project& scene, const renderOptions& options,
                   const effectDeclaration& declaration)
{
    if (options.depth) scene.depth = *options.depth;
    if (options.downsample) {
        scene.downsampleX = (*options.downsample)[0];
        scene.downsampleY = (*options.downsample)[1];
    }
    for (composition& comp : scene.compositions) {
        motionBlurSettings& blur = comp.motionBlur;
        blur.enabled = options.motionBlur.value_or(blur.enabled);
        blur.shutterAngle = options.shutterAngle.value_or(blur.shutterAngle);
        blur.shutterPhase = options.shutterPhase.value_or(blur.shutterPhase);
        blur.samples = options.motionBlurSamples.value_or(blur.samples);
    }
    ApplySets(scene, declaration, options.sets);
}

renderTask ChooseTask(const project& scene, const renderOptions& options)
{
    renderTask task;
    task.comp = options.composition ? &ChooseComposition(scene, *options.composition)
                                    : &scene.compositions.front();
    if (options.layer) task.onlyLayer = &ChooseLayer(*task.comp, *options.layer);
    task.frames = ChooseFrames(scene, options);
    task.quality = {scene.downsampleX, scene.downsampleY, scene.depth};

    const auto preview = [](int size, int divisor) { return (size + divisor - 1) / divisor; };
    const int width = task.onlyLayer ? task.onlyLayer->width : task.comp->width;
    const int height = task.onlyLayer ? task.onlyLayer->height : task.comp->height;
    task.format = {.width = preview(width, scene.downsampleX),
                   .height = preview(height, scene.downsampleY),
                   .depth = scene.depth,
                   .exr = options.exr,
                   .frameRate = scene.frameRate};
    return task;
}

}  // namespace orv
