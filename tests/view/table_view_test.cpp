#include "tests/view/table_test_util.h"
#include "view/table_control.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

using test::Fill;
using test::MapStore;
using Texts = std::vector<std::string>;

Texts TextsOf(const std::vector<MenuEntry>& menu)
{
    Texts texts;
    for (const MenuEntry& entry : menu)
        texts.push_back(entry.text);
    return texts;
}

const MenuEntry* Find(const std::vector<MenuEntry>& menu, const std::string& text)
{
    for (const MenuEntry& entry : menu)
        if (entry.text == text)
            return &entry;
    return nullptr;
}

class MenuOwner : public TableControlOwner
{
public:
    void AddColumnMenuEntries(int column, std::vector<MenuEntry>& entries) override
    {
        MenuEntry entry;
        entry.text = "Owner entry " + std::to_string(column);
        entry.command = 16190;
        entries.push_back(entry);
    }
    bool ClipboardHasText() override { return clipboard; }
    bool HasColumnSearch() override { return searched; }
    bool clipboard = true;
    bool searched = true;
};

TEST(TableMenus, HeaderMenuWithoutRowsOffersNoSortOrWholeColumnEntries)
{
    TableControl table;
    MenuOwner owner;
    table.SetOwner(&owner);
    table.SetStyle(GRID_PASTE_NEW_ROWS);
    Fill(table, {"a"}, {});
    EXPECT_EQ(TextsOf(table.HeaderMenu(1)),
              (Texts{"Column width: maximize", "Column width: minimize", "Paste new rows",
                     "Owner entry 1"}));
}

TEST(TableMenus, HeaderMenuOfATextColumnWithRows)
{
    TableControl table;
    MenuOwner owner;
    table.SetOwner(&owner);
    table.SetStyle(GRID_PASTE_NEW_ROWS);
    Fill(table, {"a"}, {{"1"}, {"2"}});
    table.MutableColumn(1).flags |= COLUMN_CHOOSE_ALIGN | COLUMN_CHOOSE_SORT | COLUMN_RIGHT;
    table.SetColumnSortMethod(1, kSortMemory);
    table.SetSort(1, true);
    std::vector<MenuEntry> menu = table.HeaderMenu(1);
    EXPECT_EQ(
        TextsOf(menu),
        (Texts{"Sort ascending", "Sort descending", "Don't sort rows", "Column width: maximize",
               "Column width: minimize", "Copy entire column to clipboard", "Paste new rows",
               "Search column", "Search column/continue\tCtrl+N", "Set entire column",
               "Trim column whitespace", "Owner entry 1", "Column options"}));
    const MenuEntry& options = menu.back();
    ASSERT_EQ(TextsOf(options.submenu), (Texts{"Alignment", "Sort method"}));
    const MenuEntry& alignment = options.submenu[0];
    EXPECT_EQ(TextsOf(alignment.submenu), (Texts{"Left", "Center", "Right"}));
    EXPECT_TRUE(alignment.submenu[2].checked);
    EXPECT_EQ(alignment.submenu[2].mark, MenuMark::Radio);
    const MenuEntry& methods = options.submenu[1];
    EXPECT_EQ(TextsOf(methods.submenu),
              (Texts{"Text (case insensitive)", "Text (case sensitive)", "Numeric (blanks=0)",
                     "Numeric (blanks=-9999)", "Date/time", "Memory (e.g. 3.1 KB)"}));
    const int base = static_cast<int>(GridCommand::SortMethodBase);
    EXPECT_EQ(methods.submenu[1].command, base + 4);
    EXPECT_EQ(methods.submenu[4].command, base + 2);
    for (const MenuEntry& entry : methods.submenu)
        EXPECT_EQ(entry.checked, entry.command == base + kSortMemory) << entry.text;
}

