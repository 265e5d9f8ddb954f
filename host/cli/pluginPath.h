// pluginPath.h: which effect module to load.
#pragma once

#include <string>

namespace orv {

/// `given` when it is not empty, else KAL_Orv.so in the folder of this executable.
std::string PluginPath(const std::string& given);

}  // namespace orv
