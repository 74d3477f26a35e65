// The Table menu's commands and the grid's context-menu tools on a real window over files in a
// temporary folder: bookmark, selection, jump to row, column widths, statistics, the sort
// submenu, and the refusal of cell commands without a current cell.

#include "app/command_ids.h"
#include "app/command_state.h"
#include "app/qt/main_window.h"
#include "app/qt/table_pane.h"
#include "editing/jump_to_row.h"
#include "editing/qt/jump_to_row_dialog.h"
#include "tests/gui/gui_test_support.h"
#include "view/qt/grid_view.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>

using namespace quirnel;
using namespace quirnel::test;

namespace {

/// Types `text` into the Jump To Row dialog and presses OK; `seen`, if given, records the box
/// that follows, and `startsAt`, if given, is the number the dialog must start with.
void AnswerJumpToRow(const QString& text, SeenBox* seen = nullptr, const QString& startsAt = {})
{
    OnNextModal([text, seen, startsAt](QWidget* modal) {
        if (seen)
            RecordNextBox(*seen);
        auto* dialog = qobject_cast<JumpToRowDialog*>(modal);
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Jump To Row"));
        if (!startsAt.isNull())
            QCOMPARE(dialog->RowNumber()->text(), startsAt);
        dialog->RowNumber()->setText(text);
        dialog->accept();
    });
}

} // namespace

class TestTableCommands : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;

    std::unique_ptr<MainWindow> OpenWindow(const QByteArray& bytes)
    {
        return m_folder->OpenWindow(bytes);
    }

    static void Focus(MainWindow& window, int row, int column)
    {
        window.Document().Table().SetFocusCell(row, column);
        window.Grid()->ShowFocusCell();
    }

    /// Chooses an entry of the grid's cell menu opened on the cell at (view row, column).
    static void ChooseCellMenuEntry(MainWindow& window, int viewRow, int column,
                                    const QString& text)
    {
        auto* grid = static_cast<GridView*>(window.Grid()->View());
        std::unique_ptr<QMenu> menu(grid->BuildCellMenu(viewRow, column, &window));
        QAction* action = FindAction(menu.get(), text);
        QVERIFY2(action, qPrintable(text));
        action->trigger();
    }

    const QByteArray kFourRows = "Name,Amount\r\nb,10\r\na,9\r\nd,100\r\nc,\r\n";

