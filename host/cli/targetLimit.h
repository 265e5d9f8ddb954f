// targetLimit.h: refuses frames that the effect's render targets cannot hold, which it would cut
// off silently.
#pragma once

#include <optional>

#include "plugin/effectRunner.h"
#include "scene/paramDeclaration.h"

namespace orv {

/// Longest edge of the largest render target. The effect does not tell it: this is its policy
/// applied to what OpenGL gives. It allows itself half of the longest texture edge, at least 4096,
/// and its largest target has half of that edge. `maximum`: it was told to allow itself all.
constexpr int LargestTargetEdge(int maxRectangleSize, bool maximum = false)
{
    constexpr int kLeastTextureEdge = 4096;
    if (maximum) return maxRectangleSize / 2;
    const int half = maxRectangleSize / 2;
    return (half > kLeastTextureEdge ? half : kLeastTextureEdge) / 2;
}

/// Passes effects on to another runner when their frame fits. Only an effect that declares the
/// parameters "Mask" and "Allow maximum texture size" is held to the limit, and only while its
/// mask is set: without one it copies its input and needs no target.
class TargetLimitRunner final : public EffectRunner {
public:
    /// Borrows both. `maximum` as above.
    TargetLimitRunner(EffectRunner& inner, const effectDeclaration& declaration,
                      bool maximum = false);
    /// Throws failure(frame) naming layer, size and limit, failure(gl) when the limit cannot be
    /// asked for, else what the inner runner throws.
    image Run(const shownComposition& shown, const layer& owner, int effectIndex, double t,
              const renderQuality& quality, LayerImages& images, const image& input) override;

private:
    void CheckSize(const layer& owner, const image& input);

    EffectRunner& inner_;
    const effectDeclaration& declaration_;
    bool maximumAllowed_;
    const paramDeclaration* mask_;
    const paramDeclaration* maximum_;
    std::optional<int> edge_;  ///< asked for with the first frame that needs it
};

}  // namespace orv
