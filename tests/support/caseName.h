// caseName.h: the names of a parameterised test's cases.
#pragma once

#include <gtest/gtest.h>

#include <string>

/// For INSTANTIATE_TEST_SUITE_P over records that have a `name`.
struct caseName {
    template <class Case>
    std::string operator()(const testing::TestParamInfo<Case>& info) const
    {
        return info.param.name;
    }
};
