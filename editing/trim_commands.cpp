#include "editing/trim_commands.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/scope_dialog.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <vector>

namespace quirnel {

namespace {

std::string Caption(int id)
{
    return std::string(CommandLabel(id));
}

struct TrimTally
{
    long long characters = 0;
    long long cells = 0;
};

/// Trims the cells the scope covers. The change frame opens at the first cell that changes, so
/// that a scope with nothing to trim leaves the document as it was.
TrimTally TrimCells(ToolContext& context, const std::vector<int>& rows,
                    const std::vector<int>& columns, int mask)
{
    TableControl& table = context.document.Table();
    TrimTally tally;
    // The frame commits a cell edit in progress, whose text is then trimmed too. Left
    // unfinished when nothing changed, it leaves the document unmodified.
    ChangeFrame frame(context);
    int firstPosition = table.RowCount();
    for (int row : rows) {
        for (int column : columns) {
            const int removed = table.TrimCell(row, column, mask);
            if (removed <= 0)
                continue;
            tally.characters += removed;
            ++tally.cells;
            firstPosition = std::min(firstPosition, table.DisplayPosition(row));
        }
    }
    if (tally.cells > 0)
        frame.Done(std::max(0, firstPosition), frame.Row(), frame.Column());
    return tally;
}

TrimTally TrimScope(ToolContext& context, int scope, int mask)
{
    const TableControl& table = context.document.Table();
    std::vector<int> columns;
    if (scope == kScopeColumn || scope == kScopeCell) {
        if (table.FocusColumn() >= 1 && table.FocusColumn() < table.ColumnCount())
            columns.push_back(table.FocusColumn());
    } else {
        columns = ScopeColumns(table);
    }
    return TrimCells(context, ScopeRows(table, scope), columns, mask);
}

void Report(ToolContext& context, const std::string& title, const TrimTally& tally)
{
    context.ui.Message(title, TrimReport(tally.characters, tally.cells),
                       ost::MessageIcon::Information);
}

} // namespace

std::string TrimReport(long long characters, long long cells)
{
    if (characters <= 0)
        return "No whitespace characters were found.";
    return std::to_string(characters) + " whitespace character" +
           (characters == 1 ? " was" : "s were") + " trimmed from " + std::to_string(cells) +
           " cell" + (cells == 1 ? "" : "s") + ".";
}

void TrimWhitespaceCommand(ToolContext& context)
{
    const std::string title = Caption(cmd::kTrimWhitespace);
    const std::string icon(CommandIconName(cmd::kTrimWhitespace));
    if (CheckToolPreconditions(context, kToolNeedsRows | kToolGoesOnAfterOpen, title, icon))
        return;
    // The editor's text belongs to the table before the dialog names the current cell.
    context.host.CommitCellEdit();
    ScopeRequest request;
    request.title = title;
    request.icon = icon;
    request.options = {
        {"Trim end of each line", "Trim End Of Each Line",
         "If checked, spaces and tabs are also trimmed from the end of each line/paragraph "
         "within each cell.",
         context.prefs.trimLinesEnd},
        {"Reduce spaces", "Reduce Spaces",
         "If checked, runs of multiple spaces will be reduced to a single space.",
         context.prefs.trimReduce},
    };
    const int scope = ScopeDialog(context, request);
    if (scope == kScopeCancelled)
        return;
    context.prefs.trimLinesEnd = request.options[0].checked;
    context.prefs.trimReduce = request.options[1].checked;
    int mask = kTrimLeading | kTrimTrailing;
    if (context.prefs.trimLinesEnd)
        mask |= kTrimLineEnds;
    if (context.prefs.trimReduce)
        mask |= kTrimReduceSpaces;
    Report(context, title, TrimScope(context, scope, mask));
}

void TrimColumnWhitespaceCommand(ToolContext& context, int column)
{
    const std::string title = Caption(cmd::kTrimColumnWhitespace);
    TableControl& table = context.document.Table();
    const bool named = column >= 1 && column < table.ColumnCount();
    // A column named by the header menu counts as the current one for the check.
    if (!named && CheckToolPreconditions(context, kToolNeedsRows | kToolNeedsColumn, title,
                                         CommandIconName(cmd::kTrimColumnWhitespace)))
        return;
    if (named && CheckToolPreconditions(context, kToolNeedsRows, title,
                                        CommandIconName(cmd::kTrimColumnWhitespace)))
        return;
    // Spaces and tabs at both ends, whatever the hidden state of the column: the user named it.
    const int mask = kTrimLeading | kTrimTrailing;
    Report(context, title,
           TrimCells(context, ScopeRows(table, kScopeColumn),
                     std::vector<int>{named ? column : table.FocusColumn()}, mask));
}

} // namespace quirnel
