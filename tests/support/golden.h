// golden.h: pictures that stay as they are.
#pragma once

#include <string>

#include "support/imageCompare.h"

namespace orv {

struct goldenPlace {
    std::string goldens;   ///< folder of NAME.png
    std::string reports;   ///< folder that gets NAME.actual.png and NAME.difference.png
    bool rewrite = false;  ///< replace goldens instead of comparing
};

/// tests/golden of the source folder, golden of the build folder; rewriting when the environment
/// has ORV_REWRITE_GOLDENS=1.
goldenPlace UsualGoldenPlace();

/// Compares with the golden picture of that name. A missing one fails. On failure the reports are
/// written and named in the message. Rewriting writes the golden and succeeds.
testing::AssertionResult MatchesGolden(const image& actual, const std::string& name,
                                       const imageTolerance& tolerance = {},
                                       const goldenPlace& place = UsualGoldenPlace());

}  // namespace orv