TEST(TableMenus, HeaderMenuConditionsPerKindAndFlag)
{
    TableControl table;
    MenuOwner owner;
    owner.clipboard = false;
    owner.searched = false;
    table.SetOwner(&owner);
    table.SetStyle(GRID_PASTE_NEW_ROWS | GRID_NO_CTRL_N_TEXT);
    TableColumn check;
    check.kind = kColumnCheck;
    table.AddColumn(check);
    TableColumn locked;
    locked.flags = COLUMN_NO_SORT | COLUMN_READ_ONLY | COLUMN_NO_SEARCH | COLUMN_RESETTABLE;
    locked.editTemplateFlags = COLUMN_READ_ONLY;
    table.AddColumn(locked);
    TableColumn choice;
    choice.kind = kColumnChoice;
    table.AddColumn(choice);
    table.SetRowCount(2);
    EXPECT_EQ(TextsOf(table.HeaderMenu(1)),
              (Texts{"Sort ascending", "Sort descending", "Column width: minimize", "Check all",
                     "Uncheck all", "Toggle all", "Owner entry 1"}));
    EXPECT_EQ(TextsOf(table.HeaderMenu(2)),
              (Texts{"Column width: maximize", "Column width: minimize", "Reset entire column",
                     "Owner entry 2"}));
    EXPECT_EQ(TextsOf(table.HeaderMenu(3)),
              (Texts{"Sort ascending", "Sort descending", "Column width: maximize",
                     "Column width: minimize", "Copy entire column to clipboard",
                     "Set entire column", "Owner entry 3"}));
    EXPECT_TRUE(table.HeaderMenu(17).empty());
    owner.searched = true;
    table.SetRowCount(3);
    table.MutableColumn(2).flags &= ~COLUMN_NO_SEARCH;
    EXPECT_NE(Find(table.HeaderMenu(2), "Search column/continue"), nullptr);
}

TEST(TableMenus, DeleteRowTextFollowsTheSelection)
{
    TableControl table;
    Fill(table, {"a"}, {{"1"}, {"2"}, {"3"}});
    table.SetRowSelected(0, true);
    EXPECT_NE(Find(table.CellMenu(0, 1), "Delete row"), nullptr);
    table.SetRowSelected(2, true);
    EXPECT_NE(Find(table.CellMenu(0, 1), "Delete rows"), nullptr);
    EXPECT_EQ(Find(table.CellMenu(0, 1), "Delete row"), nullptr);
}

TEST(TableMenus, CellMenuLayout)
{
    TableControl table;
    table.SetStyle(GRID_HIDE_COLUMNS | GRID_TAB_THRU);
    Fill(table, {"name", "size"}, {{"x", "1"}});
    table.SetColumnHidden(2, true);
    table.SetAltRows(2);
    std::vector<MenuEntry> menu = table.CellMenu(0, 1);
    EXPECT_EQ(TextsOf(menu),
              (Texts{"Copy cell text", "Add row", "Delete row", "Duplicate row",
                     "Move row up\tAlt+Up", "Move row down\tAlt+Down", "Deselect all rows",
                     "Select all rows", "Table options", "Table tools"}));
    const MenuEntry& options = menu[8];
    EXPECT_EQ(TextsOf(options.submenu),
              (Texts{"Hide columns", "Alternating rows", "Row dividers", "Tab through cells"}));
    EXPECT_EQ(TextsOf(options.submenu[0].submenu), (Texts{"#", "name", "size"}));
    EXPECT_TRUE(options.submenu[0].submenu[2].checked);
    EXPECT_EQ(options.submenu[0].submenu[2].argument, 2);
    EXPECT_EQ(TextsOf(options.submenu[1].submenu), (Texts{"Default", "Enabled", "Disabled"}));
    EXPECT_TRUE(options.submenu[1].submenu[2].checked);
    EXPECT_EQ(TextsOf(options.submenu[2].submenu), (Texts{"Default", "Visible", "Hidden"}));
    EXPECT_TRUE(options.submenu[2].submenu[0].checked);
    EXPECT_EQ(TextsOf(menu[9].submenu),
              (Texts{"Bookmark-return", "Bookmark-set", "Jump to row", "Column widths: default",
                     "Column widths: maximize", "Column widths: minimize", "Statistics",
                     "Delete all rows", "Import from CSV file", "Export to CSV file"}));
}

