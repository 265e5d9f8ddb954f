#include "draw/placement.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "image/parallel.h"

namespace orv {

namespace {

constexpr int kLeastRows = 32;  ///< rows that are worth a thread

// ------------------------------------------------------------------ planes

std::optional<planeMatrix> Inverse(const planeMatrix& plane)
{
    const auto& m = plane.m;
    const auto minor = [&](std::size_t row, std::size_t column) {
        const std::size_t r1 = (row + 1) % 3, r2 = (row + 2) % 3;
        const std::size_t c1 = (column + 1) % 3, c2 = (column + 2) % 3;
        return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
    };
    const double determinant =
        m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
    if (determinant == 0.0 || !std::isfinite(determinant)) return std::nullopt;
    planeMatrix inverse;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            inverse.m[column][row] = minor(row, column) / determinant;
            if (!std::isfinite(inverse.m[column][row])) return std::nullopt;
        }
    }
    return inverse;
}

struct pixelShift {
    int x = 0, y = 0;
};

/// Whole pixels, when that is all a placement does. The room for rounding moves no pixel of the
/// largest picture by more than a step of 16 bits.
std::optional<pixelShift> WholePixelShift(const planeMatrix& plane)
{
    const auto& m = plane.m;
    const double q = m[2][2];
    constexpr double kSlack = 1e-10, kTilt = 1e-14, kFarthest = 1e6;
    const auto is = [q](double value, double expected) {
        return std::abs(value / q - expected) <= kSlack;
    };
    if (!(q > 0.0) || !is(m[0][0], 1) || !is(m[0][1], 0) || !is(m[1][0], 0) || !is(m[1][1], 1) ||
        !(std::abs(m[0][2] / q) <= kTilt) || !(std::abs(m[1][2] / q) <= kTilt)) {
        return std::nullopt;
    }
    const double x = m[2][0] / q, y = m[2][1] / q;
    if (!(std::abs(x) < kFarthest) || !(std::abs(y) < kFarthest)) return std::nullopt;
    if (std::abs(x - std::round(x)) > 1e-7 || std::abs(y - std::round(y)) > 1e-7) {
        return std::nullopt;
    }
    return pixelShift{static_cast<int>(std::round(x)), static_cast<int>(std::round(y))};
}

/// Pixels left <= x < right, top <= y < bottom.
struct pixelArea {
    int left = 0, top = 0, right = 0, bottom = 0;
};

/// The target's pixels that a picture can reach; all of them when part of it is behind the camera.
pixelArea ReachedArea(const planeMatrix& plane, const image& picture, const canvas& target)
{
    const pixelArea all{0, 0, target.width, target.height};
    double left = std::numeric_limits<double>::infinity(), top = left, right = -left,
           bottom = -left;
    // Sampling reaches half a pixel beyond the picture.
    for (const double x : {-0.5, picture.width + 0.5}) {
        for (const double y : {-0.5, picture.height + 0.5}) {
            const auto along = [&](std::size_t column) {
                return x * plane.m[0][column] + y * plane.m[1][column] + plane.m[2][column];
            };
            const double q = along(2);
            if (!(q > 1e-6)) return all;
            left = std::min(left, along(0) / q), right = std::max(right, along(0) / q);
            top = std::min(top, along(1) / q), bottom = std::max(bottom, along(1) / q);
        }
    }
    const auto within = [](double v, int size) {
        return static_cast<int>(std::clamp(v, 0.0, static_cast<double>(size)));
    };
    return {within(std::floor(left), target.width), within(std::floor(top), target.height),
            within(std::ceil(right), target.width), within(std::ceil(bottom), target.height)};
}

// ------------------------------------------------------------------ pixels

/// One step of a channel. 255 of the smaller ones add up to exactly 1 in floats.
template <class Channel>
constexpr float kStep = sizeof(Channel) == 1 ? 1.0F / 255.0F : 1.0F / 32768.0F;
static_assert(255.0F * kStep<std::uint8_t> == 1.0F);

/// Adds a pixel, its colours multiplied by its alpha.
template <class Channel>
void AddWeighted(const Channel* pixel, float weight, float* sum)
{
    const float alpha = static_cast<float>(pixel[0]) * kStep<Channel> * weight;
    const float colour = alpha * kStep<Channel>;
    sum[0] += alpha;
    for (int c = 1; c < 4; ++c) sum[c] += static_cast<float>(pixel[c]) * colour;
}

/// Normal blending: `over` on top of what is there.
void BlendOver(const float* over, float opacity, float* under)
{
    const float rest = 1.0F - over[0] * opacity;
    for (int c = 0; c < 4; ++c) under[c] = over[c] * opacity + under[c] * rest;
}

template <class Channel>
const Channel* PixelAt(const image& picture, int x, int y)
{
    return reinterpret_cast<const Channel*>(picture.row(y)) + std::ptrdiff_t{4} * x;
}

