// meshBuilder.h: from the masks and the values of one instant to the cells that GL draws.
// Two steps, so that motion blur can compare instants without holding their cells:
//   1. BuildShape asks the host for the paths and lays the sample lists (ribbon and contour);
//   2. BuildDrawList makes, slices, sub-samples and sorts the cells. No host, no GL.
#pragma once

#include <string>
#include <vector>

#include "host_api.h"

#include "geometry/meshBudget.h"
#include "geometry/meshSettings.h"
#include "geometry/paramSnapshot.h"
#include "geometry/records.h"
#include "geometry/samples.h"

/// Cells sorted nearest first (equal keys keep list order), and the depth range fitted to them.
struct drawList {
    std::vector<quad> cells;
    double nearPlane = 100.0, farPlane = 100000.0;  ///< these stay when there are no cells
};

/// Samples the chosen paths at layer time `time` and lays the ribbon and the contour.
/// Errors: the host's code, or its abort code; PF_Err_OUT_OF_MEMORY when the cells would pass
/// MeshByteLimit(), with count and limit as one line in `reason`. Throws PF_Err_BAD_CALLBACK_PARAM
/// when a suite is missing. On every road all that was checked out is given back; `shape` is then
/// unspecified.
PF_Err BuildShape(PF_InData& in_data, const paramSnapshot& values, const meshSettings& settings,
                  A_long time, frameShape& shape, std::string& reason);

/// Makes the sorted cells of a shape as seen from `eye` (render space; what is not finite counts as
/// 0). A flat shape gives none.
drawList BuildDrawList(const frameShape& shape, const meshSettings& settings,
                       const double (&eye)[3]);
