#include "draw/maskShape.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orv {

namespace {

constexpr double kTolerance = 0.02;  ///< px, below what coverage in 255 steps can show
constexpr int kMostChords = 1024;    ///< of one segment

struct cubic {
    vec2 start, leave, arrive, end;
};

vec2 PointOn(const cubic& c, double u)
{
    const double v = 1.0 - u;
    const double w0 = v * v * v, w1 = 3 * u * v * v, w2 = 3 * u * u * v, w3 = u * u * u;
    return {w0 * c.start.x + w1 * c.leave.x + w2 * c.arrive.x + w3 * c.end.x,
            w0 * c.start.y + w1 * c.leave.y + w2 * c.arrive.y + w3 * c.end.y};
}

/// A chord over 1/n of the parameter strays from the curve by at most |second derivative| / 8n^2.
int ChordCount(const cubic& c)
{
    const auto bend = [](const vec2& a, const vec2& b, const vec2& d) {
        return std::hypot(a.x - 2 * b.x + d.x, a.y - 2 * b.y + d.y);
    };
    const double most = std::max(bend(c.start, c.leave, c.arrive), bend(c.leave, c.arrive, c.end));
    const double chords = std::ceil(std::sqrt(6.0 * most / (8.0 * kTolerance)));
    if (std::isnan(chords)) return 1;
    return static_cast<int>(std::clamp(chords, 1.0, static_cast<double>(kMostChords)));
}

/// Not for what cannot be computed with: no scene reaches as far.
bool IsSomewhere(const vec2& p)
{
    constexpr double kFarthest = 1e100;
    return std::abs(p.x) <= kFarthest && std::abs(p.y) <= kFarthest;
}

/// Keeps the side where inside(point) >= 0; `inside` is linear in the point.
template <class Inside>
std::vector<vec2> CutByLine(const std::vector<vec2>& polygon, const Inside& inside)
{
    std::vector<vec2> kept;
    kept.reserve(polygon.size() + 4);
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const vec2& from = polygon[i];
        const vec2& to = polygon[(i + 1) % polygon.size()];
        const double fromSide = inside(from), toSide = inside(to);
        if (fromSide >= 0.0) kept.push_back(from);
        if ((fromSide >= 0.0) != (toSide >= 0.0)) {
            const double share = fromSide / (fromSide - toSide);
            kept.push_back({from.x + (to.x - from.x) * share, from.y + (to.y - from.y) * share});
        }
    }
    return kept;
}

}  // namespace

std::vector<vec2> FlattenClosedPath(const maskPath& path, double scaleX, double scaleY)
{
    std::vector<vec2> polygon;
    const std::size_t count = path.vertex.size();
    const auto scaled = [&](const vec2& p, const vec2& offset) {
        return vec2{(p.x + offset.x) * scaleX, (p.y + offset.y) * scaleY};
    };
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t next = (i + 1) % count;
        const cubic segment{scaled(path.vertex[i], {}), scaled(path.vertex[i], path.out[i]),
                            scaled(path.vertex[next], path.in[next]),
                            scaled(path.vertex[next], {})};
        // Each segment adds its start; the next one adds its end.
        const int chords = ChordCount(segment);
        for (int k = 0; k < chords; ++k) {
            const vec2 point = PointOn(segment, static_cast<double>(k) / chords);
            if (IsSomewhere(point)) polygon.push_back(point);
        }
    }
    return polygon;
}

std::vector<vec2> CutToPicture(std::vector<vec2> polygon, double width, double height)
{
    polygon = CutByLine(polygon, [](const vec2& p) { return p.x; });
    polygon = CutByLine(polygon, [=](const vec2& p) { return width - p.x; });
    polygon = CutByLine(polygon, [](const vec2& p) { return p.y; });
    return CutByLine(polygon, [=](const vec2& p) { return height - p.y; });
}

}  // namespace orv
