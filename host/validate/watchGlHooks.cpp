// The entry points of GL and EGL that orv-check stands in for; see watch.h.
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#define GL_GLEXT_PROTOTYPES
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include "validate/watchState.h"

using orv::touched;
namespace watched = orv::watchState;
using watched::objectKind;

#define ORV_HOOK extern "C" [[gnu::visibility("default")]]

namespace {

/// The name of a function, as a template argument.
template <std::size_t N>
struct functionName {
    char text[N]{};
    // Implicit, so that a string literal serves as the argument.
    constexpr functionName(const char (&name)[N]) { std::copy_n(name, N, text); }
};

using anyFunction = void (*)();

anyFunction NextProcAddress(const char* name)
{
    static auto* const next =
        reinterpret_cast<anyFunction (*)(const char*)>(dlsym(RTLD_NEXT, "eglGetProcAddress"));
    return next(name);
}

/// The system's own function of that name: of its libraries, else from the loader.
template <functionName Name, class Function>
Function* Next()
{
    static auto* const next = [] {
        void* const exported = dlsym(RTLD_NEXT, Name.text);
        return exported != nullptr ? reinterpret_cast<Function*>(exported)
                                   : reinterpret_cast<Function*>(NextProcAddress(Name.text));
    }();
    return next;
}

const void* CurrentContext()
{
    return Next<"eglGetCurrentContext", EGLContext()>()();
}

void NoteGL(const char* function)
{
    watched::Note(touched::gl, function, "");
}

std::span<const std::uint32_t> NamesOf(GLsizei count, const GLuint* names)
{
    if (names == nullptr || count <= 0) return {};
    return {names, static_cast<std::size_t>(count)};
}

// ---- objects, under each of the names that GL gave their functions

template <functionName Name, objectKind Kind>
void Generate(GLsizei count, GLuint* names)
{
    NoteGL(Name.text);
    Next<Name, void(GLsizei, GLuint*)>()(count, names);
    watched::ObjectsMade(CurrentContext(), Kind, NamesOf(count, names));
}

template <functionName Name, objectKind Kind>
void Delete(GLsizei count, const GLuint* names)
{
    NoteGL(Name.text);
    watched::ObjectsGone(CurrentContext(), Kind, NamesOf(count, names));
    Next<Name, void(GLsizei, const GLuint*)>()(count, names);
}

template <functionName Name, class... Args>
GLuint Create(Args... args)
{
    NoteGL(Name.text);
    const GLuint made = Next<Name, GLuint(Args...)>()(args...);
    watched::ObjectsMade(CurrentContext(), objectKind::shader, {&made, 1});
    return made;
}

template <functionName Name>
void DeleteOne(GLuint object)
{
    NoteGL(Name.text);
    watched::ObjectsGone(CurrentContext(), objectKind::shader, {&object, 1});
    Next<Name, void(GLuint)>()(object);
}

template <functionName Name>
void RenderbufferStorage(GLenum target, GLenum format, GLsizei width, GLsizei height)
{
    if (watched::RefusesStorage(true)) return;
    Next<Name, void(GLenum, GLenum, GLsizei, GLsizei)>()(target, format, width, height);
}

// ---- what the loader hands out

struct handedOut {
    std::string_view name;
    anyFunction function;
};

#define ORV_GENERATES(suffix, kind)                                                        \
    handedOut{"glGen" suffix,                                                              \
              reinterpret_cast<anyFunction>(&Generate<"glGen" suffix, objectKind::kind>)}, \
        handedOut                                                                          \
    {                                                                                      \
        "glDelete" suffix,                                                                 \
            reinterpret_cast<anyFunction>(&Delete<"glDelete" suffix, objectKind::kind>)    \
    }
#define ORV_HANDS_OUT(name, function)                 \
    handedOut                                         \
    {                                                 \
        name, reinterpret_cast<anyFunction>(function) \
    }

const std::array kHandedOut{
    ORV_GENERATES("Textures", texture),
    ORV_GENERATES("TexturesEXT", texture),
    ORV_GENERATES("Framebuffers", framebuffer),
    ORV_GENERATES("FramebuffersEXT", framebuffer),
    ORV_GENERATES("Renderbuffers", renderbuffer),
    ORV_GENERATES("RenderbuffersEXT", renderbuffer),
    ORV_GENERATES("Buffers", buffer),
    ORV_GENERATES("BuffersARB", buffer),
    ORV_HANDS_OUT("glCreateShaderObjectARB", (&Create<"glCreateShaderObjectARB", GLenum>)),
    ORV_HANDS_OUT("glCreateShader", (&Create<"glCreateShader", GLenum>)),
    ORV_HANDS_OUT("glCreateProgramObjectARB", (&Create<"glCreateProgramObjectARB">)),
    ORV_HANDS_OUT("glCreateProgram", (&Create<"glCreateProgram">)),
    ORV_HANDS_OUT("glDeleteObjectARB", (&DeleteOne<"glDeleteObjectARB">)),
    ORV_HANDS_OUT("glDeleteShader", (&DeleteOne<"glDeleteShader">)),
    ORV_HANDS_OUT("glDeleteProgram", (&DeleteOne<"glDeleteProgram">)),
    ORV_HANDS_OUT("glRenderbufferStorage", (&RenderbufferStorage<"glRenderbufferStorage">)),
    ORV_HANDS_OUT("glRenderbufferStorageEXT", (&RenderbufferStorage<"glRenderbufferStorageEXT">)),
    ORV_HANDS_OUT("glTexImage2D", &glTexImage2D),
    ORV_HANDS_OUT("glCopyTexImage2D", &glCopyTexImage2D),
    ORV_HANDS_OUT("glGetError", &glGetError),
};

bool IsProxy(GLenum target)
{
    return target == GL_PROXY_TEXTURE_2D || target == GL_PROXY_TEXTURE_RECTANGLE ||
           target == GL_PROXY_TEXTURE_CUBE_MAP;
}

}  // namespace

