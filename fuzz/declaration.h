// declaration.h: the effect's parameters, for targets that read values for them.
#pragma once

#include "scene/paramDeclaration.h"

namespace orv::fuzz {

/// As the effect itself declares them to a host. No GL is touched.
const effectDeclaration& Declaration();

}  // namespace orv::fuzz
