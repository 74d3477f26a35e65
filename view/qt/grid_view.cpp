#include "view/qt/grid_view.h"

#include "view/qt/grid_model.h"

#include <QActionGroup>
#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>

namespace quirnel {

namespace {

// Header texts measured in the view's current font; the padding is what the header style
// draws around its text.
class FontMeasurer : public TextMeasurer
{
public:
    explicit FontMeasurer(GridView& view) : m_view(view) {}

    int TextWidth(std::string_view systemText) override
    {
        return Metrics().horizontalAdvance(m_view.Model()->FromSystem(systemText));
    }
    int TextWidthWide(std::u16string_view text) override
    {
        return Metrics().horizontalAdvance(
            QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())));
    }
    int CellPadding() override { return 12; }
    double AverageCharWidth() override
    {
        static const QString sample = QStringLiteral("0123456789abcdefghijklmnopqrstuvwxyz");
        return Metrics().horizontalAdvance(sample) / static_cast<double>(sample.size());
    }

private:
    QFontMetrics Metrics() const { return QFontMetrics(m_view.font()); }
    GridView& m_view;
};

/// The commands TableControl::HandleCommand carries out itself; the others go to the owner.
bool IsControlCommand(int command)
{
    const int sortMethods = static_cast<int>(GridCommand::SortMethodBase);
    if (command >= sortMethods && command <= sortMethods + kSortStoredValue)
        return true;
    switch (static_cast<GridCommand>(command)) {
    case GridCommand::SortAscending:
    case GridCommand::SortDescending:
    case GridCommand::DontSort:
    case GridCommand::ColumnWidthMaximize:
    case GridCommand::ColumnWidthMinimize:
    case GridCommand::AlignLeft:
    case GridCommand::AlignCenter:
    case GridCommand::AlignRight:
    case GridCommand::SelectAll:
    case GridCommand::DeselectAll:
    case GridCommand::HideColumn:
    case GridCommand::AltRowsDefault:
    case GridCommand::AltRowsEnabled:
    case GridCommand::AltRowsDisabled:
    case GridCommand::DividersDefault:
    case GridCommand::DividersVisible:
    case GridCommand::DividersHidden:
    case GridCommand::TabThru:
    case GridCommand::WidthsDefault:
    case GridCommand::WidthsMaximize:
    case GridCommand::WidthsMinimize:
        return true;
    default:
        return false;
    }
}

} // namespace

GridView::GridView(TableControl& table, QWidget* parent)
    : QTableView(parent), m_table(table), m_model(new GridModel(table, this))
{
    setModel(m_model);
    m_measurer = std::make_unique<FontMeasurer>(*this);
    m_table.SetTextMeasurer(m_measurer.get());
    m_table.AddObserver(this);
    verticalHeader()->hide();
    // Rows are drawn at one fixed height so that a million of them need no measuring.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setSortIndicatorShown(false);
    horizontalHeader()->setContextMenuPolicy(Qt::CustomContextMenu);
    horizontalHeader()->setHighlightSections(false);
    // The control's floor, not the style's larger default, or minimized columns show wider.
    horizontalHeader()->setMinimumSectionSize(kMinColumnWidth);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setWordWrap(false);
    connect(horizontalHeader(), &QHeaderView::customContextMenuRequested, this,
            &GridView::ShowHeaderMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &GridView::ShowCellMenu);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int, int size) {
                if (!m_applying && column >= 0 && column < m_table.ColumnCount() && size > 0)
                    m_table.MutableColumn(column).width = size;
            });
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
        // A click sorts ascending, a second click on the sort column turns the direction.
        bool ascending = !(column == m_table.SortColumn() && m_table.SortAscending());
        m_table.SetSort(column, ascending, true);
    });
    connect(m_model, &GridModel::cellEdited, this, &GridView::cellEdited);
    SetFontSize(GridFontSize::Normal);
    ApplyColumns();
}

