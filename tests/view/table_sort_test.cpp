#include "tests/view/table_test_util.h"
#include "view/table_control.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace quirnel {
namespace {

using test::ColumnInDisplayOrder;
using test::ExpectOrderInvariants;
using test::Fill;
using test::MapStore;
using Texts = std::vector<std::string>;

class CountingOwner : public TableControlOwner
{
public:
    void OnSortChanged() override { ++sortChanges; }
    int sortChanges = 0;
};

TEST(TableSort, PersistedMinusThreeSortsThirdColumnDescending)
{
    TableControl table;
    Fill(table, {"a", "b", "c", "d"},
         {{"1", "x", "q", "7"}, {"2", "z", "r", "8"}, {"3", "y", "s", "9"}});
    ASSERT_EQ(table.ColumnCount(), 5);
    table.SetSettingsName("Grid");
    MapStore store;
    store.values["GridSort"] = "-3";
    table.LoadViewState(store);
    EXPECT_EQ(table.SortColumn(), 2);
    EXPECT_FALSE(table.SortAscending());
    EXPECT_EQ(ColumnInDisplayOrder(table, 2), (Texts{"z", "y", "x"}));
    // "0" is no sort: storage order.
    TableControl unsorted;
    Fill(unsorted, {"a"}, {{"b"}, {"a"}, {"c"}});
    unsorted.SetSettingsName("Grid");
    store.values["GridSort"] = "0";
    unsorted.LoadViewState(store);
    EXPECT_EQ(unsorted.SortColumn(), -1);
    EXPECT_EQ(ColumnInDisplayOrder(unsorted, 1), (Texts{"b", "a", "c"}));
}

TEST(TableSort, TiesFollowThePreviousSortColumn)
{
    TableControl table;
    Fill(table, {"key", "other"}, {{"b", "3"}, {"a", "2"}, {"b", "1"}, {"a", "4"}, {"b", "2"}});
    ASSERT_TRUE(table.SetSort(2, true));
    ASSERT_TRUE(table.SetSort(1, true));
    EXPECT_EQ(table.PreviousSortColumn(0), 2);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"a", "a", "b", "b", "b"}));
    EXPECT_EQ(ColumnInDisplayOrder(table, 2), (Texts{"2", "4", "1", "2", "3"}));
}

TEST(TableSort, TiesWithoutPreviousColumnKeepStorageOrder)
{
    TableControl table;
    Fill(table, {"key", "id"}, {{"x", "0"}, {"x", "1"}, {"a", "2"}, {"x", "3"}, {"x", "4"}});
    ASSERT_TRUE(table.SetSort(1, true));
    EXPECT_EQ(ColumnInDisplayOrder(table, 2), (Texts{"2", "0", "1", "3", "4"}));
    ASSERT_TRUE(table.SetSort(1, false));
    // Descending reverses the whole order, ties included.
    EXPECT_EQ(ColumnInDisplayOrder(table, 2), (Texts{"4", "3", "1", "0", "2"}));
}

TEST(TableSort, CaseInsensitiveTiesAppleAndAppleThenSecondaryKey)
{
    TableControl table;
    Fill(table, {"fruit", "n"}, {{"apple", "1"}, {"Apple", "2"}, {"banana", "0"}});
    table.SetColumnSortMethod(1, kSortTextNoCase);
    ASSERT_TRUE(table.SetSort(1, true));
    // Equal under method 0: storage order decides.
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"apple", "Apple", "banana"}));
    table.SetColumnSortMethod(1, kSortTextCase);
    table.Sort();
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"Apple", "apple", "banana"}));
}

TEST(TableSort, CaseInsensitiveFoldsWideLetters)
{
    TableControl table;
    Fill(table, {"w"}, {});
    table.SetRowCount(3);
    table.SetCellText16(0, 1, u"\u00e9t\u00e9 2");
    table.SetCellText16(1, 1, u"\u00c9T\u00c9 1");
    table.SetCellText16(2, 1, u"abc");
    ASSERT_TRUE(table.SetSort(1, true));
    EXPECT_EQ(table.CellText16(table.RowAtDisplayPosition(0), 1), u"abc");
    EXPECT_EQ(table.CellText16(table.RowAtDisplayPosition(1), 1), u"\u00c9T\u00c9 1");
}

class TableSortDirection : public testing::TestWithParam<bool>
{};

