// paramText.h: parameters and their values in words.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "scene/paramDeclaration.h"

namespace orv {

/// As scenes' documentation spells the kind: "float slider", "3D point", ...
std::string_view KindName(paramKind kind);

/// Groups carry no value.
bool HasValue(paramKind kind);

/// A value as a user reads it: "25 %", "90°", "on", a choice's text, "0.5, 0, 1, 1".
std::string ValueText(const paramDeclaration& param, std::span<const double> value);

/// Wide enough that the number reads back the same, no wider than needed; 100 and not 100.0.
std::string ParamNumberText(double value);

}  // namespace orv
