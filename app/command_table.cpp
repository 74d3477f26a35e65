#include "app/command_table.h"

#include "app/command_ids.h"

#include <algorithm>
#include <array>

namespace quirnel {
namespace {

constexpr CommandSpec Button(int id, std::string_view icon, std::string_view description,
                             std::string_view label, std::string_view caption,
                             std::string_view shortcut, bool hidden, bool lastInGroup)
{
    return {CommandKind::Button, id, icon, description, label, caption, shortcut, hidden,
            lastInGroup,         {}};
}

constexpr CommandSpec Group(std::string_view caption, bool hidden)
{
    return {CommandKind::GroupCaption, 0, {}, {}, caption, caption, {}, hidden, false, {}};
}

// "enitre" in the Find tip is kept as spelt: it is the text users have always seen.
constexpr std::array kTable = {
    Button(cmd::kNewFile, "file-new", "Create a new CSV file.", "New File", "New", "", false,
           false),
    Button(cmd::kOpenFile, "file-open", "Open an existing CSV file of your choosing.", "Open File",
           "Open", "Ctrl+O", false, false),
    Button(cmd::kOpenNonstandardFile, "file-open-nonstandard",
           "Open a CSV file that is in a nonstandard format.", "Open Nonstandard File",
           "Open\nNonstandard", "", true, false),
    Button(cmd::kSaveFile, "file-save", "Save the CSV data back to its file.", "Save File", "Save",
           "Ctrl+S", false, false),
    Button(cmd::kSaveFileAs, "file-save-as",
           "Save the CSV data to a different file of your choosing.", "Save File As", "Save As", "",
           false, false),
    Button(cmd::kCloseFile, "file-close", "Close the CSV file.", "Close File", "Close", "", false,
           true),
    Button(cmd::kFileProperties, "file-properties", "Edit the properties for the CSV file.",
           "File Properties", "File\nProperties", "", true, false),
    Button(cmd::kExploreFolder, "folder-explore",
           "Open the folder where the CSV file is located in Windows Explorer.", "Explore Folder",
           "Explore\nFolder", "", true, false),
    Button(cmd::kExportToHtml, "export-html", "Export the entire table to HTML code.",
           "Export to HTML", "Export\nTo HTML", "", true, true),
    Button(cmd::kMultilineEditingMode, "multiline-edit",
           "Toggle multiline editing mode.  This allows you to edit a cell that contains more than "
           "one line of text.",
           "Multiline Editing Mode", "Multiline\nEditing", "", false, false),
    Button(cmd::kWarningsVisible, "warnings", "Toggle the visibility of the warnings.",
           "Warnings Visible", "Warnings", "", false, false),
    Button(cmd::kPreferences, "preferences", "Edit the program's global settings.", "Preferences",
           "", "Alt+P", true, true),
    Group("Column:", true),
    Button(cmd::kCombineColumns, "column-combine", "Combine two columns into one.",
           "Combine Columns", "Combine\nColumns", "", true, false),
    Button(cmd::kCopyColumn, "column-copy", "Copy the current column to the clipboard.",
           "Copy Column", "Copy\nColumn", "", true, false),
    Button(cmd::kCreateColumn, "column-create", "Add a new column to the table.", "Create Column",
           "Create\nColumn", "", false, false),
    Button(cmd::kCutColumn, "column-cut", "Cut the current column to the clipboard.", "Cut Column",
           "Cut\nColumn", "", true, false),
    Button(cmd::kDeleteColumn, "column-delete", "Delete the current column.", "Delete Column",
           "Delete\nColumn", "", true, false),
    Button(cmd::kInsertColumnAfter, "column-insert-after",
           "Create a new column to the right of the current column.", "Insert Column After",
           "Ins. Column\nAfter", "", true, false),
    Button(cmd::kInsertColumnBefore, "column-insert-before",
           "Create a new column to the left of the current column.", "Insert Column Before",
           "Ins. Column\nBefore", "", true, false),
    Button(cmd::kMoveColumnLeft, "column-move-left",
           "Move the current column to the left of the preceding column.", "Move Column Left",
           "Move Column\nLeft", "", true, false),
    Button(cmd::kMoveColumnRight, "column-move-right",
           "Move the current column to the right of the next column.", "Move Column Right",
           "Move Column\nRight", "", true, false),
    Button(cmd::kPasteColumn, "column-paste", "Insert the column in the clipboard into the table.",
           "Paste Column", "Paste\nColumn", "", true, false),
    Button(cmd::kRenameColumn, "column-rename", "Change the name of the current column.",
           "Rename Column", "Rename\nColumn", "", true, false),
    Button(cmd::kSearchColumn, "column-search", "Search the current column for a piece of text.",
           "Search Column", "Search\nColumn", "Ctrl+Shift+N", false, false),
    Button(cmd::kSearchColumnContinue, "column-search-continue",
           "Search the current column for the next occurrence.", "Search Column/Continue",
           "Search\nContinue", "Ctrl+N", false, false),
    Button(cmd::kSetEntireColumn, "column-set", "Set the text of every cell in the column.",
           "Set Entire Column", "Set Entire\nColumn", "", true, false),
    Button(cmd::kTrimColumnWhitespace, "column-trim",
           "Remove whitespace (spaces and tabs) from the beginning and end of every cell in the "
           "column.",
           "Trim Column Whitespace", "Trim\nColumn", "", true, true),
    Group("Row:", true),
    Button(cmd::kCopyRows, "row-copy", "Copy the selected row(s) to the clipboard.", "Copy Row(s)",
           "Copy\nRow(s)", "Ctrl+Shift+C", true, false),
    Button(cmd::kCreateRow, "row-create", "Add a new row to the table.", "Create Row",
           "Create\nRow", "", false, false),
    Button(cmd::kCutRows, "row-cut", "Cut the selected row(s) to the clipboard.", "Cut Row(s)",
           "Cut\nRow(s)", "Ctrl+Shift+X", true, false),
    Button(cmd::kDeleteRows, "row-delete", "Delete the selected rows.", "Delete Row(s)",
           "Delete\nRow(s)", "Alt+Delete", false, false),
    Button(cmd::kDuplicateRows, "row-duplicate", "Create a copy of the selected rows.",
           "Duplicate Row(s)", "Duplicate\nRow", "", false, false),
    Button(cmd::kInsertRowBefore, "row-insert-before", "Create a new row above the current row.",
           "Insert Row Before", "Insert Row\nBefore", "", false, false),
    Button(cmd::kInsertRowAfter, "row-insert-after", "Create a new row below the current row.",
           "Insert Row After", "Insert Row\nAfter", "Alt+Insert", false, false),
    Button(cmd::kMoveRowUp, "row-move-up", "Move the current row up one row.", "Move Row Up",
           "Move Row\nUp", "Alt+PageUp", false, false),
    Button(cmd::kMoveRowDown, "row-move-down", "Move the current row down one row.",
           "Move Row Down", "Move Row\nDown", "Alt+PageDown", false, false),
    Button(cmd::kPasteRows, "row-paste", "Insert the row(s) in the clipboard into the table.",
           "Paste Row(s)", "Paste\nRow(s)", "Ctrl+Shift+V", true, false),
    Button(cmd::kShiftCells, "row-shift-cells",
           "Shift the row's cells to the left or right by one column.", "Shift Cells Left/Right",
           "Shift\nCells", "", true, true),
    Group("Table:", true),
    Button(cmd::kBookmarkReturn, "bookmark-return", "Return to the bookmarked position.",
           "Bookmark/Return", "Bookmark\nReturn", "F4", true, false),
    Button(cmd::kBookmarkSet, "bookmark-set", "Set the bookmark to the current cell.",
           "Bookmark/Set", "Bookmark\nSet", "Shift+F4", true, false),
    Button(cmd::kDeselectAllRows, "rows-deselect-all", "Deselect all rows in the table.",
           "Deselect All Rows", "Deselect\nAll Rows", "", true, false),
    Button(cmd::kJumpToRow, "row-jump", "Move cell focus to a row of your choosing.", "Jump To Row",
           "Jump\nTo Row", "", true, false),
    Button(cmd::kMaximizeColumnWidths, "columns-maximize",
           "Make each column wide enough to show all content.", "Maximize All Column Widths",
           "Maximize\nColumns", "", true, false),
    Button(cmd::kMinimizeColumnWidths, "columns-minimize",
           "Make each column just wide enough for the title.", "Minimize All Column Widths",
           "Minimize\nColumns", "", true, false),
    Button(cmd::kSelectAllRows, "rows-select-all", "Select all rows in the table.",
           "Select All Rows", "Select\nAll Rows", "", true, false),
    Button(cmd::kTableStatistics, "table-statistics",
           "Display various statistics about the table's contents.", "Table Statistics",
           "Table\nStats", "", true, true),
    Group("Tools:", true),
    Button(cmd::kDeduplicateRows, "rows-deduplicate",
           "If any rows are duplicates of other rows, delete them.", "Deduplicate Rows",
           "Dedup\nRows", "", true, false),
    Button(cmd::kFind, "find", "Search the enitre table for a piece of text.", "Find", "",
           "Ctrl+F2", true, false),
    Button(cmd::kFindReplace, "find-replace",
           "Search the table for a piece of text, and replace it with another piece of text.",
           "Find/Replace", "Find &\nReplace", "Alt+F2", true, false),
    Button(cmd::kFindNext, "find-next", "Continue the search.", "Find/Next", "Find\nNext", "F2",
           true, false),
    Button(cmd::kFindPrevious, "find-previous", "Continue the search, in reverse.", "Find/Previous",
           "Find\nPrevious", "Shift+F2", true, false),
    Button(cmd::kGraph, "graph", "Display a graph of the CSV data.", "Graph", "", "", true, false),
    Button(cmd::kImportCsvFile, "import-csv", "Import a CSV file into the table.",
           "Import From CSV File", "Import\nCSV", "", true, false),
    Button(cmd::kShuffleRows, "rows-shuffle", "Randomly rearrange the order of rows.",
           "Shuffle Rows", "Shuffle\nRows", "", true, false),
    Button(cmd::kSpellCheckTable, "spell-check", "Spell check multiple cells in the table.",
           "Spell Check Table", "Spell\nCheck", "", true, false),
    Button(cmd::kTrimWhitespace, "trim",
           "Trim all whitespace characters from the beginning and end of cells.", "Trim Whitespace",
           "Trim", "", true, true),
    CommandSpec{CommandKind::CheckBox,
                cmd::kFilterEnabled,
                {},
                "If checked, any row that doesn't contain the specified text is hidden.",
                "Filter Enabled",
                "Filter:",
                {},
                false,
                false,
                {}},
    CommandSpec{CommandKind::TextField,
                cmd::kFilterText,
                {},
                "Any row that doesn't contain this text is hidden.  Press Enter to make the "
                "filter take effect.",
                "Filter Text",
                {},
                {},
                false,
                false,
                "Filter"},
};

struct MenuOnlyIcon
{
    int id;
    std::string_view icon;
};

constexpr std::array kMenuOnlyIcons = {
    MenuOnlyIcon{cmd::kPrint, "print"},
    MenuOnlyIcon{cmd::kExit, "exit"},
    MenuOnlyIcon{cmd::kCustomizeToolbar, "toolbar-customize"},
    MenuOnlyIcon{cmd::kDisplayToolbar, "toolbar"},
    MenuOnlyIcon{cmd::kDisplayWarnings, "warnings"},
    MenuOnlyIcon{cmd::kMultilineEditingOption, "multiline-edit"},
    MenuOnlyIcon{cmd::kPasteRowsWithMapping, "row-paste"},
};

} // namespace

std::span<const CommandSpec> CommandTable()
{
    return kTable;
}

const CommandSpec* FindCommand(int id)
{
    if (id == 0) {
        return nullptr;
    }
    const auto found = std::find_if(kTable.begin(), kTable.end(),
                                    [id](const CommandSpec& s) { return s.id == id; });
    return found == kTable.end() ? nullptr : &*found;
}

std::string_view CommandLabel(int id)
{
    const CommandSpec* command = FindCommand(id);
    return command ? command->label : std::string_view();
}

std::string_view CommandIconName(int id)
{
    if (const CommandSpec* command = FindCommand(id)) {
        return command->icon;
    }
    for (const MenuOnlyIcon& entry : kMenuOnlyIcons) {
        if (entry.id == id) {
            return entry.icon;
        }
    }
    return {};
}

namespace {

constexpr std::array kPaneCommands = {
    PaneCommandText{cmd::kGoToWarning, "Go", "Go to the row where the warning occurs.",
                    "Go to row\tDbl Click"},
    PaneCommandText{cmd::kDismissWarning, "Dismiss", "Delete this warning.", "Dismiss"},
    PaneCommandText{cmd::kWarningsVisible, "Hide", "Hide the warnings list.", ""},
    PaneCommandText{cmd::kCopyWarningExtraData, "", "", "Copy extra data"},
};

} // namespace

const PaneCommandText* FindPaneCommand(int id)
{
    for (const PaneCommandText& entry : kPaneCommands) {
        if (entry.id == id) {
            return &entry;
        }
    }
    return nullptr;
}

} // namespace quirnel
