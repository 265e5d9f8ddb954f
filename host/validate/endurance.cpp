#include "validate/testTable.h"

namespace orv {

std::span<const validationTest> EnduranceTests()
{
    return {};
}

}  // namespace orv
