#pragma once
// The Table menu's and the grid menu's commands that move around the table or report on it
// without changing it: the bookmark, Jump To Row, row selection, column widths, statistics and
// copying one cell's text.

namespace quirnel {

struct ToolContext;

/// F4 / Shift+F4. Setting needs a current cell ("Please select a cell first."); returning
/// without a bookmark, or to a cell gone or hidden, is an impossible move and beeps.
void BookmarkSetCommand(ToolContext& context);
void BookmarkReturnCommand(ToolContext& context);
void JumpToRowCommand(ToolContext& context);
void TableStatisticsCommand(ToolContext& context);
void SelectAllRowsCommand(ToolContext& context, bool select);
void MaximizeColumnWidthsCommand(ToolContext& context, bool maximize);
/// The cell's text onto the clipboard as plain text; nothing for a cell that is not there.
void CopyCellTextCommand(ToolContext& context, int row, int column);
/// Makes the cell current and lets the view follow; column -1 keeps the current column.
void MoveFocusTo(ToolContext& context, int row, int column);

} // namespace quirnel
