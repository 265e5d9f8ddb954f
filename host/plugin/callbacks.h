// callbacks.h: the functions and tables that PF_InData carries.
#pragma once

#include "host_api.h"

namespace orv {

PF_InteractCallbacks InteractCallbacks();
PF_UtilCallbacks* UtilCallbacks();
SPBasicSuite* BasicSuite();

}  // namespace orv