private slots:
    void init() { m_folder = std::make_unique<WindowFolder>(); }
    void cleanup() { m_folder.reset(); }

    void TableCommandsAreEnabled()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        const DocumentState state = window->CurrentState();
        for (int id :
             {cmd::kBookmarkReturn, cmd::kBookmarkSet, cmd::kDeselectAllRows, cmd::kJumpToRow,
              cmd::kMaximizeColumnWidths, cmd::kMinimizeColumnWidths, cmd::kSelectAllRows,
              cmd::kTableStatistics, cmd::kCreateRow, cmd::kDeleteRows, cmd::kMoveRowUp,
              cmd::kTrimWhitespace, cmd::kTrimColumnWhitespace, cmd::kExportToHtml, cmd::kPrint,
              cmd::kFind, cmd::kGraph})
            QVERIFY2(ComputeCommandState(id, state).enabled, qPrintable(QString::number(id)));
    }

    void BookmarkSetThenReturnRestoresTheFocus()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        TableControl& table = window->Document().Table();
        Focus(*window, 2, 2);
        window->OnCommand(cmd::kBookmarkSet);
        Focus(*window, 0, 1);
        window->OnCommand(cmd::kBookmarkReturn);
        QCOMPARE(table.FocusRow(), 2);
        QCOMPARE(table.FocusColumn(), 2);
        QCOMPARE(window->Grid()->View()->currentIndex().row(), table.ViewIndexOfRow(2));
        QCOMPARE(window->Grid()->View()->currentIndex().column(), 2);

        // The bookmark is a storage row: after a sort it is still the same record.
        window->OnCommand(cmd::kSortOnColumnBase + 1);
        Focus(*window, 0, 1);
        window->OnCommand(cmd::kBookmarkReturn);
        QCOMPARE(table.FocusRow(), 2);
        QCOMPARE(window->Grid()->View()->currentIndex().data().toString(), QStringLiteral("100"));
    }

    void BookmarkReturnWithoutBookmarkStaysPut()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        Focus(*window, 1, 1);
        // No box may appear here: an unexpected one would block the test.
        window->OnCommand(cmd::kBookmarkReturn);
        QCOMPARE(window->Document().Table().FocusRow(), 1);

        // Reopening forgets the old file's bookmark.
        window->OnCommand(cmd::kBookmarkSet);
        QCOMPARE(window->BookmarkRow(), 1);
        QVERIFY(window->CloseDocument());
        QCOMPARE(window->BookmarkRow(), -1);
    }

    void CellCommandWithoutCurrentCellAsksForOne()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        Focus(*window, -1, -1);
        SeenBox seen;
        RecordNextBox(seen);
        window->OnCommand(cmd::kBookmarkSet);
        QCOMPARE(seen.title, QStringLiteral("Error"));
        QCOMPARE(seen.text, QStringLiteral("Please select a cell first."));
        QCOMPARE(window->BookmarkRow(), -1);

        // The "#" column is no data cell either.
        Focus(*window, 1, 0);
        SeenBox again;
        RecordNextBox(again);
        ChooseCellMenuEntry(*window, 1, 0, QStringLiteral("Bookmark-set"));
        QCOMPARE(again.text, QStringLiteral("Please select a cell first."));
        QCOMPARE(window->BookmarkRow(), -1);
    }

    void SelectAndDeselectAllRowsFromMenuAndGrid()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        TableControl& table = window->Document().Table();
        window->OnCommand(cmd::kSelectAllRows);
        QCOMPARE(table.SelectedRowCount(), 4);
        window->OnCommand(cmd::kDeselectAllRows);
        QCOMPARE(table.SelectedRowCount(), 0);

        ChooseCellMenuEntry(*window, 0, 1, QStringLiteral("Select all rows"));
        QCOMPARE(table.SelectedRowCount(), 4);
        QCOMPARE(window->CurrentState().selectedRowCount, 4);
        ChooseCellMenuEntry(*window, 0, 1, QStringLiteral("Deselect all rows"));
        QCOMPARE(table.SelectedRowCount(), 0);

        // Rows the filter hides are not selected.
        table.SetRowHidden(3, true);
        window->OnCommand(cmd::kSelectAllRows);
        QCOMPARE(table.SelectedRowCount(), 3);
        QVERIFY(!table.IsRowSelected(3));
    }

    void JumpToRowMovesTheFocusOrExplains()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        TableControl& table = window->Document().Table();
        Focus(*window, 0, 2);
        AnswerJumpToRow(QStringLiteral(" 3 "));
        window->OnCommand(cmd::kJumpToRow);
        QCOMPARE(table.FocusRow(), 2);
        QCOMPARE(table.FocusColumn(), 2);
        QCOMPARE(window->Grid()->View()->currentIndex().row(), table.ViewIndexOfRow(2));

        // The dialog starts at the current row.
        SeenBox seen;
        AnswerJumpToRow(QStringLiteral("5"), &seen, QStringLiteral("3"));
        window->OnCommand(cmd::kJumpToRow);
        QCOMPARE(seen.title, QStringLiteral("Jump To Row"));
        QCOMPARE(seen.text, QStringLiteral("There is no row 5.  Please enter a row number from 1 "
                                           "to 4."));
        QCOMPARE(table.FocusRow(), 2);

        // From the grid's "Table tools", with no column focused: the first data column.
        Focus(*window, -1, -1);
        AnswerJumpToRow(QStringLiteral("4"));
        ChooseCellMenuEntry(*window, 0, 1, QStringLiteral("Jump to row"));
        QCOMPARE(table.FocusRow(), 3);
        QCOMPARE(table.FocusColumn(), 1);

        table.SetRowHidden(1, true);
        SeenBox hidden;
        AnswerJumpToRow(QStringLiteral("2"), &hidden);
        window->OnCommand(cmd::kJumpToRow);
        QCOMPARE(hidden.text, QStringLiteral("Row 2 is hidden by the row filter.  Turn the "
                                             "filter off to see it."));
        QCOMPARE(table.FocusRow(), 3);
    }

    void JumpToRowOnAnEmptyTableExplainsWithoutDialog()
    {
        SeenBox seen;
        RecordNextBox(seen);
        m_folder->NewWindow()->OnCommand(cmd::kJumpToRow);
        QCOMPARE(seen.title, QStringLiteral("Jump To Row"));
        QCOMPARE(seen.text, QStringLiteral("This tool cannot run on an empty table."));
    }

    void JumpToRowTarget_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("rowCount");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("error");
        const QString range = QStringLiteral("  Please enter a row number from 1 to 7.");
        QTest::newRow("first") << "1" << 7 << 0 << "";
        QTest::newRow("last with blanks and plus") << "\t+7 " << 7 << 6 << "";
        QTest::newRow("leading zeros") << "0003" << 7 << 2 << "";
        QTest::newRow("zero") << "0" << 7 << -1 << QStringLiteral("There is no row 0.") + range;
        QTest::newRow("past the end") << "8" << 7 << -1 << "There is no row 8." + range;
        QTest::newRow("overflowing digits") << "99999999999999999999999" << 7 << -1
                                            << "There is no row 99999999999999999999999." + range;
        QTest::newRow("negative") << "-2" << 7 << -1 << "\"-2\" is not a row number." + range;
        QTest::newRow("words") << " row 3" << 7 << -1 << "\"row 3\" is not a row number." + range;
        QTest::newRow("empty") << "" << 7 << -1 << "\"\" is not a row number." + range;
        QTest::newRow("no rows") << "1" << 0 << -1
                                 << QStringLiteral("This tool cannot run on an empty table.");
    }

    void JumpToRowTarget()
    {
        QFETCH(QString, typed);
        QFETCH(int, rowCount);
        QFETCH(int, row);
        QFETCH(QString, error);
        JumpToRowRequest request{typed.toStdString(), rowCount};
        std::string told = "stale";
        std::optional<int> target = quirnel::JumpToRowTarget(request, told);
        QCOMPARE(target.value_or(-1), row);
        QCOMPARE(QString::fromStdString(told), error);
    }

    void JumpToRowStartsAtTheFocusRow()
    {
        QCOMPARE(MakeJumpToRowRequest(4, 10).rowText, std::string("5"));
        QCOMPARE(MakeJumpToRowRequest(-1, 10).rowText, std::string());
        QCOMPARE(MakeJumpToRowRequest(3, 3).rowText, std::string());
    }

    void ColumnWidthsStayBetweenFloorAndHalfTheView()
    {
        const QByteArray longName(300, 'W');
        auto window = OpenWindow("A," + longName + "\r\n1,2\r\n");
        QVERIFY(window);
        window->resize(600, 400);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        TableControl& table = window->Document().Table();
        QAbstractItemView* view = window->Grid()->View();
        const int half = view->viewport()->width() / 2;
        QVERIFY(half > 20);

        window->OnCommand(cmd::kMaximizeColumnWidths);
        QCOMPARE(table.Column(2).width, half);
        QCOMPARE(static_cast<QTableView*>(view)->horizontalHeader()->sectionSize(2), half);
        QCOMPARE(table.Column(1).width, std::min(half, table.NaturalWidth(1)));

        window->OnCommand(cmd::kMinimizeColumnWidths);
        QCOMPARE(table.Column(1).width, table.NaturalWidth(1, true));
        QVERIFY(table.Column(1).width >= 20);
        QCOMPARE(static_cast<QTableView*>(view)->horizontalHeader()->sectionSize(1),
                 table.Column(1).width);

        ChooseCellMenuEntry(*window, 0, 1, QStringLiteral("Column widths: default"));
        QCOMPARE(table.Column(2).width, std::max(20, table.Column(2).initialWidth));
        ChooseCellMenuEntry(*window, 0, 1, QStringLiteral("Column widths: maximize"));
        QCOMPARE(table.Column(2).width, half);
    }

    void StatisticsReportReachesTheBox()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        Focus(*window, 1, 2);
        window->Document().Table().SetRowSelected(0, true);
        SeenBox seen;
        RecordNextBox(seen);
        window->OnCommand(cmd::kTableStatistics);
        QCOMPARE(seen.title, QStringLiteral("Table Statistics"));
        QVERIFY2(seen.text.startsWith(QStringLiteral("Number of rows:\t4\n"
                                                     "Number of visible/hidden rows:\t4 / 0\n"
                                                     "Input focus on row/column (1-based):\t2 / 2\n"
                                                     "Number of selected rows:\t1\n"
                                                     "Completely visible rows:\t")),
                 qPrintable(seen.text));
        QVERIFY(seen.text.contains(QStringLiteral("Column \"Amount\" empty cells:\t1")));

        SeenBox fromGrid;
        RecordNextBox(fromGrid);
        ChooseCellMenuEntry(*window, 0, 1, QStringLiteral("Statistics"));
        QCOMPARE(fromGrid.title, QStringLiteral("Table Statistics"));
        QVERIFY(fromGrid.text.startsWith(QStringLiteral("Number of rows:\t4\n")));
    }

    void SortSubmenuSortsAndItsCheckFollows()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        TableControl& table = window->Document().Table();
        const int noSorting = cmd::kSortOnColumnBase - 1;
        QVERIFY(ComputeCommandState(noSorting, window->CurrentState()).checked);

        window->OnCommand(cmd::kSortOnColumnBase + 1);
        QCOMPARE(table.SortColumn(), 1);
        QCOMPARE(window->Grid()->View()->model()->index(0, 1).data().toString(),
                 QStringLiteral("a"));
        DocumentState state = window->CurrentState();
        QVERIFY(ComputeCommandState(cmd::kSortOnColumnBase + 1, state).checked);
        QVERIFY(!ComputeCommandState(noSorting, state).checked);

        // A sort from the grid's header menu moves the check too.
        auto* grid = static_cast<GridView*>(window->Grid()->View());
        std::unique_ptr<QMenu> header(grid->BuildHeaderMenu(2, window.get()));
        QAction* descending = FindAction(header.get(), QStringLiteral("Sort descending"));
        QVERIFY(descending);
        descending->trigger();
        state = window->CurrentState();
        QVERIFY(ComputeCommandState(cmd::kSortOnColumnBase + 2, state).checked);
        QVERIFY(!ComputeCommandState(cmd::kSortOnColumnBase + 1, state).checked);

        window->OnCommand(noSorting);
        QCOMPARE(table.SortColumn(), -1);
        QCOMPARE(window->Grid()->View()->model()->index(0, 1).data().toString(),
                 QStringLiteral("b"));
        QVERIFY(ComputeCommandState(noSorting, window->CurrentState()).checked);
    }

    void GridCellMenuRunsRowCommandsAndDisablesUnbuiltOnes()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        QGuiApplication::clipboard()->clear();
        ChooseCellMenuEntry(*window, 2, 2, QStringLiteral("Copy cell text"));
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("100"));
        QVERIFY(!window->Document().Modified());

        ChooseCellMenuEntry(*window, 0, 1, QStringLiteral("Add row"));
        QCOMPARE(window->Document().RowCount(), 5);
        QCOMPARE(window->windowTitle(), QStringLiteral("t.csv * - Quirnel"));

        // "Delete all rows" asks first; No keeps every row.
        QString asked;
        OnNextModal([&asked](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            QVERIFY(box);
            asked = box->text();
            box->button(QMessageBox::No)->click();
        });
        ChooseCellMenuEntry(*window, 0, 1, QStringLiteral("Delete all rows"));
        QCOMPARE(asked, QStringLiteral("Delete all 5 rows of the table?"));
        QCOMPARE(window->Document().RowCount(), 5);

        auto* grid = static_cast<GridView*>(window->Grid()->View());
        std::unique_ptr<QMenu> menu(grid->BuildCellMenu(0, 1, window.get()));
        for (const char* built : {"Move row up\tAlt+Up", "Jump to row", "Select all rows",
                                  "Import from CSV file", "Export to CSV file"})
            QVERIFY2(FindAction(menu.get(), QString::fromUtf8(built))->isEnabled(), built);
    }

    void BookmarkShortcutsReachTheirCommands()
    {
        auto window = OpenWindow(kFourRows);
        QVERIFY(window);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QWidget* view = window->Grid()->View();
        view->setFocus();
        Focus(*window, 3, 2);
        QTest::keyClick(view, Qt::Key_F4, Qt::ShiftModifier);
        QCOMPARE(window->BookmarkRow(), 3);
        QCOMPARE(window->BookmarkColumn(), 2);
        Focus(*window, 0, 1);
        QTest::keyClick(view, Qt::Key_F4);
        QCOMPARE(window->Document().Table().FocusRow(), 3);
        QCOMPARE(window->Document().Table().FocusColumn(), 2);
    }
};

QTEST_MAIN(TestTableCommands)
#include "tst_table_commands.moc"
