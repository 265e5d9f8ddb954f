// base64.h: bytes written as text.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orv {

/// White space is skipped and the padding may be missing. Nullopt when anything else is wrong.
std::optional<std::vector<std::uint8_t>> DecodeBase64(std::string_view text);

}  // namespace orv
