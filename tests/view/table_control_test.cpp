#include "tests/view/table_test_util.h"
#include "view/table_control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace quirnel {
namespace {

using test::ColumnInDisplayOrder;
using test::ExpectOrderInvariants;
using test::Fill;
using Texts = std::vector<std::string>;

// The index column and cells outside the table read empty and refuse writes.
TEST(TableControl, OutOfRangeQueriesNeverFail)
{
    TableControl table;
    EXPECT_EQ(table.Column(0).headerText, "#");
    EXPECT_FALSE(table.DeleteColumn(0));
    EXPECT_FALSE(table.InsertColumn(0, TableColumn{}));
    Fill(table, {"a"}, {{"x"}});
    EXPECT_FALSE(table.SetCellText8(0, 0, "x"));
    EXPECT_EQ(table.CellText8(5, 1), "");
    EXPECT_EQ(table.CellText8(0, 9), "");
    EXPECT_EQ(table.CellText16(-1, 1), u"");
    EXPECT_FALSE(table.SetCellText8(1, 1, "y"));
    EXPECT_FALSE(table.SetCellText16(0, 2, u"y"));
    EXPECT_EQ(table.TrimCell(3, 1, 3), -1);
    EXPECT_TRUE(table.CellIsEmpty(7, 7));
    EXPECT_TRUE(table.Column(9).headerText.empty());
    EXPECT_TRUE(table.Column(-1).flags & COLUMN_NO_SORT);
    EXPECT_EQ(table.RowAtDisplayPosition(4), -1);
    EXPECT_EQ(table.DisplayPosition(-2), -1);
    EXPECT_EQ(table.RowAtViewIndex(1), -1);
    EXPECT_EQ(table.Row(3).id, -1);
    EXPECT_FALSE(table.IsRowSelected(8));
    EXPECT_EQ(table.ColumnNameUtf8(5), "");
    EXPECT_FALSE(table.InsertRows(0, INT32_MAX));
    table.SetFocusCell(5, 5);
    EXPECT_EQ(table.FocusRow(), -1);
    EXPECT_EQ(table.FocusColumn(), -1);
    table.Clear();
    EXPECT_EQ(table.ColumnCount(), 1);
    EXPECT_EQ(table.RowCount(), 0);
}

TEST(TableControl, CellsKeepTheirWidthFlag)
{
    TableControl table;
    Fill(table, {"a", "b"}, {});
    table.SetRowCount(1);
    table.SetCellText16(0, 1, u"wide \u20ac");
    table.SetCellText8(0, 2, "narrow");
    EXPECT_TRUE(table.CellIsWide(0, 1));
    EXPECT_EQ(table.CellText16(0, 1), u"wide \u20ac");
    EXPECT_EQ(table.CellText8(0, 1), "");
    EXPECT_EQ(table.CellFlags(0, 1), CELL_WIDE);
    EXPECT_FALSE(table.CellIsWide(0, 2));
    EXPECT_EQ(table.CellText8(0, 2), "narrow");
    table.SetCellText16(0, 2, u"");
    EXPECT_TRUE(table.CellIsWide(0, 2));
    EXPECT_TRUE(table.CellIsEmpty(0, 2));
    // Texts past the packed length live in the long-text table.
    const std::string longText = std::string(300000, 'x') + "y";
    const std::u16string longWide(270000, u'z');
    table.SetCellText8(0, 1, longText);
    table.SetCellText16(0, 2, longWide);
    EXPECT_EQ(table.CellText8(0, 1), longText);
    EXPECT_EQ(table.CellText16(0, 2), longWide);
}

// Cells and whole rows borrow their text from an adopted buffer; text from elsewhere, or
// under a handle that names no buffer, is copied rather than trusted.
TEST(TableControl, BorrowedTextPointsIntoTheAdoptedBuffer)
{
    TableControl table;
    Fill(table, {"a", "b", "c"}, {});
    auto buffer = std::make_shared<const std::string>("alpha,beta\n");
    const char* data = buffer->data();
    const TextBufferHandle handle = table.AdoptTextBuffer(buffer);
    buffer.reset();
    table.SetRowCount(3);
    ASSERT_TRUE(table.SetCellText8Borrowed(2, 1, std::string_view(data + 6, 4), handle));
    EXPECT_EQ(table.CellText8(2, 1).data(), data + 6);
    std::string outside = "gamma";
    table.SetCellText8Borrowed(2, 2, outside, handle);
    outside = "xxxxx";
    EXPECT_EQ(table.CellText8(2, 2), "gamma");
    EXPECT_GE(table.MemoryUsage().adoptedBytes, 11u);
    table.SetCellChecked(0, 2, true);
    table.SetCellText8(0, 3, "old");
    // The fourth text has no column and is ignored; the empty one clears its cell but keeps
    // the check mark.
    const std::string_view texts[] = {std::string_view(data, 5), "", outside, "extra"};
    table.SetRowText8Borrowed(0, texts, 4, handle);
    table.SetRowText8Borrowed(1, texts, 1, handle + 1);
    table.SetRowText8Borrowed(3, texts, 3, handle);
    EXPECT_EQ(table.CellText8(0, 1).data(), data);
    EXPECT_EQ(table.CellText8(0, 2), "");
    EXPECT_TRUE(table.CellChecked(0, 2));
    EXPECT_EQ(table.CellText8(0, 3), "xxxxx");
    EXPECT_NE(table.CellText8(0, 3).data(), outside.data());
    EXPECT_EQ(table.CellText8(1, 1), "alpha");
    EXPECT_NE(table.CellText8(1, 1).data(), data);
    EXPECT_EQ(table.RowCount(), 3);
}

TEST(TableControl, RowTextReadsWhatCellTextReads)
{
    TableControl table;
    Fill(table, {"a", "b", "c"}, {{"x", "", "z"}});
    table.SetCellText16(0, 2, u"wide");
    std::string_view texts[3] = {"-", "-", "-"};
    table.RowText8(0, texts);
    EXPECT_EQ(texts[0], "x");
    EXPECT_EQ(texts[1], "");
    EXPECT_EQ(texts[2], "z");
    std::string_view untouched[3] = {"-", "-", "-"};
    table.RowText8(1, untouched);
    table.RowText8(-1, untouched);
    EXPECT_EQ(untouched[0], "-");
}

TEST(TableControl, NewWideTextIsFilledInPlace)
{
    TableControl table;
    Fill(table, {"a", "b"}, {{"x", "y"}});
    table.SetRowCount(2);
    table.SetCellChecked(0, 1, true);
    char16_t* units = table.NewCellText16(0, 1, 3);
    ASSERT_NE(units, nullptr);
    std::copy_n(u"abc", 3, units);
    EXPECT_EQ(table.CellText16(0, 1), u"abc");
    EXPECT_TRUE(table.CellIsWide(0, 1));
    EXPECT_TRUE(table.CellChecked(0, 1));
    // Texts past the packed length go to the long-text table, filled the same way.
    const std::size_t longLength = 300000;
    units = table.NewCellText16(1, 2, longLength);
    ASSERT_NE(units, nullptr);
    std::fill_n(units, longLength, u'q');
    EXPECT_EQ(table.CellText16(1, 2), std::u16string(longLength, u'q'));
    EXPECT_EQ(table.CellText16(0, 1), u"abc");
    EXPECT_EQ(table.NewCellText16(0, 2, 0), nullptr);
    EXPECT_TRUE(table.CellIsWide(0, 2));
    EXPECT_TRUE(table.CellIsEmpty(0, 2));
    EXPECT_EQ(table.NewCellText16(2, 1, 4), nullptr);
    EXPECT_EQ(table.NewCellText16(0, 3, 4), nullptr);
}

TEST(TableControl, CheckedAndValueCells)
{
    TableControl table;
    Fill(table, {"a"}, {{"text"}});
    EXPECT_EQ(table.CellValue(0, 1), kEmptyChoice);
    table.SetCellChecked(0, 1, true);
    EXPECT_TRUE(table.CellChecked(0, 1));
    EXPECT_EQ(table.CellText8(0, 1), "text");
    table.SetCellValue(0, 1, -42);
    EXPECT_EQ(table.CellValue(0, 1), -42);
    EXPECT_TRUE(table.CellChecked(0, 1));
    table.SetCellValue(0, 1, kEmptyChoice);
    EXPECT_EQ(table.CellValue(0, 1), kEmptyChoice);
    // In a choice column the empty value is an empty cell.
    TableColumn choice;
    choice.kind = kColumnChoice;
    table.AddColumn(choice);
    table.SetCellValue(0, 2, 3);
    EXPECT_FALSE(table.CellIsEmpty(0, 2));
    table.SetCellValue(0, 2, kEmptyChoice);
    EXPECT_TRUE(table.CellIsEmpty(0, 2));
}

struct TrimCase
{
    const char* name;
    const char* text;
    int mask;
    const char* expected;
    int removed;
};

class TableTrimCell : public testing::TestWithParam<TrimCase>
{};

TEST_P(TableTrimCell, TrimsBothWidths)
{
    const TrimCase& c = GetParam();
    TableControl table;
    Fill(table, {"a", "w"}, {{c.text, ""}});
    std::string text = c.text;
    table.SetCellText16(0, 2, std::u16string(text.begin(), text.end()));
    EXPECT_EQ(table.TrimCell(0, 1, c.mask), c.removed);
    EXPECT_EQ(table.CellText8(0, 1), c.expected);
    EXPECT_EQ(table.TrimCell(0, 2, c.mask), c.removed);
    std::string expected = c.expected;
    EXPECT_EQ(table.CellText16(0, 2), std::u16string(expected.begin(), expected.end()));
}

INSTANTIATE_TEST_SUITE_P(Masks, TableTrimCell,
                         testing::Values(TrimCase{"Leading", " \t a ", 1, "a ", 3},
                                         TrimCase{"Trailing", " a \t", 2, " a", 2},
                                         TrimCase{"Both", "  a b  ", 3, "a b", 4},
                                         TrimCase{"LineEnds", "x \r\ny\t\nz ", 4, "x\r\ny\nz", 3},
                                         TrimCase{"LineEndsKeepLeading", " x \n y", 4, " x\n y", 1},
                                         TrimCase{"ReduceSpaces", "a  b   c", 8, "a b c", 3},
                                         TrimCase{"ReduceKeepsTabs", "a\t\tb", 8, "a\t\tb", 0},
                                         TrimCase{"Everything", "  a  b \n c  ", 15, "a b\n c", 6},
                                         TrimCase{"Nothing", "abc", 15, "abc", 0}),
                         [](const testing::TestParamInfo<TrimCase>& param) {
                             return std::string(param.param.name);
                         });

TEST(TableControl, SetRowHiddenReportsOnlyChanges)
{
    TableControl table;
    Fill(table, {"a"}, {{"1"}, {"2"}, {"3"}});
    table.SetRowSelected(1, true);
    EXPECT_TRUE(table.SetRowHidden(1, true));
    EXPECT_FALSE(table.SetRowHidden(1, true));
    EXPECT_FALSE(table.SetRowHidden(7, true));
    EXPECT_FALSE(table.IsRowSelected(1));
    EXPECT_EQ(table.SelectedRowCount(), 0);
    EXPECT_EQ(table.VisibleRowCount(), 2);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"1", "3", "2"}));
    EXPECT_TRUE(table.SetRowHidden(1, false));
    EXPECT_EQ(table.VisibleRowCount(), 3);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"1", "2", "3"}));
}

