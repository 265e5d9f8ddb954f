#include "Util/pluginID.h"

AEGP_PluginID pluginID = 0;