// ---- EGL

ORV_HOOK EGLDisplay eglGetDisplay(EGLNativeDisplayType native)
{
    NoteGL("eglGetDisplay");
    if (watched::RefusesDisplays()) return EGL_NO_DISPLAY;
    return Next<"eglGetDisplay", EGLDisplay(EGLNativeDisplayType)>()(native);
}

ORV_HOOK EGLDisplay eglGetPlatformDisplay(EGLenum platform, void* native,
                                          const EGLAttrib* attributes)
{
    NoteGL("eglGetPlatformDisplay");
    if (watched::RefusesDisplays()) return EGL_NO_DISPLAY;
    return Next<"eglGetPlatformDisplay", EGLDisplay(EGLenum, void*, const EGLAttrib*)>()(
        platform, native, attributes);
}

ORV_HOOK EGLBoolean eglInitialize(EGLDisplay display, EGLint* major, EGLint* minor)
{
    NoteGL("eglInitialize");
    if (watched::RefusesDisplays()) return EGL_FALSE;
    return Next<"eglInitialize", EGLBoolean(EGLDisplay, EGLint*, EGLint*)>()(display, major, minor);
}

ORV_HOOK EGLContext eglCreateContext(EGLDisplay display, EGLConfig config, EGLContext share,
                                     const EGLint* attributes)
{
    NoteGL("eglCreateContext");
    if (watched::RefusesDisplays() || watched::RefusesContexts()) return EGL_NO_CONTEXT;
    const EGLContext made =
        Next<"eglCreateContext", EGLContext(EGLDisplay, EGLConfig, EGLContext, const EGLint*)>()(
            display, config, share, attributes);
    if (made != EGL_NO_CONTEXT) watched::ContextMade(made, share);
    return made;
}

ORV_HOOK EGLBoolean eglDestroyContext(EGLDisplay display, EGLContext context)
{
    NoteGL("eglDestroyContext");
    const EGLBoolean done =
        Next<"eglDestroyContext", EGLBoolean(EGLDisplay, EGLContext)>()(display, context);
    if (done == EGL_TRUE) watched::ContextGone(context);
    return done;
}

ORV_HOOK EGLBoolean eglMakeCurrent(EGLDisplay display, EGLSurface draw, EGLSurface read,
                                   EGLContext context)
{
    NoteGL("eglMakeCurrent");
    return Next<"eglMakeCurrent", EGLBoolean(EGLDisplay, EGLSurface, EGLSurface, EGLContext)>()(
        display, draw, read, context);
}

