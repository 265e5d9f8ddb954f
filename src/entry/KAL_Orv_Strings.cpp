#include "entry/KAL_Orv_Strings.h"

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>

namespace {

struct tableString {
    std::uint64_t id;  ///< stable across translations
    const char* text;  ///< at most 1023 bytes
};

constexpr std::array<tableString, kStringCount> g_strs{{
    {0, ""},
    {1, "KAL Orv"},
    {2, "Mask based distortion."},
    {6, "Error loading suite."},
    {7, "Error releasing suite."},
}};

}  // namespace

const char* GetStringPtr(int position)
{
    assert(position >= 0 && position < kStringCount);
    return g_strs[static_cast<std::size_t>(position)].text;
}
