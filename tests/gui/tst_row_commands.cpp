// The row commands as a user reaches them in the real window: accelerators on the grid (with and
// without an in-place editor open), the grid's own Alt+Up and Alt+Down, the Row menu of the "#"
// column, and the file they leave behind.

#include "app/qt/main_window.h"
#include "app/qt/table_pane.h"
#include "tests/gui/gui_test_support.h"
#include "view/qt/grid_view.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QLineEdit>
#include <QScrollBar>

using namespace quirnel;
using namespace quirnel::test;

namespace {

/// Runs `act` on the next popup menu once it is shown, then closes it.
void OnNextPopup(std::function<void(QMenu*)> act)
{
    auto* timer = new QTimer;
    timer->setInterval(10);
    auto tries = std::make_shared<int>(0);
    QObject::connect(timer, &QTimer::timeout, [timer, act, tries] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu && ++*tries < 500)
            return;
        timer->stop();
        timer->deleteLater();
        if (menu) {
            act(menu);
            menu->close();
        }
    });
    timer->start();
}

/// The first data cell of every row, in storage order.
QStringList FirstColumn(MainWindow& window)
{
    QStringList cells;
    for (int row = 0; row < window.Document().RowCount(); ++row)
        cells << CellText(window, row, 1);
    return cells;
}

} // namespace

class TestRowCommands : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;

    /// An open, shown and active window, so that its shortcuts fire.
    std::unique_ptr<MainWindow> ActiveWindow(const QByteArray& bytes)
    {
        auto window = m_folder->OpenWindow(bytes);
        if (!window)
            return nullptr;
        window->show();
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get()))
            return nullptr;
        window->Grid()->View()->setFocus();
        return window;
    }

    static void Focus(MainWindow& window, int row, int column)
    {
        window.Document().Table().SetFocusCell(row, column);
        window.Grid()->ShowFocusCell();
    }

    /// The view's current index is the control's focus cell.
    static bool ViewFollowsFocus(MainWindow& window)
    {
        const TableControl& table = window.Document().Table();
        const QModelIndex current = window.Grid()->View()->currentIndex();
        return current.row() == table.ViewIndexOfRow(table.FocusRow()) &&
               current.column() == table.FocusColumn();
    }

