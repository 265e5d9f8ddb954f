#include "cli/glInfo.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <memory>
#include <type_traits>

#include <fmt/format.h>

#include "mac_gl.h"
#include "scene/errors.h"

namespace orv {
namespace {

struct formatDeleter {
    void operator()(AGLPixelFormat format) const { aglDestroyPixelFormat(format); }
};
struct contextDeleter {
    void operator()(AGLContext context) const { aglDestroyContext(context); }
};
using PixelFormat = std::unique_ptr<std::remove_pointer_t<AGLPixelFormat>, formatDeleter>;
using Context = std::unique_ptr<std::remove_pointer_t<AGLContext>, contextDeleter>;

/// Whatever was current comes back.
class SavedContext {
public:
    SavedContext() = default;
    ~SavedContext() { CGLSetCurrentContext(context_); }
    SavedContext(const SavedContext&) = delete;
    SavedContext& operator=(const SavedContext&) = delete;

private:
    CGLContextObj context_ = CGLGetCurrentContext();
};

[[noreturn]] void Fail()
{
    throw failure(failureKind::gl, fmt::format("no usable OpenGL: {}", macGLError()));
}

std::string GlText(GLenum name)
{
    const GLubyte* const text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : "";
}

}  // namespace

glInfo QueryGl()
{
    const GLint attributes[] = {AGL_RGBA, AGL_NONE};
    const PixelFormat format(aglChoosePixelFormat(nullptr, 0, attributes));
    if (!format) Fail();
    const SavedContext saved;
    const Context context(aglCreateContext(format.get(), nullptr));
    if (!context || !aglSetCurrentContext(context.get())) Fail();

    glInfo info{.renderer = GlText(GL_RENDERER), .version = GlText(GL_VERSION)};
    glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB, &info.maxRectangleSize);
    return info;
}

}  // namespace orv
