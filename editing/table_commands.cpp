#include "editing/table_commands.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/jump_to_row.h"
#include "editing/tool_context.h"
#include "ostrand/core/clipboard.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"

#include <optional>

namespace quirnel {

namespace {

/// True when a data cell has the focus; otherwise tells the user and returns false.
bool RequireCurrentCell(ToolContext& context)
{
    const TableControl& table = context.document.Table();
    const int row = table.FocusRow();
    const int column = table.FocusColumn();
    if (row >= 0 && row < table.RowCount() && column >= 1 && column < table.ColumnCount())
        return true;
    context.ui.Message("Error", "Please select a cell first.", ost::MessageIcon::Error);
    return false;
}

} // namespace

void MoveFocusTo(ToolContext& context, int row, int column)
{
    context.host.CommitCellEdit();
    TableControl& table = context.document.Table();
    if (column < 0)
        column = table.FocusColumn();
    table.SetFocusCell(row, column);
    context.host.ShowFocusCell();
}

void BookmarkSetCommand(ToolContext& context)
{
    if (!RequireCurrentCell(context))
        return;
    context.state.bookmarkRow = context.document.Table().FocusRow();
    context.state.bookmarkColumn = context.document.Table().FocusColumn();
}

void BookmarkReturnCommand(ToolContext& context)
{
    const TableControl& table = context.document.Table();
    const EditingState& state = context.state;
    // No bookmark, or its cell went away with deleted rows or columns, or the filter hides it:
    // there is nowhere to go, which is an impossible move rather than an error.
    if (state.bookmarkRow < 0 || state.bookmarkRow >= table.RowCount() ||
        state.bookmarkColumn < 1 || state.bookmarkColumn >= table.ColumnCount() ||
        table.IsRowHidden(state.bookmarkRow)) {
        context.ui.Beep();
        return;
    }
    MoveFocusTo(context, state.bookmarkRow, state.bookmarkColumn);
}

void JumpToRowCommand(ToolContext& context)
{
    context.host.CommitCellEdit();
    const TableControl& table = context.document.Table();
    JumpToRowRequest request = MakeJumpToRowRequest(table.FocusRow(), table.RowCount());
    std::string error;
    std::optional<int> row;
    if (request.rowCount < 1) {
        JumpToRowTarget(request, error);
    } else {
        if (!context.dialogs.JumpToRow(request))
            return;
        row = JumpToRowTarget(request, error);
        if (row && table.IsRowHidden(*row)) {
            error = JumpToHiddenRowMessage(*row);
            row.reset();
        }
    }
    if (!row) {
        context.ui.Message(kJumpToRowTitle, error, ost::MessageIcon::Error);
        return;
    }
    const int column = table.FocusColumn();
    MoveFocusTo(context, *row, column >= 1 && column < table.ColumnCount() ? column : 1);
}

void TableStatisticsCommand(ToolContext& context)
{
    context.host.CommitCellEdit();
    const CommandSpec* command = FindCommand(cmd::kTableStatistics);
    context.ui.Message(std::string(command ? command->label : ""),
                       context.document.Table().StatisticsReport(), ost::MessageIcon::Information);
}

void SelectAllRowsCommand(ToolContext& context, bool select)
{
    TableControl& table = context.document.Table();
    if (select)
        table.SelectAllRows();
    else
        table.DeselectAllRows();
}

void MaximizeColumnWidthsCommand(ToolContext& context, bool maximize)
{
    // The control keeps each width between 20 pixels and half the view's width.
    TableControl& table = context.document.Table();
    if (maximize)
        table.MaximizeAllColumns();
    else
        table.MinimizeAllColumns();
}

void CopyCellTextCommand(ToolContext& context, int row, int column)
{
    const TableDocument& document = context.document;
    if (row < 0 || row >= document.RowCount() || column < 1 || column >= document.ColumnCount())
        return;
    context.clipboard.Write({{std::string(ost::kClipboardPlainText),
                              ost::Utf16ToUtf8(document.CellTextWide(row, column))}});
}

} // namespace quirnel
