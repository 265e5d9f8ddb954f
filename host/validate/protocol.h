// protocol.h: what `orv validate` and orv-check agree on.
#pragma once

#include <cstddef>

namespace orv {

/// The first bytes of what orv-check prints: what it is doing, blank-padded, with a line's end.
/// The report follows on one line.
inline constexpr std::size_t kActivityBytes = 512;
/// orv-check could not run a test at all.
inline constexpr int kCheckBroken = 2;

}  // namespace orv
