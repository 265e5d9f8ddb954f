#include "mac_gl.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <utility>

namespace {

constexpr GLint kAttributes[] = {AGL_RGBA,       AGL_DOUBLEBUFFER,
                                 AGL_RED_SIZE,   8,
                                 AGL_GREEN_SIZE, 8,
                                 AGL_BLUE_SIZE,  8,
                                 AGL_ALPHA_SIZE, 8,
                                 AGL_NONE};

class Environment {
public:
    explicit Environment(const char* value) { setenv("ORV_GL", value, 1); }
    ~Environment() { setenv("ORV_GL", "software", 1); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
};

std::string Renderer()
{
    return reinterpret_cast<const char*>(glGetString(GL_RENDERER));
}

/// A context made through the services under test, with its window.
class OwnContext {
public:
    OwnContext()
    {
        AGLPixelFormat format = aglChoosePixelFormat(nullptr, 0, kAttributes);
        context = aglCreateContext(format, nullptr);
        aglDestroyPixelFormat(format);
        aglSetDrawable(context, NSWindowGraphicsPort(window_));
    }
    ~OwnContext()
    {
        if (context) aglDestroyContext(context);
        NSWindowRelease(window_);
    }
    OwnContext(const OwnContext&) = delete;
    OwnContext& operator=(const OwnContext&) = delete;

    AGLContext context = nullptr;

private:
    NSWindowRef window_ = NSWindowCreate(0, 0, 50, 50, 0, NSBackingStoreBuffered, 0);
};

/// What EGL says is current.
struct currentState {
    EGLDisplay display = eglGetCurrentDisplay();
    EGLContext context = eglGetCurrentContext();
    EGLSurface draw = eglGetCurrentSurface(EGL_DRAW);
    EGLSurface read = eglGetCurrentSurface(EGL_READ);
    bool operator==(const currentState&) const = default;
};

/// Somebody else's context with two different surfaces, on a display of its own.
class CallersContext {
public:
    explicit CallersContext(EGLenum api)
        : display_(eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr))
    {
        eglInitialize(display_, nullptr, nullptr);
        eglBindAPI(api);
        const EGLint attributes[] = {EGL_RENDERABLE_TYPE,
                                     api == EGL_OPENGL_API ? EGL_OPENGL_BIT : EGL_OPENGL_ES2_BIT,
                                     EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_NONE};
        EGLConfig config = nullptr;
        EGLint count = 0;
        eglChooseConfig(display_, attributes, &config, 1, &count);
        const EGLint version[] = {EGL_CONTEXT_MAJOR_VERSION, 2, EGL_NONE};
        context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, version);
        for (EGLSurface& each : surfaces_) {
            const EGLint size[] = {EGL_WIDTH, 4, EGL_HEIGHT, 4, EGL_NONE};
            each = eglCreatePbufferSurface(display_, config, size);
        }
        current = eglMakeCurrent(display_, surfaces_[0], surfaces_[1], context_);
    }
    ~CallersContext()
    {
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        for (const EGLSurface each : surfaces_) eglDestroySurface(display_, each);
        eglDestroyContext(display_, context_);
    }
    CallersContext(const CallersContext&) = delete;
    CallersContext& operator=(const CallersContext&) = delete;

    bool current = false;

private:
    EGLDisplay display_;
    EGLContext context_ = EGL_NO_CONTEXT;
    std::array<EGLSurface, 2> surfaces_{};
};

class CallersApi : public testing::TestWithParam<EGLenum> {};

