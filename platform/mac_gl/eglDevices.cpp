// eglDevices.cpp: which EGL display serves. Devices are asked one by one, so that no environment
// variable of Mesa's has to be set to get its software renderer.

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "internal.h"

namespace macGL {

namespace {

enum class wanted { any, gpu, software };

constexpr int kMostDevices = 32;

struct deviceList {
    std::array<EGLDeviceEXT, kMostDevices> device{};
    std::array<bool, kMostDevices> software{};
    int count = 0;
};

template <class Function>
Function Load(const char* name)
{
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

deviceList ListDevices()
{
    deviceList list;
    if (!HasExtension(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), "EGL_EXT_platform_device"))
        return list;
    const auto queryDevices = Load<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
    const auto queryString = Load<PFNEGLQUERYDEVICESTRINGEXTPROC>("eglQueryDeviceStringEXT");
    if (!queryDevices || !queryString) return list;
    EGLint count = 0;
    if (!queryDevices(kMostDevices, list.device.data(), &count)) return list;
    list.count = count;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
        list.software[i] =
            HasExtension(queryString(list.device[i], EGL_EXTENSIONS), "EGL_MESA_device_software");
    return list;
}

AGLPixelFormatRecord FormatOf(EGLDisplay display, const channelBits& bits)
{
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr)) return {};
    const EGLint attributes[] = {EGL_RENDERABLE_TYPE,
                                 EGL_OPENGL_BIT,
                                 EGL_SURFACE_TYPE,
                                 EGL_PBUFFER_BIT,
                                 EGL_RED_SIZE,
                                 bits.red,
                                 EGL_GREEN_SIZE,
                                 bits.green,
                                 EGL_BLUE_SIZE,
                                 bits.blue,
                                 EGL_ALPHA_SIZE,
                                 bits.alpha,
                                 EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    if (!eglChooseConfig(display, attributes, &config, 1, &found) || found == 0) return {};
    return {display, config};
}

bool NamesSoftware(const char* renderer)
{
    const std::string_view name = renderer ? renderer : "";
    for (const std::string_view known : {"llvmpipe", "softpipe", "swrast", "Software Rasterizer"})
        if (name.find(known) != std::string_view::npos) return true;
    return false;
}

enum class rendererKind { none, gpu, software };

/// Makes a context for a moment: only its renderer's name tells what a driver falls back to.
rendererKind RendererOf(AGLPixelFormatRecord format)
{
    const CGLContextObj callers = CGLGetCurrentContext();
    AGLDrawableRecord port{1, 1};
    AGLContext context = aglCreateContext(&format, nullptr);
    rendererKind kind = rendererKind::none;
    if (context && aglSetDrawable(context, &port) && aglSetCurrentContext(context)) {
        const auto* name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
        kind = NamesSoftware(name) ? rendererKind::software : rendererKind::gpu;
    }
    if (context) (void)aglDestroyContext(context);
    (void)CGLSetCurrentContext(callers);
    return kind;
}

AGLPixelFormatRecord ChooseGpu(const deviceList& devices, const channelBits& bits)
{
    for (std::size_t i = 0; i < static_cast<std::size_t>(devices.count); ++i) {
        if (devices.software[i]) continue;
        const AGLPixelFormatRecord format = FormatOf(
            eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices.device[i], nullptr), bits);
        if (format.config && RendererOf(format) == rendererKind::gpu) return format;
    }
    return {};
}

AGLPixelFormatRecord ChooseSoftware(const deviceList& devices, const channelBits& bits)
{
    for (std::size_t i = 0; i < static_cast<std::size_t>(devices.count); ++i) {
        if (!devices.software[i]) continue;
        const AGLPixelFormatRecord format = FormatOf(
            eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices.device[i], nullptr), bits);
        if (format.config) return format;
    }
    if (!HasExtension(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS),
                      "EGL_MESA_platform_surfaceless"))
        return {};
    const AGLPixelFormatRecord format = FormatOf(
        eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr), bits);
    return format.config && RendererOf(format) == rendererKind::software ? format
                                                                         : AGLPixelFormatRecord{};
}

bool ReadWanted(wanted& choice)
{
    const char* text = std::getenv("ORV_GL");
    const std::string_view name = text ? text : "";
    if (name.empty())
        choice = wanted::any;
    else if (name == "gpu")
        choice = wanted::gpu;
    else if (name == "software")
        choice = wanted::software;
    else
        return false;
    return true;
}

AGLPixelFormatRecord Choose(wanted choice, const channelBits& bits)
{
    const deviceList devices = ListDevices();
    AGLPixelFormatRecord format;
    if (choice != wanted::software) format = ChooseGpu(devices, bits);
    if (!format.config && choice != wanted::gpu) format = ChooseSoftware(devices, bits);
    if (format.config) return format;
    Fail(choice == wanted::gpu        ? "no EGL device with a GPU gives an OpenGL context"
         : choice == wanted::software ? "EGL offers no software renderer"
                                      : "EGL offers neither a GPU nor a software renderer");
    return {};
}

}  // namespace

AGLPixelFormatRecord ChooseFormat(const channelBits& bits) noexcept
{
    wanted choice = wanted::any;
    if (!ReadWanted(choice)) {
        Fail("ORV_GL must be \"gpu\" or \"software\"");
        return {};
    }
    const DesktopGLScope desktopGL;
    return Choose(choice, bits);
}

bool HasExtension(const char* list, const char* word) noexcept
{
    const std::string_view wordView = word;
    std::string_view rest = list ? list : "";
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(' '), rest.size());
        if (rest.substr(0, end) == wordView) return true;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return false;
}

}  // namespace macGL
