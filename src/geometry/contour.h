// contour.h: a mask's outline, carried onto the ribbon and stood up between its faces as a wall.
#pragma once

#include <cstdint>
#include <vector>

#include "geometry/meshSettings.h"
#include "geometry/records.h"
#include "geometry/samples.h"

/// How many samples one segment of `length` pixels (preview resolution) is asked for; not whole.
double ContourDensity(double length, const meshSettings& settings);

/// Samples that a density gives: one for each whole number from 0 below it.
std::uint64_t ContourSampleCount(double density);

/// Arc length of sample `k`: packed towards both ends of the segment.
double ContourArc(std::uint64_t k, double density, double length);

/// A point of the outline in the layer's own unit square: (u, v, u), one pixel inside its borders.
/// `x`, `y` in pixels at the preview resolution.
point3 ContourPoint(double x, double y, const frameSizes& sizes);

/// Lays the outline on the ribbon: u along the source, v from edge A to edge B.
contourSamples LayContour(const std::vector<point3>& outline, const ribbonSamples& ribbon,
                          const meshSettings& settings);

/// Where the outline runs straight across the source, its texture x stands still and the wall
/// would smear one column of texels: within such runs entries take the x that follows the run and
/// the x of its first entry by turns.
void SpreadTextureRuns(std::vector<point3>& tex);

/// One cell per step of the outline, face 2, depth 0. Fewer than two samples give none. A corner
/// takes the normal of its own sample.
std::vector<quad> WallCells(const contourSamples& contour);
