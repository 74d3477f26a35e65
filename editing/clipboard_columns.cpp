#include "editing/clipboard_columns.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/clipboard_rows.h"
#include "editing/column_commands.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "editing/utf8_cells.h"
#include "ostrand/core/clipboard.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <climits>
#include <numeric>

namespace quirnel {

namespace {

bool IsDataColumn(const TableControl& table, int column)
{
    return column >= 1 && column < table.ColumnCount();
}

std::vector<int> AllRows(const TableControl& table)
{
    std::vector<int> rows(static_cast<std::size_t>(table.RowCount()));
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

} // namespace

void CopyColumnCommand(ToolContext& context, bool cut, int column)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const int id = cut ? cmd::kCutColumn : cmd::kCopyColumn;
    const std::string title(CommandLabel(id));
    // A clicked heading names the column itself: no current column is needed then.
    const unsigned flags = IsDataColumn(table, column) ? 0 : kToolNeedsColumn;
    if (CheckToolPreconditions(context, flags, title, CommandIconName(id)))
        return;
    context.host.CommitCellEdit();
    CopyColumnsRequest request;
    request.title = title;
    request.text =
        cut ? "Choose which columns should be cut." : "Choose which columns should be copied.";
    request.columns = DataColumnNamesUtf8(document);
    request.chosen.assign(request.columns.size(), false);
    const int preselected = IsDataColumn(table, column) ? column : table.FocusColumn();
    if (IsDataColumn(table, preselected))
        request.chosen[static_cast<std::size_t>(preselected - 1)] = true;
    if (!context.dialogs.CopyColumns(request))
        return;
    std::vector<int> columns;
    for (std::size_t c = 0; c < request.chosen.size() && c < request.columns.size(); ++c)
        if (request.chosen[c])
            columns.push_back(static_cast<int>(c) + 1);
    if (columns.empty())
        return;
    RowTexts texts = BuildRecordTexts(document, AllRows(table), columns, request.includeNames);
    // Columns are only cut once they are safely on the clipboard.
    if (!WriteRecordTexts(context.clipboard, std::move(texts), request.includeNames) || !cut)
        return;
    ChangeFrame frame(context);
    for (auto it = columns.rbegin(); it != columns.rend(); ++it)
        document.DeleteColumn(*it);
    const int next =
        table.ColumnCount() > 1 ? std::clamp(columns.front(), 1, table.ColumnCount() - 1) : -1;
    frame.Done(0, frame.Row(), next);
}

void PasteColumnCommand(ToolContext& context)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const int id = cmd::kPasteColumn;
    const std::string title(CommandLabel(id));
    if (CheckToolPreconditions(context, kToolAllowsNoColumns, title, CommandIconName(id)))
        return;
    context.host.CommitCellEdit();
    const TextRecords records = ReadClipboardRecords(context.clipboard);
    if (records.Empty()) {
        InformUser(context, title, "The clipboard does not contain a column.", CommandIconName(id));
        return;
    }
    PasteColumnRequest request;
    request.columns = ColumnNamesUtf8(table);
    const int focus = table.FocusColumn();
    request.insertAfter = IsDataColumn(table, focus) ? focus : table.ColumnCount() - 1;
    request.firstRowNames = context.clipboard.Read(ost::kClipboardCsvMarker).value_or("") == "1";
    request.names.assign(records.MaxWidth(), std::string());
    for (std::size_t f = 0; f < records.Width(0); ++f)
        request.names[f] = records.Field(0, f);
    const std::vector<std::string> firstRecord = request.names;
    if (!context.dialogs.PasteColumn(request))
        return;
    const std::size_t width = records.MaxWidth();
    const std::size_t first = request.firstRowNames ? 1 : 0;
    const std::size_t data = records.Count() - first;
    if (width > static_cast<std::size_t>(INT_MAX - table.ColumnCount()) ||
        data > static_cast<std::size_t>(INT_MAX))
        return;
    const int after = std::clamp(request.insertAfter, 0, table.ColumnCount() - 1);

    ChangeFrame frame(context);
    Utf8Cells cells(document);
    const std::string none;
    std::string scratch;
    for (std::size_t c = 0; c < width; ++c) {
        const std::string& name = request.firstRowNames
                                      ? firstRecord[c]
                                      : (c < request.names.size() ? request.names[c] : none);
        const int at = after + 1 + static_cast<int>(c);
        if (document.IsUnicode())
            document.InsertColumn(at, {}, ost::Utf8ToUtf16(name));
        else
            document.InsertColumn(at, cells.ToSystem(name, scratch));
    }
    // More records than rows: the rest become new rows at the end rather than being dropped.
    if (static_cast<int>(data) > table.RowCount())
        table.InsertRows(table.RowCount(), static_cast<int>(data) - table.RowCount());
    Utf8Cells filled(document);
    for (std::size_t i = 0; i < data; ++i) {
        const std::size_t r = first + i;
        for (std::size_t f = 0; f < records.Width(r); ++f)
            filled.Put(static_cast<int>(i), after + 1 + static_cast<int>(f), records.Field(r, f));
    }
    frame.Done(0, frame.Row(), after + 1);
}

void CopyEntireColumnCommand(ToolContext& context, int column)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    if (!IsDataColumn(table, column))
        return;
    context.host.CommitCellEdit();
    std::vector<int> rows;
    for (int position = 0; position < table.RowCount(); ++position)
        rows.push_back(table.RowAtDisplayPosition(position));
    WriteRecordTexts(context.clipboard, BuildRecordTexts(document, rows, {column}, false), false);
}

} // namespace quirnel
