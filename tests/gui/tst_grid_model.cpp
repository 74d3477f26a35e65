#include "view/qt/grid_model.h"
#include "view/qt/grid_view.h"
#include "view/table_control.h"

#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QSignalSpy>
#include <QStyle>
#include <QtTest>

#include <cstring>
#include <memory>

using namespace quirnel;

namespace {

constexpr int kRows = 100000;

QStringList ActionTexts(QMenu* menu)
{
    QStringList texts;
    for (QAction* action : menu->actions())
        texts << action->text();
    return texts;
}

QAction* FindAction(QMenu* menu, const QString& path)
{
    QStringList parts = path.split('/');
    for (QAction* action : menu->actions()) {
        if (action->text() != parts.front())
            continue;
        if (parts.size() == 1)
            return action;
        parts.pop_front();
        return action->menu() ? FindAction(action->menu(), parts.join('/')) : nullptr;
    }
    return nullptr;
}

} // namespace

class TestGridModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void showsEveryRowThroughTheModel();
    void sortingReordersTheViewRows();
    void hiddenRowsLeaveTheViewWithoutRowHiding();
    void trailingRowIsTheLastLine();
    void editingWritesTheCell();
    void enterConfirmsAndMovesDownTabFollowsTabThru();
    void currentIndexBecomesTheFocusCell();
    void ctrlClickInIndexColumnSelectsRows();
    void headerMenuCommandsSortAndAlign();
    void cellMenuHandsOwnerCommandsOn();
    void alternatingRowsAndDividersFollowTheTriStates();
    void indexColumnAndFontSize();
    void initialWidthsShowTheLongestTextWhole();

private:
    std::unique_ptr<TableControl> m_table;
    std::unique_ptr<GridView> m_view;
};

void TestGridModel::init()
{
    m_table = std::make_unique<TableControl>();
    for (const char* name : {"id", "word", "number"}) {
        TableColumn column;
        column.headerText = name;
        column.flags = COLUMN_CHOOSE_ALIGN | COLUMN_CHOOSE_SORT;
        m_table->AddColumn(column);
    }
    m_table->SetColumnSortMethod(3, kSortNumeric);
    m_table->SetRowCount(kRows);
    const char* words[] = {"pear", "Apple", "fig", "banana"};
    for (int r = 0; r < kRows; ++r) {
        m_table->SetCellText8(r, 1, std::to_string(r));
        m_table->SetCellText8(r, 2, words[r % 4]);
        m_table->SetCellText8(r, 3, std::to_string((r * 7919) % kRows));
    }
    m_view = std::make_unique<GridView>(*m_table);
    m_view->resize(640, 480);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void TestGridModel::cleanup()
{
    m_view.reset();
    m_table.reset();
}

void TestGridModel::showsEveryRowThroughTheModel()
{
    GridModel* model = m_view->Model();
    QCOMPARE(model->rowCount(), kRows);
    QCOMPARE(model->columnCount(), 4);
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QString("#"));
    QCOMPARE(model->headerData(2, Qt::Horizontal).toString(), QString("word"));
    QCOMPARE(model->index(12345, 0).data().toString(), QString("12346"));
    QCOMPARE(model->index(12345, 1).data().toString(), QString("12345"));
    QCOMPARE(model->index(5, 2).data().toString(), QString("Apple"));
}

