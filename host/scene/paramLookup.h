// paramLookup.h: which parameter an entry of an effect means.
#pragma once

#include "scene/jsonNode.h"
#include "scene/paramDeclaration.h"

namespace orv {

/// By `ix` (index), `mn` (match name, "-", four digits of the disk ID) or, without both, `nm`
/// (display name). Fails when none is meant, when `ix` and `mn` differ, for index 0 and for a name
/// that several parameters have.
const paramDeclaration& FindParam(const JsonNode& entry, const effectDeclaration& effect);

/// For messages: parameter 5 "Start point".
std::string ParamTitle(const paramDeclaration& param);

}  // namespace orv
