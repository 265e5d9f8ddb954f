// imageFile.h: pictures on disk. PNG and JPEG in; PNG and EXR out.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "image/image.h"

namespace orv {

/// Decodes PNG (8 and 16 bits, any colour type, alpha straight) or JPEG. PNG of 16 bits gives depth
/// 16 (v x 32768/65535 to the nearest), all else depth 8. `name` stands in messages. Throws
/// failure(failureKind::scene): unknown format, damaged, larger than 30000 or 2^26 pixels.
image DecodeImage(std::span<const std::uint8_t> data, const std::string& name);

/// To another depth, to the nearest; the same depth copies.
image ConvertDepth(const image& source, int depth);

/// Scaled to fit inside width x height, centred, aspect kept, transparent around. Filters by a
/// triangle, widened when it makes smaller.
image FitImage(const image& source, int width, int height);

/// At a preview resolution: ceil(size / divisor), each pixel the mean (weighted by alpha) of the
/// divisorX x divisorY pixels below it, fewer at the right and bottom edge.
image PreviewImage(const image& source, int divisorX, int divisorY);

enum class exrPixel { half, full };

/// Both write a temporary name in the same folder and rename it: the file appears whole or not at
/// all. Throw failure(failureKind::output) with file and reason. PNG: 8 or 16 bits as the image's
/// depth (16: v x 65535/32768 to the nearest), straight alpha.
void WritePng(const image& picture, const std::string& file);
/// EXR: R, G, B, A premultiplied, values as the project has them (no transfer function).
void WriteExr(const image& picture, const std::string& file, exrPixel pixel);

/// Size and depth (bits per channel; EXR: 16 for half, 32 for float) of an existing PNG, JPEG or
/// EXR, for --resume; width 0 when it cannot be read as a whole picture.
struct pictureInfo {
    int width = 0, height = 0, depth = 0;
};
pictureInfo ProbePicture(const std::string& file);

}  // namespace orv
