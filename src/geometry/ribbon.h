// ribbon.h: lays the source along sampled mask points as the two long borders of a band.
// All lists have one entry per sample. Positions: layer pixels at full resolution.
//
//   A ----------- A      the cross-section is a straight piece through the mask point, square to
//   |   mask      |      the path and turned about it by the twist; positive twist lifts A
//   B ----------- B
#pragma once

#include <span>
#include <vector>

#include "geometry/maskSampling.h"
#include "geometry/meshSettings.h"
#include "geometry/samples.h"
#include "geometry/textureEdges.h"

/// The borders on a mask, per-vertex z applied, before straightening and layer transform. `path`
/// and `edges` have as many entries as `props`. `onCurve`: the texture is read along a curve, so
/// that "Source radius" scales the width.
ribbonSamples LayRibbon(std::vector<propS> props, textureEdges edges,
                        std::span<const pathSample> path, bool onCurve,
                        const meshSettings& settings);

/// Without a mask: the source flat in the middle of the view. No normals, z or path positions.
ribbonSamples LayFlat(std::vector<propS> props, textureEdges edges, const meshSettings& settings);

/// "Undistorted start" and "Undistorted end": what lies outside them runs straight on.
void StraightenEnds(ribbonSamples& ribbon, const meshSettings& settings);

/// Replaces what is not finite by 0 and draws what is farther than kFarthest in, so that neither
/// depth keys nor sorting ever meet such numbers.
void BoundSamples(ribbonSamples& ribbon);
