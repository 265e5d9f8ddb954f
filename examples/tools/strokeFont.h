// strokeFont.h: capital letters as strokes, so that the pictures come out alike on every machine,
// whatever fonts it has.
#pragma once

#include <string_view>

#include <cairo.h>

/// Width of a text whose letters are `height` high, in the same unit.
double TextWidth(std::string_view text, double height);

/// Strokes `text` (capital letters and spaces) in the current colour; (x, y) is its top left
/// corner.
void DrawText(cairo_t* cr, std::string_view text, double x, double y, double height);