void TestGridModel::sortingReordersTheViewRows()
{
    GridModel* model = m_view->Model();
    QVERIFY(m_table->SetSort(3, false));
    QCOMPARE(model->rowCount(), kRows);
    QCOMPARE(model->index(0, 3).data().toString(), QString::number(kRows - 1));
    QCOMPARE(model->index(kRows - 1, 3).data().toString(), QString("0"));
    QVERIFY(m_view->horizontalHeader()->isSortIndicatorShown());
    QCOMPARE(m_view->horizontalHeader()->sortIndicatorSection(), 3);
    QCOMPARE(m_view->horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
    m_table->Unsort();
    QCOMPARE(model->index(7, 1).data().toString(), QString("7"));
    QVERIFY(!m_view->horizontalHeader()->isSortIndicatorShown());
    // A header click sorts ascending, a second one turns the direction.
    m_view->horizontalHeader()->sectionClicked(2);
    QCOMPARE(model->index(0, 2).data().toString(), QString("Apple"));
    m_view->horizontalHeader()->sectionClicked(2);
    QCOMPARE(model->index(0, 2).data().toString(), QString("pear"));
}

void TestGridModel::hiddenRowsLeaveTheViewWithoutRowHiding()
{
    GridModel* model = m_view->Model();
    m_table->SetSort(1, true);
    for (int r = 0; r < kRows; ++r)
        if (m_table->CellText8(r, 2) != "fig")
            m_table->SetRowHidden(r, true, true);
    m_table->Redraw();
    QCOMPARE(model->rowCount(), kRows / 4);
    for (int viewRow : {0, 1, 1000, kRows / 4 - 1}) {
        QCOMPARE(model->index(viewRow, 2).data().toString(), QString("fig"));
        QVERIFY(!m_view->isRowHidden(viewRow));
    }
    // Ascending by id as text: "10" comes before "14" among the figs.
    QCOMPARE(model->index(0, 1).data().toString(), QString("10"));
    m_table->SetRowHidden(0, false);
    QCOMPARE(model->rowCount(), kRows / 4 + 1);
    QCOMPARE(model->index(0, 1).data().toString(), QString("0"));
}

void TestGridModel::trailingRowIsTheLastLine()
{
    GridModel* model = m_view->Model();
    m_table->SetTrailingRow(0);
    m_table->SetRowHidden(1, true);
    m_table->SetSort(3, true);
    QCOMPARE(model->rowCount(), kRows - 1);
    QCOMPARE(model->RowOfViewRow(kRows - 2), 0);
    QCOMPARE(model->index(kRows - 2, 0).data().toString(), QString("1"));
}

void TestGridModel::editingWritesTheCell()
{
    GridModel* model = m_view->Model();
    QSignalSpy edited(m_view.get(), &GridView::cellEdited);
    m_table->SetSort(1, false);
    const QModelIndex index = model->index(0, 2);
    const int row = model->RowOfViewRow(0);
    QVERIFY(model->setData(index, QString("caf\u00e9 \u20ac")));
    QCOMPARE(QString::fromUtf8(m_table->CellText8(row, 2).data(),
                               static_cast<qsizetype>(m_table->CellText8(row, 2).size())),
             QString("caf\u00e9 \u20ac"));
    QCOMPARE(edited.count(), 1);
    QCOMPARE(edited.at(0).at(0).toInt(), row);
    // UTF-16 cells stay UTF-16.
    m_table->SetCellText16(row, 3, u"x");
    QVERIFY(model->setData(model->index(0, 3), QString("\u00e9t\u00e9")));
    QVERIFY(m_table->CellIsWide(row, 3));
    QVERIFY(m_table->CellText16(row, 3) == u"\u00e9t\u00e9");
    QVERIFY(!(model->flags(model->index(0, 0)) & Qt::ItemIsEditable));
    QVERIFY(!model->setData(model->index(0, 0), QString("7")));
}

void TestGridModel::enterConfirmsAndMovesDownTabFollowsTabThru()
{
    GridModel* model = m_view->Model();
    m_view->setFocus();
    m_view->setCurrentIndex(model->index(3, 2));
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    QWidget* editor = QApplication::focusWidget();
    QVERIFY(editor && editor != m_view.get());
    QTest::keyClicks(editor, "kiwi");
    QTest::keyClick(editor, Qt::Key_Return);
    // The editor commits from the event loop.
    QTRY_COMPARE(model->index(3, 2).data().toString(), QString("kiwi"));
    QTRY_COMPARE(m_view->currentIndex(), model->index(4, 2));

    // An edit still open is put into the table on request.
    m_view->edit(model->index(6, 2));
    QWidget* open = m_view->EditorWidget();
    QVERIFY(open);
    QTest::keyClicks(open, "plum");
    QVERIFY(m_view->CommitEdit());
    QCOMPARE(model->index(6, 2).data().toString(), QString("plum"));
    QVERIFY(!m_view->EditorWidget());
    QVERIFY(!m_view->CommitEdit());

    m_table->SetTabThru(true);
    QVERIFY(m_view->tabKeyNavigation());
    m_table->SetTabThru(false);
    QVERIFY(!m_view->tabKeyNavigation());
}

void TestGridModel::currentIndexBecomesTheFocusCell()
{
    m_table->SetSort(3, true);
    GridModel* model = m_view->Model();
    QSignalSpy moved(m_view.get(), &GridView::focusCellChanged);
    m_view->setCurrentIndex(model->index(4, 2));
    QCOMPARE(moved.count(), 1);
    QCOMPARE(moved.at(0).at(0).toInt(), model->RowOfViewRow(4));
    QCOMPARE(m_table->FocusRow(), model->RowOfViewRow(4));
    QCOMPARE(m_table->FocusColumn(), 2);
    m_table->SetFocusCell(777, 1);
    m_view->ShowFocusCell();
    QCOMPARE(model->RowOfViewRow(m_view->currentIndex().row()), 777);
    // Sorting again keeps the same record current, wherever it now shows.
    m_table->SetSort(3, false);
    QCOMPARE(m_table->FocusRow(), 777);
    QCOMPARE(model->RowOfViewRow(m_view->currentIndex().row()), 777);
    QCOMPARE(m_view->currentIndex().column(), 1);
}

void TestGridModel::ctrlClickInIndexColumnSelectsRows()
{
    GridModel* model = m_view->Model();
    const QRect cell = m_view->visualRect(model->index(2, 0));
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::ControlModifier, cell.center());
    QVERIFY(m_table->IsRowSelected(model->RowOfViewRow(2)));
    QCOMPARE(m_table->SelectedRowCount(), 1);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      m_view->visualRect(model->index(3, 0)).center());
    QCOMPARE(m_table->SelectedRowCount(), 2);
    std::unique_ptr<QMenu> menu(m_view->BuildCellMenu(2, 1, nullptr));
    QVERIFY(ActionTexts(menu.get()).contains("Delete rows"));
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::ControlModifier, cell.center());
    QCOMPARE(m_table->SelectedRowCount(), 1);
    // A plain click only moves the current cell.
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                      m_view->visualRect(model->index(5, 0)).center());
    QCOMPARE(m_table->SelectedRowCount(), 1);
}

