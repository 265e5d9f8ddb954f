#include "validate/testTable.h"

namespace orv {

std::span<const validationTest> AnswerTests()
{
    return {};
}

}  // namespace orv
