// shaderPath.h: where a file beside the effect's executable lies.
#pragma once

#include <string>
#include <string_view>

/// Turns the host's path of the executable, "Volume:folder:...:executable", into the path of
/// `fileName` in the same folder, "/folder/.../fileName". Pure; does not touch the file system.
std::string CreateShaderPath(std::string_view path, std::string_view fileName);
