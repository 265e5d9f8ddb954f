#include "plugin/module.h"

#include <dlfcn.h>

#include <cstring>
#include <filesystem>

#include <fmt/format.h>

#include "mac_gl.h"
#include "plugin/modulePath.h"
#include "scene/errors.h"

namespace orv {

namespace {

constexpr const char* kEntryName = "EntryPointFunc";

[[noreturn]] void Refuse(const std::string& path, const std::string& reason)
{
    throw failure(failureKind::plugin, fmt::format("{}: {}", path, reason));
}

}  // namespace

loadedModule LoadModule(const std::string& path)
{
    std::error_code error;
    const std::string absolute = std::filesystem::absolute(path, error).lexically_normal().string();
    if (error) Refuse(path, error.message());
    if (!std::filesystem::exists(absolute, error)) Refuse(path, "no such plug-in");
    if (ColonPath(absolute).size() >= AEFX_MAX_PATH) {
        Refuse(path, fmt::format("the path is longer than effects can be told ({} characters)",
                                 AEFX_MAX_PATH - 1));
    }
    void* module = dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) Refuse(path, fmt::format("cannot be loaded: {}", dlerror()));
    void* symbol = dlsym(module, kEntryName);
    if (symbol == nullptr) Refuse(path, fmt::format("has no {}", kEntryName));
    loadedModule loaded{absolute, nullptr};
    static_assert(sizeof loaded.entry == sizeof symbol);
    std::memcpy(&loaded.entry, &symbol, sizeof symbol);
    return loaded;
}

std::string WhyNoGL()
{
    constexpr GLint kAttributes[] = {AGL_RGBA, AGL_RED_SIZE, 8, AGL_ALPHA_SIZE, 8, AGL_NONE};
    AGLPixelFormat format = aglChoosePixelFormat(nullptr, 0, kAttributes);
    if (format == nullptr) return macGLError();
    AGLContext context = aglCreateContext(format, nullptr);
    const std::string reason = context == nullptr ? macGLError() : "";
    if (context != nullptr) aglDestroyContext(context);
    aglDestroyPixelFormat(format);
    return context == nullptr && reason.empty() ? "no context" : reason;
}

}  // namespace orv
