// codecs.h: the file formats behind imageFile.h, one source file each.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "image/image.h"
#include "image/imageFile.h"

namespace orv {

/// Throws failure(failureKind::scene) "NAME: REASON".
[[noreturn]] void RefusePicture(const std::string& name, const std::string& reason);

/// Refuses what is larger than 30000 on a side or 2^26 pixels, before memory is taken for it.
void CheckPictureSize(const std::string& name, std::uint64_t width, std::uint64_t height);

image DecodePng(std::span<const std::uint8_t> data, const std::string& name);
image DecodeJpeg(std::span<const std::uint8_t> data, const std::string& name);

pictureInfo ProbeExr(const std::string& file);

/// The same picture always gives the same bytes. Throws failure(failureKind::output).
std::vector<std::uint8_t> EncodePng(const image& picture, const std::string& name);

}  // namespace orv
