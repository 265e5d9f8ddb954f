// frameMesh.h: the whole geometry of one frame for tools that show or export it. No GL.
// The one door for code outside the effect; rendering does not pass here.
#pragma once

#include <string>

#include "host_api.h"

#include "camera/camData.h"
#include "geometry/meshBuilder.h"

struct frameMesh {
    frameSizes sizes;
    frameShape shape;
    drawList cells;
    camData camera;
    bool hasSource = false;  ///< false: no usable source image; shape and cells are empty
};

/// Builds what a render command with these records would draw. `params` has kParamCount entries,
/// none null. Errors and `reason` as for BuildShape and CompCamera; `mesh` is then unspecified.
PF_Err BuildFrameMesh(PF_InData& in_data, PF_ParamDef* const params[], frameMesh& mesh,
                      std::string& reason);
