// paramRules.h: how the values of a parameter are read, by its declared kind.
#pragma once

#include <unordered_map>
#include <vector>

#include "scene/model.h"
#include "scene/paramDeclaration.h"
#include "scene/propertyReader.h"

namespace orv {

/// What layer, path and point parameters refer to.
struct paramSurroundings {
    const composition& comp;
    const layer& owner;
    const std::unordered_map<int, int>& byInd;  ///< positions of the composition's layers
};

/// A rule whose values come out complete, within the range (clamped with a warning) and resolved:
/// layers as position + 1, path parameters checked against the masks of the owner. Borrows all
/// three arguments' contents.
propertyRule RuleFor(const paramDeclaration& param, const paramSurroundings& around);

}  // namespace orv