TEST(TableControl, SelectedRowsFollowTheSelectionMode)
{
    TableControl table;
    Fill(table, {"a"}, {{"1"}, {"2"}});
    table.SetSelectionMode(SelectionMode::SingleRow);
    table.SetFocusCell(1, 1);
    EXPECT_EQ(table.SelectedRows(), (std::vector<int>{1}));
    table.SetSelectionMode(SelectionMode::MultipleRows);
    table.SetRowSelected(0, true);
    table.SetRowSelected(1, true);
    EXPECT_EQ(table.SelectedRows(), (std::vector<int>{0, 1}));
}

TEST(TableControl, InsertRowsShiftsFocusAndKeepsStorageOrderWhenUnsorted)
{
    TableControl table;
    Fill(table, {"a"}, {{"0"}, {"1"}, {"2"}});
    table.SetFocusCell(1, 1);
    ASSERT_TRUE(table.InsertRows(1, 2));
    EXPECT_FALSE(table.InsertRows(9, 1));
    EXPECT_EQ(table.RowCount(), 5);
    EXPECT_EQ(table.FocusRow(), 3);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"0", "", "", "1", "2"}));
    ExpectOrderInvariants(table);
}

TEST(TableControl, InsertRowsOnASortedTableGoesBeforeTheRowAtThatIndex)
{
    TableControl table;
    Fill(table, {"a"}, {{"c"}, {"a"}, {"b"}});
    table.SetSort(1, true);
    ASSERT_TRUE(table.InsertRows(2, 1)); // before "b", shown second
    table.SetCellText8(2, 1, "new");
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"a", "new", "b", "c"}));
    ExpectOrderInvariants(table);
}

