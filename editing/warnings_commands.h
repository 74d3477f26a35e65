#pragma once
// The commands of the warnings list: show or hide it, go to a warning's row, dismiss a warning
// and copy its extra fields, and the list's context menu. The list itself is the window's
// widget; the commands see it through WarningsList, so every rule here runs in a test.

#include "view/table_control.h"

#include <vector>

namespace quirnel {

struct ToolContext;
class TableDocument;

/// The warnings pane as the commands see it. Its lines are the document's warnings, in the
/// same order: a line's index is its warning's index.
class WarningsList
{
public:
    virtual ~WarningsList() = default;
    /// The selected line; -1 when none.
    virtual int SelectedLine() const = 0;
    /// Removes one line; false when there is no such line.
    virtual bool DeleteLine(int line) = 0;
    /// Fills the lines again from the document's warnings.
    virtual void Refill(const TableDocument& document) = 0;
    /// Shows or hides the pane and lays the window's panes out again.
    virtual void ShowPane(bool shown) = 0;
    /// The table control gets the keyboard focus.
    virtual void FocusTable() = 0;
};

/// Sets the "warnings visible" flag: to `visible` while a file is open, else to false. When
/// the value changes the pane follows (and is refilled when it appears); an unchanged value
/// does nothing. True when the flag changed.
bool SetWarningsVisible(const TableDocument& document, WarningsList& list, bool& flag,
                        bool visible);
/// Toggle warnings (the pane's "Hide" button and "Display warnings").
void ToggleWarnings(const TableDocument& document, WarningsList& list, bool& flag);
/// Go to row: the table gets the focus and its focus cell moves to the selected warning's
/// row. A warning without a row, or whose row is gone or hidden by the filter, leaves the
/// focus cell where it is.
void GoToWarningCommand(ToolContext& context, WarningsList& list);
/// Dismiss: the selected warning goes from list and document; an emptied list hides the pane.
/// Warnings are not part of the file, so the document stays unmodified.
void DismissWarningCommand(ToolContext& context, WarningsList& list, bool& flag);
/// Copy extra data: the selected warning's extra fields onto the clipboard as text.
void CopyWarningExtraDataCommand(ToolContext& context, const WarningsList& list);
/// The context menu of the selected line; empty (the list's own handling runs) when no valid
/// line is selected.
std::vector<MenuEntry> WarningsContextMenu(const TableDocument& document, int line);

} // namespace quirnel
