// targetCopy.h: a copy of what has been drawn, to sample while drawing over it.
#pragma once

#include <GL/gl.h>

#include "gl/GL_base.h"

/// A rectangle texture of exactly the copied size, clamped at its edges, filtered linearly. Owns
/// the texture; it is deleted with this.
class TargetCopy {
public:
    TargetCopy() = default;
    ~TargetCopy();
    TargetCopy(const TargetCopy&) = delete;
    TargetCopy& operator=(const TargetCopy&) = delete;

    /// Copies the lower left width x height pixels of the bound target, keeping them in
    /// `internalFormat`. Texture unit 0 is active afterwards. ResourcesLoadFailed when GL refuses.
    [[nodiscard]] AESDK_OpenGL::AESDK_OpenGL_Err Take(int width, int height, GLint internalFormat);

    [[nodiscard]] AESDK_OpenGL::glName name() const noexcept { return name_; }

private:
    AESDK_OpenGL::glName name_ = 0;
};