TEST(TableControl, DeleteRowsRemapsEverything)
{
    TableControl table;
    Fill(table, {"a"}, {{"0"}, {"1"}, {"2"}, {"3"}, {"4"}});
    table.SetRowSelected(1, true);
    table.SetRowSelected(4, true);
    table.SetFocusCell(3, 1);
    table.SetTrailingRow(4);
    std::vector<int> doomed{0, 2, 2, 99};
    table.DeleteRows(doomed);
    EXPECT_EQ(table.RowCount(), 3);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"1", "3", "4"}));
    EXPECT_EQ(table.FocusRow(), 1);
    EXPECT_EQ(table.TrailingRow(), 2);
    EXPECT_EQ(table.SelectedRowCount(), 2);
    EXPECT_TRUE(table.DeleteRows(1, 100));
    EXPECT_EQ(table.RowCount(), 1);
    EXPECT_EQ(table.FocusRow(), -1);
    EXPECT_EQ(table.TrailingRow(), -1);
}

TEST(TableControl, MoveRowCarriesCellsAndFlags)
{
    TableControl table;
    Fill(table, {"a"}, {{"0"}, {"1"}, {"2"}, {"3"}});
    table.SetRowSelected(0, true);
    table.SetFocusCell(0, 1);
    ASSERT_TRUE(table.MoveRow(0, 2));
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"1", "2", "0", "3"}));
    EXPECT_TRUE(table.IsRowSelected(2));
    EXPECT_EQ(table.FocusRow(), 2);
    ASSERT_TRUE(table.MoveRow(3, 0));
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"3", "1", "2", "0"}));
    EXPECT_FALSE(table.MoveRow(0, 4));
}

