// The off-screen render targets of GL_base.h.
// A target's names exist from AESDK_OpenGL_InitResources on; its storage (320 MiB at an edge of
// 4096) is allocated when the target is first made ready, since most frames need one level only.
// The depth buffer's name is 0 until then.

#include <algorithm>

#include "gl/GL_base.h"
#include "gl/glFunctions.h"

namespace AESDK_OpenGL {

namespace {

constexpr GLint kColorFormat = GL_RGBA32F_ARB;
constexpr GLint kLeastDepthBits = 24;

struct renderTarget {
    glName& frameBuffer;
    glName& depthBuffer;
    glName& spareBuffer;
    glName& colorTexture;
};

renderTarget TargetOf(AESDK_OpenGL_EffectCommonData& data, bool useB, int level)
{
    const auto i = static_cast<std::size_t>(level);
    if (useB)
        return {data.frameBufferB[i], data.depthBufferB[i], data.spareBufferB[i],
                data.colorTextureB[i]};
    return {data.frameBufferA[i], data.depthBufferA[i], data.spareBufferA[i],
            data.colorTextureA[i]};
}

void GenerateNames(const renderTarget& target)
{
    if (!target.frameBuffer) glExt.GenFramebuffersEXT(1, &target.frameBuffer);
    if (!target.colorTexture) glGenTextures(1, &target.colorTexture);
}

void DeleteTarget(const renderTarget& target)
{
    if (target.frameBuffer) glExt.DeleteFramebuffersEXT(1, &target.frameBuffer);
    for (const glName* buffer : {&target.depthBuffer, &target.spareBuffer})
        if (*buffer) glExt.DeleteRenderbuffersEXT(1, buffer);
    if (target.colorTexture) glDeleteTextures(1, &target.colorTexture);
    target.frameBuffer = target.depthBuffer = target.spareBuffer = target.colorTexture = 0;
}

/// Storage of `edge` x `edge` for the bound renderbuffer; what GL made of it is asked for.
bool StoreDepth(GLenum format, int edge)
{
    glExt.RenderbufferStorageEXT(GL_RENDERBUFFER_EXT, format, edge, edge);
    const auto parameter = [](GLenum name) {
        GLint value = 0;
        glExt.GetRenderbufferParameterivEXT(GL_RENDERBUFFER_EXT, name, &value);
        return value;
    };
    return !TakeGLErrors() && parameter(GL_RENDERBUFFER_WIDTH_EXT) == edge &&
           parameter(GL_RENDERBUFFER_HEIGHT_EXT) == edge &&
           parameter(GL_RENDERBUFFER_DEPTH_SIZE_EXT) >= kLeastDepthBits;
}

void AttachDepth(const renderTarget& target, int edge)
{
    glExt.GenRenderbuffersEXT(1, &target.depthBuffer);
    glExt.BindRenderbufferEXT(GL_RENDERBUFFER_EXT, target.depthBuffer);
    // The plain format leaves the number of bits to GL.
    if (!StoreDepth(GL_DEPTH_COMPONENT, edge) && !StoreDepth(GL_DEPTH_COMPONENT24, edge))
        throw AESDK_OpenGL_Fault(ResourcesLoadFailed);
    glExt.FramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT,
                                     GL_RENDERBUFFER_EXT, target.depthBuffer);
}

void AttachColor(const renderTarget& target, int edge)
{
    if (!RectangleTextureFits(edge, edge, kColorFormat))
        throw AESDK_OpenGL_Fault(ResourcesLoadFailed);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, target.colorTexture);
    glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, kColorFormat, edge, edge, 0, GL_ABGR_EXT, GL_FLOAT,
                 nullptr);
    glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glExt.FramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT,
                                  GL_TEXTURE_RECTANGLE_ARB, target.colorTexture, 0);
    if (TakeGLErrors()) throw AESDK_OpenGL_Fault(ResourcesLoadFailed);
}

/// Gives the bound target its storage. A refused one keeps none of it, so that the next frame tries
/// again: memory may have become free by then.
void AllocateStorage(const renderTarget& target, int edge)
try {
    if (edge == 0) throw AESDK_OpenGL_Fault(ResourcesLoadFailed);
    (void)TakeGLErrors();
    AttachDepth(target, edge);
    AttachColor(target, edge);
} catch (const AESDK_OpenGL_Fault&) {
    glExt.BindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    DeleteTarget(target);
    GenerateNames(target);
    throw;
}

}  // namespace

std::int32_t MaxTextureSizeFor(std::int32_t rectangleMaximum, int divisor, std::int32_t current)
{
    return std::max(rectangleMaximum / std::max(divisor, 1), current);
}