GridView::~GridView()
{
    m_table.RemoveObserver(this);
    m_table.SetTextMeasurer(nullptr);
}

int GridView::PointSize(GridFontSize size)
{
    switch (size) {
    case GridFontSize::Tiny:
        return 7;
    case GridFontSize::Small:
        return 8;
    case GridFontSize::Normal:
        return 10;
    case GridFontSize::Big:
        return 12;
    case GridFontSize::Large:
        return 14;
    case GridFontSize::Huge:
        return 18;
    }
    return 10;
}

void GridView::SetFontSize(GridFontSize size)
{
    m_fontSize = size;
    QFont f = font();
    f.setPointSize(PointSize(size));
    setFont(f);
    horizontalHeader()->setFont(f);
    verticalHeader()->setDefaultSectionSize(QFontMetrics(f).height() + 6);
    viewport()->update();
}

void GridView::SetIndexColumnHidden(bool hidden)
{
    m_indexHidden = hidden;
    ApplyColumns();
}

void GridView::ApplyColumns()
{
    m_applying = true;
    QHeaderView* header = horizontalHeader();
    for (int c = 0; c < m_table.ColumnCount(); ++c) {
        const TableColumn& column = m_table.Column(c);
        setColumnHidden(c, column.hidden || (c == 0 && m_indexHidden));
        if (header->sectionSize(c) != column.width && column.width > 0)
            setColumnWidth(c, column.width);
    }
    const int sort = m_table.SortColumn();
    header->setSortIndicatorShown(sort >= 0);
    if (sort >= 0)
        header->setSortIndicator(sort, m_table.SortAscending() ? Qt::AscendingOrder
                                                               : Qt::DescendingOrder);
    setShowGrid(m_table.EffectiveGrid());
    setTabKeyNavigation(m_table.TabThru());
    m_applying = false;
}

void GridView::OnTableReset()
{
    ApplyColumns();
    // A reset forgets Qt's current index; the control's focus cell (a storage row) says
    // where it now is.
    const int viewRow = m_table.ViewIndexOfRow(m_table.FocusRow());
    const int column = m_table.FocusColumn();
    if (viewRow >= 0 && column >= 0)
        selectionModel()->setCurrentIndex(m_model->index(viewRow, column),
                                          QItemSelectionModel::NoUpdate);
    // The control may have moved the first line (a sort keeps the focus row in view).
    const int first = m_table.Geometry().firstVisiblePosition;
    if (first >= 0 && first < std::max(1, m_model->rowCount()))
        verticalScrollBar()->setValue(first);
    UpdateGeometry();
}

void GridView::OnTableRepaint()
{
    ApplyColumns();
    viewport()->update();
}

void GridView::UpdateGeometry()
{
    ViewGeometry geometry = m_table.Geometry();
    geometry.clientWidth = viewport()->width();
    const int rowHeight = std::max(1, verticalHeader()->defaultSectionSize());
    const int first = std::max(0, rowAt(0));
    const int height = viewport()->height();
    const int visibleRows = m_model->rowCount() - first;
    geometry.firstVisiblePosition = first;
    geometry.completelyVisibleRows = std::max(0, std::min(height / rowHeight, visibleRows));
    geometry.partiallyVisibleRows =
        (height % rowHeight != 0 && geometry.completelyVisibleRows < visibleRows) ? 1 : 0;
    m_table.SetGeometry(geometry);
}

void GridView::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    UpdateGeometry();
}

void GridView::scrollContentsBy(int dx, int dy)
{
    QTableView::scrollContentsBy(dx, dy);
    UpdateGeometry();
}

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    if (current.isValid())
        m_table.SetFocusCell(m_model->RowOfViewRow(current.row()), current.column());
    else
        m_table.SetFocusCell(-1, -1);
    emit focusCellChanged(m_table.FocusRow(), m_table.FocusColumn());
}