TEST_P(TableSortDirection, HiddenThenTrailingRowsComeLast)
{
    const bool ascending = GetParam();
    TableControl table;
    Fill(table, {"v"}, {{"c"}, {"a"}, {"trail"}, {"b"}, {"h2"}, {"d"}, {"h1"}});
    table.SetTrailingRow(2);
    table.SetRowHidden(4, true);
    table.SetRowHidden(6, true);
    ASSERT_TRUE(table.SetSort(1, ascending));
    Texts shown = ColumnInDisplayOrder(table, 1);
    Texts visible(shown.begin(), shown.begin() + 4);
    EXPECT_EQ(visible, ascending ? (Texts{"a", "b", "c", "d"}) : (Texts{"d", "c", "b", "a"}));
    EXPECT_EQ(shown[6], "trail");
    EXPECT_TRUE(table.IsRowHidden(table.RowAtDisplayPosition(4)));
    EXPECT_TRUE(table.IsRowHidden(table.RowAtDisplayPosition(5)));
    EXPECT_EQ(table.VisibleRowCount(), 5);
    EXPECT_EQ(table.RowAtViewIndex(4), 2);
    ExpectOrderInvariants(table);
}

INSTANTIATE_TEST_SUITE_P(Both, TableSortDirection, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& param) {
                             return std::string(param.param ? "Ascending" : "Descending");
                         });

TEST(TableSort, SetSortRefusesBadColumnsIgnoresRepeatsAndUnsorts)
{
    TableControl table;
    CountingOwner owner;
    table.SetOwner(&owner);
    Fill(table, {"v", "locked"}, {{"b", "1"}, {"a", "2"}});
    table.MutableColumn(2).flags |= COLUMN_NO_SORT;
    EXPECT_FALSE(table.SetSort(3, true));
    EXPECT_FALSE(table.SetSort(-1, true));
    EXPECT_FALSE(table.SetSort(2, true));
    EXPECT_FALSE(table.SetSort(0, true)); // the index column
    EXPECT_TRUE(table.SetSort(1, false));
    EXPECT_TRUE(table.SetSort(1, false));
    EXPECT_EQ(owner.sortChanges, 1);
    EXPECT_EQ(table.SortColumn(), 1);
    // "Don't sort rows" restores storage order.
    table.Unsort();
    EXPECT_EQ(table.SortColumn(), -1);
    EXPECT_TRUE(table.SortAscending());
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"b", "a"}));
    EXPECT_EQ(owner.sortChanges, 2);
}

TEST(TableSort, DeletingAColumnClearsTheSortColumnsNamingIt)
{
    TableControl table;
    Fill(table, {"a", "b", "c"}, {{"1", "2", "3"}});
    table.SetSort(2, true);
    table.SetSort(3, false);
    table.SetSort(1, false);
    ASSERT_EQ(table.PreviousSortColumn(0), 3);
    ASSERT_EQ(table.PreviousSortColumn(1), 2);
    ASSERT_TRUE(table.DeleteColumn(1));
    EXPECT_EQ(table.SortColumn(), -1);
    EXPECT_TRUE(table.SortAscending());
    // The others shift with their columns.
    EXPECT_EQ(table.PreviousSortColumn(0), 2);
    EXPECT_EQ(table.PreviousSortColumn(1), 1);
    ASSERT_TRUE(table.DeleteColumn(2));
    EXPECT_EQ(table.PreviousSortColumn(0), -1);
}

TEST(TableSort, DeletingTheSortColumnKeepsTheShownOrderUntilUnsorted)
{
    TableControl table;
    Fill(table, {"key", "name"}, {{"3", "c"}, {"1", "a"}, {"4", "d"}, {"2", "b"}});
    table.SetSort(1, false);
    ASSERT_EQ(ColumnInDisplayOrder(table, 2), (Texts{"d", "c", "b", "a"}));
    ASSERT_TRUE(table.DeleteColumn(1));
    EXPECT_EQ(table.SortColumn(), -1);
    EXPECT_FALSE(table.ShowsFileOrder());
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"d", "c", "b", "a"}));

    // Rows hidden and shown again come back after the shown ones; nothing reverts to file order.
    table.SetRowHidden(0, true);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"d", "b", "a", "c"}));
    table.SetRowHidden(0, false);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"d", "b", "a", "c"}));
    // New rows go where the caller puts them, else before the row holding their index.
    ASSERT_TRUE(table.InsertRows(1, 1, 1));
    table.SetCellText8(1, 1, "new");
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"d", "new", "b", "a", "c"}));
    ASSERT_GE(table.DuplicateRow(0), 0);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"d", "new", "b", "a", "c", "c"}));
    ExpectOrderInvariants(table);

    table.Unsort();
    EXPECT_TRUE(table.ShowsFileOrder());
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"c", "c", "new", "a", "d", "b"}));
}