class VetoOwner : public TableControlOwner
{
public:
    bool AllowDuplicateRow(int sourceRow) override
    {
        asked.push_back(sourceRow);
        return sourceRow != 0;
    }
    void OnRowDuplicated(int sourceRow, int newRow) override
    {
        done.emplace_back(sourceRow, newRow);
    }
    std::vector<int> asked;
    std::vector<std::pair<int, int>> done;
};

TEST(TableControl, DuplicateRowAsksTheOwner)
{
    TableControl table;
    VetoOwner owner;
    table.SetOwner(&owner);
    Fill(table, {"a", "b"}, {{"0", "x"}, {"1", "y"}});
    EXPECT_EQ(table.DuplicateRow(0), -1);
    EXPECT_EQ(table.DuplicateRow(1), 2);
    EXPECT_EQ(table.DuplicateRow(5), -1);
    EXPECT_EQ(owner.asked, (std::vector<int>{0, 1}));
    ASSERT_EQ(owner.done.size(), 1u);
    EXPECT_EQ(owner.done[0], std::make_pair(1, 2));
    EXPECT_EQ(table.CellText8(2, 2), "y");
    // The copy is independent of its source.
    table.SetCellText8(2, 2, "changed");
    EXPECT_EQ(table.CellText8(1, 2), "y");
}