QWidget* GridView::EditorWidget() const
{
    if (state() != QAbstractItemView::EditingState)
        return nullptr;
    // The delegate's editor is the one widget the view puts on its viewport.
    for (QWidget* child : viewport()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (child->isVisible())
            return child;
    return nullptr;
}

bool GridView::CommitEdit()
{
    QWidget* editor = EditorWidget();
    if (!editor)
        return false;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
    return true;
}

void GridView::ShowFocusCell()
{
    const int viewRow = m_table.ViewIndexOfRow(m_table.FocusRow());
    const int column = m_table.FocusColumn();
    if (viewRow < 0 || column < 0) {
        setCurrentIndex(QModelIndex());
        return;
    }
    QModelIndex index = m_model->index(viewRow, column);
    setCurrentIndex(index);
    scrollTo(index);
}

void GridView::SetRowDrag(const QString& format, std::function<QByteArray(int row)> payload,
                          std::function<void(const QByteArray& dropped, int row)> drop)
{
    m_rowDragFormat = format;
    m_rowDragPayload = std::move(payload);
    m_rowDrop = std::move(drop);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
}

void GridView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragRow >= 0 && (event->buttons() & Qt::LeftButton) && m_rowDragPayload &&
        (event->position().toPoint() - m_dragStart).manhattanLength() >=
            QApplication::startDragDistance()) {
        const QByteArray payload = m_rowDragPayload(m_dragRow);
        m_dragRow = -1;
        if (!payload.isEmpty()) {
            auto* drag = new QDrag(this);
            auto* mime = new QMimeData;
            mime->setData(m_rowDragFormat, payload);
            drag->setMimeData(mime);
            drag->exec(Qt::MoveAction);
            event->accept();
            return;
        }
    }
    QTableView::mouseMoveEvent(event);
}

void GridView::dragEnterEvent(QDragEnterEvent* event)
{
    // Anything else (a file dropped to be opened) is left to the window.
    if (m_rowDrop && event->mimeData()->hasFormat(m_rowDragFormat))
        event->acceptProposedAction();
    else
        event->ignore();
}

void GridView::dragMoveEvent(QDragMoveEvent* event)
{
    if (m_rowDrop && event->mimeData()->hasFormat(m_rowDragFormat))
        event->acceptProposedAction();
    else
        event->ignore();
}

void GridView::dropEvent(QDropEvent* event)
{
    if (!m_rowDrop || !event->mimeData()->hasFormat(m_rowDragFormat)) {
        event->ignore();
        return;
    }
    // On the upper half of a row the rows go before it, on the lower half after it.
    const QPoint at = event->position().toPoint();
    const QModelIndex index = indexAt(at);
    int row = -1;
    if (index.isValid()) {
        int viewRow = index.row();
        if (at.y() > rowViewportPosition(viewRow) + rowHeight(viewRow) / 2)
            ++viewRow;
        row = viewRow < m_model->rowCount() ? m_model->RowOfViewRow(viewRow) : -1;
    }
    event->acceptProposedAction();
    m_rowDrop(event->mimeData()->data(m_rowDragFormat), row);
}

void GridView::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    m_dragRow = -1;
    if (index.isValid() && index.column() == 0 && event->button() == Qt::LeftButton &&
        !(event->modifiers() & Qt::ControlModifier)) {
        m_dragStart = event->position().toPoint();
        m_dragRow = m_model->RowOfViewRow(index.row());
    }
    if (index.isValid() && index.column() == 0 && (event->modifiers() & Qt::ControlModifier) &&
        event->button() == Qt::LeftButton) {
        const int row = m_model->RowOfViewRow(index.row());
        m_table.SetRowSelected(row, !m_table.IsRowSelected(row));
        viewport()->update();
        event->accept();
        return;
    }
    QTableView::mousePressEvent(event);
}

