// paramValues.h: the values of an effect's parameters at an instant, as effects are given them.
//
// In a PF_ParamDef: 16.16 degrees, 8-bit colours, points in down-sampled pixels (z by the same
// divisor as x), path IDs. In a stream: degrees, colours 0..1, points in full-resolution pixels.
#pragma once

#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

#include "host_api.h"

#include "plugin/layerImages.h"
#include "scene/model.h"
#include "scene/paramDeclaration.h"

namespace orv {

/// Gives each mask of each layer an ID that is never used for another one, and never 0.
class PathIds {
public:
    /// `position`: from 1, as path parameters count; 0 gives 0. A position at which the layer has
    /// no mask gets an ID that no mask has.
    PF_PathID Of(const composition& comp, const layer& owner, int position);
    /// The position of the mask with that ID on that layer, from 1; 0 when it has none.
    [[nodiscard]] int PositionOf(const composition& comp, const layer& owner, PF_PathID id) const;

private:
    std::map<std::tuple<const composition*, int, int>, PF_PathID> ids_;
};

/// Whose values are read.
struct paramSource {
    const composition* comp = nullptr;
    const layer* owner = nullptr;
    const effect* values = nullptr;  ///< null: every parameter has its declared default
    const std::map<int, property>* scripted = nullptr;  ///< these come first; null: none
    int width = 0, height = 0;  ///< of the owner, full resolution: what point defaults refer to
    int divisorX = 1, divisorY = 1;
};

/// The value at composition time `t` in the units of the scene (points in pixels); sliders within
/// their range, whole numbers where the kind has them. Empty for groups.
std::vector<double> ValueAt(const paramSource& source, const paramDeclaration& declared, double t);

/// Position in the composition's list of the layer that a layer parameter names at `t`; -1: none.
int NamedLayer(const paramSource& source, const paramDeclaration& declared, double t);

/// Writes the value at `t` into `def`, which holds the declaration; a layer parameter's world is
/// left alone.
void WriteValue(const paramSource& source, const paramDeclaration& declared, double t,
                PathIds& pathIds, PF_ParamDef& def);

/// The value as a stream tells it. False for parameters that have none (groups).
bool WriteStreamValue(const paramSource& source, const paramDeclaration& declared, double t,
                      PathIds& pathIds, AEGP_StreamVal2& value);

}  // namespace orv
