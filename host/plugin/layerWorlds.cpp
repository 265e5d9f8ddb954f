#include "plugin/layerWorlds.h"

#include <algorithm>

#include "image/digest.h"
#include "plugin/pluginHost.h"

namespace orv {

namespace {

/// What a layer without pixels shows: nothing, in the composition's size.
image EmptyPicture(const effectFrame& frame, const layer& of)
{
    const int width = of.width > 0 ? of.width : frame.shown.width;
    const int height = of.height > 0 ? of.height : frame.shown.height;
    return {AtDivisor(width, frame.quality.divisorX), AtDivisor(height, frame.quality.divisorY),
            frame.quality.depth};
}

ownedWorld MakeWorld(WorldStore& store, const effectFrame& frame, const layer& of, double t)
{
    if (frame.images != nullptr) {
        const image& pixels = frame.images->OwnPixels(frame.shown, of, t);
        if (pixels.width > 0 && pixels.height > 0) return OwnWorldFrom(store, pixels);
    }
    return OwnWorldFrom(store, EmptyPicture(frame, of));
}

}  // namespace

int AtDivisor(int fullSize, int divisor)
{
    return (fullSize + divisor - 1) / divisor;
}

stateBytes LayerState(const effectFrame& frame, const layer& of, double t)
{
    Digest digest;
    digest.add(reinterpret_cast<std::uintptr_t>(frame.shown.comp)).add(of.index);
    digest.add(frame.quality.divisorX).add(frame.quality.divisorY).add(frame.quality.depth);
    if (frame.images != nullptr) digest.add(frame.images->OwnPixelsState(frame.shown, of, t));
    return digest.bytes();
}

bool LayerWorlds::Knows(const effectFrame& frame, const layer& of, double t) const
{
    const stateBytes state = LayerState(frame, of, t);
    return std::ranges::any_of(kept_, [&](const auto& each) { return each->state == state; });
}

sharedLayerWorld LayerWorlds::Get(WorldStore& store, const effectFrame& frame, const layer& of,
                                  double t)
{
    const stateBytes state = LayerState(frame, of, t);
    const auto known = std::ranges::find_if(
        kept_, [&](const sharedLayerWorld& each) { return each->state == state; });
    if (known != kept_.end()) {
        std::rotate(known, known + 1, kept_.end());
        return kept_.back();
    }
    auto fresh = std::make_shared<layerWorld>();
    fresh->pixels = MakeWorld(store, frame, of, t);
    fresh->state = state;
    fresh->checksum = Checksum(*fresh->pixels);
    constexpr std::size_t kMostKept = 4;
    if (kept_.size() == kMostKept) kept_.erase(kept_.begin());
    kept_.push_back(std::move(fresh));
    return kept_.back();
}

}  // namespace orv
