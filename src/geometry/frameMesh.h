// frameMesh.h: the whole geometry of one frame for tools that show or export it. No GL.
// The one door for code outside the effect; rendering does not pass here.
#pragma once

#include <string>

#include "host_api.h"

#include "camera/camData.h"
#include "geometry/meshBuilder.h"
#include "geometry/sourceCrop.h"

struct frameMesh {
    frameSizes sizes;
    int imageWidth = 0, imageHeight = 0;  ///< source layer before the crop, preview resolution
    cropRect crop;                        ///< what of it is the source texture
    frameShape shape;
    drawList cells;  ///< near and far plane of the 3D view are fitted to them
    camData camera;
    bool composition3D = false;  ///< seen through `camera`; else flat, from the front
    bool hasSource = false;      ///< false: no usable source image; shape and cells are empty
};

/// Builds what a render command with these records would draw. `params` has kParamCount entries,
/// none null. Errors and `reason` as for BuildShape and CompCamera; `mesh` is then unspecified.
PF_Err BuildFrameMesh(PF_InData& in_data, PF_ParamDef* const params[], frameMesh& mesh,
                      std::string& reason);
