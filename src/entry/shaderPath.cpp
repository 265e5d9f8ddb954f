#include "entry/shaderPath.h"

#include <algorithm>

std::string CreateShaderPath(std::string_view path, std::string_view fileName)
{
    // The folder of the executable, without the volume but with the ":" that follows it.
    const std::string_view folder = path.substr(0, path.rfind(':'));
    const std::size_t volumeEnd = folder.find(':');
    std::string result(volumeEnd == std::string_view::npos ? "" : folder.substr(volumeEnd));

    std::replace(result.begin(), result.end(), ':', '/');
    result += '/';
    result += fileName;
    return result;
}