private slots:
    void init() { m_folder = std::make_unique<WindowFolder>(); }
    void cleanup() { m_folder.reset(); }

    void AcceleratorsEditRowsAndSaveKeepsUntouchedRecords()
    {
        auto window = ActiveWindow("Name,Amount\r\na,1\r\n\"b, c\",2\r\nd,3\r\n");
        QVERIFY(window);
        QWidget* view = window->Grid()->View();
        Focus(*window, 1, 2);

        QTest::keyClick(view, Qt::Key_Insert, Qt::AltModifier);
        QCOMPARE(FirstColumn(*window), (QStringList{"a", "b, c", "", "d"}));
        QCOMPARE(window->Document().Table().FocusRow(), 2);
        QCOMPARE(window->Document().Table().FocusColumn(), 2);
        QVERIFY(ViewFollowsFocus(*window));
        QCOMPARE(window->windowTitle(), QStringLiteral("t.csv * - Quirnel"));

        QString asked;
        OnNextModal([&asked](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            QVERIFY(box);
            asked = box->text();
            box->button(QMessageBox::Yes)->click();
        });
        QTest::keyClick(view, Qt::Key_Delete, Qt::AltModifier);
        QCOMPARE(asked, QStringLiteral("Delete the current row?"));
        QCOMPARE(FirstColumn(*window), (QStringList{"a", "b, c", "d"}));
        QCOMPARE(window->Document().Table().FocusRow(), 2);
        QVERIFY(ViewFollowsFocus(*window));
        // Shortcuts reach only the active window; the offscreen platform leaves it with the
        // closed box.
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));

        QTest::keyClick(view, Qt::Key_PageUp, Qt::AltModifier);
        QCOMPARE(FirstColumn(*window), (QStringList{"a", "d", "b, c"}));
        QCOMPARE(window->Document().Table().FocusRow(), 1);
        // The grid's own keys for the cell menu's "Move row up" and "Move row down".
        QTest::keyClick(view, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(FirstColumn(*window), (QStringList{"d", "a", "b, c"}));
        QTest::keyClick(view, Qt::Key_Down, Qt::AltModifier);
        QTest::keyClick(view, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(FirstColumn(*window), (QStringList{"d", "a", "b, c"}));
        QCOMPARE(window->Document().Table().FocusRow(), 0);
        QVERIFY(ViewFollowsFocus(*window));

        QTest::keyClick(view, Qt::Key_S, Qt::ControlModifier);
        QVERIFY(!window->Document().Modified());
        QCOMPARE(ReadBytes(m_folder->Path(QStringLiteral("t.csv"))),
                 QByteArray("Name,Amount\r\nd,3\r\na,1\r\n\"b, c\",2\r\n"));
    }

    void RowCommandCommitsAnOpenInPlaceEdit()
    {
        auto window = ActiveWindow("Name\r\na\r\nb\r\n");
        QVERIFY(window);
        auto* view = window->Grid()->View();
        Focus(*window, 0, 1);
        view->edit(view->currentIndex());
        auto* editor = qobject_cast<QLineEdit*>(window->Grid()->EditorWidget());
        QVERIFY(editor);
        editor->setText(QStringLiteral("typed"));
        QTest::keyClick(editor, Qt::Key_Insert, Qt::AltModifier);
        QCOMPARE(FirstColumn(*window), (QStringList{"typed", "", "b"}));
        QCOMPARE(window->Document().Table().FocusRow(), 1);
        QVERIFY(ViewFollowsFocus(*window));
    }

    void RowCommandKeepsTheScrollPosition()
    {
        QByteArray bytes = "N\r\n";
        for (int i = 0; i < 300; ++i)
            bytes += QByteArray::number(i) + "\r\n";
        auto window = ActiveWindow(bytes);
        QVERIFY(window);
        auto* view = static_cast<GridView*>(window->Grid()->View());
        view->verticalScrollBar()->setValue(150);
        const int first = view->rowAt(0);
        QVERIFY(first > 100);
        Focus(*window, first + 2, 1);
        QTest::keyClick(view, Qt::Key_Insert, Qt::AltModifier);
        QCOMPARE(window->Document().RowCount(), 301);
        QCOMPARE(view->rowAt(0), first);
        QVERIFY(ViewFollowsFocus(*window));
    }

    void RowMenuFollowsTheSelectionAndSendsItsCommands()
    {
        auto window = ActiveWindow("Name\r\na\r\nb\r\nc\r\n");
        QVERIFY(window);
        TableControl& table = window->Document().Table();
        table.SetRowSelected(0, true);
        table.SetRowSelected(2, true);
        std::unique_ptr<QMenu> menu(window->BuildRowMenu(window.get()));
        QStringList texts;
        for (QAction* action : menu->actions())
            texts << action->text();
        for (const char* text : {"Copy rows\tCtrl+Shift+C", "Delete rows\tAlt+Delete",
                                 "Move rows up\tAlt+PageUp", "Duplicate rows"})
            QVERIFY2(texts.contains(QString::fromUtf8(text)), text);
        QVERIFY(FindAction(menu.get(), QStringLiteral("Paste row(s)\tCtrl+Shift+V"))->isEnabled());

        FindAction(menu.get(), QStringLiteral("Duplicate rows"))->trigger();
        QCOMPARE(FirstColumn(*window), (QStringList{"a", "a", "b", "c", "c"}));

        // One row selected or none: the singular texts.
        table.DeselectAllRows();
        menu.reset(window->BuildRowMenu(window.get()));
        QVERIFY(FindAction(menu.get(), QStringLiteral("Move row up\tAlt+PageUp")));
    }

    void RightClickOnARowNumberShowsTheRowMenu()
    {
        auto window = ActiveWindow("Name\r\na\r\nb\r\n");
        QVERIFY(window);
        auto* view = window->Grid()->View();
        QStringList shown;
        auto record = [&shown](QMenu* menu) {
            for (QAction* action : menu->actions())
                shown << action->text();
        };
        OnNextPopup(record);
        emit view->customContextMenuRequested(
            view->visualRect(view->model()->index(1, 0)).center());
        QVERIFY(shown.contains(QStringLiteral("Insert row after\tAlt+Insert")));

        shown.clear();
        OnNextPopup(record);
        emit view->customContextMenuRequested(
            view->visualRect(view->model()->index(1, 1)).center());
        QVERIFY(shown.contains(QStringLiteral("Move row up\tAlt+Up")));
        QVERIFY(!shown.contains(QStringLiteral("Insert row after\tAlt+Insert")));
    }
};

QTEST_MAIN(TestRowCommands)
#include "tst_row_commands.moc"
