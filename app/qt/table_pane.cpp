#include "app/qt/table_pane.h"

#include "ostrand/codepage/code_page.h"
#include "view/table_control.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QTableView>
#include <QVBoxLayout>

namespace quirnel {

namespace {

/// The table as Qt sees it: view row i is the row at display position i, so hidden rows
/// (sorted last) simply fall off the end.
class TableModel : public QAbstractTableModel
{
public:
    explicit TableModel(TableControl& table, QObject* parent)
        : QAbstractTableModel(parent), m_table(table), m_system(ost::kCodePageSystem)
    {}

    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : m_table.VisibleRowCount();
    }
    int columnCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : m_table.ColumnCount();
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid())
            return {};
        const int row = m_table.RowAtViewIndex(index.row());
        const int column = index.column();
        if (role == Qt::DisplayRole || role == Qt::EditRole) {
            if (column == 0)
                return row + 1;
            return CellText(row, column);
        }
        if (role == Qt::TextAlignmentRole) {
            Alignment alignment = m_table.ColumnAlignment(column);
            Qt::Alignment horizontal = alignment == Alignment::Right    ? Qt::AlignRight
                                       : alignment == Alignment::Center ? Qt::AlignHCenter
                                                                        : Qt::AlignLeft;
            return QVariant::fromValue(horizontal | Qt::AlignVCenter);
        }
        return {};
    }

    bool setData(const QModelIndex& index, const QVariant& value, int role) override
    {
        if (!index.isValid() || role != Qt::EditRole || index.column() < 1)
            return false;
        const int row = m_table.RowAtViewIndex(index.row());
        QString text = value.toString();
        if (text == CellText(row, index.column()))
            return false;
        std::u16string wide = text.toStdU16String();
        bool stored = false;
        if (m_table.Column(index.column()).wide) {
            stored = m_table.SetCellText16(row, index.column(), wide);
        } else {
            std::string narrow;
            m_system.FromUtf16(wide, narrow, '?');
            stored = m_table.SetCellText8(row, index.column(), narrow);
        }
        if (stored) {
            emit dataChanged(index, index);
            if (onEdited)
                onEdited(row, index.column());
        }
        return stored;
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        Qt::ItemFlags flags = QAbstractTableModel::flags(index);
        if (index.isValid() && index.column() >= 1 &&
            !(m_table.Column(index.column()).flags & COLUMN_NO_EDIT))
            flags |= Qt::ItemIsEditable;
        return flags;
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        if (section == 0)
            return QStringLiteral("#");
        return QString::fromStdString(m_table.ColumnNameUtf8(section));
    }

    void Reset()
    {
        beginResetModel();
        endResetModel();
    }
    void Begin() { beginResetModel(); }
    void End() { endResetModel(); }

    std::function<void(int, int)> onEdited;

private:
    QString CellText(int row, int column) const
    {
        if (m_table.CellIsWide(row, column))
            return QString::fromStdU16String(std::u16string(m_table.CellText16(row, column)));
        std::u16string wide;
        m_system.ToUtf16(m_table.CellText8(row, column), wide);
        return QString::fromStdU16String(wide);
    }

    TableControl& m_table;
    mutable ost::CodePageConverter m_system;
};

} // namespace

struct TablePane::Impl
{
    TableControl& table;
    TableModel* model = nullptr;
    QTableView* view = nullptr;
    bool resetting = false;
    bool applyingWidths = false;
};

