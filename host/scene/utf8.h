// utf8.h: checks that a text is UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

namespace orv {

/// The offset of the first byte that does not belong to well-formed UTF-8 (overlong forms,
/// surrogates and values above 10FFFF are ill-formed), or the text's size when all is well.
std::size_t FirstBadUtf8(std::string_view text);

}  // namespace orv