ORV_HOOK const char* eglQueryString(EGLDisplay display, EGLint name)
{
    NoteGL("eglQueryString");
    if (watched::RefusesDisplays()) return nullptr;
    return Next<"eglQueryString", const char*(EGLDisplay, EGLint)>()(display, name);
}

ORV_HOOK anyFunction eglGetProcAddress(const char* name)
{
    NoteGL("eglGetProcAddress");
    const auto* const found =
        std::ranges::find(kHandedOut, std::string_view(name), &handedOut::name);
    const anyFunction next = NextProcAddress(name);
    return found != kHandedOut.end() && next != nullptr ? found->function : next;
}

// ---- GL

ORV_HOOK void glGenTextures(GLsizei count, GLuint* names)
{
    Generate<"glGenTextures", objectKind::texture>(count, names);
}

ORV_HOOK void glDeleteTextures(GLsizei count, const GLuint* names)
{
    Delete<"glDeleteTextures", objectKind::texture>(count, names);
}

ORV_HOOK void glGenFramebuffers(GLsizei count, GLuint* names)
{
    Generate<"glGenFramebuffers", objectKind::framebuffer>(count, names);
}

ORV_HOOK void glDeleteFramebuffers(GLsizei count, const GLuint* names)
{
    Delete<"glDeleteFramebuffers", objectKind::framebuffer>(count, names);
}

ORV_HOOK void glGenRenderbuffers(GLsizei count, GLuint* names)
{
    Generate<"glGenRenderbuffers", objectKind::renderbuffer>(count, names);
}

ORV_HOOK void glDeleteRenderbuffers(GLsizei count, const GLuint* names)
{
    Delete<"glDeleteRenderbuffers", objectKind::renderbuffer>(count, names);
}

ORV_HOOK void glGenBuffers(GLsizei count, GLuint* names)
{
    Generate<"glGenBuffers", objectKind::buffer>(count, names);
}

ORV_HOOK void glDeleteBuffers(GLsizei count, const GLuint* names)
{
    Delete<"glDeleteBuffers", objectKind::buffer>(count, names);
}

ORV_HOOK GLuint glCreateShader(GLenum type)
{
    return Create<"glCreateShader", GLenum>(type);
}

ORV_HOOK GLuint glCreateProgram()
{
    return Create<"glCreateProgram">();
}

ORV_HOOK void glDeleteShader(GLuint shader)
{
    DeleteOne<"glDeleteShader">(shader);
}

ORV_HOOK void glDeleteProgram(GLuint program)
{
    DeleteOne<"glDeleteProgram">(program);
}

ORV_HOOK void glRenderbufferStorage(GLenum target, GLenum format, GLsizei width, GLsizei height)
{
    RenderbufferStorage<"glRenderbufferStorage">(target, format, width, height);
}

ORV_HOOK void glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width,
                           GLsizei height, GLint border, GLenum format, GLenum type,
                           const void* pixels)
{
    using function =
        void(GLenum, GLint, GLint, GLsizei, GLsizei, GLint, GLenum, GLenum, const void*);
    NoteGL("glTexImage2D");
    const bool proxy = IsProxy(target);
    if (watched::RefusesStorage(!proxy)) {
        // A proxy tells of a refusal by having no size.
        if (!proxy) return;
        constexpr GLsizei kTooLarge = 1 << 30;
        width = height = kTooLarge;
    }
    Next<"glTexImage2D", function>()(target, level, internalFormat, width, height, border, format,
                                     type, pixels);
}

ORV_HOOK void glCopyTexImage2D(GLenum target, GLint level, GLenum internalFormat, GLint x, GLint y,
                               GLsizei width, GLsizei height, GLint border)
{
    using function = void(GLenum, GLint, GLenum, GLint, GLint, GLsizei, GLsizei, GLint);
    NoteGL("glCopyTexImage2D");
    if (watched::RefusesStorage(true)) return;
    Next<"glCopyTexImage2D", function>()(target, level, internalFormat, x, y, width, height,
                                         border);
}

ORV_HOOK GLenum glGetError()
{
    NoteGL("glGetError");
    if (watched::TakeStorageError()) return GL_OUT_OF_MEMORY;
    return Next<"glGetError", GLenum()>()();
}

ORV_HOOK const GLubyte* glGetString(GLenum name)
{
    NoteGL("glGetString");
    return Next<"glGetString", const GLubyte*(GLenum)>()(name);
}