/// The four pixels around (x, y), in pixels from the first pixel's centre; within one pixel of the
/// picture.
template <class Channel>
void SampleBilinear(const image& picture, double x, double y, float* sum)
{
    // floor, for what lies above -1
    const int left = static_cast<int>(x + 1.0) - 1, top = static_cast<int>(y + 1.0) - 1;
    const auto fx = static_cast<float>(x - left), fy = static_cast<float>(y - top);
    const float weights[4] = {(1.0F - fx) * (1.0F - fy), fx * (1.0F - fy), (1.0F - fx) * fy,
                              fx * fy};
    if (left >= 0 && top >= 0 && left + 1 < picture.width && top + 1 < picture.height) {
        const Channel* upper = PixelAt<Channel>(picture, left, top);
        const Channel* lower = PixelAt<Channel>(picture, left, top + 1);
        AddWeighted(upper, weights[0], sum);
        AddWeighted(upper + 4, weights[1], sum);
        AddWeighted(lower, weights[2], sum);
        AddWeighted(lower + 4, weights[3], sum);
        return;
    }
    for (int k = 0; k < 4; ++k) {
        const int px = left + (k & 1), py = top + (k >> 1);
        if (px < 0 || py < 0 || px >= picture.width || py >= picture.height) continue;
        AddWeighted(PixelAt<Channel>(picture, px, py), weights[k], sum);
    }
}

template <class Channel>
void DrawShifted(const image& picture, const pixelShift& shift, float opacity, canvas& target)
{
    const int left = std::max(shift.x, 0), right = std::min(shift.x + picture.width, target.width);
    const int top = std::max(shift.y, 0);
    const int bottom = std::min(shift.y + picture.height, target.height);
    if (left >= right) return;
    ParallelRows(bottom - top, kLeastRows, [&](int, int begin, int end) {
        for (int y = top + begin; y < top + end; ++y) {
            const Channel* from = PixelAt<Channel>(picture, left - shift.x, y - shift.y);
            float* to = target.at(left, y);
            for (int x = left; x < right; ++x, from += 4, to += 4) {
                float pixel[4] = {};
                AddWeighted(from, 1.0F, pixel);
                BlendOver(pixel, opacity, to);
            }
        }
    });
}

template <class Channel>
void DrawRow(const image& picture, const planeMatrix& targetToPicture, int y, int left, int right,
             float opacity, float* to)
{
    const auto& m = targetToPicture.m;
    std::array<double, 3> start{};
    for (std::size_t c = 0; c < 3; ++c) start[c] = (y + 0.5) * m[1][c] + m[2][c];
    for (int x = left; x < right; ++x, to += 4) {
        const double column = x + 0.5;
        const double q = start[2] + column * m[0][2];
        if (!(q > 0.0)) continue;
        const double px = (start[0] + column * m[0][0]) / q - 0.5;
        const double py = (start[1] + column * m[0][1]) / q - 0.5;
        if (!(px > -1.0 && px < picture.width && py > -1.0 && py < picture.height)) continue;
        float pixel[4] = {};
        SampleBilinear<Channel>(picture, px, py, pixel);
        BlendOver(pixel, opacity, to);
    }
}

template <class Channel>
void Draw(const image& picture, const planeMatrix& placement, float opacity, canvas& target)
{
    if (const auto shift = WholePixelShift(placement)) {
        DrawShifted<Channel>(picture, *shift, opacity, target);
        return;
    }
    const auto targetToPicture = Inverse(placement);
    if (!targetToPicture) return;
    const pixelArea area = ReachedArea(placement, picture, target);
    ParallelRows(area.bottom - area.top, kLeastRows, [&](int, int begin, int end) {
        for (int y = area.top + begin; y < area.top + end; ++y) {
            DrawRow<Channel>(picture, *targetToPicture, y, area.left, area.right, opacity,
                             target.at(area.left, y));
        }
    });
}

}  // namespace

planeMatrix FlatPlacement(const matrix4& world)
{
    planeMatrix plane;
    constexpr std::array<std::size_t, 3> kRows{0, 1, 3};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 2; ++column) {
            plane.m[row][column] = world.m[kRows[row]][column];
        }
    }
    return plane;
}

std::optional<planeMatrix> ProjectedPlacement(const matrix4& world, const cameraView& view,
                                              int width, int height)
{
    const auto worldToView = Inverse(view.world);
    if (!worldToView || !(view.zoom > 0.0)) return std::nullopt;
    const matrix4 layerToView = world * *worldToView;
    planeMatrix plane;
    constexpr std::array<std::size_t, 3> kRows{0, 1, 3};
    for (std::size_t row = 0; row < 3; ++row) {
        const auto& seen = layerToView.m[kRows[row]];
        plane.m[row] = {0.5 * width * seen[2] + view.zoom * seen[0],
                        0.5 * height * seen[2] + view.zoom * seen[1], seen[2]};
    }
    return plane;
}

planeMatrix AtPreview(const planeMatrix& full, int divisorX, int divisorY)
{
    planeMatrix preview = full;
    for (std::size_t i = 0; i < 3; ++i) {
        preview.m[0][i] *= divisorX;
        preview.m[1][i] *= divisorY;
    }
    for (auto& row : preview.m) {
        row[0] /= divisorX;
        row[1] /= divisorY;
    }
    return preview;
}

void DrawPlaced(const image& picture, const planeMatrix& placement, double opacity, canvas& target)
{
    const auto share = static_cast<float>(std::clamp(opacity, 0.0, 1.0));
    if (!(share > 0.0F)) return;  // not a number either
    if (picture.depth == 16) {
        Draw<std::uint16_t>(picture, placement, share, target);
    } else {
        Draw<std::uint8_t>(picture, placement, share, target);
    }
}

}  // namespace orv
