#include "validate/callerContext.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <array>
#include <span>

#include <fmt/format.h>

#include "mac_gl.h"

namespace orv {
namespace {

struct watchedValue {
    GLenum name;
    const char* text;
    int count;
};
constexpr std::array kWatched{
    watchedValue{GL_VIEWPORT, "viewport", 4},
    watchedValue{GL_SCISSOR_BOX, "scissor box", 4},
    watchedValue{GL_TEXTURE_BINDING_2D, "bound texture", 1},
    watchedValue{GL_TEXTURE_BINDING_RECTANGLE_ARB, "bound rectangle texture", 1},
    watchedValue{GL_FRAMEBUFFER_BINDING_EXT, "bound framebuffer", 1},
    watchedValue{GL_ARRAY_BUFFER_BINDING, "bound array buffer", 1},
    watchedValue{GL_CURRENT_PROGRAM, "program in use", 1},
    watchedValue{GL_ACTIVE_TEXTURE, "active texture unit", 1},
    watchedValue{GL_MATRIX_MODE, "matrix mode", 1},
    watchedValue{GL_PACK_ALIGNMENT, "pack alignment", 1},
    watchedValue{GL_UNPACK_ROW_LENGTH, "unpack row length", 1},
    watchedValue{GL_BLEND, "blending", 1},
    watchedValue{GL_DEPTH_TEST, "depth test", 1},
    watchedValue{GL_LIGHTING, "lighting", 1},
};
using watchedValues = std::array<std::array<GLint, 4>, kWatched.size()>;

watchedValues ReadValues()
{
    watchedValues values{};
    for (std::size_t k = 0; k < kWatched.size(); ++k)
        glGetIntegerv(kWatched[k].name, values[k].data());
    return values;
}

/// Values that no context begins with.
void SetValues(GLuint texture, GLuint framebuffer)
{
    glViewport(3, 5, 17, 19);
    glScissor(2, 4, 6, 8);
    glBindTexture(GL_TEXTURE_2D, texture);
    glBindFramebuffer(GL_FRAMEBUFFER_EXT, framebuffer);
    glActiveTexture(GL_TEXTURE1);
    glMatrixMode(GL_TEXTURE);
    glPixelStorei(GL_PACK_ALIGNMENT, 2);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 23);
    glEnable(GL_BLEND);
}

/// The first error in the queue, which is empty afterwards.
GLenum TakeErrors()
{
    constexpr int kMostErrors = 16;  // a lost context would go on for ever
    const GLenum first = glGetError();
    for (int k = 0; k < kMostErrors && glGetError() != GL_NO_ERROR; ++k) {
    }
    return first;
}

}  // namespace

struct CallerContext::state {
    NSWindowRef window = NSWindowCreate(0, 0, 64, 64, 0, NSBackingStoreBuffered, 0);
    AGLContext context = nullptr;
    CGLContextObj current = nullptr;
    GLuint texture = 0, framebuffer = 0;
    watchedValues values{};

    state()
    {
        constexpr GLint kAttributes[] = {AGL_RGBA, AGL_ALPHA_SIZE, 8, AGL_NONE};
        const AGLPixelFormat format = aglChoosePixelFormat(nullptr, 0, kAttributes);
        if (format == nullptr) return;
        context = aglCreateContext(format, nullptr);
        aglDestroyPixelFormat(format);
        if (context == nullptr) return;
        aglSetDrawable(context, NSWindowGraphicsPort(window));
        MakeCurrent();
        current = CGLGetCurrentContext();
        glGenTextures(1, &texture);
        glGenFramebuffers(1, &framebuffer);
        SetValues(texture, framebuffer);
        values = ReadValues();
        (void)TakeErrors();
    }
    ~state()
    {
        if (context != nullptr) aglDestroyContext(context);
        NSWindowRelease(window);
    }
    state(const state&) = delete;
    state& operator=(const state&) = delete;

    void MakeCurrent() const { aglSetCurrentContext(context); }
};

CallerContext::CallerContext() : state_(std::make_unique<state>())
{
    if (state_->current == nullptr) state_.reset();
}

CallerContext::~CallerContext() = default;

void CallerContext::StepAside()
{
    aside_ = true;
    aglSetCurrentContext(nullptr);
}

std::string CallerContext::Disturbance()
{
    const CGLContextObj expected = aside_ ? nullptr : state_->current;
    const bool same = CGLGetCurrentContext() == expected;
    state_->MakeCurrent();
    std::string text = same     ? ""
                       : aside_ ? "a context is current where none was; "
                                : "the caller's context is not current any more; ";

    const watchedValues now = ReadValues();
    for (std::size_t k = 0; k < kWatched.size(); ++k) {
        if (now[k] == state_->values[k]) continue;
        const auto count = static_cast<std::size_t>(kWatched[k].count);
        text += fmt::format("the caller's {} is {}; ", kWatched[k].text,
                            fmt::join(std::span(now[k]).first(count), ", "));
    }
    if (const GLenum error = TakeErrors(); error != GL_NO_ERROR)
        text += fmt::format("the caller's context has GL error 0x{:04X}; ", error);

    if (!text.empty()) SetValues(state_->texture, state_->framebuffer);
    if (aside_) aglSetCurrentContext(nullptr);
    return text;
}

}  // namespace orv
