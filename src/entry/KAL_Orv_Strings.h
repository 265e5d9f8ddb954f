// KAL_Orv_Strings.h: the texts of the effect that a translation would replace, and its identity.
#pragma once

/// What the host finds the effect by, in projects and scripts.
inline constexpr const char* kMatchName = "KAL_Orv";

/// Positions in the table. IDs of entries are another matter: they have gaps.
enum stringPosition : int {
    kStringNone = 0,
    kStringName,
    kStringDescription,
    kStringSuiteLoadError,
    kStringSuiteReleaseError,
    kStringCount
};

/// The text at a position, 0 to kStringCount - 1; closed by 0, lives as long as the process.
const char* GetStringPtr(int position);
