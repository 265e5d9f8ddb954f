/* host_api.h: the host's effect API, as far as effects of this tree use it. The one header of the
 * host that an effect includes. Pure declarations; usable from C and C++. */
#pragma once

#include "aegp_suites.h"
#include "pf_suites.h"
