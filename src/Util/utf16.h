// utf16.h: text from the host's UTF-16 to UTF-8.
#pragma once

#include <string>

#include "host_api.h"

/// `units` ends with 0. A surrogate without its partner becomes U+FFFD.
std::string Utf8FromUtf16(const A_UTF16Char* units);
