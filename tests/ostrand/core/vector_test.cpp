#include "ostrand/core/string.h"
#include "ostrand/core/vector.h"

#include <gtest/gtest.h>

namespace {

TEST(Vector, KnowsItsElementTypeName)
{
    EXPECT_EQ("int", ost::Vector<int>::ElementTypeName());
    EXPECT_EQ("String", ost::Vector<ost::String>::ElementTypeName());
}

TEST(Vector, AddInsertRemoveKeepOrder)
{
    ost::Vector<int> v{1, 3};
    v.Insert(1, 2);
    v.Insert(3, 4);
    v.RemoveAt(0);
    ASSERT_EQ(3, v.Count());
    EXPECT_EQ(2, v[0]);
    EXPECT_EQ(4, v[2]);
}

TEST(VectorDeathTest, OutOfRangeAccessIsFatalWithTheMessage)
{
    ost::Vector<int> v{7, 8, 9};
    EXPECT_DEATH((void)v[3], "Vector<int>\\[3\\]\r\nmax_index = 2");
    EXPECT_DEATH((void)v[-1], "Vector<int>\\[-1\\]\r\nmax_index = 2");
    ost::Vector<double> empty;
    EXPECT_DEATH((void)empty[0], "Vector<double>\\[0\\]\r\nmax_index = -1");
    EXPECT_DEATH(v.RemoveAt(5), "Vector<int>\\[5\\]");
}

} // namespace
