#pragma once
// The grid widget: a QTableView over GridModel that turns the control's menus into real
// menus, keeps the control's focus cell, widths, hidden columns and geometry in step with
// what is shown, and selects rows by Ctrl+click in the "#" column.

#include "view/table_control.h"

#include <QTableView>

#include <functional>
#include <memory>

class QMenu;

namespace quirnel {

class GridModel;

/// Font size steps of the grid, as the preferences store them.
enum class GridFontSize : int
{
    Tiny = -2,
    Small = -1,
    Normal = 0,
    Big = 1,
    Large = 2,
    Huge = 3
};

class GridView : public QTableView, public TableControlObserver
{
    Q_OBJECT

public:
    explicit GridView(TableControl& table, QWidget* parent = nullptr);
    ~GridView() override;

    TableControl& Table() { return m_table; }
    GridModel* Model() { return m_model; }

    /// The "Hide index column" preference; the column's own hidden flag also hides it.
    void SetIndexColumnHidden(bool hidden);
    void SetFontSize(GridFontSize size);
    GridFontSize FontSize() const { return m_fontSize; }
    /// Points for a step: 7, 8, 10, 12, 14, 18.
    static int PointSize(GridFontSize size);

    /// The menus as the user would see them; the caller owns the result.
    QMenu* BuildHeaderMenu(int column, QWidget* parent);
    QMenu* BuildCellMenu(int viewRow, int column, QWidget* parent);
    /// What choosing a menu entry does: the control's own commands are carried out here,
    /// every other one is handed on through gridCommand.
    void RunCommand(int command, int argument, int row, int column);
    /// Whether the owner carries out a command the control hands on; menu entries it does
    /// not carry out show disabled. Without a check every entry counts as carried out.
    void SetOwnerCommandCheck(std::function<bool(int command)> check);
    /// Rows dragged by the "#" column, under the drag format `format`: `payload` gives the
    /// drag's data for the storage row pressed (empty: no drag); `drop` takes the data of a
    /// drop and the storage row it landed before (-1: after the last row).
    void SetRowDrag(const QString& format, std::function<QByteArray(int row)> payload,
                    std::function<void(const QByteArray& dropped, int row)> drop);

    /// Makes the control's focus cell current and scrolls it into view.
    void ShowFocusCell();
    /// The in-place editor while one is open, else nullptr.
    QWidget* EditorWidget() const;
    /// Puts an edit in progress into the table and closes the editor; false when none was open.
    bool CommitEdit();

    void OnTableReset() override;
    void OnTableRepaint() override;

signals:
    /// A menu command the control leaves to its owner. `row` is a storage index (-1: none).
    void gridCommand(int command, int argument, int row, int column);
    void cellEdited(int row, int column);
    /// The focus cell moved (row a storage index, -1 for none).
    void focusCellChanged(int row, int column);
    /// A right click in the "#" column: the owner shows its row menu at this screen position.
    void rowMenuRequested(const QPoint& globalPosition);

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void ApplyColumns();
    void UpdateGeometry();
    void ShowHeaderMenu(const QPoint& position);
    void ShowCellMenu(const QPoint& position);
    void AddEntries(QMenu* menu, const std::vector<MenuEntry>& entries, int row, int column);

    TableControl& m_table;
    GridModel* m_model = nullptr;
    std::unique_ptr<TextMeasurer> m_measurer;
    std::function<bool(int)> m_ownerCommandCheck;
    QString m_rowDragFormat;
    std::function<QByteArray(int)> m_rowDragPayload;
    std::function<void(const QByteArray&, int)> m_rowDrop;
    /// Where a press in the "#" column began, and its row; -1 when no row drag can start.
    QPoint m_dragStart;
    int m_dragRow = -1;
    bool m_indexHidden = false;
    bool m_applying = false;
    GridFontSize m_fontSize = GridFontSize::Normal;
};

} // namespace quirnel