void GridView::keyPressEvent(QKeyEvent* event)
{
    const bool editing = state() == QAbstractItemView::EditingState;
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !editing) {
        // Enter on a cell starts editing it, as F2 does.
        QModelIndex index = currentIndex();
        if (index.isValid() && (m_model->flags(index) & Qt::ItemIsEditable)) {
            edit(index);
            event->accept();
            return;
        }
    }
    if ((event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) && !m_table.TabThru()) {
        // Without "Tab through cells" Tab leaves the grid for the next control.
        focusNextPrevChild(event->key() == Qt::Key_Tab);
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void GridView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    const bool tabbed = hint == QAbstractItemDelegate::EditNextItem ||
                        hint == QAbstractItemDelegate::EditPreviousItem;
    if (tabbed && !m_table.TabThru()) {
        // The edit is kept; Tab then leaves the grid as it does outside the editor.
        QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
        focusNextPrevChild(hint == QAbstractItemDelegate::EditNextItem);
        return;
    }
    QTableView::closeEditor(editor, hint);
    if (hint == QAbstractItemDelegate::SubmitModelCache) {
        // Enter confirms the cell and moves down, as in a spreadsheet.
        const QModelIndex current = currentIndex();
        const QModelIndex below = m_model->index(current.row() + 1, current.column());
        if (below.isValid())
            setCurrentIndex(below);
    }
}

void GridView::AddEntries(QMenu* menu, const std::vector<MenuEntry>& entries, int row, int column)
{
    QActionGroup* group = nullptr;
    for (const MenuEntry& entry : entries) {
        QString text = QString::fromStdString(entry.text);
        if (!entry.submenu.empty()) {
            AddEntries(menu->addMenu(text), entry.submenu, row, column);
            group = nullptr;
            continue;
        }
        QAction* action = menu->addAction(text);
        action->setEnabled(entry.enabled &&
                           (IsControlCommand(entry.command) || !m_ownerCommandCheck ||
                            m_ownerCommandCheck(entry.command)));
        if (entry.mark != MenuMark::None) {
            action->setCheckable(true);
            action->setChecked(entry.checked);
        }
        if (entry.mark == MenuMark::Radio) {
            if (!group)
                group = new QActionGroup(menu);
            group->addAction(action);
        } else {
            group = nullptr;
        }
        const int command = entry.command;
        const int argument = entry.argument;
        connect(action, &QAction::triggered, this, [this, command, argument, row, column] {
            RunCommand(command, argument, row, column);
        });
    }
}

QMenu* GridView::BuildHeaderMenu(int column, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    AddEntries(menu, m_table.HeaderMenu(column), -1, column);
    return menu;
}

QMenu* GridView::BuildCellMenu(int viewRow, int column, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    const int row = m_model->RowOfViewRow(viewRow);
    AddEntries(menu, m_table.CellMenu(row, column), row, column);
    return menu;
}

void GridView::RunCommand(int command, int argument, int row, int column)
{
    if (m_table.HandleCommand(command, argument, column)) {
        ApplyColumns();
        viewport()->update();
        return;
    }
    emit gridCommand(command, argument, row, column);
}

void GridView::SetOwnerCommandCheck(std::function<bool(int)> check)
{
    m_ownerCommandCheck = std::move(check);
}

void GridView::ShowHeaderMenu(const QPoint& position)
{
    const int column = horizontalHeader()->logicalIndexAt(position);
    std::unique_ptr<QMenu> menu(BuildHeaderMenu(column, this));
    if (!menu->isEmpty())
        menu->exec(horizontalHeader()->mapToGlobal(position));
}

void GridView::ShowCellMenu(const QPoint& position)
{
    const QModelIndex index = indexAt(position);
    if (index.isValid() && index.column() == 0) {
        // The "#" column stands for whole rows: the row menu is the owner's.
        emit rowMenuRequested(viewport()->mapToGlobal(position));
        return;
    }
    std::unique_ptr<QMenu> menu(BuildCellMenu(index.isValid() ? index.row() : -1,
                                              index.isValid() ? index.column() : -1, this));
    menu->exec(viewport()->mapToGlobal(position));
}

} // namespace quirnel