void TestGridModel::headerMenuCommandsSortAndAlign()
{
    GridModel* model = m_view->Model();
    std::unique_ptr<QMenu> menu(m_view->BuildHeaderMenu(3, nullptr));
    QCOMPARE(ActionTexts(menu.get()).mid(0, 2), (QStringList{"Sort ascending", "Sort descending"}));
    FindAction(menu.get(), "Sort descending")->trigger();
    QCOMPARE(m_table->SortColumn(), 3);
    QCOMPARE(model->index(0, 3).data().toString(), QString::number(kRows - 1));
    menu.reset(m_view->BuildHeaderMenu(3, nullptr));
    QAction* right = FindAction(menu.get(), "Column options/Alignment/Right");
    QVERIFY(right);
    right->trigger();
    QCOMPARE(model->index(0, 3).data(Qt::TextAlignmentRole).value<Qt::Alignment>() &
                 Qt::AlignHorizontal_Mask,
             Qt::AlignRight);
    menu.reset(m_view->BuildHeaderMenu(3, nullptr));
    QVERIFY(FindAction(menu.get(), "Column options/Alignment/Right")->isChecked());
    QVERIFY(FindAction(menu.get(), "Column options/Sort method/Numeric (blanks=0)")->isChecked());
    FindAction(menu.get(), "Don't sort rows")->trigger();
    QCOMPARE(m_table->SortColumn(), -1);
    QCOMPARE(model->index(0, 1).data().toString(), QString("0"));
}

