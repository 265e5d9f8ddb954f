// intToString.h: numbers in names and messages.
#pragma once

#include <cstdint>
#include <string>

/// Decimal, "-" for negatives, no leading zeros and no grouping.
std::string intToString(std::int32_t value);