TEST(TableSort, KeptOrderEndsWithUnsortOrAShuffle)
{
    TableControl table;
    Fill(table, {"key", "name", "more"}, {{"2", "b", "y"}, {"1", "a", "x"}});
    table.SetSort(1, true);
    ASSERT_TRUE(table.DeleteColumn(1));
    ASSERT_FALSE(table.ShowsFileOrder());
    table.Unsort();
    EXPECT_TRUE(table.ShowsFileOrder());
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"b", "a"}));
    table.SetSort(1, true);
    ASSERT_TRUE(table.DeleteColumn(1));
    ASSERT_FALSE(table.ShowsFileOrder());
    table.Shuffle(7);
    EXPECT_TRUE(table.ShowsFileOrder());
}

TEST(TableSort, ReorderingAKeptOrderMovesRowsOnScreen)
{
    TableControl table;
    Fill(table, {"key", "name"}, {{"2", "b"}, {"3", "c"}, {"1", "a"}});
    table.SetSort(1, true);
    ASSERT_TRUE(table.DeleteColumn(1));
    ASSERT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"a", "b", "c"}));
    // Rows 2 ("a") and 0 ("b") trade storage places, and with them their places on screen.
    const int from[] = {2, 1, 0};
    ASSERT_TRUE(table.ReorderRows(from));
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"b", "a", "c"}));
    ExpectOrderInvariants(table);
}

TEST(TableSort, TheSortColumnFollowsItsColumn)
{
    TableControl table;
    Fill(table, {"a", "b", "c"}, {{"1", "2", "3"}});
    table.SetSort(2, true);
    TableColumn inserted;
    ASSERT_TRUE(table.InsertColumn(1, inserted));
    EXPECT_EQ(table.SortColumn(), 3);
    ASSERT_TRUE(table.InsertColumn(4, inserted));
    EXPECT_EQ(table.SortColumn(), 3);
    ASSERT_TRUE(table.MoveColumn(3, 4));
    EXPECT_EQ(table.SortColumn(), 4);
    ASSERT_TRUE(table.MoveColumn(1, 5));
    EXPECT_EQ(table.SortColumn(), 3);
    ASSERT_TRUE(table.DeleteColumn(1));
    EXPECT_EQ(table.SortColumn(), 2);
    EXPECT_TRUE(table.SortAscending());
}

TEST(TableSort, NumericSecondaryKeyIsZeroPaddedText)
{
    TableControl table;
    Fill(table, {"k", "n"}, {{"x", "10"}, {"x", "9"}, {"x", "100"}, {"x", ""}});
    table.SetColumnSortMethod(2, kSortNumeric);
    table.SetSort(2, true);
    table.SetSort(1, true);
    // Padded to 24 characters, "9" < "10" < "100"; a blank pads to all zeros.
    EXPECT_EQ(ColumnInDisplayOrder(table, 2), (Texts{"", "9", "10", "100"}));

    table.SetColumnSortMethod(2, kSortTextCase);
    table.Sort();
    EXPECT_EQ(ColumnInDisplayOrder(table, 2), (Texts{"", "10", "100", "9"}));
}

struct MethodCase
{
    const char* name;
    int method;
    Texts input;
    Texts expected;
};

class TableSortMethod : public testing::TestWithParam<MethodCase>
{};

