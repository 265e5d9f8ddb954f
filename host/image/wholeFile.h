// wholeFile.h: files that appear whole or not at all.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <span>
#include <string>

namespace orv {

/// Writes `data` under a temporary name in the file's folder (it ends in ".partial") and renames
/// it; removes it on failure. An existing regular file is replaced, anything else (a folder, a
/// device) is refused. Throws failure(failureKind::output) with file and reason.
void WriteWholeFile(const std::string& file, std::span<const std::uint8_t> data);

/// Removes what a process that was killed left of a WriteWholeFile of `file`.
void RemoveUnfinished(const std::string& file, pid_t writer);

/// The whole content of a file. False when it cannot be read or is larger than `limit` bytes.
bool ReadWholeFile(const std::string& file, std::uint64_t limit, std::string& data);

}  // namespace orv
