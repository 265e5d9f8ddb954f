// records.h: the records that carry the mesh from the mask to GL.
// Positions: layer pixels at full resolution, x right, y down, z towards the viewer (the host's z
// mirrored). Texture points: texels of the source texture. Normals are not normalised.
//
//   corner order of a cell:  0 -- edge A -- 1
//                            3 -- edge B -- 2     source runs left to right
#pragma once

#include <cstdint>

/// A position, a normal, a texture point (z: position along the mask) or a contour sample.
struct point3 {
    float x = 0.0f, y = 0.0f, z = 0.0f;
    bool operator==(const point3&) const = default;
};

/// Placement of one sample along the source.
struct propS {
    double segFrac = 0.0;   ///< 0..1 inside mask segment `seg`
    double pathFrac = 0.0;  ///< fraction of the source length at which the texture is taken, 0..1
    std::int32_t seg = 0;   ///< mask segment that holds the sample
    bool operator==(const propS&) const = default;
};

/// One drawable cell.
struct quad {
    point3 pos[4];
    point3 tex[4];  ///< x, y texels; z position along the mask, 0..1, beyond on an overhang
    point3 norm[4];
    double depth =
        0.0;            ///< smallest squared distance from the eye to a corner; 0 until sub-sampled
    double face = 0.0;  ///< 0 back (or only) face, 1 front face, i/L slices between, 2 contour wall
};
