#pragma once
// Names TEST_P cases after the `name` member of their parameter.

#include <gtest/gtest.h>

#include <string>

namespace quirnel::test {

struct CaseName
{
    template <typename Param> std::string operator()(const testing::TestParamInfo<Param>& p) const
    {
        return p.param.name;
    }
};

} // namespace quirnel::test
