#include "draw/contentState.h"

#include <algorithm>
#include <atomic>

#include "animation/evaluate.h"
#include "draw/drawOrder.h"
#include "draw/maskCoverage.h"
#include "image/digest.h"

namespace orv {

namespace {

std::uint64_t NextSalt()
{
    static std::atomic<std::uint64_t> salts{0};
    return ++salts;
}

bool AnyAnimated(std::initializer_list<const property*> list)
{
    return std::any_of(list.begin(), list.end(), [](const property* p) { return p->animated(); });
}

bool Moves(const transformProps& p)
{
    return AnyAnimated({&p.anchor, &p.position, &p.scale, &p.rotation, &p.rotationX, &p.rotationY,
                        &p.rotationZ, &p.orientation, &p.opacity, &p.positionX, &p.positionY,
                        &p.positionZ});
}

bool Moves(const layer& l)
{
    const cameraProps& c = l.camera;
    const lightProps& light = l.light;
    return Moves(l.transform) ||
           AnyAnimated({&c.zoom, &c.depthOfField, &c.aperture, &c.blurLevel}) ||
           (c.focusDistance && c.focusDistance->animated()) ||
           AnyAnimated({&light.intensity, &light.color, &light.coneAngle, &light.coneFeather}) ||
           (l.timeRemap && l.timeRemap->animated()) ||
           std::any_of(l.masks.begin(), l.masks.end(), [](const mask& each) {
               return each.path.animated() || each.opacity.animated();
           });
}

bool RunsEffects(const layer& l)
{
    return std::any_of(l.effects.begin(), l.effects.end(), Runs);
}

void AddPath(const maskPath& path, Digest& digest)
{
    digest.add(path.vertex.size());
    for (const auto* list : {&path.vertex, &path.in, &path.out}) {
        for (const vec2& each : *list) digest.add(each.x).add(each.y);
    }
}

/// The masks that clip, as they are at `t`.
void AddMasks(const layer& l, double t, Digest& digest)
{
    for (const mask& each : l.masks) {
        const maskPath path = EvaluatePath(each.path, t);
        if (!Clips(each, path)) continue;
        digest.add(each.mode).add(each.inverted).add(EvaluateScalar(each.opacity, t, 100.0));
        AddPath(path, digest);
    }
}

}  // namespace

bool Runs(const effect& each)
{
    return each.loaded && each.enabled;
}

/// For each composition: whether a layer passes the test, there or in a composition that it shows.
template <class Test>
std::vector<bool> ContentState::ForCompositions(const Test& layerTest) const
{
    const std::size_t count = scene_.compositions.size();
    std::vector<bool> result(count), done(count);
    const auto visit = [&](const auto& self, std::size_t index) -> bool {
        if (done[index]) return result[index];
        done[index] = true;
        for (const layer& each : scene_.compositions[index].layers) {
            const bool inside = each.type == layerType::precomposition && each.composition >= 0 &&
                                self(self, static_cast<std::size_t>(each.composition));
            if (inside || layerTest(each)) result[index] = true;
        }
        return result[index];
    };
    for (std::size_t i = 0; i < count; ++i) (void)visit(visit, i);
    return result;
}

ContentState::ContentState(const project& scene, const renderQuality& quality)
    : scene_(scene),
      quality_(quality),
      salt_(NextSalt()),
      runsEffects_(ForCompositions([](const layer& l) { return orv::RunsEffects(l); })),
      moves_(ForCompositions([](const layer& l) { return orv::Moves(l) || orv::RunsEffects(l); }))
{
}

contentDigest ContentState::Composition(int index, int width, int height, double t)
{
    const std::tuple key(index, width, height, t);
    const auto known = known_.find(key);
    if (known != known_.end()) return known->second;

    Digest digest;
    digest.add(salt_).add(index).add(width).add(height);
    if (Moves(index)) {
        digest.add(t);
    } else {
        // Nothing changes but which layers show.
        for (const layer& each : scene_.compositions.at(static_cast<std::size_t>(index)).layers) {
            digest.add(Shows(each, t));
            if (each.type == layerType::precomposition && each.composition >= 0) {
                digest.add(Composition(each.composition, each.width, each.height,
                                       PrecompositionTime(each, t, scene_.frameRate)));
            }
        }
    }
    constexpr std::size_t kMostKnown = 10000;
    if (known_.size() >= kMostKnown) known_.clear();
    return known_[key] = digest.bytes();
}

contentDigest ContentState::OwnPixels(const shownComposition& shown, const layer& l, double t)
{
    const pixelSize size = OwnSize(shown, l);
    Digest digest;
    digest.add(salt_).add(size.width).add(size.height);
    digest.add(quality_.divisorX).add(quality_.divisorY).add(quality_.depth);
    if (!Shows(l, t) || !HasPixels(l)) return digest.add(layerType::empty).bytes();
    digest.add(l.type);
    if (l.type == layerType::solid) {
        for (const double each : l.color) digest.add(each);
    } else if (l.type == layerType::image) {
        digest.add(l.image);
    } else if (l.type == layerType::precomposition) {
        digest.add(Composition(l.composition, l.width, l.height,
                               PrecompositionTime(l, t, scene_.frameRate)));
    }
    return digest.bytes();
}

contentDigest ContentState::Input(const shownComposition& shown, const layer& l, int effectIndex,
                                  double t)
{
    Digest digest;
    digest.add(OwnPixels(shown, l, t));
    AddMasks(l, t, digest);
    for (int i = 0; i < effectIndex; ++i) {
        if (!Runs(l.effects.at(static_cast<std::size_t>(i)))) continue;
        // What an effect draws may depend on anything in its composition.
        digest.add(shown.comp - scene_.compositions.data()).add(l.index).add(i).add(t);
        digest.add(shown.width).add(shown.height);
    }
    return digest.bytes();
}

}  // namespace orv
