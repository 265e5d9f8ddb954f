// shaderRig.h: draws single cells into a small float target with the effect's own program.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "gl/GL_base.h"

using pixel = std::array<float, 4>;  // as GL has it: red, green, blue, alpha

/// A picture of w x h pixels, row 0 lowest.
struct image {
    int width = 0, height = 0;
    std::vector<pixel> pixels;
    [[nodiscard]] const pixel& at(int x, int y) const
    {
        return pixels[static_cast<std::size_t>(y * width + x)];
    }
};
image FlatImage(int width, int height, const pixel& value);

/// A rectangle that fills the target, unless placed otherwise, with the attributes of a mesh cell.
struct cellDraw {
    float red = 1, green = 1, alpha = 0.5f;            ///< vertex colour
    float texX0 = 0, texY0 = 0, texX1 = 1, texY1 = 1;  ///< texels at the lower left, upper right
    float z = 0;
    std::array<float, 3> normal{0, 0, 1};
    bool backFacing = false;
};

/// Starts the GL layer afresh, draws and reads back. The view maps x, y to pixels and z to eye z.
class ShaderRig {
public:
    explicit ShaderRig(int edge = 16);
    ~ShaderRig();
    ShaderRig(const ShaderRig&) = delete;
    ShaderRig& operator=(const ShaderRig&) = delete;

    /// Uploads a picture for "videoTexture" (unit 0), "backTexture" (1) or "blurTexture" (2).
    void SetImage(int unit, const image& picture);
    void Pass(const std::string& name, float x, float y, float z, float w);
    /// Uniforms of an unlit cell of the whole source, `width` x `height` texels, on a whole path.
    void PassWholeSource(float width, float height);
    /// Clears, draws one cell and reads the target.
    image Draw(const cellDraw& cell);
    /// The same with the general program in the place of the form.
    image DrawGenerally(const cellDraw& cell);

    AESDK_OpenGL::AESDK_OpenGL_EffectCommonData& data = AESDK_OpenGL::S_EffectCommonData;

private:
    image DrawInUse(const cellDraw& cell) const;
    int edge_;
};

void ExpectPixel(const pixel& actual, const pixel& expected, float tolerance);
