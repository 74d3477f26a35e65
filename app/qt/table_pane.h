#pragma once
// The "Table" pane: the grid widget over the document's TableControl, with the few calls the
// main window needs (refresh around loads, commit an edit in progress, follow the focus cell).

#include <QWidget>

#include <functional>

class QAbstractItemView;

namespace quirnel {

class TableControl;

class TablePane : public QWidget
{
    Q_OBJECT

public:
    TablePane(TableControl& table, QWidget* parent = nullptr);
    ~TablePane() override;

    /// Around a change of the whole table (load, close, new file).
    void BeginReset();
    void EndReset();
    /// Cells, widths or sort changed.
    void Refresh();
    /// Only this cell's text changed (storage row).
    void RepaintCell(int row, int column);
    void SetIndexColumnHidden(bool hidden);
    /// "Font size:" step, -2 (Tiny) .. 3 (Huge).
    void SetFontSize(int step);
    /// Puts an edit in progress into the table.
    void CommitEdit();
    /// Scrolls to and selects the control's focus cell.
    void ShowFocusCell();
    /// ShowFocusCell, with [start, start + length) of the cell's text (UTF-16 units) drawn
    /// selected until the current cell changes.
    void ShowMatch(int row, int column, int start, int length);
    /// The in-place editor while one is open, else nullptr.
    QWidget* EditorWidget() const;
    QAbstractItemView* View() const;
    /// Changes a cell as an in-place edit does (the text is what the user typed).
    bool EditCell(int viewRow, int column, const QString& text);
    /// Whether the window carries out a grid command; the grid's menus disable the others.
    void SetGridCommandCheck(std::function<bool(int command)> check);

signals:
    void CurrentCellChanged();
    /// The user changed a cell's text.
    void CellEdited(int row, int column);
    /// A grid menu command the control leaves to the window.
    void GridCommand(int command, int argument, int row, int column);
    /// A right click on a row number: the window shows the Row menu there.
    void RowMenuRequested(const QPoint& globalPosition);

private:
    struct Impl;
    Impl* m_impl;
};

} // namespace quirnel
