#include "cli/pluginPath.h"

#include <filesystem>
#include <system_error>

namespace orv {

std::string PluginPath(const std::string& given)
{
    if (!given.empty()) return given;
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path() / "KAL_Orv.so";
}

}  // namespace orv
