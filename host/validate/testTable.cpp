#include "validate/testTable.h"

namespace orv {

std::vector<validationTest> AllTests()
{
    std::vector<validationTest> all;
    for (const auto& level :
         {LoadingTests(), AnswerTests(), PictureTests(), SourceTests(), LifeTests(), ValueTests(),
          FailureTests(), RefusalTests(), EnduranceTests(), AbuseTests()})
        all.insert(all.end(), level.begin(), level.end());
    return all;
}

}  // namespace orv
