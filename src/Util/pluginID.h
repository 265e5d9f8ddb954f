// pluginID.h: the effect's name towards the project side of the host.
#pragma once

#include "host_api.h"

/// 0 until global set-up has registered the effect.
extern AEGP_PluginID pluginID;
