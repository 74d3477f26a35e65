// The scope, Export HTML and Print options dialogs fill their requests as the user left them.

#include "app/command_ids.h"
#include "editing/export_html.h"
#include "editing/print_table.h"
#include "editing/qt/export_html_dialog.h"
#include "editing/qt/print_dialogs.h"
#include "editing/qt/scope_dialog_widget.h"
#include "editing/scope_dialog.h"
#include "tests/gui/gui_test_support.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

using namespace quirnel;
using namespace quirnel::test;

class TstToolDialogs : public QObject
{
    Q_OBJECT

private slots:
    void ScopeDialogShowsEntriesAndReturnsChoices()
    {
        ScopeRequest request;
        request.title = "Trim Whitespace";
        request.options = {{"Trim end of each line", "Trim End Of Each Line", "help", true},
                           {"Reduce spaces", "Reduce Spaces", "help", false}};
        request.entries = {"Entire table", "Current row", "Current column (b)", "Selected rows (2)",
                           "Current cell"};
        request.available = {true, false, true, true, false};
        request.scope = 3;
        ScopeDialogWidget dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Trim Whitespace"));
        QCOMPARE(dialog.Scopes().size(), 5u);
        QCOMPARE(dialog.Scopes()[2]->text(), QStringLiteral("Current column (b)"));
        QVERIFY(dialog.Scopes()[2]->isChecked());
        QVERIFY(!dialog.Scopes()[1]->isEnabled());
        QVERIFY(dialog.Options()[0]->isChecked());
        QCOMPARE(dialog.Options()[1]->objectName(), QStringLiteral("Reduce Spaces"));
        const QList<QGroupBox*> groups = dialog.findChildren<QGroupBox*>();
        QCOMPARE(groups.size(), 2);
        QCOMPARE(groups[0]->title(), QStringLiteral("Options"));
        QCOMPARE(groups[1]->title(), QStringLiteral("Scope"));

        dialog.Options()[0]->setChecked(false);
        dialog.Options()[1]->setChecked(true);
        dialog.Scopes()[3]->setChecked(true);
        dialog.accept();
        QCOMPARE(request.scope, 4);
        QVERIFY(!request.options[0].checked);
        QVERIFY(request.options[1].checked);
    }

    void ExportDialogPathFollowsTheTarget()
    {
        ExportHtmlRequest request;
        request.toFile = false;
        request.path = "/tmp/old.html";
        ExportHtmlDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Export HTML"));
        QVERIFY(dialog.ToClipboard()->isChecked());
        QVERIFY(!dialog.Path()->isEnabled());
        dialog.ToFile()->setChecked(true);
        QVERIFY(dialog.Path()->isEnabled());
        dialog.Path()->setText(QStringLiteral("/tmp/new.html"));
        dialog.accept();
        QVERIFY(request.toFile);
        QCOMPARE(request.path, std::string("/tmp/new.html"));
    }

    void PrintOptionsNumberBoxOnlyWhileChecked()
    {
        PrintOptionsRequest request;
        request.fontSize = 12;
        PrintOptionsDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Print"));
        QCOMPARE(dialog.FontSizeUsed()->text(), QStringLiteral("Font size:"));
        QVERIFY(!dialog.FontSize()->isEnabled());
        QCOMPARE(dialog.FontSize()->minimum(), 4.0);
        QCOMPARE(dialog.FontSize()->maximum(), 99.0);
        QCOMPARE(dialog.FontSize()->singleStep(), 0.5);
        QCOMPARE(dialog.FontSize()->value(), 12.0);
        dialog.FontSizeUsed()->setChecked(true);
        QVERIFY(dialog.FontSize()->isEnabled());
        dialog.FontSize()->setValue(200);
        QCOMPARE(dialog.FontSize()->value(), 99.0);
        dialog.FontSize()->setValue(10.5);
        dialog.accept();
        QVERIFY(request.fontSizeUsed);
        QCOMPARE(request.fontSize, 10.5);
    }

    void TrimWhitespaceRunsFromTheMainWindow()
    {
        WindowFolder folder;
        auto window = folder.OpenWindow("a,b\r\nx,\"  y \"\r\n");
        QVERIFY(window);
        SeenBox seen;
        bool asked = false;
        OnNextModal([&](QWidget* modal) {
            auto* dialog = qobject_cast<ScopeDialogWidget*>(modal);
            QVERIFY(dialog);
            asked = true;
            dialog->Scopes()[0]->setChecked(true);
            dialog->Options()[1]->setChecked(true);
            RecordNextBox(seen);
            dialog->accept();
        });
        window->OnCommand(cmd::kTrimWhitespace);
        QTRY_VERIFY(asked);
        QTRY_COMPARE(seen.title, QStringLiteral("Trim Whitespace"));
        QCOMPARE(seen.text, QStringLiteral("3 whitespace characters were trimmed from 1 cell."));
        QCOMPARE(CellText(*window, 0, 2), QStringLiteral("y"));
        QVERIFY(window->Document().Modified());
        QVERIFY(window->Prefs().trimReduce);
        QCOMPARE(window->Prefs().scope, 1);
    }
};

QTEST_MAIN(TstToolDialogs)
#include "tst_tool_dialogs.moc"
