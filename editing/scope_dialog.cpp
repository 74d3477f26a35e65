#include "editing/scope_dialog.h"

#include "document/table_document.h"
#include "editing/tool_context.h"
#include "view/table_control.h"

namespace quirnel {

namespace {

bool ValidRow(const TableControl& table, int row)
{
    return row >= 0 && row < table.RowCount();
}

bool ValidColumn(const TableControl& table, int column)
{
    return column >= 1 && column < table.ColumnCount();
}

} // namespace

void FillScopeEntries(const TableControl& table, ScopeRequest& request)
{
    const int row = table.FocusRow();
    const int column = table.FocusColumn();
    request.entries[0] = "Entire table";
    request.entries[1] = ValidRow(table, row) ? "Current row (" + std::to_string(row + 1) + ")"
                                              : std::string("Current row");
    request.entries[2] = ValidColumn(table, column)
                             ? "Current column (" + table.ColumnNameUtf8(column) + ")"
                             : std::string("Current column");
    request.entries[3] = "Selected rows (" + std::to_string(table.SelectedRowCount()) + ")";
    request.entries[4] = "Current cell";
    request.available = {true, ValidRow(table, row), ValidColumn(table, column),
                         table.SelectedRowCount() > 0,
                         ValidRow(table, row) && ValidColumn(table, column)};
}

int ScopeDialog(ToolContext& context, ScopeRequest& request)
{
    FillScopeEntries(context.document.Table(), request);
    const int remembered = context.prefs.scope;
    request.scope = remembered >= kScopeTable && remembered <= kScopeCell &&
                            request.available[static_cast<std::size_t>(remembered - 1)]
                        ? remembered
                        : kScopeTable;
    if (!context.dialogs.Scope(request))
        return kScopeCancelled;
    if (request.scope < kScopeTable || request.scope > kScopeCell)
        return kScopeCancelled;
    context.prefs.scope = request.scope;
    return request.scope;
}

std::vector<int> ScopeColumns(const TableControl& table)
{
    std::vector<int> columns;
    for (int c = 1; c < table.ColumnCount(); ++c)
        if (!table.Column(c).hidden)
            columns.push_back(c);
    return columns;
}

std::vector<int> ScopeRows(const TableControl& table, int scope)
{
    std::vector<int> rows;
    switch (scope) {
    case kScopeTable:
    case kScopeColumn:
        rows.resize(static_cast<std::size_t>(table.RowCount()));
        for (int r = 0; r < table.RowCount(); ++r)
            rows[static_cast<std::size_t>(r)] = r;
        break;
    case kScopeRow:
    case kScopeCell:
        if (ValidRow(table, table.FocusRow()))
            rows.push_back(table.FocusRow());
        break;
    case kScopeSelectedRows:
        if (table.SelectedRowCount() > 0)
            rows = table.SelectedRows();
        break;
    default:
        break;
    }
    return rows;
}

} // namespace quirnel
