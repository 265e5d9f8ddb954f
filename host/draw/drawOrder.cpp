#include "draw/drawOrder.h"

#include <algorithm>
#include <utility>

#include "animation/evaluate.h"

namespace orv {

namespace {

bool IsDrawn(const layer& l, double t)
{
    return HasPixels(l) && !l.hidden && !l.matteSource && Shows(l, t);
}

/// Distance of the layer's centre from the plane of the camera.
double CentreDepth(const shownComposition& shown, const layer& l, const matrix4& worldToView,
                   double t)
{
    const pixelSize size = OwnSize(shown, l);
    const vec3 centre{0.5 * size.width, 0.5 * size.height, 0.0};
    return TransformPoint(centre, WorldMatrix(*shown.comp, l, t) * worldToView).z;
}

/// A run of 3D layers, farthest first; equal depths stay as they are.
void SortByDepth(const shownComposition& shown, const matrix4& worldToView, double t,
                 std::vector<const layer*>::iterator begin, std::vector<const layer*>::iterator end)
{
    std::vector<std::pair<double, const layer*>> byDepth;
    for (auto each = begin; each != end; ++each) {
        byDepth.emplace_back(CentreDepth(shown, **each, worldToView, t), *each);
    }
    std::stable_sort(byDepth.begin(), byDepth.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::transform(byDepth.begin(), byDepth.end(), begin,
                   [](const auto& each) { return each.second; });
}

}  // namespace

pixelSize OwnSize(const shownComposition& shown, const layer& l)
{
    if (l.type == layerType::empty) return {shown.width, shown.height};
    return {l.width, l.height};
}

std::vector<const layer*> DrawOrder(const shownComposition& shown, double t)
{
    std::vector<const layer*> order;
    const auto& layers = shown.comp->layers;
    for (auto each = layers.rbegin(); each != layers.rend(); ++each) {
        if (IsDrawn(*each, t)) order.push_back(&*each);
    }

    const cameraView view = ViewAt(*shown.comp, shown.width, shown.height, t);
    const auto worldToView = Inverse(view.world);
    if (!worldToView) return order;
    const auto isThreeD = [](const layer* l) { return l->threeD; };
    for (auto begin = order.begin(); begin != order.end();) {
        begin = std::find_if(begin, order.end(), isThreeD);
        const auto end = std::find_if_not(begin, order.end(), isThreeD);
        SortByDepth(shown, *worldToView, t, begin, end);
        begin = end;
    }
    return order;
}

}  // namespace orv
