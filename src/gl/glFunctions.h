// glFunctions.h: the ARB and EXT entry points that the GL layer calls. The system's GL library
// exports the core functions only; these are asked for once a context is current.
#pragma once

#include <GL/gl.h>
#include <GL/glext.h>

namespace AESDK_OpenGL {

// One row a function: its pointer type and its name without "gl".
#define ORV_GL_FUNCTIONS(ROW)                                                  \
    ROW(PFNGLBINDFRAMEBUFFEREXTPROC, BindFramebufferEXT)                       \
    ROW(PFNGLDELETEFRAMEBUFFERSEXTPROC, DeleteFramebuffersEXT)                 \
    ROW(PFNGLGENFRAMEBUFFERSEXTPROC, GenFramebuffersEXT)                       \
    ROW(PFNGLCHECKFRAMEBUFFERSTATUSEXTPROC, CheckFramebufferStatusEXT)         \
    ROW(PFNGLFRAMEBUFFERTEXTURE2DEXTPROC, FramebufferTexture2DEXT)             \
    ROW(PFNGLFRAMEBUFFERRENDERBUFFEREXTPROC, FramebufferRenderbufferEXT)       \
    ROW(PFNGLBINDRENDERBUFFEREXTPROC, BindRenderbufferEXT)                     \
    ROW(PFNGLDELETERENDERBUFFERSEXTPROC, DeleteRenderbuffersEXT)               \
    ROW(PFNGLGENRENDERBUFFERSEXTPROC, GenRenderbuffersEXT)                     \
    ROW(PFNGLRENDERBUFFERSTORAGEEXTPROC, RenderbufferStorageEXT)               \
    ROW(PFNGLGETRENDERBUFFERPARAMETERIVEXTPROC, GetRenderbufferParameterivEXT) \
    ROW(PFNGLCREATESHADEROBJECTARBPROC, CreateShaderObjectARB)                 \
    ROW(PFNGLSHADERSOURCEARBPROC, ShaderSourceARB)                             \
    ROW(PFNGLCOMPILESHADERARBPROC, CompileShaderARB)                           \
    ROW(PFNGLCREATEPROGRAMOBJECTARBPROC, CreateProgramObjectARB)               \
    ROW(PFNGLATTACHOBJECTARBPROC, AttachObjectARB)                             \
    ROW(PFNGLLINKPROGRAMARBPROC, LinkProgramARB)                               \
    ROW(PFNGLUSEPROGRAMOBJECTARBPROC, UseProgramObjectARB)                     \
    ROW(PFNGLGETHANDLEARBPROC, GetHandleARB)                                   \
    ROW(PFNGLDELETEOBJECTARBPROC, DeleteObjectARB)                             \
    ROW(PFNGLGETOBJECTPARAMETERIVARBPROC, GetObjectParameterivARB)             \
    ROW(PFNGLGETINFOLOGARBPROC, GetInfoLogARB)                                 \
    ROW(PFNGLGETUNIFORMLOCATIONARBPROC, GetUniformLocationARB)                 \
    ROW(PFNGLUNIFORM1IARBPROC, Uniform1iARB)                                   \
    ROW(PFNGLUNIFORM4FARBPROC, Uniform4fARB)

struct glFunctionTable {
#define ORV_GL_FIELD(type, name) type name = nullptr;
    ORV_GL_FUNCTIONS(ORV_GL_FIELD)
#undef ORV_GL_FIELD
};

/// Filled by LoadGLFunctions; all null before.
extern glFunctionTable glExt;

/// Fills glExt for the current context. False, with glExt as it was, when the context lacks an
/// extension or a function that the effect draws with.
bool LoadGLFunctions();

}  // namespace AESDK_OpenGL