TEST(TableControl, DuplicateOnASortedTableShowsTheCopyBelowItsSource)
{
    TableControl table;
    Fill(table, {"a"}, {{"b"}, {"a"}, {"c"}});
    table.SetSort(1, false);
    int copy = table.DuplicateRow(0);
    ASSERT_EQ(copy, 1);
    EXPECT_EQ(table.DisplayPosition(copy), table.DisplayPosition(0) + 1);
    ExpectOrderInvariants(table);
}

TEST(TableControl, ShuffleKeepsEveryRowAndUnsorts)
{
    TableControl table;
    Fill(table, {"a"}, {});
    table.SetRowCount(50);
    for (int r = 0; r < 50; ++r)
        table.SetCellText8(r, 1, std::to_string(r));
    table.SetSort(1, true);
    const Texts sorted = ColumnInDisplayOrder(table, 1);
    table.Shuffle(7);
    EXPECT_EQ(table.SortColumn(), -1);
    Texts texts = ColumnInDisplayOrder(table, 1);
    EXPECT_NE(texts, sorted);
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(texts, sorted);
    ExpectOrderInvariants(table);
}

TEST(TableControl, ColumnsInsertDeleteAndMoveWithTheirCells)
{
    TableControl table;
    Fill(table, {"a", "b", "c"}, {{"1", "2", "3"}});
    table.SetFocusCell(0, 3);
    TableColumn inserted;
    inserted.headerText = "new";
    ASSERT_TRUE(table.InsertColumn(2, inserted));
    EXPECT_EQ(table.CellText8(0, 3), "2");
    EXPECT_EQ(table.CellText8(0, 2), "");
    EXPECT_EQ(table.FocusColumn(), 4);
    ASSERT_TRUE(table.MoveColumn(4, 1));
    EXPECT_EQ(table.ColumnNameUtf8(1), "c");
    EXPECT_EQ(table.CellText8(0, 1), "3");
    EXPECT_EQ(table.CellText8(0, 2), "1");
    EXPECT_EQ(table.FocusColumn(), 1);
    ASSERT_TRUE(table.DeleteColumn(1));
    EXPECT_EQ(table.FocusColumn(), -1);
    EXPECT_EQ(table.ColumnNameUtf8(1), "a");
    EXPECT_FALSE(table.MoveColumn(0, 1));
}

TEST(TableControl, GrowingAheadAndShrinkingKeepsCells)
{
    TableControl table;
    Fill(table, {"a"}, {});
    table.SetRowCount(1000);
    table.SetCellText8(999, 1, "last");
    table.SetCellText8(10, 1, "ten");
    table.SetRowCount(11);
    EXPECT_EQ(table.RowCount(), 11);
    EXPECT_EQ(table.CellText8(10, 1), "ten");
    table.SetRowCount(20);
    EXPECT_EQ(table.CellText8(19, 1), "");
    ExpectOrderInvariants(table);
}