TEST(TableMenus, CellMenuOffTheCellsAndWithoutRows)
{
    TableControl table;
    Fill(table, {"a"}, {});
    std::vector<MenuEntry> menu = table.CellMenu(-1, -1);
    EXPECT_EQ(menu.front().text, "Add row");
    EXPECT_EQ(TextsOf(menu[7].submenu), (Texts{"Alternating rows", "Row dividers"}));
    EXPECT_FALSE(Find(menu, "Delete row")->enabled);
    EXPECT_TRUE(Find(menu, "Add row")->enabled);
}

TEST(TableMenus, ControlCarriesOutItsOwnCommands)
{
    TableControl table;
    Fill(table, {"a"}, {{"b"}, {"a"}});
    EXPECT_TRUE(table.HandleCommand(static_cast<int>(GridCommand::SortDescending), -1, 1));
    EXPECT_EQ(table.SortColumn(), 1);
    EXPECT_FALSE(table.SortAscending());
    EXPECT_TRUE(table.HandleCommand(static_cast<int>(GridCommand::AlignCenter), -1, 1));
    EXPECT_EQ(table.Column(1).flags & (COLUMN_CENTER | COLUMN_RIGHT), COLUMN_CENTER);
    EXPECT_TRUE(table.HandleCommand(static_cast<int>(GridCommand::AlignRight), -1, 1));
    EXPECT_EQ(table.Column(1).flags & (COLUMN_CENTER | COLUMN_RIGHT), COLUMN_RIGHT);
    EXPECT_TRUE(table.HandleCommand(static_cast<int>(GridCommand::AlignLeft), -1, 1));
    EXPECT_EQ(table.Column(1).flags & (COLUMN_CENTER | COLUMN_RIGHT), 0u);
    EXPECT_TRUE(table.HandleCommand(static_cast<int>(GridCommand::DividersHidden), -1, 1));
    EXPECT_EQ(table.Grid(), 2);
    EXPECT_TRUE(table.HandleCommand(static_cast<int>(GridCommand::HideColumn), 1, -1));
    EXPECT_TRUE(table.Column(1).hidden);
    EXPECT_TRUE(table.HandleCommand(static_cast<int>(GridCommand::SelectAll), -1, -1));
    EXPECT_EQ(table.SelectedRowCount(), 2);
    EXPECT_FALSE(table.HandleCommand(static_cast<int>(GridCommand::DeleteRows), -1, 1));
    EXPECT_FALSE(table.HandleCommand(16190, -1, 1));
}

class FixedMeasurer : public TextMeasurer
{
public:
    int TextWidth(std::string_view text) override { return 7 * static_cast<int>(text.size()); }
    int TextWidthWide(std::u16string_view text) override
    {
        return 7 * static_cast<int>(text.size());
    }
    int CellPadding() override { return 6; }
    double AverageCharWidth() override { return 7.5; }
};

TEST(TableWidths, NaturalWidthAndTheTwentyPixelFloor)
{
    TableControl table;
    FixedMeasurer measurer;
    table.SetTextMeasurer(&measurer);
    Fill(table, {"name", ""}, {});
    EXPECT_EQ(table.NaturalWidth(1), 28 + 4 + 6);
    EXPECT_EQ(table.NaturalWidth(1, true), 32);
    EXPECT_EQ(table.NaturalWidth(2), 20);
    table.MinimizeColumn(2);
    EXPECT_EQ(table.Column(2).width, 20);
}

