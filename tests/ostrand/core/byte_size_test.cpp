#include "ostrand/core/byte_size.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct SizeCase
{
    long long bytes;
    const char* text;
};

class FormatByteSizeEdges : public testing::TestWithParam<SizeCase>
{};

TEST_P(FormatByteSizeEdges, MatchesTable)
{
    EXPECT_EQ(GetParam().text, ost::FormatByteSize(GetParam().bytes));
}

INSTANTIATE_TEST_SUITE_P(
    ByteSize, FormatByteSizeEdges,
    testing::Values(SizeCase{-5, "-5 bytes"}, SizeCase{0, "0 bytes"}, SizeCase{1023, "1023 bytes"},
                    SizeCase{1024, "1.00 KB"}, SizeCase{3174, "3.10 KB"},
                    SizeCase{1048575, "1024.00 KB"}, SizeCase{1048576, "1.00 MB"},
                    SizeCase{1073741823, "1024.00 MB"}, SizeCase{1073741824, "1.00 GB"},
                    SizeCase{1099511627775LL, "1024.00 GB"}, SizeCase{1099511627776LL, "1.00 TB"},
                    SizeCase{5LL * 1099511627776LL, "5.00 TB"}),
    [](const testing::TestParamInfo<SizeCase>& param) {
        const long long b = param.param.bytes;
        return (b < 0 ? "minus" + std::to_string(-b) : std::to_string(b)) + "Bytes";
    });

} // namespace
