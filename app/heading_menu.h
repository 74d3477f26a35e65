#pragma once
// The window's part in the grid control's column-heading menu: the column commands, sent with
// their heading ids so that they act on the column whose heading was clicked.

#include "editing/search_options.h"
#include "ostrand/core/clipboard.h"
#include "view/table_control.h"

#include <vector>

namespace quirnel {

/// Appends the window's entries for a heading: "Combine columns", "Copy column", "Delete
/// column", "Insert column after", "Insert column before", "Move column left", "Move column
/// right", "Rename column", and the two column searches when `columnSearch`. The "#" column
/// gets none.
void AddHeadingColumnEntries(int column, bool columnSearch, std::vector<MenuEntry>& entries);

/// The grid's owner as the editor window is: it adds the heading entries.
class EditorTableOwner : public TableControlOwner
{
public:
    void AddColumnMenuEntries(int column, std::vector<MenuEntry>& entries) override
    {
        // The control's own "Search column" entries stand in the menu already.
        AddHeadingColumnEntries(column, false, entries);
    }
    /// Where the column search keeps its state: "Search column/continue" shows once it has
    /// searched.
    void SetColumnSearchState(const ColumnSearchState* state) { m_columnSearch = state; }
    bool HasColumnSearch() override { return m_columnSearch && m_columnSearch->made; }
    /// "Paste new rows" is offered while the clipboard holds text.
    bool ClipboardHasText() override
    {
        return m_clipboard && m_clipboard->Has(ost::kClipboardPlainText);
    }
    void SetClipboard(ost::Clipboard* clipboard) { m_clipboard = clipboard; }

private:
    const ColumnSearchState* m_columnSearch = nullptr;
    ost::Clipboard* m_clipboard = nullptr;
};

} // namespace quirnel
