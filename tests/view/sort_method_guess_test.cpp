#include "tests/view/table_test_util.h"
#include "view/sort_method_guess.h"
#include "view/table_control.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

TEST(GuessSortMethod, ByWhatEverySampledCellWhollyIs)
{
    TableControl table;
    Fill(table, {"units", "when", "size", "mixed", "blank", "kg", "wide"},
         {{"12", "2024-03-17", "3.1 KB", "12", "", "12 kg", ""},
          {" 2 ", "17/03/2024", "12 MB", "2024-03-17", " ", "3", ""},
          {"", "03/17/2024 14:30", "", "x", "", "4", ""},
          {"-1,234.5", "14:30", "7 bytes", "", "", "5", ""}});
    table.SetCellText16(0, 7, u"1\u00a0234");
    table.SetCellText16(1, 7, u"5");
    EXPECT_EQ(GuessSortMethod(table, 1, true), kSortNumeric);
    EXPECT_EQ(GuessSortMethod(table, 2, true), kSortDateTime);
    EXPECT_EQ(GuessSortMethod(table, 3, true), kSortMemory);
    EXPECT_EQ(GuessSortMethod(table, 4, true), kSortTextNoCase);
    EXPECT_EQ(GuessSortMethod(table, 5, true), kSortTextNoCase);
    // "12 kg" sorts as 12, but the column is not wholly numbers.
    EXPECT_EQ(GuessSortMethod(table, 6, true), kSortTextNoCase);
    // A non-ASCII space is no number separator.
    EXPECT_EQ(GuessSortMethod(table, 7, true), kSortTextNoCase);
    EXPECT_EQ(GuessSortMethod(table, 99, true), kSortTextNoCase);

    GuessSortMethods(table);
    EXPECT_EQ(table.Column(1).sortMethod, kSortNumeric);
    EXPECT_EQ(table.Column(3).sortMethod, kSortMemory);
}

TEST(GuessSortMethod, LooksAtTheTopAndASpreadOfTheRest)
{
    TableControl table;
    Fill(table, {"n"}, {});
    table.SetRowCount(3000);
    for (int row = 0; row < 3000; ++row)
        table.SetCellText8(row, 1, std::to_string(row));
    table.SetCellText8(1001, 1, "between samples");
    EXPECT_EQ(GuessSortMethod(table, 1, true), kSortNumeric);
    table.SetCellText8(2000, 1, "sampled");
    EXPECT_EQ(GuessSortMethod(table, 1, true), kSortTextNoCase);
}

} // namespace
} // namespace quirnel::test
