// elfSymbols.h: what a shared object offers to others.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orv {

/// Names that the object defines for others, in the order of its table; those that linkers make on
/// their own (_end and the like) are left out. Throws std::runtime_error when the bytes are no
/// 64-bit shared object of this byte order with a table of dynamic symbols.
std::vector<std::string> ExportedNames(std::span<const std::uint8_t> file);

}  // namespace orv