std::array<int, kRenderLevels> RenderLevelEdges(std::int32_t maxTextureSize)
{
    std::array<int, kRenderLevels> edges{};
    int edge = maxTextureSize;
    for (int& each : edges) {
        edge /= 2;
        each = edge >= kSmallestLevelEdge ? edge : 0;
    }
    return edges;
}

bool RectangleTextureFits(int width, int height, GLint internalFormat)
{
    (void)TakeGLErrors();
    glTexImage2D(GL_PROXY_TEXTURE_RECTANGLE_ARB, 0, internalFormat, width, height, 0, GL_ABGR_EXT,
                 GL_FLOAT, nullptr);
    GLint grantedWidth = 0;
    GLint grantedHeight = 0;
    glGetTexLevelParameteriv(GL_PROXY_TEXTURE_RECTANGLE_ARB, 0, GL_TEXTURE_WIDTH, &grantedWidth);
    glGetTexLevelParameteriv(GL_PROXY_TEXTURE_RECTANGLE_ARB, 0, GL_TEXTURE_HEIGHT, &grantedHeight);
    return !TakeGLErrors() && grantedWidth == width && grantedHeight == height;
}

AESDK_OpenGL_Err AESDK_OpenGL_InitResources(AESDK_OpenGL_EffectCommonData& data, int divisor)
{
    if (data.resourcesReady) return Ok;
    if (!data.context) return ResourcesLoadFailed;

    glEnable(GL_TEXTURE_RECTANGLE_ARB);
    GLint rectangleMaximum = 0;
    glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB, &rectangleMaximum);
    data.maxTextureSize = MaxTextureSizeFor(rectangleMaximum, divisor, data.maxTextureSize);

    const auto edges = RenderLevelEdges(data.maxTextureSize);
    for (int level = 0; level < kRenderLevels; ++level) {
        const int edge = edges[static_cast<std::size_t>(level)];
        if (edge == 0) break;
        data.levelWidth = data.levelHeight = static_cast<std::uint16_t>(edge);
        for (const bool useB : {false, true}) GenerateNames(TargetOf(data, useB, level));
    }
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glEnable(GL_DEPTH_TEST);
    data.resourcesReady = 1;
    return Ok;
}

AESDK_OpenGL_Err AESDK_OpenGL_ReleaseResources(AESDK_OpenGL_EffectCommonData& data)
{
    for (int level = 0; level < kRenderLevels; ++level)
        for (const bool useB : {false, true}) DeleteTarget(TargetOf(data, useB, level));
    return Ok;
}

AESDK_OpenGL_Err AESDK_OpenGL_MakeReadyToRender(AESDK_OpenGL_EffectCommonData& data, int useB,
                                                int level)
try {
    if (!data.context || level < 0 || level >= kRenderLevels)
        throw AESDK_OpenGL_Fault(ResourcesLoadFailed);
    const renderTarget target = TargetOf(data, useB != 0, level);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB, target.frameBuffer);
    glExt.BindFramebufferEXT(GL_FRAMEBUFFER_EXT, target.frameBuffer);
    // Name 0 is the window's own buffer, which would take the drawing without a word.
    if (target.frameBuffer == 0) throw AESDK_OpenGL_Fault(ResourcesLoadFailed);
    if (target.depthBuffer == 0)
        AllocateStorage(target,
                        RenderLevelEdges(data.maxTextureSize)[static_cast<std::size_t>(level)]);
    glDrawBuffer(GL_COLOR_ATTACHMENT0_EXT);
    return CheckFramebufferStatus() == "OK" ? Ok : ResourcesLoadFailed;
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}

void AESDK_OpenGL_ClearBoundTarget(int width, int height)
{
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, width, height);
    glDepthMask(GL_TRUE);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClearDepth(1.0);
    glClearStencil(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
}

std::string CheckFramebufferStatus()
{
    constexpr GLenum kFirst = GL_FRAMEBUFFER_COMPLETE_EXT;
    constexpr std::array kTexts{
        "OK",
        "Framebuffer incomplete, incomplete attachment!",
        "Framebuffer incomplete, missing attachment!",
        "Unknown error!",
        "Framebuffer incomplete, attached images must have same dimensions!",
        "Framebuffer incomplete, attached images must have same format!",
        "Framebuffer incomplete, missing draw buffer!",
        "Framebuffer incomplete, missing read buffer!",
        "Unsupported framebuffer format!",
    };
    const GLenum index = glExt.CheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) - kFirst;
    return index < kTexts.size() ? kTexts[index] : "Unknown error!";
}

}  // namespace AESDK_OpenGL
