#include "draw/maskCoverage.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "animation/evaluate.h"
#include "draw/maskShape.h"
#include "image/parallel.h"
#include "scene/errors.h"

namespace orv {

namespace {

constexpr int kLeastRows = 64;

struct CairoRelease {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using cairoSurface = std::unique_ptr<cairo_surface_t, CairoRelease>;
using cairoContext = std::unique_ptr<cairo_t, CairoRelease>;

void CheckCairo(cairo_status_t status)
{
    if (status == CAIRO_STATUS_SUCCESS) return;
    throw failure(failureKind::frame,
                  std::string("a mask cannot be drawn: ") + cairo_status_to_string(status));
}

void FillPolygon(cairo_t* context, const std::vector<vec2>& polygon)
{
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_WINDING);
    cairo_set_antialias(context, CAIRO_ANTIALIAS_BEST);
    for (const vec2& each : polygon) cairo_line_to(context, each.x, each.y);
    cairo_close_path(context);
    cairo_fill(context);
    CheckCairo(cairo_status(context));
}

/// What is left after one more mask; `m` is that mask's share, 0..1.
float Combined(maskMode mode, float left, float m)
{
    switch (mode) {
        case maskMode::add:
            return left + m - left * m;
        case maskMode::subtract:
            return left * (1.0F - m);
        case maskMode::intersect:
            return left * m;
        case maskMode::lighten:
            return std::max(left, m);
        case maskMode::darken:
            return std::min(left, m);
        case maskMode::difference:
            return std::abs(left - m);
        case maskMode::none:
            break;
    }
    return left;
}

/// Masks that add start from nothing, those that take away from everything.
float StartFor(maskMode first)
{
    const bool adds =
        first == maskMode::add || first == maskMode::lighten || first == maskMode::difference;
    return adds ? 0.0F : 1.0F;
}

template <class Channel>
void MultiplyAlpha(const std::vector<float>& share, std::size_t begin, std::size_t end,
                   Channel* pixels)
{
    for (std::size_t i = begin; i < end; ++i) {
        Channel& alpha = pixels[4 * i];
        const float nearest = static_cast<float>(alpha) * share[i] + 0.5F;
        alpha = static_cast<Channel>(nearest);
    }
}

void MultiplyAlpha(const std::vector<float>& share, image& picture)
{
    const auto width = static_cast<std::size_t>(picture.width);
    ParallelRows(picture.height, kLeastRows, [&](int, int beginRow, int endRow) {
        const std::size_t begin = static_cast<std::size_t>(beginRow) * width;
        const std::size_t end = static_cast<std::size_t>(endRow) * width;
        if (picture.depth == 16) {
            MultiplyAlpha(share, begin, end, picture.row16(0));
        } else {
            MultiplyAlpha(share, begin, end, picture.row(0));
        }
    });
}

void CombineInto(const mask& each, double t, const std::vector<std::uint8_t>& coverage,
                 std::vector<float>& left)
{
    const auto opacity =
        static_cast<float>(std::clamp(EvaluateScalar(each.opacity, t, 100.0) / 100.0, 0.0, 1.0));
    for (std::size_t i = 0; i < left.size(); ++i) {
        const float covered = static_cast<float>(coverage[i]) / 255.0F;
        left[i] =
            Combined(each.mode, left[i], (each.inverted ? 1.0F - covered : covered) * opacity);
    }
}

}  // namespace

std::vector<std::uint8_t> PathCoverage(const maskPath& path, int width, int height, int divisorX,
                                       int divisorY)
{
    // Cairo's coordinates end at 2^23 pixels; a scene's do not.
    const std::vector<vec2> polygon =
        CutToPicture(FlattenClosedPath(path, 1.0 / divisorX, 1.0 / divisorY), width, height);

    const cairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
    CheckCairo(cairo_surface_status(surface.get()));
    if (!polygon.empty()) {
        const cairoContext context(cairo_create(surface.get()));
        FillPolygon(context.get(), polygon);
    }
    cairo_surface_flush(surface.get());

    const unsigned char* rows = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    std::vector<std::uint8_t> coverage;
    coverage.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = rows + std::ptrdiff_t{stride} * y;
        coverage.insert(coverage.end(), row, row + width);
    }
    return coverage;
}

bool Clips(const mask& each, const maskPath& path)
{
    return each.mode != maskMode::none && path.closed && path.vertex.size() >= 2;
}

void ClipByMasks(const layer& l, double t, int divisorX, int divisorY, image& picture)
{
    std::vector<float> left;
    for (const mask& each : l.masks) {
        if (each.mode == maskMode::none) continue;
        const maskPath path = EvaluatePath(each.path, t);
        if (!Clips(each, path)) continue;
        if (left.empty()) {
            left.assign(picture.bytes.size() / picture.pixelBytes(), StartFor(each.mode));
        }
        CombineInto(each, t, PathCoverage(path, picture.width, picture.height, divisorX, divisorY),
                    left);
    }
    if (!left.empty()) MultiplyAlpha(left, picture);
}

}  // namespace orv
