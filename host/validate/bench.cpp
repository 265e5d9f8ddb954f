#include "validate/bench.h"

#include <algorithm>
#include <utility>

namespace orv {
namespace {

constexpr const char* kSceneName = "validation";

commandObserver& EveryCommand()
{
    static commandObserver observe;
    return observe;
}

}  // namespace

ValidationBench::ValidationBench(const std::string& module, pluginOptions options)
{
    options.warn = [this](const std::string& text) { warnings_.push_back(text); };
    if (!options.observe) options.observe = EveryCommand();
    host_ = std::make_unique<PluginHost>(module, std::move(options));
    runner_ = std::make_unique<PluginEffectRunner>(*host_);
}

ValidationBench::~ValidationBench() = default;

void ValidationBench::OnEveryCommand(commandObserver observe)
{
    EveryCommand() = std::move(observe);
}

std::size_t ValidationBench::Show(const sceneSketch& sketch)
{
    loadOptions loading;
    loading.effects.push_back(host_->declaration());
    scenes_.push_back(std::make_unique<project>(
        LoadSceneText(SceneText(sketch, host_->declaration()), kSceneName, loading,
                      [this](const std::string& text) { warnings_.push_back(text); })));
    ShowAgain(scenes_.size() - 1);
    return shown_;
}

void ValidationBench::ShowAgain(std::size_t number)
{
    shown_ = number;
    SetQuality({1, 1, scene().depth});
}

void ValidationBench::Edit(const std::function<void(layer&)>& change)
{
    change(scenes_.at(shown_)->compositions.front().layers.front());
    // What was drawn of the layer before is not to be found again.
    SetQuality(quality_);
}

void ValidationBench::SetQuality(const renderQuality& quality)
{
    quality_ = quality;
    renderer_ = std::make_unique<SceneRenderer>(scene(), quality_, *runner_);
}

const layer& ValidationBench::owner() const
{
    return scene().compositions.front().layers.front();
}

image ValidationBench::Render(double t)
{
    return renderer_->RenderLayer(scene().compositions.front(), owner(), t);
}

effectFrame ValidationBench::Frame(double t) const
{
    const composition& comp = scene().compositions.front();
    return {.shown = {&scene(), &comp, comp.width, comp.height},
            .owner = &owner(),
            .effectIndex = 0,
            .t = t,
            .quality = quality_,
            .images = &renderer_->images()};
}

image ValidationBench::Input() const
{
    // The sketch's masks do not clip, so the input is the layer's own pixels.
    const effectFrame frame = Frame();
    return frame.images->OwnPixels(frame.shown, owner(), 0.0);
}

image ValidationBench::EmptyOutput() const
{
    const auto preview = [](int size, int divisor) { return (size + divisor - 1) / divisor; };
    return {preview(owner().width, quality_.divisorX), preview(owner().height, quality_.divisorY),
            quality_.depth};
}

}  // namespace orv