// Random operations, checking after each one that the display order is a permutation, that
// positions agree with it, that hidden rows follow the visible ones and that cells travel
// with their rows.
TEST(TableControl, RandomOperationsKeepTheInvariants)
{
    TableControl table;
    Fill(table, {"id", "v"}, {});
    std::mt19937 random(12345);
    int nextId = 0;
    auto label = [&](int row) {
        table.SetCellText8(row, 1, std::to_string(nextId++));
        table.SetCellText8(row, 2, std::to_string(random() % 7));
    };
    table.SetRowCount(30);
    for (int r = 0; r < 30; ++r)
        label(r);
    for (int step = 0; step < 600; ++step) {
        const int count = table.RowCount();
        const int op = static_cast<int>(random() % 12);
        const int row = count > 0 ? static_cast<int>(random() % count) : 0;
        switch (op) {
        case 0:
            if (table.InsertRows(row, 1 + static_cast<int>(random() % 3)))
                for (int r = row; r < table.RowCount() && table.CellText8(r, 1).empty(); ++r)
                    label(r);
            break;
        case 1:
            table.DeleteRows(row, 1 + static_cast<int>(random() % 2));
            break;
        case 2:
            table.SetRowHidden(row, random() % 2 == 0, random() % 2 == 0);
            if (random() % 3 == 0)
                table.Redraw();
            break;
        case 3:
            table.SetSort(1 + static_cast<int>(random() % 2), random() % 2 == 0);
            break;
        case 4:
            table.Unsort();
            break;
        case 5:
            if (count > 0)
                table.MoveRow(row, static_cast<int>(random() % count));
            break;
        case 6: {
            int copy = table.DuplicateRow(row);
            if (copy >= 0) {
                EXPECT_EQ(table.CellText8(copy, 2), table.CellText8(row, 2));
                table.SetCellText8(copy, 1, std::to_string(nextId++));
            }
            break;
        }
        case 7:
            table.SetRowSelected(row, true);
            break;
        case 8:
            table.SetTrailingRow(random() % 4 == 0 ? row : -1);
            break;
        case 9:
            table.SetRowCount(count + static_cast<int>(random() % 5) - 2);
            for (int r = count; r < table.RowCount(); ++r)
                label(r);
            break;
        case 10:
            table.Shuffle(random());
            table.CompactText();
            break;
        case 11: {
            std::vector<int> sources{row, static_cast<int>(random() % (count + 1))};
            for (int copy : table.DuplicateRows(sources))
                table.SetCellText8(copy, 1, std::to_string(nextId++));
            break;
        }
        }
        table.Redraw();
        ExpectOrderInvariants(table);
        // Ids stay unique: no row was lost or doubled by a remap.
        std::set<std::string> ids;
        for (int r = 0; r < table.RowCount(); ++r)
            ids.insert(std::string(table.CellText8(r, 1)));
        ASSERT_EQ(static_cast<int>(ids.size()), table.RowCount()) << "step " << step;
        if (HasFailure())
            FAIL() << "after step " << step << " (operation " << op << ")";
    }
}

TEST(TableControl, MemoryStaysNearEightBytesPerCell)
{
    TableControl table;
    Fill(table, {"a", "b", "c", "d"}, {});
    auto buffer = std::make_shared<std::string>(std::string(400000, 'x'));
    TextBufferHandle handle = table.AdoptTextBuffer(buffer);
    // Grown ahead in a few steps, as the loader does.
    table.SetRowCount(25000);
    table.SetRowCount(90000);
    table.SetRowCount(100000);
    for (int r = 0; r < 100000; ++r)
        for (int c = 1; c <= 4; ++c)
            table.SetCellText8Borrowed(r, c, std::string_view(buffer->data() + r, 3), handle);
    TableMemoryUsage usage = table.MemoryUsage();
    EXPECT_LE(usage.cellBytes, 100000u * 4 * 8 * 5 / 4);
    EXPECT_LE(usage.rowBytes, 100000u * 9 * 5 / 4);
    EXPECT_EQ(usage.arenaBytes, 0u);
}

TEST(TableControl, AddedRowOnASortedTableShowsBeforeTheHiddenRows)
{
    TableControl table;
    Fill(table, {"a"}, {{"c"}, {"a"}, {"b"}});
    table.SetSort(1, true);
    table.SetRowHidden(1, true);
    EXPECT_EQ(table.AddRow(), 3);
    table.SetCellText8(3, 1, "new");
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"b", "c", "new", "a"}));
    EXPECT_EQ(table.VisibleRowCount(), 3);
    ExpectOrderInvariants(table);
}

