#pragma once
// The "Editor" pane: a multi-line editor of the focus cell's text, shown below the grid in
// multiline editing mode. Every keystroke goes into the cell at once, so the table never holds
// a text older than what the pane shows.

#include <QPlainTextEdit>

namespace quirnel {

class TableDocument;

class EditorPane : public QPlainTextEdit
{
    Q_OBJECT

public:
    EditorPane(TableDocument& document, QWidget* parent = nullptr);

    /// Loads the control's focus cell; empty and read-only when no data cell has the focus.
    void ShowFocusCell();
    /// Lets go of the cell without writing to it (its table is about to be replaced).
    void Forget();
    /// Puts the pane's text into its cell; false when the cell held it already.
    bool Commit();
    /// Selects [start, start + length) of the text (UTF-16 units), as a search shows a match.
    void SelectText(int start, int length);

signals:
    /// The pane changed the text of this cell (storage row, column).
    void CellCommitted(int row, int column);

private:
    TableDocument& m_document;
    /// Storage row and column of the cell shown; -1 when none.
    int m_row = -1;
    int m_column = -1;
    bool m_loading = false;
};

} // namespace quirnel
