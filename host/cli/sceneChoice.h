// sceneChoice.h: what of a scene to render, as the command line names it.
#pragma once

#include <string>

#include "scene/model.h"

namespace orv {

/// The composition asset of that id. Throws failure(usage) with the ids there are.
const composition& ChooseComposition(const project& scene, const std::string& id);

/// The layer of that name or `ind` (a number is an `ind` first); it must have pixels. Throws
/// failure(usage).
const layer& ChooseLayer(const composition& comp, const std::string& nameOrInd);

}  // namespace orv
