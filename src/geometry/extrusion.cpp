#include "geometry/extrusion.h"

#include <cstddef>

#include "geometry/quadInterpolation.h"
#include "geometry/vec3.h"

namespace {

/// Normal shown at sample `s`: the sum with the one before, so that shading runs smoothly.
point3 CornerNormal(const ribbonSamples& ribbon, std::size_t s)
{
    const vec3 own = ribbon.normal[s];
    return s == 0 ? own.narrow() : (vec3(ribbon.normal[s - 1]) + own).narrow();
}

/// The cell from sample `i` to the next on face -1 (back or only) or +1 (front).
quad FaceCell(const ribbonSamples& ribbon, std::size_t i, int face, double halfDepth)
{
    const std::size_t next = i + 1;
    const auto pushed = [&](const point3& p, std::size_t s) {
        return (vec3(p) + vec3(ribbon.normal[s]) * (face * halfDepth)).narrow();
    };
    const point3 here = CornerNormal(ribbon, i), there = CornerNormal(ribbon, next);
    return {.pos = {pushed(ribbon.posA[i], i), pushed(ribbon.posA[next], next),
                    pushed(ribbon.posB[next], next), pushed(ribbon.posB[i], i)},
            .tex = {ribbon.texA[i], ribbon.texA[next], ribbon.texB[next], ribbon.texB[i]},
            .norm = {here, there, there, here},
            .depth = 0.0,
            .face = face * 0.5 + 0.5};
}

}  // namespace

std::vector<quad> BaseCells(const ribbonSamples& ribbon, const meshSettings& settings)
{
    std::vector<quad> cells;
    if (ribbon.posA.size() < 2) return cells;
    const std::size_t steps = ribbon.posA.size() - 1;
    const double halfDepth = settings.halfDepth();
    cells.reserve(steps * static_cast<std::size_t>(settings.faces()));
    for (std::size_t i = 0; i < steps; ++i) {
        cells.push_back(FaceCell(ribbon, i, -1, halfDepth));
        if (settings.extruded()) cells.push_back(FaceCell(ribbon, i, +1, halfDepth));
    }
    return cells;
}

void AppendSlices(std::vector<quad>& cells, int layers)
{
    if (layers <= 1) return;
    const std::size_t pairs = cells.size() / 2;
    // The pairs are read while slices are appended: nothing may move.
    cells.reserve(cells.size() + pairs * static_cast<std::size_t>(layers - 1));
    for (std::size_t pair = 0; pair < pairs; ++pair) {
        for (int i = 1; i < layers; ++i) {
            const double share = static_cast<double>(i) / layers;
            cells.push_back(InterpolateZ(cells[2 * pair], cells[2 * pair + 1], share));
            cells.back().face = share;
        }
    }
}
