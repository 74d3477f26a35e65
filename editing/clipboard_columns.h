#pragma once
// Columns through the clipboard: Copy Column, Cut Column and Paste Column, and the grid's
// "Copy entire column to clipboard". Columns travel as the same CSV records as rows do.

#include <string>
#include <vector>

namespace quirnel {

struct ToolContext;

/// The dialog of Copy Column and Cut Column.
struct CopyColumnsRequest
{
    /// The command's caption.
    std::string title;
    /// "Choose which columns should be copied." or "... cut."
    std::string text;
    /// The data columns' names (UTF-8): entry i is column i + 1.
    std::vector<std::string> columns;
    /// In: the current column checked; out: the columns chosen.
    std::vector<bool> chosen;
    /// "Include column names".
    bool includeNames = true;
};

/// The dialog of Paste Column.
struct PasteColumnRequest
{
    /// Every column, "#" first: "Insert after:" lists them.
    std::vector<std::string> columns;
    /// The column the pasted ones go after (0 puts them first).
    int insertAfter = 0;
    /// "First row contains column names".
    bool firstRowNames = false;
    /// One per clipboard column (UTF-8): "Column %d name:". Prefilled with the first record,
    /// used when the box is clear.
    std::vector<std::string> names;
};

/// Copy Column (`cut` false) and Cut Column; `column` -1 preselects the current column.
void CopyColumnCommand(ToolContext& context, bool cut, int column = -1);
/// Paste Column. A clipboard with more records than the table has rows appends rows for the
/// rest, so that nothing pasted is lost.
void PasteColumnCommand(ToolContext& context);
/// The column's cells, every row as shown, onto the clipboard without a dialog.
void CopyEntireColumnCommand(ToolContext& context, int column);

} // namespace quirnel
