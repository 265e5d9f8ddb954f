// expectFailure.h: what a call threw, for whole-string comparison.
#pragma once

#include <string>

#include "scene/errors.h"

namespace orv {

/// "KIND: text" with the kind's number, or "nothing".
template <class Call>
std::string FailureOf(Call&& call)
{
    try {
        call();
    } catch (const failure& problem) {
        return std::to_string(static_cast<int>(problem.kind())) + ": " + problem.what();
    }
    return "nothing";
}

}  // namespace orv
