// target.h: what every fuzz target has. One program per target: it takes any bytes, hands them to a
// part of the host or of the effect, and ends the process when that part breaks a promise. What
// runs it is either libFuzzer or replay.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace orv::fuzz {

/// Ends the process, with the promise that was broken on stderr.
void Require(bool kept, const char* promise);

}  // namespace orv::fuzz
