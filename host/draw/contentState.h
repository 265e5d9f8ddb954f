// contentState.h: digests of what pictures depend on, and what a project's compositions are like.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

#include "plugin/layerImages.h"
#include "scene/model.h"

namespace orv {

using contentDigest = std::array<std::uint8_t, 16>;

/// Whether the scene's effect is run: switched on and its plug-in loaded.
bool Runs(const effect& each);

/// Knows for each composition of a project whether anything in it moves and whether it runs
/// effects. Digests of two instances never agree.
class ContentState {
public:
    ContentState(const project& scene, const renderQuality& quality);

    [[nodiscard]] bool RunsEffects(int composition) const { return at(runsEffects_, composition); }
    /// Any animated value, or an effect, which may draw by the clock.
    [[nodiscard]] bool Moves(int composition) const { return at(moves_, composition); }

    /// Equal digests mean equal pixels; own pixels of the layer, transparent outside its time.
    contentDigest OwnPixels(const shownComposition& shown, const layer& l, double t);
    /// Own pixels, masks, and the effects before number `effectIndex`.
    contentDigest Input(const shownComposition& shown, const layer& l, int effectIndex, double t);

private:
    template <class Test>
    std::vector<bool> ForCompositions(const Test& layerTest) const;
    static bool at(const std::vector<bool>& list, int i)
    {
        return list.at(static_cast<std::size_t>(i));
    }
    contentDigest Composition(int index, int width, int height, double t);

    const project& scene_;
    renderQuality quality_;
    std::uint64_t salt_;
    std::vector<bool> runsEffects_, moves_;
    /// Still compositions by index, size and time; it is emptied when it has grown large.
    std::map<std::tuple<int, int, int, double>, contentDigest> known_;
};

}  // namespace orv
