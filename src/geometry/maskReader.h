// maskReader.h: asks the host for the paths that the mesh is laid along.
// The only file of the geometry that talks to the host's suites.
#pragma once

#include <string>

#include "host_api.h"

#include "geometry/maskReadings.h"
#include "geometry/meshSettings.h"
#include "geometry/paramSnapshot.h"

/// Reads the chosen paths at layer time `time`. A path that is not found, or has no segments,
/// counts as not chosen. Errors as for BuildShape.
PF_Err ReadMasks(PF_InData& in_data, const paramSnapshot& values, const meshSettings& settings,
                 A_long time, maskReadings& readings, std::string& reason);