TEST(TableWidths, MaximizeIsCappedAtHalfTheClientWidth)
{
    TableControl table;
    FixedMeasurer measurer;
    table.SetTextMeasurer(&measurer);
    Fill(table, {"a rather long column name", "short"}, {});
    table.MutableColumn(2).defaultWidthFactor = 2.5;
    ViewGeometry geometry;
    geometry.clientWidth = 301;
    table.SetGeometry(geometry);
    table.MaximizeColumn(1);
    EXPECT_EQ(table.Column(1).width, 150);
    table.MaximizeColumn(2);
    EXPECT_EQ(table.Column(2).width, static_cast<int>((35 + 10) * 2.5));
    geometry.clientWidth = 30;
    table.SetGeometry(geometry);
    table.MaximizeAllColumns();
    EXPECT_EQ(table.Column(1).width, 20);
    table.DefaultWidths();
    EXPECT_EQ(table.Column(1).width, 100);
}

TEST(TableWidths, InitialWidthAddsTheCellPaddingToTheMeasuredText)
{
    TableControl table;
    FixedMeasurer measurer;
    table.SetTextMeasurer(&measurer);
    Fill(table, {"n", "d"}, {});
    table.MutableColumn(1).width = 0;
    table.MutableColumn(2).width = 0;
    std::vector<int> longest{0, 6, 10};
    table.ApplyInitialWidths(longest, 1000, 0);
    // 6 x 7.5 x 1.12 = 50.4, plus the padding of 6; the fraction of a pixel is not dropped
    // per character.
    EXPECT_EQ(table.Column(1).width, 50 + 6);
    EXPECT_EQ(table.Column(2).width, 84 + 6);
}

TEST(TableWidths, InitialWidthsOnlyWidenAndShareSpareRoom)
{
    TableControl table;
    Fill(table, {"a", "b", "c"}, {});
    for (int c = 1; c <= 3; ++c)
        table.MutableColumn(c).width = 30;
    table.MutableColumn(0).width = 40;
    std::vector<int> longest{0, 2, 200, 0};
    table.ApplyInitialWidths(longest, 1000, 0);
    // No font: 10 pixels a character, times 1.12.
    EXPECT_EQ(table.Column(1).width, 30);  // 22 is narrower than the column already is
    EXPECT_EQ(table.Column(2).width, 500); // 896 capped at half the screen
    EXPECT_EQ(table.Column(3).width, 30);
    table.ApplyInitialWidths(longest, 1000, 40 + 30 + 500 + 30 + 420);
    // 420 spare pixels in the proportion 2 : 40 : 0.
    EXPECT_EQ(table.Column(1).width, 30 + 20);
    EXPECT_EQ(table.Column(2).width, 500 + 400);
    EXPECT_EQ(table.Column(3).width, 30);
}

TEST(TableViewState, SavesEveryKeyInItsTextForm)
{
    TableControl table;
    table.SetSettingsName("Table");
    table.SetStyle(GRID_REMEMBER_WIDTHS | GRID_HIDE_COLUMNS | GRID_TAB_THRU);
    Fill(table, {"a", "b"}, {{"1", "2"}});
    table.MutableColumn(0).width = 40;
    table.MutableColumn(1).width = 120;
    table.MutableColumn(2).width = 35;
    table.SetColumnHidden(2, true);
    table.SetSort(2, false);
    table.SetAltRows(1);
    table.SetGrid(2);
    table.SetTabThru(true);
    MapStore store;
    table.SaveViewState(store);
    EXPECT_EQ(store.written, (Texts{"TableSort", "TableWidths", "TableHide", "TableAltRows",
                                    "TableGrid", "TableTabThru"}));
    EXPECT_EQ(store.values["TableSort"], "-3");
    EXPECT_EQ(store.values["TableWidths"], "40,120,35");
    EXPECT_EQ(store.values["TableHide"], "0,0,1");
    EXPECT_EQ(store.values["TableAltRows"], "1");
    EXPECT_EQ(store.values["TableGrid"], "2");
    EXPECT_EQ(store.values["TableTabThru"], "1");
}

