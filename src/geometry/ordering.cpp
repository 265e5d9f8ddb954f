#include "geometry/ordering.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

#include "geometry/quadInterpolation.h"

namespace {

constexpr double kNearestPlane = 100.0;
constexpr double kMargin = 100.0;

bool Nearer(double a, double b)
{
    return b > a;
}

double SquaredDistance(const point3& p, const vec3& eye)
{
    const vec3 d = vec3(p) - eye;
    return static_cast<double>(static_cast<float>(d.x * d.x + d.y * d.y + d.z * d.z));
}

/// Sets the depth key and widens the range by the cell's corners.
void Measure(quad& cell, const vec3& eye, depthRange& range)
{
    double nearest = SquaredDistance(cell.pos[0], eye), farthest = nearest;
    for (int corner = 1; corner < 4; ++corner) {
        const double distance = SquaredDistance(cell.pos[corner], eye);
        nearest = std::min(nearest, distance);
        farthest = std::max(farthest, distance);
    }
    cell.depth = nearest;
    range.runMin = std::min(range.runMin, nearest);
    range.runMax = std::max(range.runMax, farthest);
}

/// Stands for a cell while the list is sorted: a tenth of its size.
struct cellKey {
    double depth;
    std::size_t from;  ///< where the cell lies now
};

/// Puts cell keys[i].from at place i, along the cycles of the permutation: no second list.
void Rearrange(std::vector<quad>& cells, std::vector<cellKey>& keys)
{
    for (std::size_t start = 0; start < keys.size(); ++start) {
        if (keys[start].from == start) continue;
        const quad first = cells[start];
        std::size_t to = start;
        while (keys[to].from != start) {
            const std::size_t from = std::exchange(keys[to].from, to);
            cells[to] = cells[from];
            to = from;
        }
        cells[to] = first;
        keys[to].from = to;
    }
}

}  // namespace

bool sortF(const quad& a, const quad& b)
{
    return Nearer(a.depth, b.depth);
}

double depthRange::nearPlane() const
{
    return std::max(kNearestPlane, std::sqrt(runMin) / std::numbers::sqrt2 - kMargin);
}

double depthRange::farPlane() const
{
    return std::max(std::sqrt(std::max(runMax, 0.0)) + kMargin, nearPlane() + 1.0);
}

void AppendStrips(std::span<const quad> cells, int strips, const vec3& eye,
                  std::vector<quad>& drawn, depthRange& range)
{
    for (int k = 0; k < strips; ++k) {
        const double u = static_cast<double>(k) / strips, v = static_cast<double>(k + 1) / strips;
        for (const quad& cell : cells) {
            drawn.push_back(Interpolate(cell, u, v));
            Measure(drawn.back(), eye, range);
        }
    }
}

void SortCells(std::vector<quad>& cells)
{
    std::vector<cellKey> keys;
    keys.reserve(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) keys.push_back({cells[i].depth, i});
    std::sort(keys.begin(), keys.end(), [](const cellKey& a, const cellKey& b) {
        return a.depth != b.depth ? Nearer(a.depth, b.depth) : a.from < b.from;
    });
    Rearrange(cells, keys);
}
