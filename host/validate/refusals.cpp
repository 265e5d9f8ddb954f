#include "validate/testTable.h"

namespace orv {

std::span<const validationTest> RefusalTests()
{
    return {};
}

}  // namespace orv
