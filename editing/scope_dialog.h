#pragma once
// The editing tools' common question of which cells a tool works on: the whole table, the
// current row, column or cell, or the selected rows. The request carries the tool's own
// options too, so that one dialog asks everything before the tool runs.

#include <array>
#include <string>
#include <vector>

namespace quirnel {

struct ToolContext;
class TableControl;

/// Scope codes; 0 is a cancelled dialog. The last one chosen is kept in the "Scope" setting.
inline constexpr int kScopeCancelled = 0;
inline constexpr int kScopeTable = 1;
inline constexpr int kScopeRow = 2;
inline constexpr int kScopeColumn = 3;
inline constexpr int kScopeSelectedRows = 4;
inline constexpr int kScopeCell = 5;

/// One of the tool's own check boxes, shown under "Options".
struct ScopeOption
{
    std::string text;
    std::string helpTitle;
    std::string help;
    bool checked = false;
};

struct ScopeRequest
{
    std::string title;
    /// The tool's image, by its name in the command table.
    std::string icon;
    std::vector<ScopeOption> options;
    /// The radio buttons' texts, for scopes 1 to 5 in that order.
    std::array<std::string, 5> entries;
    /// False for a scope with nothing to work on (no current row, no selection, ...).
    std::array<bool, 5> available{};
    /// In: the scope preselected; out: the one chosen (1 to 5).
    int scope = kScopeTable;
};

/// The entries as the table stands: "Current row (%d)" with the current row's number,
/// "Current column (%s)" with its name, "Selected rows (%d)" with the count.
void FillScopeEntries(const TableControl& table, ScopeRequest& request);

/// Shows the dialog with the last scope chosen preselected (or "Entire table" when that one has
/// nothing to work on now) and keeps the choice for next time. The chosen scope, or 0.
int ScopeDialog(ToolContext& context, ScopeRequest& request);

/// The data columns of the table, row and selected-row scopes: every data column that is not
/// hidden (a hidden column is out of the user's sight, so it is left as it is).
std::vector<int> ScopeColumns(const TableControl& table);
/// The rows of a scope, in storage order; empty when it has none. Rows hidden by the filter
/// belong to the table and column scopes.
std::vector<int> ScopeRows(const TableControl& table, int scope);

} // namespace quirnel
