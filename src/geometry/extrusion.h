// extrusion.h: the ribbon's cells, and what makes it a thick band: two faces and slices between.
#pragma once

#include <vector>

#include "geometry/meshSettings.h"
#include "geometry/records.h"
#include "geometry/samples.h"

/// One cell per mesh step, or with extrusion two next to each other: the back face half the depth
/// against the normals, the front face half the depth along them. In sample order, depth 0.
std::vector<quad> BaseCells(const ribbonSamples& ribbon, const meshSettings& settings);

/// Appends `layers` - 1 evenly spaced cells between each pair of `cells` (0 and 1, 2 and 3, ...),
/// the back and front face of one strip. They keep blended depth keys.
void AppendSlices(std::vector<quad>& cells, int layers);
