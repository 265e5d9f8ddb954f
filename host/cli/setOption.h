// setOption.h: parameter values from the command line, "NAME|INDEX[@LAYER]=VALUE".
//
// VALUE by the parameter's kind:
//   slider, float slider   a number within the declared range (sliders: a whole one)
//   angle                  degrees
//   checkbox               1 0 on off true false
//   popup                  a choice's number, from 1, or its text
//   color                  r,g,b or r,g,b,a, each 0..1, or #rrggbb or #rrggbbaa
//   3D point               x,y,z in pixels of the layer at full resolution
//   layer                  `ind` or name of a layer of the same composition; 0 or none
//   path                   position, from 1, or name of a mask of the same layer; 0 or none
// A layer, as LAYER too: a number means `ind`, and a name where no layer has that `ind`.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scene/model.h"
#include "scene/paramDeclaration.h"

namespace orv {

struct setRequest {
    std::string text;                  ///< as given, for messages
    std::string param;                 ///< name or index
    std::optional<std::string> owner;  ///< name or `ind` of the layers meant; none: every one
    std::string value;
};

/// Splits the text; throws failure(usage) when it has not that form.
setRequest ParseSet(const std::string& text);

/// Puts the values into every instance of the effect in the project, or into those of the layers
/// that a request names. Each replaces what the scene says, key frames too. Throws failure(usage)
/// naming the request: no such parameter, a name that several parameters have, a value that the
/// parameter does not take, no such instance.
void ApplySets(project& scene, const effectDeclaration& declaration,
               const std::vector<setRequest>& requests);

}  // namespace orv