TEST_P(CallersApi, ContextOfAnotherDisplayComesBack)
{
    const CallersContext callers(GetParam());
    ASSERT_TRUE(callers.current);
    const currentState before;
    const CGLContextObj remembered = CGLGetCurrentContext();
    EXPECT_NE(remembered, nullptr);
    {
        OwnContext own;
        ASSERT_TRUE(aglSetCurrentContext(own.context)) << macGLError();
        EXPECT_EQ(aglGetCurrentContext(), own.context);
        EXPECT_NE(currentState(), before);
        EXPECT_NE(currentState().display, before.display);
        EXPECT_EQ(eglQueryAPI(), GetParam());
        EXPECT_EQ(CGLSetCurrentContext(remembered), 0) << macGLError();
        EXPECT_EQ(currentState(), before);
        EXPECT_EQ(aglGetCurrentContext(), nullptr) << "a foreign context is current";
    }
    EXPECT_EQ(currentState(), before) << "destroying a context that is not current";
    EXPECT_EQ(CGLGetCurrentContext(), remembered) << "one record for one context";
    EXPECT_EQ(eglQueryAPI(), GetParam());
}
const EGLenum kApis[] = {{EGL_OPENGL_API}, {EGL_OPENGL_ES_API}};
INSTANTIATE_TEST_SUITE_P(Apis, CallersApi, testing::ValuesIn(kApis), [](const auto& each) {
    return each.param == EGL_OPENGL_API ? "Desktop" : "Embedded";
});

TEST(Contexts, NoneIsRememberedAndRestoredAsNone)
{
    ASSERT_EQ(CGLGetCurrentContext(), nullptr);
    OwnContext own;
    ASSERT_TRUE(aglSetCurrentContext(own.context));
    EXPECT_EQ(CGLSetCurrentContext(nullptr), 0);
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);
    EXPECT_EQ(aglGetCurrentContext(), nullptr);
}

TEST(Contexts, DestroyingTheCurrentOneLeavesNone)
{
    OwnContext own;
    ASSERT_TRUE(aglSetCurrentContext(own.context));
    EXPECT_TRUE(aglDestroyContext(std::exchange(own.context, nullptr)));
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);
    EXPECT_EQ(aglGetCurrentContext(), nullptr);
    EXPECT_FALSE(aglDestroyContext(nullptr));
}

TEST(Devices, SoftwareMeansSoftware)
{
    const Environment software("software");
    OwnContext own;
    ASSERT_TRUE(aglSetCurrentContext(own.context)) << macGLError();
    EXPECT_NE(Renderer().find("pipe"), std::string::npos) << Renderer();
}

TEST(Devices, GpuMeansAGpuOrNothing)
{
    const Environment gpu("gpu");
    AGLPixelFormat format = aglChoosePixelFormat(nullptr, 0, kAttributes);
    if (!format) {
        EXPECT_STREQ(macGLError(), "no EGL device with a GPU gives an OpenGL context");
        return;
    }
    aglDestroyPixelFormat(format);
    OwnContext own;
    ASSERT_TRUE(aglSetCurrentContext(own.context));
    EXPECT_EQ(Renderer().find("pipe"), std::string::npos) << Renderer();
}

TEST(Devices, ProbingLeavesTheCallersContextCurrent)
{
    const CallersContext callers(EGL_OPENGL_API);
    const currentState before;
    const Environment any("");
    aglDestroyPixelFormat(aglChoosePixelFormat(nullptr, 0, kAttributes));
    EXPECT_EQ(currentState(), before);
}

TEST(Formats, WhatIsNotKnownIsRefusedWithAReason)
{
    constexpr GLint kUnknown[] = {AGL_RGBA, 4711, AGL_NONE};
    EXPECT_EQ(aglChoosePixelFormat(nullptr, 0, kUnknown), nullptr);
    EXPECT_STREQ(macGLError(), "an attribute of the pixel format is not known");
    const Environment misspelt("hardware");
    EXPECT_EQ(aglChoosePixelFormat(nullptr, 0, kAttributes), nullptr);
    EXPECT_STREQ(macGLError(), "ORV_GL must be \"gpu\" or \"software\"");
    EXPECT_EQ(aglCreateContext(nullptr, nullptr), nullptr);
}

}  // namespace
