// GL_base.h: what the effect needs from OpenGL that outlives one frame: a private context on a
// hidden window, the shader program and the off-screen render targets.
//
// One record per process, S_EffectCommonData, shared by all instances; one caller at a time. All
// operations but Startup and SetContext expect the record's context to be current. A caller that
// gets a code other than Ok puts ReportError(code) into the host's return message and fails with
// PF_Err_INTERNAL_STRUCT_DAMAGED.
//
// Render levels 0, 1, 2 are squares with an edge of a half, a quarter and an eighth of
// maxTextureSize; those below 1024 do not exist and their names stay 0. Each level has two targets,
// A and B: a framebuffer object with a depth buffer of at least 24 bits and a float RGBA rectangle
// texture.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "mac_gl.h"

#include "gl/shaderForms.h"

namespace AESDK_OpenGL {

enum AESDK_OpenGL_Err : std::int32_t {
    Ok = 0,
    PlatformSetupFailed = 1,
    PlatformTeardownFailed = 2,
    ResourcesLoadFailed = 3,
    ResourcesUnloadFailed = 4,  ///< never produced; has a message
    ExtensionsMissing = 5,
    ShaderFailed = 6,
    Unknown = 7  ///< never produced; has a message
};

/// Carries a code out of a helper's inner steps. Never leaves this layer.
class AESDK_OpenGL_Fault {
public:
    explicit AESDK_OpenGL_Fault(AESDK_OpenGL_Err code) noexcept : code_(code) {}
    [[nodiscard]] AESDK_OpenGL_Err code() const noexcept { return code_; }

private:
    AESDK_OpenGL_Err code_;
};

inline constexpr int kRenderLevels = 3;
inline constexpr int kSmallestLevelEdge = 1024;
inline constexpr std::int32_t kMaxTextureSizeAtStart = 4096;

using glName = std::uint32_t;
using levelNames = std::array<glName, kRenderLevels>;

struct AESDK_OpenGL_EffectCommonData {
    std::uint8_t started = 0;
    std::uint8_t resourcesReady = 0;
    std::int32_t maxTextureSize = 0;  ///< largest texture edge that the effect will use
    levelNames frameBufferA{}, frameBufferB{};
    levelNames depthBufferA{}, depthBufferB{};
    levelNames spareBufferA{}, spareBufferB{};  ///< never allocated, released with the others
    levelNames colorTextureA{}, colorTextureB{};
    std::uint16_t levelWidth = 0, levelHeight = 0;  ///< edge of the level made last
    shaderHandle program = 0, vertexShader = 0, fragmentShader = 0;
    std::uint8_t shaderReady = 0;
    NSWindowRef window = nullptr;  ///< hidden; its graphics port is the context's drawable
    AGLContext context = nullptr;  ///< the effect's own; none before start-up and after shut-down
    AGLContext hostContext = nullptr;  ///< filled by GetHostContext only
    shaderForms forms;  ///< specialised forms of `program`, one of which runs in its place
};

extern AESDK_OpenGL_EffectCommonData S_EffectCommonData;

/// Restores, at the end of its scope, the GL context that was current when it was made.
class SaveRestoreOGLContext {
public:
    SaveRestoreOGLContext() noexcept;
    ~SaveRestoreOGLContext();
    SaveRestoreOGLContext(const SaveRestoreOGLContext&) = delete;
    SaveRestoreOGLContext& operator=(const SaveRestoreOGLContext&) = delete;

private:
    CGLContextObj saved_;
};

/// Makes the window and the context and leaves the context current. Sets maxTextureSize to 4096 in
/// any case; does nothing more while `started` is set. A context that the record still holds is
/// destroyed first; all object names, `shaderReady` and `resourcesReady` are cleared with it.
/// PlatformSetupFailed: no usable display. ExtensionsMissing: no context, or one that lacks
/// something of what the effect draws with. `started` is then clear.
AESDK_OpenGL_Err AESDK_OpenGL_Startup(AESDK_OpenGL_EffectCommonData& data);

/// Deletes the program and its shaders, the context and the window. The flags stay. A record
/// without a context has nothing to shut down: Ok. PlatformTeardownFailed when the context could
/// not be destroyed; context and window are then kept.
AESDK_OpenGL_Err AESDK_OpenGL_Shutdown(AESDK_OpenGL_EffectCommonData& data);

/// Makes the render targets that the GL's rectangle-texture maximum / `divisor` (1 or 2) allows;
/// nothing while `resourcesReady` is set. Always Ok: a target that GL refuses to allocate or to
/// complete gets no names, and AESDK_OpenGL_MakeReadyToRender fails for its level, so that the
/// frames of the other levels can still be rendered.
AESDK_OpenGL_Err AESDK_OpenGL_InitResources(AESDK_OpenGL_EffectCommonData& data, int divisor);

/// Deletes all targets and zeroes their names. Leaves `resourcesReady` to the caller. Always Ok.
AESDK_OpenGL_Err AESDK_OpenGL_ReleaseResources(AESDK_OpenGL_EffectCommonData& data);

/// Binds target A (`useB` 0) or B of `level` for drawing. ResourcesLoadFailed when there is no such
/// target or it is not complete.
AESDK_OpenGL_Err AESDK_OpenGL_MakeReadyToRender(AESDK_OpenGL_EffectCommonData& data, int useB,
                                                int level);

/// Clears colour to transparent black, depth to 1 and stencil to 0 in the lower left width x height
/// pixels of the bound target: all that a frame of that size draws to or reads. Leaves depth writes
/// on, the scissor test off and these clear values set.
void AESDK_OpenGL_ClearBoundTarget(int width, int height);

/// What is wrong with the bound framebuffer, or "OK".
std::string CheckFramebufferStatus();

/// Compiles and links the built-in texts; nothing while `shaderReady` is set. The paths are not
/// read. ShaderFailed when GL refuses a text; what was made before stays in the record.
AESDK_OpenGL_Err AESDK_OpenGL_InitShader(AESDK_OpenGL_EffectCommonData& data,
                                         const std::string& vertexShaderPath,
                                         const std::string& fragmentShaderPath);
/// What the compiler or linker said last; "" when it had nothing to say.
const std::string& LastShaderLog();

/// Puts the program, or the form of it that the uniforms ask for, into use.
void AESDK_OpenGL_StartRenderToShader(AESDK_OpenGL_EffectCommonData& data);
void AESDK_OpenGL_StopRenderToShader();

/// Binds rectangle texture `texture` to `unit` (0, 1; all others mean 2) and tells the sampler
/// `name` its unit number, as passed. ShaderFailed for the texture name
/// 0xFFFFFFFF.
AESDK_OpenGL_Err AESDK_OpenGL_BindTextureToTarget(AESDK_OpenGL_EffectCommonData& data,
                                                  glName texture, const std::string& name,
                                                  int unit);

/// Sets the vec4 uniform `name`; it keeps its value until it is set again. ShaderFailed, with
/// nothing set, when x is exactly -1.
AESDK_OpenGL_Err AESDK_OpenGL_PassMetal(AESDK_OpenGL_EffectCommonData& data, float x, float y,
                                        float z, float w, const std::string& name);

void SetContext(AGLContext context);  ///< none: no context is current afterwards
AGLContext GetHostContext(AESDK_OpenGL_EffectCommonData& data);

std::string ReportError(AESDK_OpenGL_Err code);

// GL errors. GL keeps them in a queue; an old one must not be blamed on a new call.

/// Empties GL's error queue. True when there was an error in it.
bool TakeGLErrors();
/// ResourcesLoadFailed when GL's error queue holds an error (it is empty afterwards), else Ok.
AESDK_OpenGL_Err CheckGLErrors();
/// Whether GL would take a rectangle texture of this size and internal format.
bool RectangleTextureFits(int width, int height, GLint internalFormat);

// The arithmetic of the levels.

/// maxTextureSize after AESDK_OpenGL_InitResources: the larger of maximum / divisor and `current`.
std::int32_t MaxTextureSizeFor(std::int32_t rectangleMaximum, int divisor, std::int32_t current);
/// Edges of the levels, 0 for one that is not made.
std::array<int, kRenderLevels> RenderLevelEdges(std::int32_t maxTextureSize);

}  // namespace AESDK_OpenGL
