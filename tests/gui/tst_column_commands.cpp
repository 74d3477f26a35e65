// The column commands in the main window: enabled in menus and toolbar, the grid's heading menu
// acting on the clicked column, "Column options" on every data column, and a dialog run through.

#include "app/command_ids.h"
#include "app/command_state.h"
#include "app/qt/table_pane.h"
#include "editing/qt/column_dialogs.h"
#include "tests/gui/gui_test_support.h"
#include "view/qt/grid_view.h"

#include <QLineEdit>

using namespace quirnel;
using namespace quirnel::test;

class TestColumnCommands : public QObject
{
    Q_OBJECT

    std::unique_ptr<WindowFolder> m_folder;

    std::unique_ptr<MainWindow> OpenWindow() const
    {
        return m_folder->OpenWindow("Name,Amount,Note\r\nb,10,x\r\na,9,y\r\n");
    }
    static GridView* Grid(MainWindow& window)
    {
        return qobject_cast<GridView*>(window.Grid()->View());
    }
    static QStringList Names(MainWindow& window)
    {
        QStringList names;
        for (int c = 1; c < window.Document().ColumnCount(); ++c)
            names << QString::fromStdString(window.Document().ColumnName(c));
        return names;
    }

private slots:
    void init() { m_folder = std::make_unique<WindowFolder>(); }
    void cleanup() { m_folder.reset(); }

    void ColumnCommandsAreEnabled()
    {
        auto window = OpenWindow();
        QVERIFY(window);
        const DocumentState state = window->CurrentState();
        for (int id :
             {cmd::kCreateColumn, cmd::kInsertColumnBefore, cmd::kInsertColumnAfter,
              cmd::kDeleteColumn, cmd::kRenameColumn, cmd::kMoveColumnLeft, cmd::kMoveColumnRight,
              cmd::kCombineColumns, cmd::kSetEntireColumn, cmd::kShiftCells})
            QVERIFY2(ComputeCommandState(id, state).enabled, qPrintable(QString::number(id)));
    }

    void HeadingMenuActsOnTheClickedColumn()
    {
        auto window = OpenWindow();
        QVERIFY(window);
        window->Document().Table().SetFocusCell(0, 1);
        std::unique_ptr<QMenu> menu(Grid(*window)->BuildHeaderMenu(3, window.get()));
        QAction* copy = FindAction(menu.get(), QStringLiteral("Copy column"), false);
        QVERIFY(copy);
        QVERIFY(copy->isEnabled());
        QAction* left = FindAction(menu.get(), QStringLiteral("Move column left"), false);
        QVERIFY(left);
        QVERIFY(left->isEnabled());
        left->trigger();
        QCOMPARE(Names(*window), QStringList({"Name", "Note", "Amount"}));
        QCOMPARE(CellText(*window, 0, 2), QStringLiteral("x"));
        QVERIFY(window->Document().Modified());
        // The current cell stays on its column.
        QCOMPARE(window->Document().Table().FocusColumn(), 1);
    }

    void HeadingMenuOffersColumnOptions()
    {
        auto window = OpenWindow();
        QVERIFY(window);
        std::unique_ptr<QMenu> menu(Grid(*window)->BuildHeaderMenu(2, window.get()));
        QAction* options = FindAction(menu.get(), QStringLiteral("Column options"), false);
        QVERIFY(options && options->menu());
        QAction* right = FindAction(options->menu(), QStringLiteral("Right"));
        QVERIFY(right);
        right->trigger();
        QCOMPARE(window->Document().Table().ColumnAlignment(2), Alignment::Right);
        QVERIFY(FindAction(options->menu(), QStringLiteral("Numeric (blanks=0)")));
    }

    void CreateColumnThroughItsDialog()
    {
        auto window = OpenWindow();
        QVERIFY(window);
        window->Document().Table().SetFocusCell(1, 1);
        OnNextModal([](QWidget* modal) {
            auto* dialog = qobject_cast<NewColumnDialog*>(modal);
            QVERIFY(dialog);
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Insert Column After"));
            dialog->Name()->setText(QStringLiteral("Added"));
            dialog->accept();
        });
        window->OnCommand(cmd::kInsertColumnAfter);
        QCOMPARE(Names(*window), QStringList({"Name", "Added", "Amount", "Note"}));
        QCOMPARE(window->Document().Table().FocusColumn(), 2);
        QCOMPARE(window->Document().Table().FocusRow(), 1);
        QVERIFY(window->Caption().contains(QStringLiteral("*")));
    }
};

QTEST_MAIN(TestColumnCommands)
#include "tst_column_commands.moc"
