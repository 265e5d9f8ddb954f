#include "gl/GL_base.h"

#include "gl/glFunctions.h"

namespace AESDK_OpenGL {

AESDK_OpenGL_EffectCommonData S_EffectCommonData;

namespace {

constexpr double kWindowEdge = 50.0;

constexpr std::array kMessages{
    "OK",
    "OS specific calls failed!",
    "OS specific unloading error!",
    "OpenGL resources failed to load!",
    "OpenGL resources failed to un-load!",
    "Appropriate OpenGL extensions not found!",
    "Shader Error!",
    "Unknown AESDK_OpenGL error!",
};

/// Destroys the context and the window. False, with both kept, when the context cannot be
/// destroyed.
bool DestroyContext(AESDK_OpenGL_EffectCommonData& data)
{
    if (data.context && !aglDestroyContext(data.context)) return false;
    data.context = nullptr;
    if (data.window) NSWindowRelease(data.window);
    data.window = nullptr;
    return true;
}

/// Names mean nothing in a context to come.
void ForgetObjects(AESDK_OpenGL_EffectCommonData& data)
{
    for (levelNames* names :
         {&data.frameBufferA, &data.frameBufferB, &data.depthBufferA, &data.depthBufferB,
          &data.spareBufferA, &data.spareBufferB, &data.colorTextureA, &data.colorTextureB})
        names->fill(0);
    data.program = data.vertexShader = data.fragmentShader = 0;
    data.forms = {};
    data.shaderReady = 0;
    data.resourcesReady = 0;
}

void CreateContext(AESDK_OpenGL_EffectCommonData& data)
{
    constexpr GLint kAttributes[] = {AGL_RGBA,       AGL_DOUBLEBUFFER,
                                     AGL_RED_SIZE,   8,
                                     AGL_GREEN_SIZE, 8,
                                     AGL_BLUE_SIZE,  8,
                                     AGL_ALPHA_SIZE, 8,
                                     AGL_NONE};
    data.window = NSWindowCreate(0.0, 0.0, kWindowEdge, kWindowEdge, 0, NSBackingStoreBuffered, 0);
    AGLPixelFormat format = aglChoosePixelFormat(nullptr, 0, kAttributes);
    if (!data.window || !format) throw AESDK_OpenGL_Fault(PlatformSetupFailed);
    data.context = aglCreateContext(format, nullptr);
    aglDestroyPixelFormat(format);
    if (!data.context) throw AESDK_OpenGL_Fault(ExtensionsMissing);
}

void MakeContextCurrent(AESDK_OpenGL_EffectCommonData& data)
{
    const bool drawable = aglSetDrawable(data.context, NSWindowGraphicsPort(data.window)) != 0;
    glFlush();  // what the caller's context still holds must not wait for the caller's return
    if (!drawable || !aglSetCurrentContext(data.context))
        throw AESDK_OpenGL_Fault(PlatformSetupFailed);
    if (!LoadGLFunctions()) throw AESDK_OpenGL_Fault(ExtensionsMissing);
}

}  // namespace

SaveRestoreOGLContext::SaveRestoreOGLContext() noexcept : saved_(CGLGetCurrentContext()) {}

SaveRestoreOGLContext::~SaveRestoreOGLContext()
{
    if (CGLGetCurrentContext() != saved_) (void)CGLSetCurrentContext(saved_);
}

AESDK_OpenGL_Err AESDK_OpenGL_Startup(AESDK_OpenGL_EffectCommonData& data)
try {
    data.maxTextureSize = kMaxTextureSizeAtStart;
    if (data.started) return Ok;
    if (!DestroyContext(data)) throw AESDK_OpenGL_Fault(PlatformSetupFailed);
    ForgetObjects(data);
    CreateContext(data);
    MakeContextCurrent(data);
    data.started = 1;
    return Ok;
} catch (const AESDK_OpenGL_Fault& fault) {
    data.started = 0;
    (void)DestroyContext(data);
    return fault.code();
}

AESDK_OpenGL_Err AESDK_OpenGL_Shutdown(AESDK_OpenGL_EffectCommonData& data)
{
    if (!data.context) return Ok;
    DeleteForms(data);
    for (const shaderHandle object : {data.vertexShader, data.fragmentShader, data.program})
        glExt.DeleteObjectARB(static_cast<GLhandleARB>(object));
    data.vertexShader = data.fragmentShader = data.program = 0;
    return DestroyContext(data) ? Ok : PlatformTeardownFailed;
}

void SetContext(AGLContext context)
{
    (void)aglSetCurrentContext(context);
}

AGLContext GetHostContext(AESDK_OpenGL_EffectCommonData& data)
{
    data.hostContext = aglGetCurrentContext();
    return data.hostContext;
}

std::string ReportError(AESDK_OpenGL_Err code)
{
    const auto index = static_cast<std::uint32_t>(code);
    return index < kMessages.size() ? kMessages[index] : "Unknown Error Code!";
}

bool TakeGLErrors()
{
    // Without a context some GLs answer with an error for ever.
    constexpr int kMostErrors = 64;
    int errors = 0;
    while (errors < kMostErrors && glGetError() != GL_NO_ERROR) ++errors;
    return errors != 0;
}

AESDK_OpenGL_Err CheckGLErrors()
{
    return TakeGLErrors() ? ResourcesLoadFailed : Ok;
}

}  // namespace AESDK_OpenGL
