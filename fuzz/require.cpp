#include <cstdio>
#include <cstdlib>

#include "target.h"

namespace orv::fuzz {

void Require(bool kept, const char* promise)
{
    if (kept) return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

}  // namespace orv::fuzz
