#include "geometry/polyline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

Polyline::Polyline(std::vector<vertex2> vertices, bool open) : vertices_(std::move(vertices))
{
    if (!open) vertices_.push_back(vertices_.front());
    std::vector<double> lengths;
    for (std::size_t i = 1; i < vertices_.size(); ++i) {
        lengths.push_back(
            std::hypot(vertices_[i].x - vertices_[i - 1].x, vertices_[i].y - vertices_[i - 1].y));
    }
    lengths_ = MakePathLengths(std::move(lengths), open);
}

pathPoint Polyline::Evaluate(int seg, double arc) const
{
    const auto at = static_cast<std::size_t>(seg);
    const vertex2 from = vertices_[at], to = vertices_[at + 1];
    const double length = lengths_.length[at];
    if (length == 0.0) return {from.x, from.y, 0.0, 0.0};
    const double dx = (to.x - from.x) / length, dy = (to.y - from.y) / length;
    const double inside = std::clamp(arc, 0.0, length);
    return {from.x + dx * inside, from.y + dy * inside, dx, dy};
}

std::vector<pathSample> Polyline::Sample(const meshSettings& settings) const
{
    const int steps = MeshStepCount(settings);
    const std::vector<propS> bySegment = PlaceOnSegments(steps, lengths_);
    std::vector<pathSample> samples;
    for (int s = 0; s <= steps; ++s) {
        const pathPlace place =
            settings.vertsMatch ? PlaceBySegment(bySegment[static_cast<std::size_t>(s)], lengths_)
                                : PlaceByLength(static_cast<double>(s) / steps, lengths_, settings);
        const double arc = lengths_.length[static_cast<std::size_t>(place.seg)] * place.local;
        samples.push_back(MakePathSample(place, Evaluate(place.seg, arc), lengths_));
    }
    return samples;
}

maskReadings ReadingsOf(const Polyline& path, const meshSettings& settings)
{
    const int steps = MeshStepCount(settings);
    maskReadings readings;
    readings.props =
        settings.vertsMatch ? PlaceOnSegments(steps, path.lengths()) : PlaceEvenly(steps);
    readings.mask = path.Sample(settings);
    return readings;
}
