#include "draw/sceneRenderer.h"

#include <fmt/format.h>

#include <map>
#include <tuple>
#include <utility>

#include "animation/evaluate.h"
#include "draw/canvas.h"
#include "draw/contentState.h"
#include "draw/drawOrder.h"
#include "draw/maskCoverage.h"
#include "draw/phaseClock.h"
#include "draw/placement.h"
#include "draw/stillPictures.h"

namespace orv {

namespace {

std::string NameOf(const layer& l)
{
    return l.name.empty() ? fmt::format("layer {}", l.index + 1) : fmt::format("\"{}\"", l.name);
}

}  // namespace

/// Nested pictures are kept for the frame: a composition that several layers show, or that effects
/// read, is drawn once.
struct SceneRenderer::state final : LayerImages {
    state(const project& project, renderQuality q, EffectRunner& runner)
        : scene(project), quality(q), effects(runner), stills(q), content(project, q)
    {
    }

    const image& OwnPixels(const shownComposition& shown, const layer& l, double t) override;
    std::array<std::uint8_t, 16> OwnPixelsState(const shownComposition& shown, const layer& l,
                                                double t) override
    {
        return content.OwnPixels(shown, l, t);
    }
    std::array<std::uint8_t, 16> InputState(const shownComposition& shown, const layer& l,
                                            int effectIndex, double t) override
    {
        return content.Input(shown, l, effectIndex, t);
    }
    bool NeedsEffects(const shownComposition& shown, const layer& l, double t) override;

    void StartFrame();
    /// The layer's pixels after masks and effects: own pixels as they are, or `changed`.
    const image& LayerOutput(const shownComposition& shown, const layer& l, double t,
                             image& changed);
    image RunEffect(const shownComposition& shown, const layer& l, int index, double t,
                    const image& input);
    image Compose(const shownComposition& shown, double t);
    void DrawLayer(const shownComposition& shown, const layer& l, double t, const cameraView& view,
                   canvas& target);

    using nestedKey = std::tuple<int, int, int, double>;  ///< composition, size, time
    [[nodiscard]] nestedKey KeyOf(const layer& l, double t) const
    {
        return {l.composition, l.width, l.height, PrecompositionTime(l, t, scene.frameRate)};
    }

    const project& scene;
    renderQuality quality;
    EffectRunner& effects;
    StillPictures stills;
    ContentState content;
    std::map<nestedKey, image> nested;
    PhaseClock clock;
    drawTimes times;
};

const image& SceneRenderer::state::OwnPixels(const shownComposition& shown, const layer& l,
                                             double t)
{
    const PhaseClock::Guard drawing(clock, PhaseClock::phase::draw);
    const pixelSize size = OwnSize(shown, l);
    if (!HasPixels(l) || !Shows(l, t)) return stills.Transparent(size.width, size.height);
    if (l.type == layerType::solid) return stills.Solid(l);
    if (l.type == layerType::image) {
        return stills.Asset(scene.images.at(static_cast<std::size_t>(l.image)));
    }
    if (l.type != layerType::precomposition) return stills.Transparent(size.width, size.height);

    const nestedKey key = KeyOf(l, t);
    const auto known = nested.find(key);
    if (known != nested.end()) return known->second;
    const shownComposition inner{
        &scene, &scene.compositions.at(static_cast<std::size_t>(l.composition)), l.width, l.height};
    return nested.emplace(key, Compose(inner, std::get<3>(key))).first->second;
}

bool SceneRenderer::state::NeedsEffects(const shownComposition&, const layer& l, double t)
{
    return l.type == layerType::precomposition && HasPixels(l) && Shows(l, t) &&
           content.RunsEffects(l.composition) && !nested.contains(KeyOf(l, t));
}

void SceneRenderer::state::StartFrame()
{
    nested.clear();
    clock.Reset();
}

image SceneRenderer::state::RunEffect(const shownComposition& shown, const layer& l, int index,
                                      double t, const image& input)
{
    const PhaseClock::Guard running(clock, PhaseClock::phase::effect);
    image output = effects.Run(shown, l, index, t, quality, *this, input);
    if (output.width != input.width || output.height != input.height ||
        output.depth != input.depth) {
        throw failure(
            failureKind::frame,
            fmt::format("{}: effect {} gave {} x {} pixels for {} x {}", NameOf(l), index + 1,
                        output.width, output.height, input.width, input.height));
    }
    return output;
}

const image& SceneRenderer::state::LayerOutput(const shownComposition& shown, const layer& l,
                                               double t, image& changed)
{
    const image* current = &OwnPixels(shown, l, t);
    if (!l.masks.empty()) {
        changed = *current;
        ClipByMasks(l, t, quality.divisorX, quality.divisorY, changed);
        current = &changed;
    }
    for (int i = 0; i < static_cast<int>(l.effects.size()); ++i) {
        if (!Runs(l.effects[static_cast<std::size_t>(i)])) continue;
        changed = RunEffect(shown, l, i, t, *current);
        current = &changed;
    }
    return *current;
}

void SceneRenderer::state::DrawLayer(const shownComposition& shown, const layer& l, double t,
                                     const cameraView& view, canvas& target)
{
    const matrix4 world = WorldMatrix(*shown.comp, l, t);
    const std::optional<planeMatrix> placement =
        l.threeD ? ProjectedPlacement(world, view, shown.width, shown.height)
                 : FlatPlacement(world);
    const double opacity = Opacity(l, t);
    if (!placement || opacity <= 0.0) return;

    image changed;
    const image& picture = LayerOutput(shown, l, t, changed);
    DrawPlaced(picture, AtPreview(*placement, quality.divisorX, quality.divisorY), opacity, target);
}

image SceneRenderer::state::Compose(const shownComposition& shown, double t)
{
    canvas target(stills.PreviewWidth(shown.width), stills.PreviewHeight(shown.height));
    const cameraView view = ViewAt(*shown.comp, shown.width, shown.height, t);
    for (const layer* each : DrawOrder(shown, t)) DrawLayer(shown, *each, t, view, target);
    return ToImage(target, quality.depth);
}

SceneRenderer::SceneRenderer(const project& scene, renderQuality quality, EffectRunner& effects)
    : state_(std::make_unique<state>(scene, quality, effects))
{
}

SceneRenderer::~SceneRenderer() = default;

image SceneRenderer::RenderComposition(const composition& comp, double t)
{
    state_->StartFrame();
    const PhaseClock::Guard drawing(state_->clock, PhaseClock::phase::draw);
    return state_->Compose({&state_->scene, &comp, comp.width, comp.height}, t);
}

image SceneRenderer::RenderLayer(const composition& comp, const layer& l, double t)
{
    if (!HasPixels(l)) {
        throw failure(failureKind::frame, fmt::format("{} has no pixels to render", NameOf(l)));
    }
    state_->StartFrame();
    const PhaseClock::Guard drawing(state_->clock, PhaseClock::phase::draw);
    image changed;
    return state_->LayerOutput({&state_->scene, &comp, comp.width, comp.height}, l, t, changed);
}

const drawTimes& SceneRenderer::times() const
{
    state_->times = {state_->clock.effectSeconds(), state_->clock.drawSeconds()};
    return state_->times;
}

LayerImages& SceneRenderer::images()
{
    return *state_;
}

}  // namespace orv
