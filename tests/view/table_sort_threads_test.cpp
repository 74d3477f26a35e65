// A sort shared between threads must give exactly the order of one thread, ties included:
// tables with many equal keys, every method, a previous sort column, hidden rows, a trailing
// row, UTF-16 and NUL characters.

#include "tests/view/table_test_util.h"
#include "view/table_control.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace quirnel {
namespace {

/// Cells drawn from small sets, so that most keys tie with many others.
void FillRandom(TableControl& table, std::uint32_t seed, int rows)
{
    std::mt19937 random(seed);
    const char* const texts[] = {"",
                                 "apple",
                                 "Apple",
                                 "APPLE ",
                                 "apples and pears",
                                 "b",
                                 "B",
                                 "10",
                                 "9",
                                 "-3.5",
                                 "1e3",
                                 "2024-03-17",
                                 "17/03/2024 10:00",
                                 "3.1 KB",
                                 "2 MB",
                                 "~",
                                 "0",
                                 " 42",
                                 "aaaaaaaaaaaaaaaaaaaab",
                                 "aaaaaaaaaaaaaaaaaaaaa"};
    for (const char* name : {"text", "number", "date", "size", "choice", "check"}) {
        TableColumn column;
        column.headerText = name;
        if (std::string(name) == "choice")
            column.kind = kColumnChoice;
        if (std::string(name) == "check")
            column.kind = kColumnCheck;
        table.AddColumn(column);
    }
    table.SetRowCount(rows);
    for (int r = 0; r < rows; ++r) {
        for (int c = 1; c <= 4; ++c)
            table.SetCellText8(r, c, texts[random() % std::size(texts)]);
        if (random() % 11 == 0)
            table.SetCellText8(r, 1, std::string("nul\0here", 8) + std::to_string(random() % 3));
        if (random() % 13 == 0)
            table.SetCellText16(r, 2, u"\u00e9t\u00e9");
        if (random() % 3 != 0)
            table.SetCellValue(r, 5, static_cast<std::int32_t>(random() % 5) - 2);
        table.SetCellChecked(r, 6, random() % 2 == 0);
        if (random() % 7 == 0)
            table.SetRowHidden(r, true, true);
    }
    table.SetTrailingRow(static_cast<int>(random() % static_cast<unsigned>(rows)));
    table.Redraw();
}

std::vector<int> DisplayOrder(const TableControl& table)
{
    std::vector<int> order;
    for (int p = 0; p < table.RowCount(); ++p)
        order.push_back(table.RowAtDisplayPosition(p));
    return order;
}

TEST(TableSortThreads, EveryMethodGivesTheOrderOfOneThread)
{
    const int methods[] = {kSortTextNoCase, kSortTextCase, kSortNumeric,    kSortNumericLow,
                           kSortDateTime,   kSortMemory,   kSortStoredValue};
    for (std::uint32_t seed = 1; seed <= 3; ++seed) {
        for (int method : methods) {
            for (int previous = 0; previous <= 6; ++previous) {
                SCOPED_TRACE("seed " + std::to_string(seed) + " method " + std::to_string(method) +
                             " previous column " + std::to_string(previous));
                std::vector<int> orders[2];
                for (int variant = 0; variant < 2; ++variant) {
                    TableControl table;
                    table.SetSortThreads(variant == 0 ? 1 : 3);
                    FillRandom(table, seed, 700);
                    for (int c = 1; c <= 6; ++c)
                        table.SetColumnSortMethod(c, method);
                    table.SetColumnSortMethod(2, kSortNumeric);
                    if (previous > 0) {
                        ASSERT_TRUE(table.SetSort(previous, true));
                    }
                    const int column = previous == 1 ? 4 : 1;
                    ASSERT_TRUE(table.SetSort(column, variant == 0));
                    ASSERT_TRUE(table.SetSort(column, true));
                    test::ExpectOrderInvariants(table);
                    orders[variant] = DisplayOrder(table);
                }
                EXPECT_EQ(orders[0], orders[1]);
            }
        }
    }
}

TEST(TableSortThreads, NulCharactersCompareAsCharacters)
{
    // Keys are compared eight bytes at a time, where a NUL looks like the end of a text.
    for (int threads : {1, 2}) {
        TableControl table;
        table.SetSortThreads(threads);
        test::Fill(table, {"key"}, {{"a"}, {"a"}, {"a"}, {"a"}});
        table.SetCellText8(0, 1, std::string("a\0", 2));
        table.SetCellText8(1, 1, std::string("a\0b", 3));
        table.SetCellText8(2, 1, std::string("a\0a", 3));
        ASSERT_TRUE(table.SetSort(1, true));
        EXPECT_EQ(DisplayOrder(table), (std::vector<int>{3, 0, 2, 1}));
    }
}

} // namespace
} // namespace quirnel
