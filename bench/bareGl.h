// bareGl.h: the least that any program must do for a frame of the effect, without effect or host:
// upload a picture, draw a ribbon with it, run a 9-tap pass over the whole frame, read it back.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mac_gl.h"

#include "geometry/records.h"
#include "image/image.h"

namespace orv {

struct bareGlSeconds {
    double upload = 0.0, draw = 0.0, post = 0.0, readBack = 0.0;
};

/// 8 bits per channel in and out; float targets as the effect has them. Its context is current from
/// construction to destruction only while one of its functions runs. Throws std::runtime_error.
class BareGl {
public:
    /// `cells`: positions in pixels of the frame, texture points in texels of `source`.
    BareGl(int width, int height, image source, std::span<const quad> cells);
    ~BareGl();
    BareGl(const BareGl&) = delete;
    BareGl& operator=(const BareGl&) = delete;

    /// One frame. With `separate` each stage is waited for, so that its time is its own.
    bareGlSeconds Frame(bool separate);
    /// The last frame, alpha, red, green, blue; bottom row first.
    [[nodiscard]] const std::vector<std::uint8_t>& pixels() const { return pixels_; }

private:
    struct target {
        GLuint frameBuffer = 0, texture = 0;
    };
    target MakeTarget() const;
    void Upload() const;
    void DrawRibbon() const;
    void DrawPost() const;
    void ReadBack();

    int width_, height_;
    image source_;
    std::vector<float> vertices_;  ///< x, y, s, t
    std::vector<std::uint8_t> pixels_;
    AGLContext context_ = nullptr;
    GLuint sourceTexture_ = 0, ribbonProgram_ = 0, postProgram_ = 0;
    target scene_, post_;
};

}  // namespace orv
