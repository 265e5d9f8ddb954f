// sceneSketch.h: scenes for tests of a module that nothing is known of but its parameters.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "scene/paramDeclaration.h"

namespace orv {

/// A composition with one instance of the effect: a solid layer "effect" (ind 1) that bears masks
/// and effect, above a hidden layer "source" (ind 2) of four flat quarters: red, green, blue and
/// white from the upper left on, row by row.
struct sceneSketch {
    int width = 64, height = 48, frames = 10, depth = 8;
    int sourceWidth = 40, sourceHeight = 16;
    std::string color = "#204060";      ///< of the layer "effect"
    std::vector<std::string> masks;     ///< JSON of each
    std::map<int, std::string> values;  ///< JSON of a property's `k` by parameter index
    std::string moreLayers{};           ///< JSON, each with its leading comma
    std::string onLayer{};              ///< fields of "effect", each with a comma after it
    std::string top{};                  ///< fields of the composition, each with a comma before it
};
inline constexpr int kEffectInd = 1, kSourceInd = 2;

/// JSON of a mask of straight segments, mode none.
std::string StraightMask(const std::vector<std::pair<double, double>>& vertices, bool closed);

/// The sketch most tests start from: one open line across the source's part of the layer; every
/// path parameter names it, every layer parameter the source.
sceneSketch UsualSketch(const effectDeclaration& declaration);

/// UsualSketch with all that the module can do: several masks, a camera with depth of field,
/// lights, motion blur, values that switch every part on, and other sources from frame to frame.
/// 32 x 32, as little of each as does.
sceneSketch EverythingSketch(const effectDeclaration& declaration);

/// Scene text for LoadSceneText.
std::string SceneText(const sceneSketch& sketch, const effectDeclaration& declaration);

}  // namespace orv
