#include "strokeFont.h"

#include <numbers>
#include <vector>

namespace {

// A letter stands on a grid: x 0..its width, y 0 (top)..1 (base line). Arcs run clockwise, angles
// in quarter turns from the right.
struct stroke {
    enum kind { move, line, arc } what;
    double x = 0, y = 0, rx = 0, ry = 0, from = 0, to = 0;
};

struct letter {
    char name;
    double width;
    std::vector<stroke> strokes;
};

constexpr double kGap = 0.24, kSpace = 0.42;

stroke MoveTo(double x, double y)
{
    return {stroke::move, x, y};
}
stroke LineTo(double x, double y)
{
    return {stroke::line, x, y};
}
stroke Arc(double x, double y, double rx, double ry, double from, double to)
{
    return {stroke::arc, x, y, rx, ry, from, to};
}

const std::vector<letter>& Letters()
{
    static const std::vector<letter> letters{
        {'A',
         0.66,
         {MoveTo(0, 1), LineTo(0.33, 0), LineTo(0.66, 1), MoveTo(0.12, 0.64), LineTo(0.54, 0.64)}},
        {'B',
         0.56,
         {MoveTo(0, 0), LineTo(0.3, 0), Arc(0.3, 0.24, 0.22, 0.24, -1, 1), LineTo(0, 0.48),
          MoveTo(0.3, 0.48), Arc(0.3, 0.74, 0.26, 0.26, -1, 1), LineTo(0, 1), LineTo(0, 0)}},
        {'D',
         0.6,
         {MoveTo(0, 0), LineTo(0.2, 0), Arc(0.2, 0.5, 0.4, 0.5, -1, 1), LineTo(0, 1),
          LineTo(0, 0)}},
        {'E',
         0.5,
         {MoveTo(0.5, 0), LineTo(0, 0), LineTo(0, 1), LineTo(0.5, 1), MoveTo(0, 0.48),
          LineTo(0.42, 0.48)}},
        {'I', 0.0, {MoveTo(0, 0), LineTo(0, 1)}},
        {'K',
         0.58,
         {MoveTo(0, 0), LineTo(0, 1), MoveTo(0.56, 0), LineTo(0, 0.58), MoveTo(0.2, 0.38),
          LineTo(0.58, 1)}},
        {'L', 0.48, {MoveTo(0, 0), LineTo(0, 1), LineTo(0.48, 1)}},
        {'N', 0.6, {MoveTo(0, 1), LineTo(0, 0), LineTo(0.6, 1), LineTo(0.6, 0)}},
        {'O', 0.76, {MoveTo(0.76, 0.5), Arc(0.38, 0.5, 0.38, 0.5, 0, 4)}},
        {'R',
         0.56,
         {MoveTo(0, 1), LineTo(0, 0), LineTo(0.28, 0), Arc(0.28, 0.26, 0.25, 0.26, -1, 1),
          LineTo(0, 0.52), MoveTo(0.26, 0.52), LineTo(0.56, 1)}},
        {'V', 0.66, {MoveTo(0, 0), LineTo(0.33, 1), LineTo(0.66, 0)}},
    };
    return letters;
}

const letter* Find(char name)
{
    for (const letter& each : Letters())
        if (each.name == name) return &each;
    return nullptr;
}

void AddArc(cairo_t* cr, const stroke& s)
{
    cairo_save(cr);
    cairo_translate(cr, s.x, s.y);
    cairo_scale(cr, s.rx, s.ry);
    cairo_arc(cr, 0, 0, 1, s.from * std::numbers::pi / 2, s.to * std::numbers::pi / 2);
    cairo_restore(cr);
}

void AddLetter(cairo_t* cr, const letter& shape)
{
    for (const stroke& s : shape.strokes) {
        switch (s.what) {
            case stroke::move:
                cairo_move_to(cr, s.x, s.y);
                break;
            case stroke::line:
                cairo_line_to(cr, s.x, s.y);
                break;
            case stroke::arc:
                AddArc(cr, s);
                break;
        }
    }
}

double Advance(char name)
{
    const letter* shape = Find(name);
    return shape == nullptr ? kSpace : shape->width + kGap;
}

}  // namespace

double TextWidth(std::string_view text, double height)
{
    double width = -kGap;
    for (const char name : text) width += Advance(name);
    return width * height;
}

void DrawText(cairo_t* cr, std::string_view text, double x, double y, double height)
{
    cairo_save(cr);
    cairo_translate(cr, x, y);
    cairo_scale(cr, height, height);
    cairo_new_path(cr);
    for (const char name : text) {
        if (const letter* shape = Find(name)) AddLetter(cr, *shape);
        cairo_translate(cr, Advance(name), 0);
    }
    cairo_restore(cr);
    cairo_set_line_width(cr, height * 0.15);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(cr);
}
