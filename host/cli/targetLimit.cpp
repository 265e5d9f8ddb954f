#include "cli/targetLimit.h"

#include <algorithm>

#include <fmt/format.h>

#include "animation/evaluate.h"
#include "cli/glInfo.h"
#include "scene/errors.h"

namespace orv {
namespace {

const paramDeclaration* FindParam(const effectDeclaration& declaration, std::string_view name)
{
    const auto found = std::find_if(declaration.params.begin(), declaration.params.end(),
                                    [name](const auto& param) { return param.name == name; });
    return found == declaration.params.end() ? nullptr : &*found;
}

/// Values of these two kinds cannot be mixed; neither can be on by default.
bool IsSet(const effect& instance, const paramDeclaration& param, double t)
{
    const auto value = instance.values.find(param.index);
    return value != instance.values.end() && EvaluateHeld(value->second, t, 0.0) != 0.0;
}

}  // namespace

TargetLimitRunner::TargetLimitRunner(EffectRunner& inner, const effectDeclaration& declaration,
                                     bool maximum)
    : inner_(inner),
      declaration_(declaration),
      maximumAllowed_(maximum),
      mask_(FindParam(declaration, "Mask")),
      maximum_(FindParam(declaration, "Allow maximum texture size"))
{
}

image TargetLimitRunner::Run(const shownComposition& shown, const layer& owner, int effectIndex,
                             double t, const renderQuality& quality, LayerImages& images,
                             const image& input)
{
    const effect& instance = owner.effects[static_cast<std::size_t>(effectIndex)];
    if (instance.matchName == declaration_.matchName && mask_ && maximum_ &&
        IsSet(instance, *mask_, t))
        CheckSize(owner, input);
    return inner_.Run(shown, owner, effectIndex, t, quality, images, input);
}

void TargetLimitRunner::CheckSize(const layer& owner, const image& input)
{
    // Whatever OpenGL gives, targets have this edge; so most frames need not ask it.
    const int longest = std::max(input.width, input.height);
    if (longest <= LargestTargetEdge(0)) return;

    if (!edge_) edge_ = LargestTargetEdge(QueryGl().maxRectangleSize, maximumAllowed_);
    if (longest <= *edge_) return;
    throw failure(
        failureKind::frame,
        fmt::format("layer '{}': a frame of {}x{} does not fit the largest render target, {}x{} "
                    "(\"{}\" is {}); render with --downsample, or --allow-truncated to cut it off",
                    owner.name, input.width, input.height, *edge_, *edge_, maximum_->name,
                    maximumAllowed_ ? "on" : "off"));
}

}  // namespace orv
