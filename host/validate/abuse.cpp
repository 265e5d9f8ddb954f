#include "validate/testTable.h"

namespace orv {

std::span<const validationTest> AbuseTests()
{
    return {};
}

}  // namespace orv
