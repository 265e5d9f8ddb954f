// namedValue.h: a parameter's value in words, with layers and masks by their names.
#pragma once

#include <span>
#include <string>

#include "scene/model.h"
#include "scene/paramDeclaration.h"

namespace orv {

/// As ValueText, but "banner" for a layer of `comp` and "2 (loop)" for a mask of `owner`.
std::string NamedValue(const paramDeclaration& param, std::span<const double> value,
                       const composition& comp, const layer& owner);

}  // namespace orv
