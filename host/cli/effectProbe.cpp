#include "cli/effectProbe.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "cli/pluginPath.h"
#include "cli/sceneChoice.h"
#include "cli/setOption.h"
#include "draw/contentState.h"
#include "draw/sceneRenderer.h"
#include "plugin/pluginEffectRunner.h"
#include "scene/loader.h"

namespace orv {
namespace {

[[noreturn]] void Refuse(const std::string& reason)
{
    throw failure(failureKind::usage, reason);
}

void Warn(const std::string& text)
{
    fmt::print(stderr, "warning: {}\n", text);
}

pluginOptions WithWarnings(pluginOptions options)
{
    options.warn = Warn;
    return options;
}

project LoadFor(const probeOptions& options, const effectDeclaration& declaration)
{
    std::vector<setRequest> requests;
    for (const std::string& text : options.sets) requests.push_back(ParseSet(text));
    project scene =
        LoadScene(options.scene, {options.allowOutside, options.strict, {declaration}}, Warn);
    ApplySets(scene, declaration, requests);
    return scene;
}

/// Position of the first effect of the layer that is ours and runs; -1: none.
int FirstInstance(const layer& owner, const std::string& matchName)
{
    const auto found = std::ranges::find_if(owner.effects, [&](const effect& each) {
        return each.matchName == matchName && Runs(each);
    });
    return found != owner.effects.end() ? static_cast<int>(found - owner.effects.begin()) : -1;
}

const layer& FirstOwner(const composition& comp, const effectDeclaration& declaration)
{
    const auto found = std::ranges::find_if(comp.layers, [&](const layer& each) {
        return each.width > 0 && FirstInstance(each, declaration.matchName) >= 0;
    });
    if (found == comp.layers.end())
        Refuse(fmt::format("no layer of the composition has the effect {} switched on",
                           declaration.displayName));
    return *found;
}

int ChooseEffect(const layer& owner, int asked, const effectDeclaration& declaration)
{
    if (asked == 0) {
        const int first = FirstInstance(owner, declaration.matchName);
        if (first < 0)
            Refuse(fmt::format("layer '{}' has no effect {} that is switched on", owner.name,
                               declaration.displayName));
        return first;
    }
    if (asked > static_cast<int>(owner.effects.size()))
        Refuse(fmt::format("--effect: {} is not one of the effects 1 to {} of layer '{}'", asked,
                           owner.effects.size(), owner.name));
    const effect& chosen = owner.effects[static_cast<std::size_t>(asked - 1)];
    if (chosen.matchName != declaration.matchName || !Runs(chosen))
        Refuse(fmt::format("--effect: effect {} of layer '{}' is no {} that is switched on", asked,
                           owner.name, declaration.displayName));
    return asked - 1;
}

int ChooseFrame(const project& scene, const std::optional<int>& asked)
{
    const int frame = asked.value_or(scene.firstFrame);
    if (frame < scene.firstFrame || frame >= scene.endFrame)
        Refuse(fmt::format("--frame: {} is outside the scene's frames {} to {}", frame,
                           scene.firstFrame, scene.endFrame - 1));
    return frame;
}

/// Runs what comes before the instance, and in its place the use. What comes after it is not run.
class ReachingRunner final : public EffectRunner {
public:
    using useFunction = std::function<void(const effectFrame&, const image&)>;

    ReachingRunner(EffectRunner& inner, const layer& owner, int effectIndex, useFunction use)
        : inner_(inner), owner_(owner), effectIndex_(effectIndex), use_(std::move(use))
    {
    }

    image Run(const shownComposition& shown, const layer& owner, int effectIndex, double t,
              const renderQuality& quality, LayerImages& images, const image& input) override
    {
        if (&owner == &owner_ && effectIndex > effectIndex_) return input;
        if (&owner != &owner_ || effectIndex < effectIndex_)
            return inner_.Run(shown, owner, effectIndex, t, quality, images, input);
        use_({shown, &owner, effectIndex, t, quality, &images}, input);
        return input;
    }

private:
    EffectRunner& inner_;
    const layer& owner_;
    int effectIndex_;
    useFunction use_;
};

}  // namespace

void AddSceneOptions(CLI::App& command, probeOptions& options)
{
    command.add_option("SCENE", options.scene, "Scene file")->required();
    command.add_flag("--strict", options.strict, "Make each warning about the scene an error");
    command.add_flag("--allow-outside", options.allowOutside,
                     "Let the scene name pictures outside its folder");
    command.add_option("--plugin", options.plugin,
                       "Effect module; default: KAL_Orv.so beside this program");
}

std::vector<CLI::Option*> AddInstanceOptions(CLI::App& command, probeOptions& options)
{
    return {command.add_option("--comp", options.composition,
                               "Id of a composition; default: the main one"),
            command.add_option("--layer", options.layer,
                               "Name or ind of a layer; default: the topmost one with the effect"),
            command
                .add_option("--effect", options.effect,
                            "Position among the layer's effects, from 1; default: the first that "
                            "fits")
                ->check(CLI::PositiveNumber),
            command.add_option("--frame", options.frame, "Frame; default: the scene's first"),
            command.add_option("--set", options.sets, "NAME|INDEX[@LAYER]=VALUE, again and again")
                ->allow_extra_args(false)};
}

EffectProbe::EffectProbe(const probeOptions& options, pluginOptions hostOptions)
    : plugin_(PluginPath(options.plugin), WithWarnings(std::move(hostOptions))),
      scene_(LoadFor(options, plugin_.declaration()))
{
    const effectDeclaration& declaration = plugin_.declaration();
    comp_ = options.composition.empty() ? &scene_.compositions.front()
                                        : &ChooseComposition(scene_, options.composition);
    owner_ = options.layer.empty() ? &FirstOwner(*comp_, declaration)
                                   : &ChooseLayer(*comp_, options.layer);
    effectIndex_ = ChooseEffect(*owner_, options.effect, declaration);
    frame_ = ChooseFrame(scene_, options.frame);
}

void EffectProbe::Reach(const std::function<void(const effectFrame&, const image& input)>& use)
{
    PluginEffectRunner effects(plugin_);
    ReachingRunner reaching(effects, *owner_, effectIndex_, use);
    SceneRenderer renderer(scene_, {scene_.downsampleX, scene_.downsampleY, scene_.depth},
                           reaching);
    (void)renderer.RenderLayer(*comp_, *owner_, frame_);
}

}  // namespace orv
