#include "view/value_readers.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

/// A text and the value read from it, if any.
struct NumberCase
{
    const char* text;
    std::optional<double> expected;
};

class ReadNumberTest : public testing::TestWithParam<NumberCase>
{};

TEST_P(ReadNumberTest, ReadsBothWidths)
{
    const NumberCase& c = GetParam();
    std::string text = c.text;
    EXPECT_EQ(ReadNumber(text), c.expected) << text;
    EXPECT_EQ(ReadNumber(std::u16string(text.begin(), text.end())), c.expected) << text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ReadNumberTest,
    testing::Values(NumberCase{"42", 42.0}, NumberCase{"  -3.5", -3.5}, NumberCase{"+7", 7.0},
                    NumberCase{"1,234,567.25", 1234567.25}, NumberCase{"$1,200", 1200.0},
                    NumberCase{"-$5", -5.0}, NumberCase{".5", 0.5}, NumberCase{"5.", 5.0},
                    NumberCase{"2.5e3", 2500.0}, NumberCase{"1e", 1.0}, NumberCase{"12 kg", 12.0},
                    NumberCase{"1,23", 1.0}, NumberCase{"1,2345", 1.0},
                    NumberCase{"-1e300", -1e300}, NumberCase{"1e999", 1.7976931348623157e308},
                    NumberCase{"1e-999", 0.0}, NumberCase{"", std::nullopt},
                    NumberCase{"abc", std::nullopt}, NumberCase{"-", std::nullopt},
                    NumberCase{".", std::nullopt}, NumberCase{"0", 0.0}));

TEST(ReadNumber, NonAsciiEndsTheNumber)
{
    EXPECT_EQ(ReadNumber(u"12\u00a0345"), 12.0);
    EXPECT_EQ(ReadNumber(u"\u20ac5"), std::nullopt);
}

struct DateCase
{
    const char* text;
    bool dayFirst;
    const char* expected; ///< DateTime::Text(), or nullptr when rejected
};

class ReadDateTimeTest : public testing::TestWithParam<DateCase>
{};

TEST_P(ReadDateTimeTest, ReadsLayouts)
{
    const DateCase& c = GetParam();
    std::optional<DateTime> date = ReadDateTime(std::string_view(c.text), c.dayFirst);
    if (!c.expected) {
        EXPECT_FALSE(date) << c.text << " read as " << date->Text();
        return;
    }
    ASSERT_TRUE(date) << c.text;
    EXPECT_EQ(date->Text(), c.expected) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, ReadDateTimeTest,
    testing::Values(DateCase{"2024-03-17", true, "2024/03/17 00:00:00"},
                    DateCase{"2024/3/7", false, "2024/03/07 00:00:00"},
                    DateCase{"17/03/2024", true, "2024/03/17 00:00:00"},
                    DateCase{"03/17/2024", false, "2024/03/17 00:00:00"},
                    DateCase{"04/05/2024", true, "2024/05/04 00:00:00"},
                    DateCase{"04/05/2024", false, "2024/04/05 00:00:00"},
                    // The regional order gives no date; the other order does.
                    DateCase{"03/17/2024", true, "2024/03/17 00:00:00"},
                    DateCase{"17.03.24", true, "2024/03/17 00:00:00"},
                    DateCase{"1/2/75", true, "1975/02/01 00:00:00"},
                    DateCase{"2024-03-17T14:30:05Z", true, "2024/03/17 14:30:05"},
                    DateCase{"2024-03-17 14:30", true, "2024/03/17 14:30:00"},
                    DateCase{"17/03/2024 2:05:09 PM", true, "2024/03/17 14:05:09"},
                    DateCase{"17/03/2024 12:00 am", true, "2024/03/17 00:00:00"},
                    DateCase{"2024-03-17 14:30:05.250+01:00", true, "2024/03/17 14:30:05"},
                    DateCase{"17 Mar 2024", false, "2024/03/17 00:00:00"},
                    DateCase{"17-Mar-2024", true, "2024/03/17 00:00:00"},
                    DateCase{"March 17, 2024", true, "2024/03/17 00:00:00"},
                    DateCase{"Sept 1 2001 09:15", true, "2001/09/01 09:15:00"},
                    DateCase{"  2000-02-29  ", true, "2000/02/29 00:00:00"},
                    DateCase{"14:30", true, "0000/03/01 14:30:00"},
                    DateCase{"2023-02-29", true, nullptr}, DateCase{"31/04/2024", true, nullptr},
                    DateCase{"13/13/2024", true, nullptr}, DateCase{"2024-03", true, nullptr},
                    DateCase{"17/03/2024 25:00", true, nullptr},
                    DateCase{"17/03/2024 garbage", true, nullptr},
                    DateCase{"17/03-2024", true, nullptr}, DateCase{"", true, nullptr},
                    DateCase{"hello", true, nullptr}, DateCase{"12345", true, nullptr}));

TEST(ReadDateTime, SerialGrowsWithTimeAndSortTextHasTwoDigitYears)
{
    DateTime a = *ReadDateTime("1999-12-31 23:59:59", true);
    DateTime b = *ReadDateTime("2000-01-01", true);
    DateTime c = *ReadDateTime("2000-03-01", true);
    EXPECT_EQ(b.Serial() - a.Serial(), 1);
    EXPECT_EQ(c.Serial() - b.Serial(), 60 * 86400);
    EXPECT_EQ(a.SortText(), "99/12/31 23:59:59");
    EXPECT_EQ(b.SortText(), "00/01/01 00:00:00");
    EXPECT_EQ(ReadDateTime(u"17/03/2024", true)->Text(), "2024/03/17 00:00:00");
}

class ReadMemorySizeTest : public testing::TestWithParam<NumberCase>
{};

TEST_P(ReadMemorySizeTest, ReadsUnits)
{
    const NumberCase& c = GetParam();
    EXPECT_EQ(ReadMemorySize(std::string_view(c.text)), c.expected) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Units, ReadMemorySizeTest,
    testing::Values(NumberCase{"3.1 KB", 3.1 * 1024}, NumberCase{"12 MB", 12.0 * 1024 * 1024},
                    NumberCase{"1.5 GB", 1.5 * 1024 * 1024 * 1024}, NumberCase{"512", 512.0},
                    NumberCase{"512 bytes", 512.0}, NumberCase{"1 byte", 1.0},
                    NumberCase{"2kb", 2048.0}, NumberCase{"2 KiB", 2048.0},
                    NumberCase{"1 T", 1099511627776.0}, NumberCase{"1,024 B", 1024.0},
                    NumberCase{" 7 M ", 7.0 * 1024 * 1024}, NumberCase{"3 furlongs", std::nullopt},
                    NumberCase{"KB", std::nullopt}, NumberCase{"", std::nullopt},
                    NumberCase{"1 KB extra", std::nullopt}));

} // namespace
} // namespace quirnel
