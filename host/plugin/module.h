// module.h: an effect module in this process.
#pragma once

#include <string>

#include "host_api.h"

namespace orv {

struct loadedModule {
    std::string path;  ///< absolute
    PF_EntryPoint entry = nullptr;
};

/// Loads the module with all its symbols bound. It stays mapped until the process ends, since GL
/// drivers that came with it leave work for the exit behind. Throws failure(plugin).
loadedModule LoadModule(const std::string& path);

/// Whether the process can have a GL context; the reason when it cannot, else "".
std::string WhyNoGL();

}  // namespace orv