TEST_P(TableSortMethod, SortsAscending)
{
    TableControl table;
    Fill(table, {"v"}, {});
    const Texts& input = GetParam().input;
    table.SetRowCount(static_cast<int>(input.size()));
    for (std::size_t r = 0; r < input.size(); ++r)
        table.SetCellText8(static_cast<int>(r), 1, input[r]);
    table.SetColumnSortMethod(1, GetParam().method);
    table.SetDayFirst(true);
    table.SetSort(1, true);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Methods, TableSortMethod,
    testing::Values(
        MethodCase{
            "DatesAcrossLayouts",
            kSortDateTime,
            {"17/03/2024", "2024-03-16 23:59", "not a date", "17/03/2024 08:00", "1 Jan 1999"},
            {"not a date", "1 Jan 1999", "2024-03-16 23:59", "17/03/2024", "17/03/2024 08:00"}},
        MethodCase{"MemorySizesByBytes",
                   kSortMemory,
                   {"1.5 GB", "3.1 KB", "12 MB", "900", "2 kb"},
                   {"900", "2 kb", "3.1 KB", "12 MB", "1.5 GB"}},
        // Blanks and non-numbers read as 0 and tie with "0" in storage order.
        MethodCase{"BlanksAreZero",
                   kSortNumeric,
                   {"5", "", "-1e300", "0", "abc", "1,500.5", "-2"},
                   {"-1e300", "-2", "", "0", "abc", "5", "1,500.5"}},
        MethodCase{
            "ZeroCharactersStillCompareInFull",
            kSortTextNoCase,
            {std::string("abcdefghij\0b", 12), std::string("abcdefghij\0a", 12), "abcdefghij"},
            {"abcdefghij", std::string("abcdefghij\0a", 12), std::string("abcdefghij\0b", 12)}},
        MethodCase{"BlanksFirst",
                   kSortNumericLow,
                   {"5", "", "-1e300", "0", "abc", "1,500.5", "-2"},
                   {"", "-1e300", "-2", "0", "abc", "5", "1,500.5"}}),
    [](const testing::TestParamInfo<MethodCase>& param) { return std::string(param.param.name); });

TEST(TableSort, ChoiceColumnEmptyValueDependsOnMethod)
{
    TableControl table;
    TableColumn choice;
    choice.kind = kColumnChoice;
    table.AddColumn(choice);
    table.SetRowCount(3);
    table.SetCellValue(0, 1, 5);
    table.SetCellValue(1, 1, -7);
    // Row 2 keeps the empty value.
    table.SetColumnSortMethod(1, kSortNumeric);
    table.SetSort(1, true);
    EXPECT_EQ(table.RowAtDisplayPosition(0), 1);
    EXPECT_EQ(table.RowAtDisplayPosition(1), 2);
    table.SetColumnSortMethod(1, kSortNumericLow);
    table.Sort();
    EXPECT_EQ(table.RowAtDisplayPosition(0), 2);
}

TEST(TableSort, FocusRowIsKeptInView)
{
    TableControl table;
    Fill(table, {"n"}, {});
    table.SetRowCount(100);
    for (int r = 0; r < 100; ++r)
        table.SetCellText8(r, 1, std::to_string(r));
    table.SetColumnSortMethod(1, kSortNumeric);
    ViewGeometry geometry;
    geometry.completelyVisibleRows = 10;
    table.SetGeometry(geometry);
    table.SetFocusCell(3, 1);
    table.SetSort(1, false);
    // Row 3 is now at position 96: the view scrolls so that it is the last complete line.
    EXPECT_EQ(table.DisplayPosition(3), 96);
    EXPECT_EQ(table.Geometry().firstVisiblePosition, 87);
    table.SetSort(1, true);
    EXPECT_EQ(table.Geometry().firstVisiblePosition, 3);
}

TEST(TableSort, ChangingTheSortMethodOfTheSortColumnSortsAgain)
{
    TableControl table;
    Fill(table, {"n"}, {{"10"}, {"9"}});
    table.SetSort(1, true);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"10", "9"}));
    EXPECT_TRUE(
        table.HandleCommand(static_cast<int>(GridCommand::SortMethodBase) + kSortNumeric, -1, 1));
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"9", "10"}));
}

TEST(TableSort, ShowingRowsAgainOnASortedTablePutsThemInPlace)
{
    TableControl table;
    Fill(table, {"v"}, {{"d"}, {"b"}, {"a"}, {"c"}});
    table.SetSort(1, true);
    table.SetRowHidden(1, true, true);
    table.SetRowHidden(3, true, true);
    table.Redraw();
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"a", "d", "b", "c"}));
    table.SetRowHidden(1, false);
    table.SetRowHidden(3, false);
    EXPECT_EQ(ColumnInDisplayOrder(table, 1), (Texts{"a", "b", "c", "d"}));
}

