#include "app/qt/table_pane.h"

#include "app/qt/match_delegate.h"
#include "view/qt/grid_model.h"
#include "view/qt/grid_view.h"
#include "view/table_control.h"

#include <QApplication>
#include <QVBoxLayout>

namespace quirnel {

struct TablePane::Impl
{
    TableControl& table;
    GridView* view = nullptr;
    int resetting = 0;
    MatchDelegate* matches = nullptr;
};

TablePane::TablePane(TableControl& table, QWidget* parent)
    : QWidget(parent), m_impl(new Impl{table})
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_impl->view = new GridView(table, this);
    layout->addWidget(m_impl->view);
    setFocusProxy(m_impl->view);
    m_impl->matches = new MatchDelegate(table, m_impl->view);
    m_impl->view->setItemDelegate(m_impl->matches);
    // A match shown is stale once the table's text changes.
    auto forgetMatch = [this] { m_impl->matches->Clear(); };
    connect(m_impl->view->Model(), &QAbstractItemModel::modelReset, this, forgetMatch);
    connect(m_impl->view->Model(), &QAbstractItemModel::dataChanged, this, forgetMatch);

    connect(m_impl->view, &GridView::cellEdited, this,
            [this](int row, int column) { emit CellEdited(row, column); });
    connect(m_impl->view, &GridView::gridCommand, this,
            [this](int command, int argument, int row, int column) {
                emit GridCommand(command, argument, row, column);
            });
    connect(m_impl->view, &GridView::rowMenuRequested, this, &TablePane::RowMenuRequested);
    // The view sets the control's focus cell itself; the pane only passes the news on.
    connect(m_impl->view->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        // A match is shown only until the user moves on.
        if (m_impl->matches->HasMatch()) {
            m_impl->matches->Clear();
            m_impl->view->viewport()->update();
        }
        if (!m_impl->resetting)
            emit CurrentCellChanged();
    });
}

TablePane::~TablePane()
{
    delete m_impl;
}

void TablePane::BeginReset()
{
    ++m_impl->resetting;
}

void TablePane::EndReset()
{
    if (m_impl->resetting > 0)
        --m_impl->resetting;
    if (m_impl->resetting)
        return;
    Refresh();
    emit CurrentCellChanged();
}

void TablePane::Refresh()
{
    // Resetting the model clears the view's current index, and with it the control's focus
    // cell; keep the one the load restored.
    TableControl& t = m_impl->table;
    const int row = t.FocusRow();
    const int column = t.FocusColumn();
    ++m_impl->resetting;
    t.Redraw();
    t.SetFocusCell(row, column);
    m_impl->view->ShowFocusCell();
    --m_impl->resetting;
}

void TablePane::RepaintCell(int row, int column)
{
    const int viewRow = m_impl->table.ViewIndexOfRow(row);
    if (viewRow < 0)
        return;
    GridModel* model = m_impl->view->Model();
    const QModelIndex index = model->index(viewRow, column);
    emit model->dataChanged(index, index);
}

void TablePane::SetIndexColumnHidden(bool hidden)
{
    m_impl->view->SetIndexColumnHidden(hidden);
}

void TablePane::SetFontSize(int step)
{
    m_impl->view->SetFontSize(static_cast<GridFontSize>(step < -2 ? -2 : step > 3 ? 3 : step));
}

void TablePane::CommitEdit()
{
    QWidget* editor = EditorWidget();
    if (!editor)
        return;
    QMetaObject::invokeMethod(m_impl->view, "commitData", Q_ARG(QWidget*, editor));
    QMetaObject::invokeMethod(
        m_impl->view, "closeEditor", Q_ARG(QWidget*, editor),
        Q_ARG(QAbstractItemDelegate::EndEditHint, QAbstractItemDelegate::NoHint));
}

void TablePane::ShowFocusCell()
{
    ++m_impl->resetting;
    m_impl->view->ShowFocusCell();
    --m_impl->resetting;
}

QWidget* TablePane::EditorWidget() const
{
    // An open in-place editor is a child of the view's viewport.
    for (QWidget* w = QApplication::focusWidget(); w; w = w->parentWidget()) {
        if (w->parentWidget() == m_impl->view->viewport())
            return w;
    }
    return nullptr;
}

QAbstractItemView* TablePane::View() const
{
    return m_impl->view;
}

bool TablePane::EditCell(int viewRow, int column, const QString& text)
{
    GridModel* model = m_impl->view->Model();
    return model->setData(model->index(viewRow, column), text, Qt::EditRole);
}

void TablePane::SetGridCommandCheck(std::function<bool(int)> check)
{
    m_impl->view->SetOwnerCommandCheck(std::move(check));
}

void TablePane::ShowMatch(int row, int column, int start, int length)
{
    ShowFocusCell();
    m_impl->matches->SetMatch(row, column, start, length);
    m_impl->view->viewport()->update();
}

} // namespace quirnel
