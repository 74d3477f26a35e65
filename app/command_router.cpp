#include "app/command_router.h"

#include "app/command_ids.h"
#include "app/menu_model.h"
#include "document/table_document.h"
#include "editing/clipboard_columns.h"
#include "editing/clipboard_rows.h"
#include "editing/column_commands.h"
#include "editing/csv_file_transfer.h"
#include "editing/export_html.h"
#include "editing/find_replace.h"
#include "editing/graph_command.h"
#include "editing/print_table.h"
#include "editing/row_commands.h"
#include "editing/spell_check.h"
#include "editing/table_commands.h"
#include "editing/tool_context.h"
#include "editing/trim_commands.h"
#include "view/table_control.h"

namespace quirnel {

CommandRouter::CommandRouter(ShellCommands& shell, ToolContext& tools)
    : m_shell(shell), m_tools(tools)
{}

bool CommandRouter::Handles(int id) const
{
    return Route(id, false);
}

bool CommandRouter::Dispatch(int id)
{
    if (Route(id, true))
        return true;
    if (m_unknown)
        m_unknown(id);
    return false;
}

bool CommandRouter::Route(int id, bool run, int clicked) const
{
    ToolContext& tools = m_tools;
    ShellCommands& shell = m_shell;
    TableControl& table = tools.document.Table();
    // Each case names its handler once; asked only whether one exists, nothing runs.
    auto go = [run](auto&& handler) {
        if (run)
            handler();
        return true;
    };

    if (id >= cmd::kRecentFileBase && id <= cmd::kRecentFileLast)
        return go([&] { shell.OpenRecentFile(id - cmd::kRecentFileBase); });
    if (id >= cmd::kCharacterSetBase && id <= cmd::kCharacterSetLast)
        return go([&] { shell.SetCharacterSet(id - cmd::kCharacterSetBase); });
    int value = 0;
    if (AlignmentFromCommand(id, value)) {
        return go([&] {
            const int column = table.FocusColumn();
            if (column < 1 || column >= table.ColumnCount())
                return;
            table.SetColumnAlignment(column, value == 1   ? Alignment::Center
                                             : value == 2 ? Alignment::Right
                                                          : Alignment::Left);
            shell.RefreshTable();
        });
    }
    if (SortMethodFromCommand(id, value)) {
        return go([&] {
            const int column = table.FocusColumn();
            if (column < 0 || column >= table.ColumnCount())
                return;
            tools.host.CommitCellEdit();
            table.SetColumnSortMethod(column, value);
            if (table.SortColumn() == column)
                table.Sort();
            shell.RefreshTable();
        });
    }
    if (SortOnColumnFromCommand(id, value)) {
        return go([&] {
            tools.host.CommitCellEdit();
            if (value < 0)
                table.Unsort();
            else
                table.SetSort(value, true);
            shell.RefreshTable();
        });
    }

    switch (id) {
    case cmd::kNewFile:
        return go([&] { shell.NewFile(); });
    case cmd::kOpenFile:
        return go([&] { shell.OpenFile(); });
    case cmd::kOpenNonstandardFile:
        return go([&] { shell.OpenNonstandardFile(); });
    case cmd::kSaveFile:
        return go([&] { shell.SaveFile(); });
    case cmd::kSaveFileAs:
        return go([&] { shell.SaveFileAs(); });
    case cmd::kCloseFile:
        return go([&] { shell.CloseFile(); });
    case cmd::kExit:
        return go([&] { shell.Exit(); });
    case cmd::kFileProperties:
        return go([&] { shell.FileProperties(); });
    case cmd::kExploreFolder:
        return go([&] { shell.ExploreFolder(); });
    case cmd::kPreferences:
        return go([&] { shell.EditPreferences(); });
    case cmd::kAssociateFileType:
        return go([&] { shell.AssociateFileType(); });
    case cmd::kCustomizeToolbar:
        return go([&] { shell.CustomizeToolbar(); });
    case cmd::kDisplayToolbar:
        return go([&] { shell.ToggleToolbar(); });
    case cmd::kMultilineEditingMode:
    case cmd::kMultilineEditingOption:
        return go([&] { shell.ToggleMultilineEditing(); });
    case cmd::kWarningsVisible:
    case cmd::kDisplayWarnings:
        return go([&] { shell.ToggleWarnings(); });
    case cmd::kGoToWarning:
        return go([&] { shell.GoToWarning(); });
    case cmd::kDismissWarning:
        return go([&] { shell.DismissWarning(); });
    case cmd::kFilterEnabled:
    case cmd::kFilterText:
    case cmd::kFilterOptionChanged:
        return go([&] { shell.FilterChanged(id); });
    case cmd::kToggleBoundOption:
        // The bound boolean was flipped before the id was sent; only the states follow.
        return go([&] { shell.RefreshStates(); });

    case cmd::kCreateRow:
        return go([&] { InsertRowCommand(tools, kCreateRowOffset); });
    case cmd::kInsertRowBefore:
        return go([&] { InsertRowCommand(tools, 0); });
    case cmd::kInsertRowAfter:
        return go([&] { InsertRowCommand(tools, 1); });
    case cmd::kDeleteRows:
        return go([&] { DeleteRowsCommand(tools); });
    case cmd::kDuplicateRows:
        return go([&] { DuplicateRowsCommand(tools); });
    case cmd::kMoveRowUp:
        return go([&] { MoveRowsCommand(tools, true); });
    case cmd::kMoveRowDown:
        return go([&] { MoveRowsCommand(tools, false); });
    case cmd::kDeduplicateRows:
        return go([&] { DeduplicateRowsCommand(tools); });
    case cmd::kShuffleRows:
        return go([&] { ShuffleRowsCommand(tools); });
    case cmd::kShiftCells:
        return go([&] { ShiftCellsCommand(tools); });

    case cmd::kCreateColumn:
        return go([&] { NewColumnCommand(tools, kCreateColumnOffset); });
    case cmd::kInsertColumnBefore:
    case cmd::kHeadingInsertColumnBefore:
        return go([&] { NewColumnCommand(tools, 0, clicked); });
    case cmd::kInsertColumnAfter:
    case cmd::kHeadingInsertColumnAfter:
        return go([&] { NewColumnCommand(tools, 1, clicked); });
    case cmd::kDeleteColumn:
    case cmd::kHeadingDeleteColumn:
        return go([&] { DeleteColumnCommand(tools, clicked); });
    case cmd::kRenameColumn:
    case cmd::kHeadingRenameColumn:
        return go([&] { RenameColumnCommand(tools, clicked); });
    case cmd::kMoveColumnLeft:
    case cmd::kHeadingMoveColumnLeft:
        return go([&] { MoveColumnCommand(tools, true, clicked); });
    case cmd::kMoveColumnRight:
    case cmd::kHeadingMoveColumnRight:
        return go([&] { MoveColumnCommand(tools, false, clicked); });
    case cmd::kCombineColumns:
    case cmd::kHeadingCombineColumns:
        return go([&] { CombineColumnsCommand(tools, clicked); });
    case cmd::kSetEntireColumn:
        return go([&] { SetEntireColumnCommand(tools, clicked); });

    case cmd::kBookmarkSet:
        return go([&] { BookmarkSetCommand(tools); });
    case cmd::kBookmarkReturn:
        return go([&] { BookmarkReturnCommand(tools); });
    case cmd::kJumpToRow:
        return go([&] { JumpToRowCommand(tools); });
    case cmd::kSelectAllRows:
    case cmd::kDeselectAllRows:
        return go([&] {
            SelectAllRowsCommand(tools, id == cmd::kSelectAllRows);
            shell.RefreshStates();
        });
    case cmd::kMaximizeColumnWidths:
    case cmd::kMinimizeColumnWidths:
        return go([&] {
            MaximizeColumnWidthsCommand(tools, id == cmd::kMaximizeColumnWidths);
            shell.RefreshTable();
        });
    case cmd::kTableStatistics:
        return go([&] { TableStatisticsCommand(tools); });
    case cmd::kExportToHtml:
        return go([&] { ExportToHtmlCommand(tools); });
    case cmd::kPrint:
        return go([&] { PrintCommand(tools); });
    case cmd::kTrimWhitespace:
        return go([&] { TrimWhitespaceCommand(tools); });
    case cmd::kTrimColumnWhitespace:
        return go([&] { TrimColumnWhitespaceCommand(tools); });
    case cmd::kGraph:
        return go([&] { GraphCommand(tools); });
    case cmd::kSpellCheckTable:
        return go([&] { SpellCheckTableCommand(tools); });

    case cmd::kFind:
        return go([&] { SearchTableCommand(tools, SearchMode::Find, false, id); });
    case cmd::kFindReplace:
        return go([&] { SearchTableCommand(tools, SearchMode::FindReplace, false, id); });
    case cmd::kFindNext:
    case cmd::kFindPrevious:
        return go(
            [&] { SearchTableCommand(tools, SearchMode::Continue, id == cmd::kFindPrevious, id); });
    case cmd::kSearchColumn:
    case cmd::kHeadingSearchColumn:
        return go([&] { SearchColumnCommand(tools, false, clicked); });
    case cmd::kSearchColumnContinue:
    case cmd::kHeadingSearchColumnContinue:
        return go([&] { SearchColumnCommand(tools, true, clicked); });
    case cmd::kCopyRows:
    case cmd::kCutRows:
        return go([&] { CopyRowsCommand(tools, id == cmd::kCutRows); });
    case cmd::kPasteRows:
    case cmd::kPasteRowsWithMapping:
        return go([&] { PasteRowsCommand(tools, id == cmd::kPasteRowsWithMapping); });
    case cmd::kCopyColumn:
    case cmd::kHeadingCopyColumn:
        return go([&] { CopyColumnCommand(tools, false, clicked); });
    case cmd::kCutColumn:
        return go([&] { CopyColumnCommand(tools, true); });
    case cmd::kPasteColumn:
        return go([&] { PasteColumnCommand(tools); });
    case cmd::kImportCsvFile:
        return go([&] { ImportCsvFileCommand(tools); });
    case cmd::kCopyWarningExtraData:
        return go([&] { shell.CopyWarningExtraData(); });

    case cmd::kRowMenu:
    case cmd::kColumnMenu:
    case cmd::kSortOnColumnMenu:
    case cmd::kCellMenu:
    case cmd::kCharacterSetMenu:
        // Popups are filled when they open; choosing the popup itself does nothing.
        return go([] {});
    default:
        return false;
    }
}

int CommandRouter::GridCommandId(int command)
{
    // Entries the window added to the grid's menus carry the window's own ids.
    if (command >= cmd::kToggleBoundOption)
        return command;
    switch (static_cast<GridCommand>(command)) {
    case GridCommand::PasteNewRows:
        return cmd::kPasteRows;
    case GridCommand::SearchColumn:
        return cmd::kSearchColumn;
    case GridCommand::SearchColumnContinue:
        return cmd::kSearchColumnContinue;
    case GridCommand::SetEntireColumn:
        return cmd::kSetEntireColumn;
    case GridCommand::TrimColumnWhitespace:
        return cmd::kTrimColumnWhitespace;
    case GridCommand::AddRow:
        return cmd::kCreateRow;
    case GridCommand::DeleteRows:
        return cmd::kDeleteRows;
    case GridCommand::DuplicateRow:
        return cmd::kDuplicateRows;
    case GridCommand::MoveRowUp:
        return cmd::kMoveRowUp;
    case GridCommand::MoveRowDown:
        return cmd::kMoveRowDown;
    case GridCommand::BookmarkReturn:
        return cmd::kBookmarkReturn;
    case GridCommand::BookmarkSet:
        return cmd::kBookmarkSet;
    case GridCommand::JumpToRow:
        return cmd::kJumpToRow;
    case GridCommand::Statistics:
        return cmd::kTableStatistics;
    case GridCommand::ImportCsv:
        return cmd::kImportCsvFile;
    default:
        return 0;
    }
}

bool CommandRouter::HandlesGridCommand(int command) const
{
    switch (static_cast<GridCommand>(command)) {
    case GridCommand::CopyCellText:
    case GridCommand::DeleteAllRows:
    case GridCommand::TrimColumnWhitespace:
    case GridCommand::CopyColumn:
    case GridCommand::ExportCsv:
        return true;
    default:
        break;
    }
    const int id = GridCommandId(command);
    return id != 0 && Handles(id);
}

bool CommandRouter::DispatchGridCommand(int command, int /*argument*/, int row, int column)
{
    switch (static_cast<GridCommand>(command)) {
    case GridCommand::CopyCellText:
        CopyCellTextCommand(m_tools, row, column);
        return true;
    case GridCommand::DeleteAllRows:
        DeleteAllRowsCommand(m_tools);
        m_shell.RefreshStates();
        return true;
    case GridCommand::TrimColumnWhitespace:
        // From the header menu: the column clicked, which need not be the current one.
        TrimColumnWhitespaceCommand(m_tools, column);
        return true;
    case GridCommand::CopyColumn:
        // "Copy entire column to clipboard": the clicked column's cells, without a dialog.
        CopyEntireColumnCommand(m_tools, column);
        return true;
    case GridCommand::ExportCsv:
        ExportCsvFileCommand(m_tools);
        return true;
    default:
        break;
    }
    const int id = GridCommandId(command);
    if (id == 0 || !Handles(id)) {
        // Commands whose handlers do not exist yet: doing nothing beats pretending.
        return false;
    }
    // The header menu's column entries (the window's heading ids and the control's "Set entire
    // column") act on the column clicked, which need not be the current one.
    const bool heading =
        command == static_cast<int>(GridCommand::SetEntireColumn) ||
        (id >= cmd::kHeadingDeleteColumn && id <= cmd::kHeadingSearchColumnContinue) ||
        id == cmd::kHeadingCopyColumn || id == cmd::kHeadingCombineColumns ||
        command == static_cast<int>(GridCommand::SearchColumn) ||
        command == static_cast<int>(GridCommand::SearchColumnContinue);
    return heading ? Route(id, true, column) : Dispatch(id);
}

} // namespace quirnel
