#include "app/command_ids.h"
#include "app/command_table.h"
#include "app/menu_model.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quirnel {
namespace {

std::vector<std::string> Texts(const std::vector<CommandMenuEntry>& entries)
{
    std::vector<std::string> texts;
    for (const CommandMenuEntry& entry : entries) {
        texts.push_back(entry.kind == MenuEntryKind::Separator ? "-" : entry.text);
    }
    return texts;
}

DocumentState ThreeColumns()
{
    DocumentState state;
    state.fileOpen = true;
    state.columnCount = 3;
    state.columnTitles = {"#", "Name", "Price"};
    return state;
}

const CommandMenuEntry* FindSubmenu(const std::vector<CommandMenuEntry>& entries,
                                    const std::string& text)
{
    for (const CommandMenuEntry& entry : entries) {
        if (entry.kind == MenuEntryKind::Submenu && entry.text == text) {
            return &entry;
        }
    }
    return nullptr;
}

TEST(RowMenu, SaysRowWithOneSelectedRow)
{
    DocumentState state;
    state.selectedRowCount = 1;
    const std::vector<std::string> expected = {
        "Copy row\tCtrl+Shift+C",
        "Create row",
        "Cut row\tCtrl+Shift+X",
        "Delete row\tAlt+Delete",
        "Duplicate row",
        "Insert row before",
        "Insert row after\tAlt+Insert",
        "Move row up\tAlt+PageUp",
        "Move row down\tAlt+PageDown",
        "Paste row(s)\tCtrl+Shift+V",
        "Shift cells left/right",
    };
    EXPECT_EQ(Texts(OnInitPopup(cmd::kRowMenu, state)), expected);
}

TEST(RowMenu, SaysRowsWithTwoSelectedRows)
{
    DocumentState state;
    state.selectedRowCount = 2;
    state.helpAvailable = true;
    const std::vector<CommandMenuEntry> entries = OnInitPopup(cmd::kRowMenu, state);
    const std::vector<std::string> expected = {
        "Copy rows\tCtrl+Shift+C",
        "Create row",
        "Cut rows\tCtrl+Shift+X",
        "Delete rows\tAlt+Delete",
        "Duplicate rows",
        "Insert row before",
        "Insert row after\tAlt+Insert",
        "Move rows up\tAlt+PageUp",
        "Move rows down\tAlt+PageDown",
        "Paste row(s)\tCtrl+Shift+V",
        "Shift cells left/right",
        "-",
        "Help - Row menu",
    };
    EXPECT_EQ(Texts(entries), expected);
    EXPECT_EQ(entries[3].id, 16160);
    EXPECT_EQ(entries[7].id, 11299);
    EXPECT_EQ(entries[12].id, 16202);
}

TEST(SortOnColumnMenu, IsEmptyWithFewerThanTwoColumns)
{
    DocumentState state;
    EXPECT_TRUE(OnInitPopup(cmd::kSortOnColumnMenu, state).empty());
    state.columnCount = 1;
    state.columnTitles = {"#"};
    EXPECT_TRUE(OnInitPopup(cmd::kSortOnColumnMenu, state).empty());
}

TEST(SortOnColumnMenu, ListsColumnsAndChecksTheSortedOne)
{
    DocumentState state = ThreeColumns();
    std::vector<CommandMenuEntry> entries = OnInitPopup(cmd::kSortOnColumnMenu, state);
    EXPECT_EQ(Texts(entries), (std::vector<std::string>{"No sorting", "-", "Name", "Price"}));
    EXPECT_TRUE(entries[0].checked);
    EXPECT_FALSE(entries[3].checked);
    for (const CommandMenuEntry& entry : entries) {
        if (entry.kind == MenuEntryKind::Command) {
            EXPECT_EQ(entry.check, MenuCheck::Radio);
        }
    }

    state.sortColumn = 2;
    entries = OnInitPopup(cmd::kSortOnColumnMenu, state);
    EXPECT_FALSE(entries[0].checked);
    EXPECT_FALSE(entries[2].checked);
    EXPECT_TRUE(entries[3].checked);
    int column = 0;
    ASSERT_TRUE(SortOnColumnFromCommand(entries[3].id, column));
    EXPECT_EQ(column, 2);
    ASSERT_TRUE(SortOnColumnFromCommand(entries[0].id, column));
    EXPECT_EQ(column, -1);

    // The sorted column was deleted since: nothing it names exists, so "No sorting" holds.
    state.sortColumn = 5;
    entries = OnInitPopup(cmd::kSortOnColumnMenu, state);
    EXPECT_TRUE(entries[0].checked);
}

TEST(ColumnMenu, OffersAlignmentOnlyForARealColumn)
{
    const std::vector<std::string> fixed = {
        "Combine columns",
        "Copy column",
        "Create column",
        "Cut column",
        "Delete column",
        "Insert column after",
        "Insert column before",
        "Move column left",
        "Move column right",
        "Paste column",
        "Rename column",
        "Search column\tCtrl+Shift+N",
        "Search column/continue\tCtrl+N",
        "Set entire column",
    };
    DocumentState state = ThreeColumns();

    state.currentColumn = -1;
    std::vector<std::string> expected = fixed;
    expected.push_back("Trim column whitespace");
    EXPECT_EQ(Texts(OnInitPopup(cmd::kColumnMenu, state)), expected);

    state.currentColumn = 0;
    expected = fixed;
    expected.push_back("Sort method");
    expected.push_back("Trim column whitespace");
    EXPECT_EQ(Texts(OnInitPopup(cmd::kColumnMenu, state)), expected);

    state.currentColumn = 3;
    expected = fixed;
    expected.push_back("Trim column whitespace");
    EXPECT_EQ(Texts(OnInitPopup(cmd::kColumnMenu, state)), expected);

    state.currentColumn = 2;
    expected.insert(expected.begin(), "Alignment");
    expected.insert(expected.end() - 1, "Sort method");
    EXPECT_EQ(Texts(OnInitPopup(cmd::kColumnMenu, state)), expected);
}

TEST(ColumnMenu, SubmenusMarkTheColumnsCurrentChoices)
{
    DocumentState state = ThreeColumns();
    state.currentColumn = 1;
    state.currentColumnAlignment = 2;
    state.currentColumnSortMethod = 3;
    const std::vector<CommandMenuEntry> entries = OnInitPopup(cmd::kColumnMenu, state);

    const CommandMenuEntry* alignment = FindSubmenu(entries, "Alignment");
    ASSERT_NE(alignment, nullptr);
    EXPECT_EQ(Texts(alignment->children), (std::vector<std::string>{"Left", "Center", "Right"}));
    EXPECT_FALSE(alignment->children[0].checked);
    EXPECT_TRUE(alignment->children[2].checked);
    int value = -1;
    ASSERT_TRUE(AlignmentFromCommand(alignment->children[1].id, value));
    EXPECT_EQ(value, 1);

    const CommandMenuEntry* methods = FindSubmenu(entries, "Sort method");
    ASSERT_NE(methods, nullptr);
    EXPECT_EQ(Texts(methods->children),
              (std::vector<std::string>{"Text (case insensitive)", "Text (case sensitive)",
                                        "Numeric (blanks=0)", "Numeric (blanks=-9999)", "Date/time",
                                        "Memory (e.g. 3.1 KB)"}));
    // Menu order differs from value order; the check follows the value.
    EXPECT_TRUE(methods->children[3].checked);
    ASSERT_TRUE(SortMethodFromCommand(methods->children[1].id, value));
    EXPECT_EQ(value, 4);
}

TEST(MainMenuBar, HasTheMenusAndFixedEntries)
{
    const std::vector<Menu> menus = MainMenuBar(false);
    std::vector<std::string> titles;
    for (const Menu& menu : menus) {
        titles.push_back(menu.title);
    }
    EXPECT_EQ(titles, (std::vector<std::string>{"&File", "&Options", "C&ell", "&Column", "&Row",
                                                "T&able", "&Tools"}));
    EXPECT_EQ(menus[2].popupId, 16220);
    EXPECT_EQ(menus[3].popupId, 16175);
    EXPECT_EQ(menus[4].popupId, 16151);

    std::vector<std::string> file = Texts(menus[0].entries);
    file[11] = "(recent)";
    EXPECT_EQ(file,
              (std::vector<std::string>{"&New file", "&Open file\tCtrl+O", "Open nonstandard file",
                                        "&Save file\tCtrl+S", "Save file &as", "&Close file", "-",
                                        "File properties", "Explore folder", "Export to HTML",
                                        "Print", "(recent)", "-", "E&xit\tCtrl+F4"}));
    EXPECT_EQ(menus[0].entries[11].kind, MenuEntryKind::RecentFiles);
    EXPECT_EQ(
        Texts(menus[1].entries),
        (std::vector<std::string>{"Preferences\tAlt+P", "Customize toolbar", "Character set", "-",
                                  "Copy rows: no column names", "Display warnings",
                                  "Display toolbar", "Filter: case sensitive", "Filter: whole word",
                                  "Multiline editing mode", "Warn if too few columns"}));
    EXPECT_EQ(Texts(menus[5].entries),
              (std::vector<std::string>{"Bookmark/return\tF4", "Bookmark/set\tShift+F4",
                                        "Deselect all rows", "Jump to row",
                                        "Maximize all column widths", "Minimize all column widths",
                                        "Select all rows", "Sort on column", "Table statistics"}));
    EXPECT_EQ(menus[5].entries[7].popupId, 16219);
    EXPECT_EQ(Texts(menus[6].entries),
              (std::vector<std::string>{"Deduplicate rows", "Find\tCtrl+F2", "Find/replace\tAlt+F2",
                                        "Find/next\tF2", "Find/previous\tShift+F2", "Graph",
                                        "Import from CSV file", "Shuffle rows", "Spell check table",
                                        "Trim whitespace"}));
}

TEST(MainMenuBar, HelpEntriesOnlyWhenHelpExists)
{
    const std::vector<Menu> menus = MainMenuBar(true);
    EXPECT_EQ(menus[1].entries.back().text, "Help - Options menu");
    EXPECT_EQ(menus[1].entries.back().id, 16200);
    EXPECT_EQ(menus[5].entries.back().text, "Help - Table menu");
    EXPECT_EQ(menus[6].entries.back().text, "Help - Tools menu");
    EXPECT_EQ(menus[6].entries.back().id, 16203);
}

// Ids that menus send although the toolbar has no button for them.
bool IsMenuOnlyCommand(int id)
{
    const int known[] = {cmd::kToggleBoundOption, cmd::kExit,
                         cmd::kCustomizeToolbar,  cmd::kPrint,
                         cmd::kDisplayToolbar,    cmd::kMultilineEditingOption,
                         cmd::kDisplayWarnings,   cmd::kFilterOptionChanged};
    return std::find(std::begin(known), std::end(known), id) != std::end(known) ||
           (id >= cmd::kHelpOptionsMenu && id <= cmd::kHelpToolsMenu) || id == cmd::kHelpTableMenu;
}

TEST(MainMenuBar, EveryReferenceResolves)
{
    DocumentState state = ThreeColumns();
    state.currentColumn = 1;
    state.selectedRowCount = 2;
    state.helpAvailable = true;
    state.characterSets = {{"8-bit ASCII (System Default)", 0}, {"UTF-8 (Unicode)", 65001}};
    for (const Menu& menu : MainMenuBar(true)) {
        std::vector<CommandMenuEntry> entries = menu.entries;
        if (menu.popupId != 0) {
            entries = OnInitPopup(menu.popupId, state);
            if (menu.popupId != cmd::kCellMenu) {
                EXPECT_FALSE(entries.empty()) << menu.title;
            }
        }
        for (CommandMenuEntry& entry : entries) {
            if (entry.kind == MenuEntryKind::Submenu && entry.popupId != 0) {
                EXPECT_TRUE(entry.children.empty());
                entry.children = OnInitPopup(entry.popupId, state);
                EXPECT_FALSE(entry.children.empty()) << entry.text;
            }
        }
        for (int id : MenuCommandIds(entries)) {
            int value = 0;
            const bool resolves = FindCommand(id) != nullptr || IsMenuOnlyCommand(id) ||
                                  SortOnColumnFromCommand(id, value) ||
                                  AlignmentFromCommand(id, value) ||
                                  SortMethodFromCommand(id, value) ||
                                  (id >= cmd::kCharacterSetBase && id <= cmd::kCharacterSetLast);
            EXPECT_TRUE(resolves) << menu.title << " sends " << id;
        }
    }
}

TEST(ToolbarContextMenu, OffersDisplayCustomizeSizeAndTips)
{
    const std::vector<CommandMenuEntry> entries = ToolbarContextMenu(true, 32, false);
    EXPECT_EQ(Texts(entries), (std::vector<std::string>{"Display toolbar", "Customize toolbar",
                                                        "Toolbar size", "Balloon help disabled"}));
    EXPECT_EQ(entries[0].id, 11517);
    EXPECT_TRUE(entries[0].checked);
    EXPECT_EQ(entries[1].id, 11367);
    EXPECT_EQ(Texts(entries[2].children), (std::vector<std::string>{"Small", "Medium", "Large"}));
    EXPECT_FALSE(entries[2].children[1].checked);
    EXPECT_TRUE(entries[2].children[2].checked);
    EXPECT_FALSE(entries[3].checked);
}

TEST(RecentFileEntries, NumbersEntriesAndKeepsAmpersands)
{
    const std::vector<CommandMenuEntry> entries =
        RecentFileEntries({"/tmp/a.csv", "/data/R&D.csv"});
    EXPECT_EQ(Texts(entries), (std::vector<std::string>{"&1 /tmp/a.csv", "&2 /data/R&&D.csv"}));
    EXPECT_EQ(entries[0].id, cmd::kRecentFileBase);
    EXPECT_EQ(entries[1].id, cmd::kRecentFileBase + 1);
}

} // namespace
} // namespace quirnel
