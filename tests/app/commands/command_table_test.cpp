#include "app/accelerators.h"
#include "app/command_ids.h"
#include "app/command_table.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace quirnel {
namespace {

constexpr CommandKind Button = CommandKind::Button;
constexpr CommandKind Group = CommandKind::GroupCaption;

struct ExpectedRow
{
    CommandKind kind;
    int id;
    std::string_view label;
    std::string_view caption;
    std::string_view shortcut;
    bool hidden;
    std::string_view description;
};

// The toolbar's entries in the order they are added, written out by hand.
constexpr ExpectedRow kExpected[] = {
    {Button, 11373, "New File", "New", "", false, "Create a new CSV file."},
    {Button, 11374, "Open File", "Open", "Ctrl+O", false,
     "Open an existing CSV file of your choosing."},
    {Button, 16196, "Open Nonstandard File", "Open\nNonstandard", "", true,
     "Open a CSV file that is in a nonstandard format."},
    {Button, 11375, "Save File", "Save", "Ctrl+S", false, "Save the CSV data back to its file."},
    {Button, 11158, "Save File As", "Save As", "", false,
     "Save the CSV data to a different file of your choosing."},
    {Button, 11376, "Close File", "Close", "", false, "Close the CSV file."},
    {Button, 16205, "File Properties", "File\nProperties", "", true,
     "Edit the properties for the CSV file."},
    {Button, 16210, "Explore Folder", "Explore\nFolder", "", true,
     "Open the folder where the CSV file is located in Windows Explorer."},
    {Button, 16215, "Export to HTML", "Export\nTo HTML", "", true,
     "Export the entire table to HTML code."},
    {Button, 16161, "Multiline Editing Mode", "Multiline\nEditing", "", false,
     "Toggle multiline editing mode.  This allows you to edit a cell that contains more than one "
     "line of text."},
    {Button, 16163, "Warnings Visible", "Warnings", "", false,
     "Toggle the visibility of the warnings."},
    {Button, 16150, "Preferences", "", "Alt+P", true, "Edit the program's global settings."},
    {Group, 0, "Column:", "Column:", "", true, ""},
    {Button, 16207, "Combine Columns", "Combine\nColumns", "", true,
     "Combine two columns into one."},
    {Button, 16198, "Copy Column", "Copy\nColumn", "", true,
     "Copy the current column to the clipboard."},
    {Button, 16152, "Create Column", "Create\nColumn", "", false, "Add a new column to the table."},
    {Button, 16204, "Cut Column", "Cut\nColumn", "", true,
     "Cut the current column to the clipboard."},
    {Button, 16159, "Delete Column", "Delete\nColumn", "", true, "Delete the current column."},
    {Button, 16154, "Insert Column After", "Ins. Column\nAfter", "", true,
     "Create a new column to the right of the current column."},
    {Button, 16153, "Insert Column Before", "Ins. Column\nBefore", "", true,
     "Create a new column to the left of the current column."},
    {Button, 16177, "Move Column Left", "Move Column\nLeft", "", true,
     "Move the current column to the left of the preceding column."},
    {Button, 16178, "Move Column Right", "Move Column\nRight", "", true,
     "Move the current column to the right of the next column."},
    {Button, 16197, "Paste Column", "Paste\nColumn", "", true,
     "Insert the column in the clipboard into the table."},
    {Button, 16162, "Rename Column", "Rename\nColumn", "", true,
     "Change the name of the current column."},
    {Button, 16181, "Search Column", "Search\nColumn", "Ctrl+Shift+N", false,
     "Search the current column for a piece of text."},
    {Button, 16182, "Search Column/Continue", "Search\nContinue", "Ctrl+N", false,
     "Search the current column for the next occurrence."},
    {Button, 16183, "Set Entire Column", "Set Entire\nColumn", "", true,
     "Set the text of every cell in the column."},
    {Button, 16192, "Trim Column Whitespace", "Trim\nColumn", "", true,
     "Remove whitespace (spaces and tabs) from the beginning and end of every cell in the column."},
    {Group, 0, "Row:", "Row:", "", true, ""},
    {Button, 16194, "Copy Row(s)", "Copy\nRow(s)", "Ctrl+Shift+C", true,
     "Copy the selected row(s) to the clipboard."},
    {Button, 16155, "Create Row", "Create\nRow", "", false, "Add a new row to the table."},
    {Button, 16193, "Cut Row(s)", "Cut\nRow(s)", "Ctrl+Shift+X", true,
     "Cut the selected row(s) to the clipboard."},
    {Button, 16160, "Delete Row(s)", "Delete\nRow(s)", "Alt+Delete", false,
     "Delete the selected rows."},
    {Button, 16158, "Duplicate Row(s)", "Duplicate\nRow", "", false,
     "Create a copy of the selected rows."},
    {Button, 16156, "Insert Row Before", "Insert Row\nBefore", "", false,
     "Create a new row above the current row."},
    {Button, 16157, "Insert Row After", "Insert Row\nAfter", "Alt+Insert", false,
     "Create a new row below the current row."},
    {Button, 11299, "Move Row Up", "Move Row\nUp", "Alt+PageUp", false,
     "Move the current row up one row."},
    {Button, 11300, "Move Row Down", "Move Row\nDown", "Alt+PageDown", false,
     "Move the current row down one row."},
    {Button, 16195, "Paste Row(s)", "Paste\nRow(s)", "Ctrl+Shift+V", true,
     "Insert the row(s) in the clipboard into the table."},
    {Button, 16166, "Shift Cells Left/Right", "Shift\nCells", "", true,
     "Shift the row's cells to the left or right by one column."},
    {Group, 0, "Table:", "Table:", "", true, ""},
    {Button, 16221, "Bookmark/Return", "Bookmark\nReturn", "F4", true,
     "Return to the bookmarked position."},
    {Button, 16222, "Bookmark/Set", "Bookmark\nSet", "Shift+F4", true,
     "Set the bookmark to the current cell."},
    {Button, 11152, "Deselect All Rows", "Deselect\nAll Rows", "", true,
     "Deselect all rows in the table."},
    {Button, 11303, "Jump To Row", "Jump\nTo Row", "", true,
     "Move cell focus to a row of your choosing."},
    {Button, 11456, "Maximize All Column Widths", "Maximize\nColumns", "", true,
     "Make each column wide enough to show all content."},
    {Button, 11145, "Minimize All Column Widths", "Minimize\nColumns", "", true,
     "Make each column just wide enough for the title."},
    {Button, 11212, "Select All Rows", "Select\nAll Rows", "", true,
     "Select all rows in the table."},
    {Button, 11151, "Table Statistics", "Table\nStats", "", true,
     "Display various statistics about the table's contents."},
    {Group, 0, "Tools:", "Tools:", "", true, ""},
    {Button, 16174, "Deduplicate Rows", "Dedup\nRows", "", true,
     "If any rows are duplicates of other rows, delete them."},
    {Button, 16169, "Find", "", "Ctrl+F2", true, "Search the enitre table for a piece of text."},
    {Button, 16170, "Find/Replace", "Find &\nReplace", "Alt+F2", true,
     "Search the table for a piece of text, and replace it with another piece of text."},
    {Button, 16171, "Find/Next", "Find\nNext", "F2", true, "Continue the search."},
    {Button, 16209, "Find/Previous", "Find\nPrevious", "Shift+F2", true,
     "Continue the search, in reverse."},
    {Button, 16214, "Graph", "", "", true, "Display a graph of the CSV data."},
    {Button, 11297, "Import From CSV File", "Import\nCSV", "", true,
     "Import a CSV file into the table."},
    {Button, 16216, "Shuffle Rows", "Shuffle\nRows", "", true,
     "Randomly rearrange the order of rows."},
    {Button, 16167, "Spell Check Table", "Spell\nCheck", "", true,
     "Spell check multiple cells in the table."},
    {Button, 16168, "Trim Whitespace", "Trim", "", true,
     "Trim all whitespace characters from the beginning and end of cells."},
};

constexpr std::size_t kExpectedCount = std::size(kExpected);

class CommandTableRow : public testing::TestWithParam<std::size_t>
{};

TEST_P(CommandTableRow, MatchesTheWrittenTable)
{
    const std::size_t index = GetParam();
    const ExpectedRow& want = kExpected[index];
    ASSERT_LT(index, CommandTable().size());
    const CommandSpec& got = CommandTable()[index];
    EXPECT_EQ(got.kind, want.kind);
    EXPECT_EQ(got.id, want.id);
    EXPECT_EQ(got.label, want.label);
    EXPECT_EQ(got.caption, want.caption);
    EXPECT_EQ(got.shortcut, want.shortcut);
    EXPECT_EQ(got.hiddenByDefault, want.hidden);
    EXPECT_EQ(got.description, want.description);
    if (want.kind == Button) {
        EXPECT_FALSE(got.icon.empty());
    }
}

INSTANTIATE_TEST_SUITE_P(AllRows, CommandTableRow, testing::Range<std::size_t>(0, kExpectedCount),
                         [](const testing::TestParamInfo<std::size_t>& param) {
                             const ExpectedRow& row = kExpected[param.param];
                             return row.kind == Group ? "Group" + std::to_string(param.param)
                                                      : "Id" + std::to_string(row.id);
                         });

TEST(CommandTable, EndsWithTheFilterControls)
{
    const auto table = CommandTable();
    ASSERT_EQ(table.size(), kExpectedCount + 2);
    const CommandSpec& box = table[kExpectedCount];
    EXPECT_EQ(box.kind, CommandKind::CheckBox);
    EXPECT_EQ(box.id, 16172);
    EXPECT_EQ(box.label, "Filter Enabled");
    EXPECT_EQ(box.caption, "Filter:");
    EXPECT_EQ(box.description,
              "If checked, any row that doesn't contain the specified text is hidden.");
    const CommandSpec& field = table[kExpectedCount + 1];
    EXPECT_EQ(field.kind, CommandKind::TextField);
    EXPECT_EQ(field.id, 16173);
    EXPECT_EQ(field.label, "Filter Text");
    EXPECT_EQ(field.cueText, "Filter");
    EXPECT_EQ(field.description, "Any row that doesn't contain this text is hidden.  Press Enter "
                                 "to make the filter take effect.");
}

TEST(CommandTable, IdsIconsAndShortcutsAreUnique)
{
    std::set<int> ids;
    std::set<std::string_view> icons;
    std::set<std::string_view> shortcuts;
    for (const CommandSpec& command : CommandTable()) {
        if (command.kind == CommandKind::GroupCaption) {
            EXPECT_EQ(command.id, 0);
            continue;
        }
        EXPECT_TRUE(ids.insert(command.id).second) << command.id;
        if (!command.icon.empty()) {
            EXPECT_TRUE(icons.insert(command.icon).second) << command.icon;
        }
        if (!command.shortcut.empty()) {
            EXPECT_TRUE(shortcuts.insert(command.shortcut).second) << command.shortcut;
        }
    }
}

TEST(CommandTable, EveryShownShortcutIsBoundToItsCommand)
{
    AcceleratorTable accelerators;
    BuildMainAccelerators(accelerators);
    for (const CommandSpec& command : CommandTable()) {
        if (command.shortcut.empty()) {
            continue;
        }
        bool bound = false;
        for (const Accelerator& a : accelerators.Entries()) {
            if (ShortcutText(a.keyCode, a.modifiers) == command.shortcut) {
                EXPECT_EQ(a.id, command.id) << command.shortcut;
                bound = true;
            }
        }
        EXPECT_TRUE(bound) << command.label << " shows " << command.shortcut
                           << " but nothing binds it";
    }
}

TEST(CommandTable, FindsCommandsButNotCaptions)
{
    ASSERT_NE(FindCommand(16160), nullptr);
    EXPECT_EQ(FindCommand(16160)->label, "Delete Row(s)");
    EXPECT_EQ(FindCommand(0), nullptr);
    EXPECT_EQ(FindCommand(12345), nullptr);
    EXPECT_EQ(CommandIconName(cmd::kPrint), "print");
    EXPECT_TRUE(CommandIconName(12345).empty());
}

} // namespace
} // namespace quirnel
