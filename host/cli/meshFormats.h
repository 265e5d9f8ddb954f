// meshFormats.h: a frame's mesh as the text of a file.
//
// PLY and OBJ stand upright in a right-handed space: x right, y up from the layer's lower edge, z
// towards the viewer; one unit is a pixel of the layer at full resolution. Normals have length 1;
// corners run counter-clockwise seen from where the normals point. Texture points are 0..1 from the
// picture's lower left corner.
//
// JSON keeps the numbers as the effect has them: layer pixels, y down, z towards the viewer,
// texture points in texels, normals of any length. A float reads back the same.
#pragma once

#include <string>

#include "cli/effectGeometry.h"

namespace orv {

std::string MeshJson(const effectGeometry& geometry, int frame);

std::string MeshPly(const effectGeometry& geometry);

/// The faces of the ribbon carry the material "ribbon", the contour's wall "wall". `materialFile`:
/// as the OBJ file names it.
std::string MeshObj(const effectGeometry& geometry, const std::string& materialFile);

/// What the ribbon is covered with.
struct meshSource {
    std::string picture;             ///< file, as the material file names it; "": none
    double color[3]{1.0, 1.0, 1.0};  ///< red, green, blue, 0..1, without a picture
    std::string note;                ///< why there is no picture; "": nothing to say
};
std::string MeshMtl(const effectGeometry& geometry, const meshSource& source);

}  // namespace orv
