// glSteps.h: small GL steps that the drawing stages share. Faults thrown here end in the stage that
// called, as its result.
#pragma once

#include <GL/gl.h>

#include "gl/GL_base.h"
#include "gl/frameUniforms.h"

/// Throws a failure of the GL layer.
inline void Require(AESDK_OpenGL::AESDK_OpenGL_Err code)
{
    if (code != AESDK_OpenGL::Ok) throw AESDK_OpenGL::AESDK_OpenGL_Fault(code);
}

inline void Switch(GLenum capability, bool on)
{
    on ? glEnable(capability) : glDisable(capability);
}

/// Sets a vec4 of the program in use.
inline void SendUniform(const char* name, const vec4& value)
{
    Require(AESDK_OpenGL::AESDK_OpenGL_PassMetal(AESDK_OpenGL::S_EffectCommonData, value[0],
                                                 value[1], value[2], value[3], name));
}

/// The effect's program, in use while this lives.
class ShaderInUse {
public:
    ShaderInUse()
    {
        AESDK_OpenGL::AESDK_OpenGL_StartRenderToShader(AESDK_OpenGL::S_EffectCommonData);
    }
    ~ShaderInUse() { AESDK_OpenGL::AESDK_OpenGL_StopRenderToShader(); }
    ShaderInUse(const ShaderInUse&) = delete;
    ShaderInUse& operator=(const ShaderInUse&) = delete;
};
