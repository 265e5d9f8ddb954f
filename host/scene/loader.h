// loader.h: reads a scene file into a project. Checks the whole file and stops at the first error.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "scene/errors.h"
#include "scene/model.h"
#include "scene/paramDeclaration.h"

namespace orv {

struct loadOptions {
    bool allowOutside = false;               ///< images outside the scene's folder
    bool strict = false;                     ///< each warning is an error
    std::vector<effectDeclaration> effects;  ///< the loaded plug-ins
};

/// Throws failure(failureKind::scene) with "FILE: PATH: reason" or "FILE:LINE:COLUMN: reason".
/// Warnings reach `warn` once for each place, in the same form.
project LoadScene(const std::string& file, const loadOptions& options, const warningSink& warn);

/// The same for a text in memory; `file` names it in messages and gives the folder of its images.
project LoadSceneText(std::string_view text, const std::string& file, const loadOptions& options,
                      const warningSink& warn);

}  // namespace orv
