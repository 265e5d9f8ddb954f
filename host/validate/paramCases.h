// paramCases.h: values for parameters of which nothing is known but their declaration. JSON, as a
// sketch's values are. All are values that a user can set.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "validate/sceneSketch.h"

namespace orv {

using randomSource = std::mt19937_64;

/// Whether a parameter of that kind has a value.
bool HasValue(const paramDeclaration& param);

/// The ends of what the declaration allows, those of the slider, the default, and what else is
/// special: every choice of a popup, every mask and layer of the sketch.
std::vector<std::string> EndValues(const paramDeclaration& param, const sceneSketch& sketch);

/// Any value: mostly from the slider's range, sometimes from all that is allowed, sometimes an end.
std::string RandomValue(const paramDeclaration& param, const sceneSketch& sketch,
                        randomSource& random);

/// Gives parameters of the sketch random values: few, many or all of them, as it happens. Some move
/// between their first and last frame's value, where they can.
void ChooseValues(sceneSketch& sketch, const effectDeclaration& declaration, randomSource& random);

}  // namespace orv