void TestGridModel::cellMenuHandsOwnerCommandsOn()
{
    QSignalSpy commands(m_view.get(), &GridView::gridCommand);
    std::unique_ptr<QMenu> menu(m_view->BuildCellMenu(3, 2, nullptr));
    QCOMPARE(ActionTexts(menu.get()).mid(0, 3),
             (QStringList{"Copy cell text", "Add row", "Delete row"}));
    FindAction(menu.get(), "Duplicate row")->trigger();
    QCOMPARE(commands.count(), 1);
    QCOMPARE(commands.at(0).at(0).toInt(), static_cast<int>(GridCommand::DuplicateRow));
    QCOMPARE(commands.at(0).at(2).toInt(), m_view->Model()->RowOfViewRow(3));
    QCOMPARE(commands.at(0).at(3).toInt(), 2);
    FindAction(menu.get(), "Select all rows")->trigger();
    QCOMPARE(commands.count(), 1);
    QCOMPARE(m_table->SelectedRowCount(), kRows);
}

void TestGridModel::alternatingRowsAndDividersFollowTheTriStates()
{
    GridModel* model = m_view->Model();
    m_table->SetAltRows(1);
    QVERIFY(!model->index(0, 1).data(Qt::BackgroundRole).isValid());
    QVERIFY(model->index(1, 1).data(Qt::BackgroundRole).isValid());
    m_table->SetAltRows(2);
    QVERIFY(!model->index(1, 1).data(Qt::BackgroundRole).isValid());
    m_table->SetGrid(2);
    QVERIFY(!m_view->showGrid());
    m_table->SetGrid(1);
    QVERIFY(m_view->showGrid());
}

void TestGridModel::indexColumnAndFontSize()
{
    m_view->SetIndexColumnHidden(true);
    QVERIFY(m_view->isColumnHidden(0));
    m_view->SetIndexColumnHidden(false);
    QVERIFY(!m_view->isColumnHidden(0));
    m_table->SetColumnHidden(2, true);
    QVERIFY(m_view->isColumnHidden(2));
    m_view->SetFontSize(GridFontSize::Huge);
    QCOMPARE(m_view->font().pointSize(), 18);
    m_view->SetFontSize(GridFontSize::Tiny);
    QCOMPARE(m_view->font().pointSize(), 7);
}

void TestGridModel::initialWidthsShowTheLongestTextWhole()
{
    TableControl table;
    const char* const texts[] = {"404812", "2005-01-17", "Widget", "9,999.99"};
    for (int c = 0; c < 4; ++c) {
        TableColumn column;
        column.headerText = "c";
        table.AddColumn(column);
    }
    table.SetRowCount(1);
    std::vector<int> longest{0};
    for (int c = 0; c < 4; ++c) {
        table.SetCellText8(0, c + 1, texts[c]);
        longest.push_back(static_cast<int>(std::strlen(texts[c])));
    }
    for (GridFontSize size : {GridFontSize::Tiny, GridFontSize::Normal, GridFontSize::Huge}) {
        GridView view(table);
        view.SetFontSize(size);
        for (int c = 1; c <= 4; ++c)
            table.MutableColumn(c).width = 20;
        table.ApplyInitialWidths(longest, 4000, 0);
        const QFontMetrics metrics(view.font());
        // What the cell draws around its text: a focus-frame margin and one pixel each side.
        const int margins =
            2 * (view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view) + 1);
        for (int c = 1; c <= 4; ++c) {
            const int needed =
                metrics.horizontalAdvance(QString::fromLatin1(texts[c - 1])) + margins;
            QVERIFY2(table.Column(c).width >= needed,
                     qPrintable(QStringLiteral("%1: %2 < %3")
                                    .arg(QString::fromLatin1(texts[c - 1]))
                                    .arg(table.Column(c).width)
                                    .arg(needed)));
        }
    }
}

QTEST_MAIN(TestGridModel)
#include "tst_grid_model.moc"