TEST(TableControl, DuplicateRowsPutsEachCopyBelowItsSource)
{
    TableControl table;
    VetoOwner owner;
    table.SetOwner(&owner);
    Fill(table, {"a"}, {{"0"}, {"1"}, {"2"}, {"3"}});
    table.SetRowSelected(2, true);
    table.SetFocusCell(3, 1);
    std::vector<int> sources{3, 0, 2, 2, 9};
    std::vector<int> copies = table.DuplicateRows(sources);
    // Row 0 is vetoed by the owner.
    EXPECT_EQ(copies, (std::vector<int>{3, 5}));
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"0", "1", "2", "2", "3", "3"}));
    EXPECT_TRUE(table.IsRowSelected(2));
    EXPECT_FALSE(table.IsRowSelected(3));
    EXPECT_EQ(table.FocusRow(), 4);
    EXPECT_EQ(owner.done, (std::vector<std::pair<int, int>>{{2, 3}, {4, 5}}));
    ExpectOrderInvariants(table);
}

TEST(TableControl, DuplicateRowsOnASortedTableShowsCopiesAfterTheirSources)
{
    TableControl table;
    Fill(table, {"a"}, {{"b"}, {"a"}, {"c"}});
    table.SetSort(1, false);
    table.SetRowHidden(1, true);
    std::vector<int> sources{0, 1};
    std::vector<int> copies = table.DuplicateRows(sources);
    ASSERT_EQ(copies.size(), 2u);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"c", "b", "b", "a", "a"}));
    // The copy of a hidden row is shown; the hidden source stays last.
    EXPECT_EQ(table.VisibleRowCount(), 4);
    ExpectOrderInvariants(table);
}

TEST(TableControl, CompactTextDropsWhatNoCellShows)
{
    TableControl table;
    Fill(table, {"a", "b"}, {});
    auto buffer = std::make_shared<const std::string>(std::string(1000, 'x'));
    TextBufferHandle handle = table.AdoptTextBuffer(buffer);
    table.SetRowCount(100);
    for (int r = 0; r < 100; ++r) {
        table.SetCellText8Borrowed(r, 1, std::string_view(buffer->data() + r, 5), handle);
        table.SetCellText8(r, 2, std::string(100, 'e'));
    }
    std::string longText(300000, 'L');
    table.SetCellText8(0, 2, longText);
    table.SetCellText8(1, 2, longText + "!");
    table.SetCellChecked(5, 2, true);
    // Every cell of column 1 is converted to UTF-16; most of column 2 is edited over.
    for (int r = 0; r < 100; ++r)
        table.SetCellText16(r, 1, u"w" + std::u16string(1, static_cast<char16_t>(u'0' + r % 10)));
    for (int r = 2; r < 100; ++r)
        table.SetCellText8(r, 2, std::to_string(r));
    table.SetCellText8(1, 2, "short");
    const TableMemoryUsage before = table.MemoryUsage();
    EXPECT_GE(buffer.use_count(), 2);
    table.CompactText();
    const TableMemoryUsage after = table.MemoryUsage();
    EXPECT_EQ(buffer.use_count(), 1);
    EXPECT_EQ(after.adoptedBytes, 0u);
    EXPECT_LT(after.sideBytes, before.sideBytes);
    for (int r = 0; r < 100; ++r)
        EXPECT_EQ(table.CellText16(r, 1),
                  u"w" + std::u16string(1, static_cast<char16_t>(u'0' + r % 10)));
    EXPECT_EQ(table.CellText8(0, 2), longText);
    EXPECT_EQ(table.CellText8(1, 2), "short");
    EXPECT_EQ(table.CellText8(57, 2), "57");
    EXPECT_TRUE(table.CellChecked(5, 2));
    // The store keeps working after the move.
    table.SetCellText8(3, 2, "again");
    table.CompactText();
    EXPECT_EQ(table.CellText8(3, 2), "again");
    EXPECT_EQ(table.CellText8(0, 2), longText);
}

} // namespace
} // namespace quirnel
