#include "validate/testTable.h"

namespace orv {

std::span<const validationTest> PictureTests()
{
    return {};
}

}  // namespace orv
