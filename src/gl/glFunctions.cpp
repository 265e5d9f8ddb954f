#include "gl/glFunctions.h"

#include <EGL/egl.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

namespace AESDK_OpenGL {

glFunctionTable glExt;

namespace {

constexpr std::array<std::string_view, 7> kExtensions{"GL_ARB_shader_objects",
                                                      "GL_ARB_vertex_shader",
                                                      "GL_ARB_fragment_shader",
                                                      "GL_EXT_framebuffer_object",
                                                      "GL_ARB_texture_float",
                                                      "GL_ARB_texture_rectangle",
                                                      "GL_EXT_abgr"};

/// The loader hands out a stub for any name: only the context's own list tells what it has.
bool HasAllExtensions()
{
    const GLubyte* text = glGetString(GL_EXTENSIONS);
    if (!text) return false;
    std::istringstream words(reinterpret_cast<const char*>(text));
    std::array<bool, kExtensions.size()> found{};
    for (std::string word; words >> word;) {
        const auto match = std::find(kExtensions.begin(), kExtensions.end(), word);
        if (match != kExtensions.end())
            found[static_cast<std::size_t>(match - kExtensions.begin())] = true;
    }
    return std::find(found.begin(), found.end(), false) == found.end();
}

template <class Function>
bool Load(Function& function, const char* name)
{
    function = reinterpret_cast<Function>(eglGetProcAddress(name));
    return function != nullptr;
}

}  // namespace

bool LoadGLFunctions()
{
    if (!HasAllExtensions()) return false;
    glFunctionTable table;
    bool complete = true;
#define ORV_GL_LOAD(type, name) complete = Load(table.name, "gl" #name) && complete;
    ORV_GL_FUNCTIONS(ORV_GL_LOAD)
#undef ORV_GL_LOAD
    if (complete) glExt = table;
    return complete;
}

}  // namespace AESDK_OpenGL