TEST(TableViewState, StyleFlagsDecideWhatIsWritten)
{
    TableControl table;
    table.SetSettingsName("T");
    Fill(table, {"a"}, {});
    MapStore store;
    table.SaveViewState(store);
    EXPECT_EQ(store.written, (Texts{"TSort", "TAltRows", "TGrid"}));
    EXPECT_EQ(store.values["TSort"], "0");
    TableControl unnamed;
    MapStore nothing;
    unnamed.SaveViewState(nothing);
    EXPECT_TRUE(nothing.written.empty());
}

TEST(TableViewState, LoadToleratesShortLongAndDamagedLists)
{
    TableControl table;
    table.SetSettingsName("T");
    table.SetStyle(GRID_REMEMBER_WIDTHS | GRID_HIDE_COLUMNS | GRID_TAB_THRU);
    Fill(table, {"a", "b", "c"}, {{"2", "1", "x"}, {"1", "2", "y"}});
    MapStore store;
    store.values["TWidths"] = "45,x,,77,1,2,3,4";
    store.values["THide"] = "0,1";
    store.values["TSort"] = "2";
    store.values["TAltRows"] = "7";
    store.values["TGrid"] = "";
    store.values["TTabThru"] = "1";
    table.LoadViewState(store);
    EXPECT_EQ(table.Column(0).width, 45);
    EXPECT_EQ(table.Column(1).width, 100);
    EXPECT_EQ(table.Column(2).width, 100);
    EXPECT_EQ(table.Column(3).width, 77);
    EXPECT_TRUE(table.Column(1).hidden);
    EXPECT_FALSE(table.Column(2).hidden);
    EXPECT_EQ(table.SortColumn(), 1);
    EXPECT_EQ(table.RowAtDisplayPosition(0), 1);
    EXPECT_EQ(table.AltRows(), 0);
    EXPECT_EQ(table.Grid(), 0);
    EXPECT_TRUE(table.TabThru());
    store.values["TSort"] = "-99";
    table.LoadViewState(store);
    EXPECT_EQ(table.SortColumn(), 1);
}

TEST(TableStatistics, ReportLeavesOutHiddenAndTrailingRows)
{
    TableControl table;
    Fill(table, {"Amount", "When", "Size", "Note"},
         {{"10", "01/02/2020", "1 KB", "x"},
          {"", "2021-05-06 07:08:09", "1 KB", ""},
          {"5", "2019-01-01", "", "y"},
          {"1000", "1999-01-01", "1 GB", ""},
          {"7", "1990-01-01", "1 GB", ""}});
    table.SetColumnSortMethod(1, kSortNumeric);
    table.SetColumnSortMethod(2, kSortDateTime);
    table.SetColumnSortMethod(3, kSortMemory);
    table.SetDayFirst(true);
    table.SetRowHidden(3, true);
    table.SetTrailingRow(4);
    table.SetFocusCell(1, 2);
    table.SetRowSelected(0, true);
    ViewGeometry geometry;
    geometry.completelyVisibleRows = 3;
    geometry.partiallyVisibleRows = 1;
    table.SetGeometry(geometry);
    EXPECT_EQ(table.StatisticsReport(), "Number of rows:\t5\r\n"
                                        "Number of visible/hidden rows:\t4 / 1\r\n"
                                        "Input focus on row/column (1-based):\t2 / 2\r\n"
                                        "Number of selected rows:\t1\r\n"
                                        "Completely visible rows:\t3\r\n"
                                        "Partially visible rows:\t1\r\n"
                                        "Column \"Amount\" total/avg:\t15 / 5\r\n"
                                        "Column \"Amount\" empty cells:\t1\r\n"
                                        "Column \"When\" earliest date:\t2019/01/01 00:00:00\r\n"
                                        "Column \"When\" latest date:\t2021/05/06 07:08:09\r\n"
                                        "Column \"When\" empty cells:\t0\r\n"
                                        "Column \"Size\" total/avg:\t2.00 KB / 682 bytes\r\n"
                                        "Column \"Size\" empty cells:\t1\r\n"
                                        "Column \"Note\" empty cells:\t1\r\n");
}

} // namespace
} // namespace quirnel
