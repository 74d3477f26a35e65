#include "app/menu_model.h"

#include "app/command_ids.h"
#include "app/toolbar_model.h"
#include "view/table_control.h"

#include <algorithm>
#include <cstddef>

namespace quirnel {
namespace {

CommandMenuEntry Item(int id, std::string text)
{
    CommandMenuEntry entry;
    entry.id = id;
    entry.text = std::move(text);
    return entry;
}

CommandMenuEntry CheckItem(int id, std::string text, OptionBinding binding = OptionBinding::None)
{
    CommandMenuEntry entry = Item(id, std::move(text));
    entry.check = MenuCheck::Check;
    entry.binding = binding;
    return entry;
}

CommandMenuEntry Separator()
{
    CommandMenuEntry entry;
    entry.kind = MenuEntryKind::Separator;
    return entry;
}

CommandMenuEntry Submenu(std::string text, int popupId, std::vector<CommandMenuEntry> children = {})
{
    CommandMenuEntry entry;
    entry.kind = MenuEntryKind::Submenu;
    entry.text = std::move(text);
    entry.popupId = popupId;
    entry.children = std::move(children);
    return entry;
}

void AddHelp(std::vector<CommandMenuEntry>& entries, bool helpAvailable, int id, std::string text)
{
    if (helpAvailable) {
        entries.push_back(Separator());
        entries.push_back(Item(id, std::move(text)));
    }
}

std::vector<CommandMenuEntry> RowPopup(const DocumentState& state)
{
    // "%s" of the row texts: a plural "s" from two selected rows on.
    const std::string s = state.selectedRowCount >= 2 ? "s" : "";
    std::vector<CommandMenuEntry> entries = {
        Item(cmd::kCopyRows, "Copy row" + s + "\tCtrl+Shift+C"),
        Item(cmd::kCreateRow, "Create row"),
        Item(cmd::kCutRows, "Cut row" + s + "\tCtrl+Shift+X"),
        Item(cmd::kDeleteRows, "Delete row" + s + "\tAlt+Delete"),
        Item(cmd::kDuplicateRows, "Duplicate row" + s),
        Item(cmd::kInsertRowBefore, "Insert row before"),
        Item(cmd::kInsertRowAfter, "Insert row after\tAlt+Insert"),
        Item(cmd::kMoveRowUp, "Move row" + s + " up\tAlt+PageUp"),
        Item(cmd::kMoveRowDown, "Move row" + s + " down\tAlt+PageDown"),
        Item(cmd::kPasteRows, "Paste row(s)\tCtrl+Shift+V"),
        Item(cmd::kShiftCells, "Shift cells left/right"),
    };
    AddHelp(entries, state.helpAvailable, cmd::kHelpRowMenu, "Help - Row menu");
    return entries;
}

std::vector<CommandMenuEntry> ColumnPopup(const DocumentState& state)
{
    std::vector<CommandMenuEntry> entries;
    const int column = state.currentColumn;
    // Column 0 holds the row numbers: it has no alignment of its own.
    if (column >= 1 && column < state.columnCount) {
        std::vector<CommandMenuEntry> alignment;
        const char* names[] = {"Left", "Center", "Right"};
        for (int i = 0; i < 3; ++i) {
            CommandMenuEntry entry = Item(cmd::kColumnAlignmentBase + i, names[i]);
            entry.check = MenuCheck::Radio;
            alignment.push_back(std::move(entry));
        }
        entries.push_back(Submenu("Alignment", 0, std::move(alignment)));
    }
    const CommandMenuEntry fixed[] = {
        Item(cmd::kCombineColumns, "Combine columns"),
        Item(cmd::kCopyColumn, "Copy column"),
        Item(cmd::kCreateColumn, "Create column"),
        Item(cmd::kCutColumn, "Cut column"),
        Item(cmd::kDeleteColumn, "Delete column"),
        Item(cmd::kInsertColumnAfter, "Insert column after"),
        Item(cmd::kInsertColumnBefore, "Insert column before"),
        Item(cmd::kMoveColumnLeft, "Move column left"),
        Item(cmd::kMoveColumnRight, "Move column right"),
        Item(cmd::kPasteColumn, "Paste column"),
        Item(cmd::kRenameColumn, "Rename column"),
        Item(cmd::kSearchColumn, "Search column\tCtrl+Shift+N"),
        Item(cmd::kSearchColumnContinue, "Search column/continue\tCtrl+N"),
        Item(cmd::kSetEntireColumn, "Set entire column"),
    };
    entries.insert(entries.end(), std::begin(fixed), std::end(fixed));
    if (column >= 0 && column < state.columnCount) {
        std::vector<CommandMenuEntry> methods;
        for (const SortMethodName& method : kSortMethodNames) {
            CommandMenuEntry entry = Item(cmd::kSortMethodBase + method.method, method.text);
            entry.check = MenuCheck::Radio;
            methods.push_back(std::move(entry));
        }
        entries.push_back(Submenu("Sort method", 0, std::move(methods)));
    }
    entries.push_back(Item(cmd::kTrimColumnWhitespace, "Trim column whitespace"));
    AddHelp(entries, state.helpAvailable, cmd::kHelpColumnMenu, "Help - Column menu");
    return entries;
}

std::vector<CommandMenuEntry> SortOnColumnPopup(const DocumentState& state)
{
    std::vector<CommandMenuEntry> entries;
    if (state.columnCount < 2) {
        return entries;
    }
    CommandMenuEntry none = Item(SortOnColumnCommand(-1), "No sorting");
    none.check = MenuCheck::Radio;
    entries.push_back(std::move(none));
    entries.push_back(Separator());
    for (int column = 1; column < state.columnCount; ++column) {
        const auto index = static_cast<std::size_t>(column);
        CommandMenuEntry entry =
            Item(SortOnColumnCommand(column),
                 index < state.columnTitles.size() ? state.columnTitles[index] : "");
        entry.check = MenuCheck::Radio;
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::vector<CommandMenuEntry> CharacterSetPopup(const DocumentState& state)
{
    std::vector<CommandMenuEntry> entries;
    const std::size_t count = std::min<std::size_t>(
        state.characterSets.size(),
        static_cast<std::size_t>(cmd::kCharacterSetLast - cmd::kCharacterSetBase + 1));
    for (std::size_t i = 0; i < count; ++i) {
        CommandMenuEntry entry =
            Item(cmd::kCharacterSetBase + static_cast<int>(i), state.characterSets[i].name);
        entry.check = MenuCheck::Radio;
        entries.push_back(std::move(entry));
    }
    return entries;
}

void FillChecks(std::vector<CommandMenuEntry>& entries, const DocumentState& state)
{
    for (CommandMenuEntry& entry : entries) {
        if (entry.check != MenuCheck::None) {
            entry.checked = ComputeCommandState(entry, state).checked;
        }
        FillChecks(entry.children, state);
    }
}

} // namespace

std::vector<Menu> MainMenuBar(bool helpAvailable)
{
    std::vector<Menu> menus;

    Menu file{"&File", 0, {}};
    file.entries = {
        Item(cmd::kNewFile, "&New file"),
        Item(cmd::kOpenFile, "&Open file\tCtrl+O"),
        Item(cmd::kOpenNonstandardFile, "Open nonstandard file"),
        Item(cmd::kSaveFile, "&Save file\tCtrl+S"),
        Item(cmd::kSaveFileAs, "Save file &as"),
        Item(cmd::kCloseFile, "&Close file"),
        Separator(),
        Item(cmd::kFileProperties, "File properties"),
        Item(cmd::kExploreFolder, "Explore folder"),
        Item(cmd::kExportToHtml, "Export to HTML"),
        Item(cmd::kPrint, "Print"),
    };
    CommandMenuEntry recent;
    recent.kind = MenuEntryKind::RecentFiles;
    file.entries.push_back(std::move(recent));
    file.entries.push_back(Separator());
    file.entries.push_back(Item(cmd::kExit, "E&xit\tCtrl+F4"));
    menus.push_back(std::move(file));

    Menu options{"&Options", 0, {}};
    options.entries = {
        Item(cmd::kPreferences, "Preferences\tAlt+P"),
        Item(cmd::kCustomizeToolbar, "Customize toolbar"),
        Submenu("Character set", cmd::kCharacterSetMenu),
        Separator(),
        CheckItem(cmd::kToggleBoundOption, "Copy rows: no column names",
                  OptionBinding::CopyRowsNoColumnNames),
        CheckItem(cmd::kDisplayWarnings, "Display warnings"),
        CheckItem(cmd::kDisplayToolbar, "Display toolbar"),
        CheckItem(cmd::kFilterOptionChanged, "Filter: case sensitive",
                  OptionBinding::FilterCaseSensitive),
        CheckItem(cmd::kFilterOptionChanged, "Filter: whole word", OptionBinding::FilterWholeWord),
        CheckItem(cmd::kMultilineEditingOption, "Multiline editing mode"),
        CheckItem(cmd::kToggleBoundOption, "Warn if too few columns", OptionBinding::WarnTooFew),
    };
    AddHelp(options.entries, helpAvailable, cmd::kHelpOptionsMenu, "Help - Options menu");
    menus.push_back(std::move(options));

    menus.push_back({"C&ell", cmd::kCellMenu, {}});
    menus.push_back({"&Column", cmd::kColumnMenu, {}});
    menus.push_back({"&Row", cmd::kRowMenu, {}});

    Menu table{"T&able", 0, {}};
    table.entries = {
        Item(cmd::kBookmarkReturn, "Bookmark/return\tF4"),
        Item(cmd::kBookmarkSet, "Bookmark/set\tShift+F4"),
        Item(cmd::kDeselectAllRows, "Deselect all rows"),
        Item(cmd::kJumpToRow, "Jump to row"),
        Item(cmd::kMaximizeColumnWidths, "Maximize all column widths"),
        Item(cmd::kMinimizeColumnWidths, "Minimize all column widths"),
        Item(cmd::kSelectAllRows, "Select all rows"),
        Submenu("Sort on column", cmd::kSortOnColumnMenu),
        Item(cmd::kTableStatistics, "Table statistics"),
    };
    AddHelp(table.entries, helpAvailable, cmd::kHelpTableMenu, "Help - Table menu");
    menus.push_back(std::move(table));

    Menu tools{"&Tools", 0, {}};
    tools.entries = {
        Item(cmd::kDeduplicateRows, "Deduplicate rows"),
        Item(cmd::kFind, "Find\tCtrl+F2"),
        Item(cmd::kFindReplace, "Find/replace\tAlt+F2"),
        Item(cmd::kFindNext, "Find/next\tF2"),
        Item(cmd::kFindPrevious, "Find/previous\tShift+F2"),
        Item(cmd::kGraph, "Graph"),
        Item(cmd::kImportCsvFile, "Import from CSV file"),
        Item(cmd::kShuffleRows, "Shuffle rows"),
        Item(cmd::kSpellCheckTable, "Spell check table"),
        Item(cmd::kTrimWhitespace, "Trim whitespace"),
    };
    AddHelp(tools.entries, helpAvailable, cmd::kHelpToolsMenu, "Help - Tools menu");
    menus.push_back(std::move(tools));
    return menus;
}

std::vector<CommandMenuEntry> OnInitPopup(int popupId, const DocumentState& state)
{
    std::vector<CommandMenuEntry> entries;
    switch (popupId) {
    case cmd::kRowMenu:
        entries = RowPopup(state);
        break;
    case cmd::kColumnMenu:
        entries = ColumnPopup(state);
        break;
    case cmd::kSortOnColumnMenu:
        entries = SortOnColumnPopup(state);
        break;
    case cmd::kCellMenu: {
        CommandMenuEntry editor;
        editor.kind = MenuEntryKind::CellEditorMenu;
        entries.push_back(std::move(editor));
        break;
    }
    case cmd::kCharacterSetMenu:
        entries = CharacterSetPopup(state);
        break;
    default:
        break;
    }
    FillChecks(entries, state);
    return entries;
}

std::vector<CommandMenuEntry> RecentFileEntries(const std::vector<std::string>& paths)
{
    std::vector<CommandMenuEntry> entries;
    const std::size_t count = std::min<std::size_t>(
        paths.size(), static_cast<std::size_t>(cmd::kRecentFileLast - cmd::kRecentFileBase + 1));
    for (std::size_t i = 0; i < count; ++i) {
        // A "&" in a path would otherwise turn the next letter into a mnemonic.
        std::string escaped;
        for (char c : paths[i]) {
            escaped += c;
            if (c == '&') {
                escaped += '&';
            }
        }
        const std::string number = std::to_string(i + 1);
        std::string text = i < 9 ? "&" + number + " " + escaped : number + " " + escaped;
        entries.push_back(Item(cmd::kRecentFileBase + static_cast<int>(i), std::move(text)));
    }
    return entries;
}

std::vector<CommandMenuEntry> ToolbarContextMenu(bool shown, int size, bool noTips)
{
    std::vector<CommandMenuEntry> entries;
    CommandMenuEntry display = CheckItem(cmd::kDisplayToolbar, "Display toolbar");
    display.checked = shown;
    entries.push_back(std::move(display));
    entries.push_back(Item(cmd::kCustomizeToolbar, "Customize toolbar"));
    std::vector<CommandMenuEntry> sizes;
    int position = 0;
    for (const ToolbarSizeChoice& choice : kToolbarSizes) {
        CommandMenuEntry entry = Item(cmd::kToolbarSizeBase + position++, std::string(choice.name));
        entry.check = MenuCheck::Radio;
        entry.checked = choice.pixels == size;
        sizes.push_back(std::move(entry));
    }
    entries.push_back(Submenu("Toolbar size", 0, std::move(sizes)));
    CommandMenuEntry tips = CheckItem(cmd::kToolbarNoTips, "Balloon help disabled");
    tips.checked = noTips;
    entries.push_back(std::move(tips));
    return entries;
}

std::vector<int> MenuCommandIds(const std::vector<CommandMenuEntry>& entries)
{
    std::vector<int> ids;
    for (const CommandMenuEntry& entry : entries) {
        if (entry.kind == MenuEntryKind::Command) {
            ids.push_back(entry.id);
        }
        const std::vector<int> nested = MenuCommandIds(entry.children);
        ids.insert(ids.end(), nested.begin(), nested.end());
    }
    return ids;
}

int SortOnColumnCommand(int column)
{
    return cmd::kSortOnColumnBase + column;
}

bool SortOnColumnFromCommand(int id, int& column)
{
    if (id < cmd::kSortOnColumnBase - 1) {
        return false;
    }
    column = id - cmd::kSortOnColumnBase;
    return true;
}

bool AlignmentFromCommand(int id, int& alignment)
{
    if (id < cmd::kColumnAlignmentBase || id > cmd::kColumnAlignmentBase + 2) {
        return false;
    }
    alignment = id - cmd::kColumnAlignmentBase;
    return true;
}

bool SortMethodFromCommand(int id, int& method)
{
    if (id < cmd::kSortMethodBase || id > cmd::kSortMethodBase + 5) {
        return false;
    }
    method = id - cmd::kSortMethodBase;
    return true;
}

} // namespace quirnel