// The sort against a plain model of its rules on random short texts with long shared
// prefixes, so that every refinement path (prefix windows, runs of equal texts, padded and
// folded secondary keys) meets a reference.
struct ModelCase
{
    const char* name;
    int method;
    int secondaryMethod; ///< -1: no previous sort column
    bool wide = false;
};

class TableSortModel : public testing::TestWithParam<ModelCase>
{};

std::string Folded(std::string text)
{
    for (char& ch : text)
        if (ch >= 'A' && ch <= 'Z')
            ch = static_cast<char>(ch + 32);
    return text;
}

TEST_P(TableSortModel, MatchesTheRules)
{
    const ModelCase& c = GetParam();
    std::mt19937 random(99);
    const char* pieces[] = {"", "a", "A", "b", "0", "1", "9", " ", "abcdefgh", "ABCDEFGH", "x"};
    auto randomText = [&]() {
        std::string text;
        int parts = static_cast<int>(random() % 5);
        for (int p = 0; p < parts; ++p)
            text += pieces[random() % std::size(pieces)];
        return text;
    };
    TableControl table;
    Fill(table, {"primary", "secondary"}, {});
    const int rows = 400;
    table.SetRowCount(rows);
    std::vector<std::string> primary(rows);
    std::vector<std::string> secondary(rows);
    for (int r = 0; r < rows; ++r) {
        primary[r] = randomText();
        secondary[r] = randomText();
        if (c.wide) {
            table.SetCellText16(r, 1, std::u16string(primary[r].begin(), primary[r].end()));
            table.SetCellText16(r, 2, std::u16string(secondary[r].begin(), secondary[r].end()));
        } else {
            table.SetCellText8(r, 1, primary[r]);
            table.SetCellText8(r, 2, secondary[r]);
        }
    }
    table.SetColumnSortMethod(1, c.method);
    if (c.secondaryMethod >= 0) {
        table.SetColumnSortMethod(2, c.secondaryMethod);
        table.SetSort(2, true);
    }
    table.SetSort(1, true);

    const bool fold = c.method == kSortTextNoCase;
    auto secondaryKey = [&](int r) {
        if (c.secondaryMethod < 0) {
            char text[16];
            std::snprintf(text, sizeof text, "%06d", r);
            return std::string(text);
        }
        std::string text = secondary[static_cast<std::size_t>(r)];
        bool padded = c.secondaryMethod == kSortNumeric ||
                      (c.secondaryMethod == kSortNumericLow && !text.empty());
        if (padded && text.size() < 24)
            text.insert(0, 24 - text.size(), '0');
        return text;
    };
    std::vector<int> expected(rows);
    std::iota(expected.begin(), expected.end(), 0);
    std::sort(expected.begin(), expected.end(), [&](int a, int b) {
        std::string pa = primary[static_cast<std::size_t>(a)];
        std::string pb = primary[static_cast<std::size_t>(b)];
        std::string sa = secondaryKey(a);
        std::string sb = secondaryKey(b);
        if (fold) {
            pa = Folded(pa);
            pb = Folded(pb);
            sa = Folded(sa);
            sb = Folded(sb);
        }
        if (pa != pb)
            return pa < pb;
        if (sa != sb)
            return sa < sb;
        return a < b;
    });
    std::vector<int> actual;
    for (int p = 0; p < rows; ++p)
        actual.push_back(table.RowAtDisplayPosition(p));
    EXPECT_EQ(actual, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Methods, TableSortModel,
    testing::Values(ModelCase{"NoCaseAlone", kSortTextNoCase, -1},
                    ModelCase{"CaseAlone", kSortTextCase, -1},
                    ModelCase{"NoCaseThenText", kSortTextNoCase, kSortTextNoCase},
                    ModelCase{"CaseThenText", kSortTextCase, kSortTextCase},
                    ModelCase{"NoCaseThenPadded", kSortTextNoCase, kSortNumeric},
                    ModelCase{"CaseThenPaddedBlank", kSortTextCase, kSortNumericLow},
                    ModelCase{"WideNoCaseThenPadded", kSortTextNoCase, kSortNumeric, true},
                    ModelCase{"WideCaseThenText", kSortTextCase, kSortTextCase, true}),
    [](const testing::TestParamInfo<ModelCase>& param) { return std::string(param.param.name); });

} // namespace
} // namespace quirnel
