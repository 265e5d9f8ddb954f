// ordering.h: cuts cells across the ribbon, measures them from the eye, sorts them nearest first.
#pragma once

#include <span>
#include <vector>

#include "geometry/records.h"
#include "geometry/vec3.h"

/// The strict order of a draw list: true when `a` is nearer than `b`.
bool sortF(const quad& a, const quad& b);

/// Squared corner distances seen so far. The starting values make near at most about 22000.
struct depthRange {
    double runMin = 1e9, runMax = -1e9;
    [[nodiscard]] double nearPlane() const;  ///< at least 100
    [[nodiscard]] double farPlane() const;   ///< at least nearPlane() + 1
};

/// Appends the cells cut into `strips` strips from edge A to edge B, all first strips before all
/// second ones, each with its nearest corner's squared distance from `eye` as depth key. Distances
/// are floats. Less than one strip appends nothing.
void AppendStrips(std::span<const quad> cells, int strips, const vec3& eye,
                  std::vector<quad>& drawn, depthRange& range);

/// Sorts by `sortF`; equal keys keep their order.
void SortCells(std::vector<quad>& cells);
