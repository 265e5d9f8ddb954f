// caseChoice.h: which of many like cases a test tries.
#pragma once

#include <cstdint>
#include <vector>

#include "validate/testTable.h"

namespace orv {

/// Of 1..count, in ascending order: all of them for a full test, else the first hundred and two
/// hundred of the rest, by the seed.
std::vector<std::int64_t> ChooseCases(std::int64_t count, const testSetting& setting);

}  // namespace orv
