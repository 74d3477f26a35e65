// The clipboard commands and the warnings pane in the real window, over the real clipboard.

#include "app/command_ids.h"
#include "app/qt/main_window.h"
#include "app/qt/table_pane.h"
#include "app/qt/warnings_pane.h"
#include "editing/qt/clipboard_dialogs.h"
#include "editing/row_drag.h"
#include "tests/gui/gui_test_support.h"
#include "view/qt/grid_view.h"

#include <QClipboard>
#include <QDropEvent>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>

using namespace quirnel;
using namespace quirnel::test;

class TestClipboardWindow : public QObject
{
    Q_OBJECT

private slots:
    void CopiedRowsReachOtherProgramsInEveryForm()
    {
        WindowFolder folder;
        auto window = folder.OpenWindow("A,B\r\n1,\"x y\"\r\n3,4\r\n");
        QVERIFY(window);
        window->Document().Table().SetFocusCell(0, 1);
        window->OnCommand(cmd::kCopyRows);
        const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
        QVERIFY(mime);
        QCOMPARE(mime->data(QStringLiteral("text/csv")), QByteArray("A,B\r\n1,x y\r\n"));
        QCOMPARE(mime->text(), QStringLiteral("A\tB\r\n1\tx y\r\n"));
        QCOMPARE(mime->data(QStringLiteral("application/x-ostrand-csv-data")), QByteArray("1"));
    }

    void AnotherProgramsTabbedTextIsPastedAsRows()
    {
        WindowFolder folder;
        auto window = folder.OpenWindow("A,B\r\n1,2\r\n");
        QVERIFY(window);
        window->Document().Table().SetFocusCell(0, 1);
        QGuiApplication::clipboard()->setText(QStringLiteral("A\tB\nfrom,there\t5\n"));
        OnNextModal([](QWidget* modal) {
            auto* place = qobject_cast<PastePlaceDialog*>(modal);
            QVERIFY(place);
            place->Places()[3]->setChecked(true);
            place->accept();
        });
        window->OnCommand(cmd::kPasteRows);
        QCOMPARE(window->Document().RowCount(), 2);
        QCOMPARE(CellText(*window, 1, 1), QStringLiteral("from,there"));
        QCOMPARE(CellText(*window, 1, 2), QStringLiteral("5"));
        QVERIFY(window->Document().Modified());
    }

    void RowsDroppedOnTheGridMoveOnlyWhenTheDragIsOurs()
    {
        WindowFolder folder;
        auto window = folder.OpenWindow("A\r\na\r\nb\r\nc\r\n");
        QVERIFY(window);
        window->show();
        auto* grid = static_cast<GridView*>(window->Grid()->View());
        auto drop = [&](std::uint64_t source, int viewRow) {
            QMimeData mime;
            mime.setData(QStringLiteral("application/x-ostrand-csv-editor-row"),
                         QByteArray::fromStdString(EncodeRowDrag({source, {2}})));
            const QRect cell = grid->visualRect(grid->model()->index(viewRow, 1));
            const QPoint at(cell.center().x(), cell.top() + 2);
            // A drop reaches the widget that accepted the drag's entry.
            QDragEnterEvent enter(at, Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(grid->viewport(), &enter);
            QDropEvent event(at, Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(grid->viewport(), &event);
        };
        drop(static_cast<std::uint64_t>(QCoreApplication::applicationPid()) + 1, 0);
        QCOMPARE(CellText(*window, 2, 1), QStringLiteral("c"));
        drop(static_cast<std::uint64_t>(QCoreApplication::applicationPid()), 0);
        QCOMPARE(CellText(*window, 0, 1), QStringLiteral("c"));
        QCOMPARE(CellText(*window, 1, 1), QStringLiteral("a"));
        QVERIFY(window->Document().Modified());
    }

    void WarningsPaneTakesItsTextsFromTheCommandTable()
    {
        WindowFolder folder;
        auto window = folder.OpenWindow("A,B\r\n1,2,3,4\r\n5\r\n");
        QVERIFY(window);
        WarningsPane* pane = window->Warnings();
        QCOMPARE(pane->findChild<QPushButton*>(QStringLiteral("Go"))->toolTip(),
                 QStringLiteral("Go to the row where the warning occurs."));
        QCOMPARE(pane->findChild<QPushButton*>(QStringLiteral("Hide"))->toolTip(),
                 QStringLiteral("Hide the warnings list."));
        QCOMPARE(pane->List()->count(), 2);

        pane->List()->setCurrentRow(0);
        std::unique_ptr<QMenu> menu(pane->BuildContextMenu(window.get()));
        QVERIFY(menu);
        QStringList texts;
        for (QAction* action : menu->actions())
            texts << action->text();
        QCOMPARE(texts,
                 (QStringList{QStringLiteral("Go to row\tDbl Click"), QStringLiteral("Dismiss"),
                              QStringLiteral("Copy extra data")}));
        window->OnCommand(cmd::kCopyWarningExtraData);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("3, 4"));

        pane->List()->setCurrentRow(1);
        menu.reset(pane->BuildContextMenu(window.get()));
        QCOMPARE(menu->actions().size(), 2);
    }

    void DismissingEveryWarningHidesThePane()
    {
        WindowFolder folder;
        auto window = folder.OpenWindow("A,B\r\n1,2,3\r\n");
        QVERIFY(window);
        window->show();
        QVERIFY(window->Warnings()->isVisible());
        window->Warnings()->List()->setCurrentRow(0);
        window->OnCommand(cmd::kDismissWarning);
        QVERIFY(window->Document().Warnings().empty());
        QVERIFY(!window->WarningsVisible());
        QVERIFY(!window->Warnings()->isVisible());
        QVERIFY(!window->Document().Modified());
        window->OnCommand(cmd::kDisplayWarnings);
        QVERIFY(window->Warnings()->isVisible());
        QCOMPARE(window->Warnings()->List()->count(), 0);
        window->CloseDocument();
        QVERIFY(!window->Warnings()->isVisible());
    }
};

QTEST_MAIN(TestClipboardWindow)
#include "tst_clipboard_window.moc"
