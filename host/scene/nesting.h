// nesting.h: how compositions contain each other.
#pragma once

#include "scene/messages.h"
#include "scene/model.h"

namespace orv {

/// Fails when a composition contains itself (with the chain of ids), when precompositions nest more
/// than 64 deep, and when one frame of a composition comes to more than 100,000 layer draws once
/// its precompositions are expanded. Each composition is summed once, however often it is shown.
void CheckNesting(const project& scene, const Messages& messages);

}  // namespace orv
