// makePictures FOLDER: draws the pictures that the example scenes show. The same bytes on every
// run.
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <numbers>
#include <random>

#include <cairo.h>

#include "image/imageFile.h"
#include "strokeFont.h"

namespace {

struct rgb {
    double r, g, b;
};
constexpr rgb kNavy{0.10, 0.20, 0.34}, kCream{1.0, 0.95, 0.82}, kSun{1.0, 0.78, 0.28},
    kRust{0.82, 0.32, 0.18}, kTeal{0.09, 0.50, 0.52}, kMint{0.72, 0.91, 0.83};

void Use(cairo_t* cr, const rgb& c)
{
    cairo_set_source_rgb(cr, c.r, c.g, c.b);
}

void Box(cairo_t* cr, const rgb& c, double x, double y, double w, double h)
{
    Use(cr, c);
    cairo_rectangle(cr, x, y, w, h);
    cairo_fill(cr);
}

/// Cairo's native-endian premultiplied pixels as straight alpha, red, green, blue.
orv::image Straight(cairo_surface_t* surface)
{
    cairo_surface_flush(surface);
    const int width = cairo_image_surface_get_width(surface),
              height = cairo_image_surface_get_height(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    orv::image picture(width, height, 8);
    for (int y = 0; y < height; ++y) {
        const auto* from =
            reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
        std::uint8_t* to = picture.row(y);
        for (int x = 0; x < width; ++x, to += 4) {
            const std::uint32_t a = from[x] >> 24;
            const auto straight = [&](unsigned shift) {
                const std::uint32_t c = (from[x] >> shift) & 255U;
                return static_cast<std::uint8_t>(a == 0 ? 0 : (c * 255U + a / 2) / a);
            };
            to[0] = static_cast<std::uint8_t>(a);
            to[1] = straight(16);
            to[2] = straight(8);
            to[3] = straight(0);
        }
    }
    return picture;
}

void Draw(const std::filesystem::path& file, int width, int height,
          const std::function<void(cairo_t*)>& paint)
{
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_t* cr = cairo_create(surface);
    paint(cr);
    cairo_destroy(cr);
    orv::WritePng(Straight(surface), file.string());
    cairo_surface_destroy(surface);
}

/// A cloth banner with borders, seams and a line of letters.
void Banner(cairo_t* cr)
{
    Box(cr, kSun, 0, 0, 800, 96);
    Box(cr, kRust, 0, 0, 800, 7);
    Box(cr, kRust, 0, 89, 800, 7);
    Box(cr, kCream, 0, 10, 800, 2);
    Box(cr, kCream, 0, 84, 800, 2);
    Use(cr, kRust);
    for (const double x : {30.0, 770.0}) {
        cairo_arc(cr, x, 48, 9, 0, 2 * std::numbers::pi);
        cairo_fill(cr);
    }
    Use(cr, kNavy);
    constexpr double kHeight = 46;
    DrawText(cr, "KAL ORV   RIBBON", (800 - TextWidth("KAL ORV   RIBBON", kHeight)) / 2, 25,
             kHeight);
}

/// Slanted stripes with an edge, so that twist and direction can be seen.
void Stripes(cairo_t* cr)
{
    Box(cr, kCream, 0, 0, 320, 40);
    Use(cr, kRust);
    for (int k = -2; k < 18; ++k) {
        cairo_move_to(cr, 20 * k, 40);
        cairo_line_to(cr, 20 * k + 10, 40);
        cairo_line_to(cr, 20 * k + 34, 0);
        cairo_line_to(cr, 20 * k + 24, 0);
        cairo_fill(cr);
    }
    Box(cr, kNavy, 0, 0, 320, 4);
    Box(cr, kSun, 0, 36, 320, 4);
}

/// The other side of the ribbon: dots.
void Back(cairo_t* cr)
{
    Box(cr, kTeal, 0, 0, 320, 40);
    Use(cr, kMint);
    for (int k = 0; k < 20; ++k) {
        cairo_arc(cr, 8 + 16 * k, k % 2 == 0 ? 13 : 27, 5, 0, 2 * std::numbers::pi);
        cairo_fill(cr);
    }
}

/// A checker in two shades, lettered along its length.
void Checker(cairo_t* cr)
{
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 20; ++x)
            Box(cr, (x + y) % 2 == 0 ? kTeal : kMint, 16 * x, 16 * y, 16, 16);
    Use(cr, kNavy);
    for (int k = 0; k < 5; ++k) {
        constexpr std::string_view kLetters = "ABDEK";
        DrawText(cr, kLetters.substr(static_cast<std::size_t>(k), 1), 22 + 64 * k, 16, 32);
    }
}

void Gradient(cairo_t* cr, double top, double bottom, const rgb& upper, const rgb& lower)
{
    cairo_pattern_t* pattern = cairo_pattern_create_linear(0, top, 0, bottom);
    cairo_pattern_add_color_stop_rgb(pattern, 0, upper.r, upper.g, upper.b);
    cairo_pattern_add_color_stop_rgb(pattern, 1, lower.r, lower.g, lower.b);
    cairo_set_source(cr, pattern);
    cairo_pattern_destroy(pattern);
}

/// A line of hills: three waves of seeded lengths and phases.
void Hills(cairo_t* cr, std::mt19937& random, double base, double height, const rgb& upper,
           const rgb& lower)
{
    const auto part = [&] { return static_cast<double>(random() % 1000U) / 1000.0; };
    const double phase[3] = {7 * part(), 7 * part(), 7 * part()};
    cairo_move_to(cr, 0, 540);
    for (int x = 0; x <= 960; x += 4) {
        const double u = x / 960.0;
        const double h = 0.55 * std::sin(5.1 * u + phase[0]) + 0.3 * std::sin(11.7 * u + phase[1]) +
                         0.15 * std::sin(27.0 * u + phase[2]);
        cairo_line_to(cr, x, base - height * h);
    }
    cairo_line_to(cr, 960, 540);
    cairo_close_path(cr);
    Gradient(cr, base - height, 540, upper, lower);
    cairo_fill(cr);
}

/// Evening over hills: sky, sun with its glow, four ranges in the haze.
void Landscape(cairo_t* cr)
{
    std::mt19937 random(20260);
    Gradient(cr, 0, 400, {0.16, 0.26, 0.47}, {0.98, 0.76, 0.56});
    cairo_paint(cr);
    cairo_pattern_t* glow = cairo_pattern_create_radial(700, 300, 10, 700, 300, 260);
    cairo_pattern_add_color_stop_rgba(glow, 0, 1, 0.95, 0.8, 0.9);
    cairo_pattern_add_color_stop_rgba(glow, 0.12, 1, 0.88, 0.62, 0.5);
    cairo_pattern_add_color_stop_rgba(glow, 1, 1, 0.8, 0.5, 0);
    cairo_set_source(cr, glow);
    cairo_pattern_destroy(glow);
    cairo_paint(cr);
    Hills(cr, random, 345, 34, {0.60, 0.50, 0.58}, {0.66, 0.54, 0.56});
    Hills(cr, random, 395, 42, {0.42, 0.38, 0.50}, {0.50, 0.42, 0.48});
    Hills(cr, random, 450, 40, {0.24, 0.26, 0.38}, {0.34, 0.31, 0.38});
    Hills(cr, random, 505, 30, {0.11, 0.14, 0.23}, {0.15, 0.16, 0.23});
}

}  // namespace

int main(int argc, char** argv)
try {
    if (argc != 2) {
        std::fputs("usage: makePictures FOLDER\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    Draw(folder / "banner.png", 800, 96, Banner);
    Draw(folder / "stripes.png", 320, 40, Stripes);
    Draw(folder / "back.png", 320, 40, Back);
    Draw(folder / "checker.png", 320, 64, Checker);
    Draw(folder / "landscape.png", 960, 540, Landscape);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "error: %s\n", error.what());
    return 6;
}
