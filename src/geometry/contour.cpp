#include "geometry/contour.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "geometry/profiles.h"
#include "geometry/vec3.h"

namespace {

constexpr double kWallFace = 2.0;

/// `pixel` as a fraction of `size`, at least one pixel away from both ends where there is room.
float InsideFraction(double pixel, int size)
{
    const double pixels = std::max(size, 1);
    const double fraction = std::min(Bounded(pixel) / pixels, 1.0 - 1.0 / pixels);
    return static_cast<float>(std::max(fraction, 1.0 / pixels));
}

/// The two samples that a point of the outline lies between, and its share of the second.
struct samplePair {
    samplePair(double u, std::size_t samples)
    {
        const double last = static_cast<double>(samples) - 1.0;
        const double x = std::clamp(last * u, 0.0, last);
        share = x - std::floor(x);
        low = static_cast<std::size_t>(x);
        high = static_cast<std::size_t>(std::ceil(x));
    }
    [[nodiscard]] vec3 of(const std::vector<point3>& list) const
    {
        return Blend(list[low], list[high], share);
    }
    [[nodiscard]] double of(const std::vector<double>& list) const
    {
        return share * list[high] + (1.0 - share) * list[low];
    }
    std::size_t low = 0, high = 0;
    double share = 0.0;
};

/// Wall from the front edge to the back, crossed with its run from sample a to sample b.
vec3 WallCross(const contourSamples& contour, std::size_t a, std::size_t b)
{
    const vec3 front = contour.front[a];
    return Cross(vec3(contour.back[a]) - front, vec3(contour.front[b]) - front);
}

/// Normal of sample `j`, from the steps before and after it.
point3 WallNormal(const contourSamples& contour, std::size_t j)
{
    const std::size_t samples = contour.front.size();
    if (samples == 2) return (-WallCross(contour, 0, 1)).narrow();
    const std::size_t before = j == 0 ? samples - 1 : j - 1;
    return (-(WallCross(contour, before, j) + WallCross(contour, j, j + 1))).narrow();
}

quad WallCell(const contourSamples& contour, std::size_t j)
{
    const std::size_t k = j + 1;
    const auto front = [&](std::size_t s) {
        return point3{contour.tex[s].x, contour.tex[s].y, static_cast<float>(contour.pathPos[s])};
    };
    const auto back = [&](std::size_t s) {
        return point3{contour.tex[s].x, contour.tex[s].z, static_cast<float>(contour.pathPos[s])};
    };
    return {.pos = {contour.front[j], contour.front[k], contour.back[k], contour.back[j]},
            .tex = {front(j), front(k), back(k), back(j)},
            .norm = {},
            .depth = 0.0,
            .face = kWallFace};
}

void SetNormals(quad& cell, const point3& here, const point3& there)
{
    cell.norm[0] = cell.norm[3] = here;
    cell.norm[1] = cell.norm[2] = there;
}

}  // namespace

double ContourDensity(double length, const meshSettings& settings)
{
    return settings.contourDefinitionPercent * length * 0.01;
}

std::uint64_t ContourSampleCount(double density)
{
    return static_cast<std::uint64_t>(std::ceil(std::max(Bounded(density), 0.0)));
}

double ContourArc(std::uint64_t k, double density, double length)
{
    const double u = std::clamp(static_cast<double>(k) / density, 0.0, 1.0);
    return (3.0 - 2.0 * u) * u * u * length;
}

point3 ContourPoint(double x, double y, const frameSizes& sizes)
{
    const float u = InsideFraction(x, sizes.viewWidth);
    return {u, InsideFraction(y, sizes.viewHeight), u};
}

contourSamples LayContour(const std::vector<point3>& outline, const ribbonSamples& ribbon,
                          const meshSettings& settings)
{
    contourSamples contour;
    if (ribbon.posA.empty()) return contour;
    const double halfDepth = settings.halfDepth();
    for (const point3& point : outline) {
        const double u = static_cast<double>(point.x), v = static_cast<double>(point.y);
        const samplePair at(u, ribbon.posA.size());
        const double depth = Bounded(
            ScaleAlong(u, settings.scaleStart, settings.scaleEnd) * halfDepth *
            ScaleAlong(at.of(ribbon.pathPos), settings.scaleMaskStart, settings.scaleMaskEnd));
        const vec3 position = Blend(at.of(ribbon.posA), at.of(ribbon.posB), v);
        const vec3 offset = at.of(ribbon.normal) * depth;
        const vec3 texA = at.of(ribbon.texA), texB = at.of(ribbon.texB);
        contour.front.push_back((position + offset).narrow());
        contour.back.push_back((position - offset).narrow());
        contour.pathPos.push_back(texA.z);
        contour.tex.push_back(vec3{texA.x, texA.y, texB.y}.narrow());
    }
    SpreadTextureRuns(contour.tex);
    return contour;
}

void SpreadTextureRuns(std::vector<point3>& tex)
{
    bool open = false;
    std::size_t start = 0;
    for (std::size_t i = 1; i < tex.size(); ++i) {
        if (tex[i].x == tex[i - 1].x) {
            if (!open) start = i - 1;
            open = true;
        } else if (open) {
            // The start may itself be rewritten on the way: an odd entry takes what it holds then.
            for (std::size_t m = start; m < i; ++m) {
                tex[m].x = m % 2 == 0 ? tex[i].x : tex[start].x;
            }
            open = false;
        }
    }
}

std::vector<quad> WallCells(const contourSamples& contour)
{
    std::vector<quad> cells;
    if (contour.front.size() < 2) return cells;
    const std::size_t count = contour.front.size() - 1;
    cells.reserve(count);
    for (std::size_t j = 0; j < count; ++j) {
        cells.push_back(WallCell(contour, j));
        const bool last = j + 1 == count && j > 0;
        if (last) {
            // The wall's shading closes where the outline does.
            SetNormals(cells[j], cells[0].norm[0], cells[0].norm[1]);
        } else {
            const std::size_t next = count == 1 ? 0 : j + 1;
            SetNormals(cells[j], WallNormal(contour, j), WallNormal(contour, next));
        }
    }
    return cells;
}
