// shaderObjects.h: compiling and linking. Failures are thrown as AESDK_OpenGL_Fault(ShaderFailed).
#pragma once

#include <initializer_list>

#include "gl/GL_base.h"
#include "gl/glFunctions.h"

namespace AESDK_OpenGL {

/// Compiles the texts, taken as one. The object is in `shader` even when it does not compile.
void CompileStage(GLenum type, std::initializer_list<const char*> texts, shaderHandle& shader);
/// Links the two. The object is in `program` even when it does not link.
void LinkProgram(shaderHandle vertexShader, shaderHandle fragmentShader, shaderHandle& program);

}  // namespace AESDK_OpenGL