TablePane::TablePane(TableControl& table, QWidget* parent)
    : QWidget(parent), m_impl(new Impl{table})
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_impl->model = new TableModel(table, this);
    m_impl->view = new QTableView(this);
    m_impl->view->setModel(m_impl->model);
    m_impl->view->verticalHeader()->hide();
    m_impl->view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_impl->view->setEditTriggers(QAbstractItemView::DoubleClicked |
                                  QAbstractItemView::EditKeyPressed |
                                  QAbstractItemView::AnyKeyPressed);
    m_impl->view->horizontalHeader()->setSectionsClickable(true);
    layout->addWidget(m_impl->view);
    setFocusProxy(m_impl->view);

    m_impl->model->onEdited = [this](int row, int column) { emit CellEdited(row, column); };
    connect(m_impl->view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (m_impl->resetting)
                    return;
                TableControl& t = m_impl->table;
                if (current.isValid())
                    t.SetFocusCell(t.RowAtViewIndex(current.row()), current.column());
                else
                    t.SetFocusCell(-1, -1);
                emit CurrentCellChanged();
            });
    connect(m_impl->view->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int, int width) {
                if (!m_impl->applyingWidths && column < m_impl->table.ColumnCount())
                    m_impl->table.MutableColumn(column).width = std::max(width, kMinColumnWidth);
            });
    connect(m_impl->view->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int column) {
                TableControl& t = m_impl->table;
                if (column < 1 || column >= t.ColumnCount())
                    return;
                CommitEdit();
                bool ascending = !(t.SortColumn() == column && t.SortAscending());
                t.SetSort(column, ascending);
                Refresh();
            });
}

TablePane::~TablePane()
{
    delete m_impl;
}

void TablePane::BeginReset()
{
    m_impl->resetting = true;
    m_impl->model->Begin();
}

void TablePane::EndReset()
{
    m_impl->model->End();
    m_impl->resetting = false;
    Refresh();
    ShowFocusCell();
}

void TablePane::Refresh()
{
    TableControl& t = m_impl->table;
    if (!m_impl->resetting) {
        m_impl->resetting = true;
        m_impl->model->Reset();
        m_impl->resetting = false;
    }
    m_impl->applyingWidths = true;
    for (int c = 0; c < t.ColumnCount(); ++c) {
        m_impl->view->setColumnWidth(c, t.Column(c).width);
        m_impl->view->setColumnHidden(c, t.Column(c).hidden);
    }
    m_impl->applyingWidths = false;
    QHeaderView* header = m_impl->view->horizontalHeader();
    header->setSortIndicatorShown(t.SortColumn() >= 0);
    if (t.SortColumn() >= 0)
        header->setSortIndicator(t.SortColumn(),
                                 t.SortAscending() ? Qt::AscendingOrder : Qt::DescendingOrder);
    m_impl->view->setAlternatingRowColors(t.EffectiveAltRows());
    m_impl->view->setShowGrid(t.EffectiveGrid());
    ShowFocusCell();
}

void TablePane::CommitEdit()
{
    QWidget* editor = EditorWidget();
    if (!editor)
        return;
    // Closing the persistent editor path: ask the delegate to commit, then close it.
    QMetaObject::invokeMethod(m_impl->view, "commitData", Q_ARG(QWidget*, editor));
    QMetaObject::invokeMethod(
        m_impl->view, "closeEditor", Q_ARG(QWidget*, editor),
        Q_ARG(QAbstractItemDelegate::EndEditHint, QAbstractItemDelegate::NoHint));
}

void TablePane::ShowFocusCell()
{
    TableControl& t = m_impl->table;
    int row = t.FocusRow();
    int column = t.FocusColumn();
    if (row < 0 || column < 0)
        return;
    int viewRow = t.ViewIndexOfRow(row);
    if (viewRow < 0)
        return;
    QModelIndex index = m_impl->model->index(viewRow, column);
    bool wasResetting = m_impl->resetting;
    m_impl->resetting = true;
    m_impl->view->setCurrentIndex(index);
    m_impl->resetting = wasResetting;
    m_impl->view->scrollTo(index);
}

QWidget* TablePane::EditorWidget() const
{
    QModelIndex current = m_impl->view->currentIndex();
    if (!current.isValid())
        return nullptr;
    QWidget* editor = m_impl->view->indexWidget(current);
    if (editor)
        return editor;
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
    return m_impl->model->setData(m_impl->model->index(viewRow, column), text, Qt::EditRole);
}

} // namespace quirnel
