// The clipboard commands' dialogs show their requests and fill in the user's choices; Reset
// and Same Order rewrite the mapping shown.

#include "editing/clipboard_columns.h"
#include "editing/clipboard_rows.h"
#include "editing/qt/clipboard_dialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>

using namespace quirnel;

class TestClipboardDialogs : public QObject
{
    Q_OBJECT

private slots:
    void MappingShowsBothColumnsAndFillsTheChoices()
    {
        PasteMappingRequest request;
        request.title = "Paste Row(s)";
        request.clipboardColumns = {"x", "y", "z"};
        request.tableColumns = {"name", "amount"};
        request.hasNames = true;
        request.mapping = {2, 0, 1};
        PasteMappingDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Paste Row(s)"));
        QCOMPARE(dialog.Table()->horizontalHeaderItem(0)->text(),
                 QStringLiteral("Clipboard Column"));
        QCOMPARE(dialog.Table()->horizontalHeaderItem(1)->text(), QStringLiteral("CSV Column"));
        QCOMPARE(dialog.Table()->item(1, 0)->text(), QStringLiteral("y"));
        QCOMPARE(dialog.Choice(0)->currentText(), QStringLiteral("amount"));
        QCOMPARE(dialog.Choice(1)->currentText(), QString());
        QVERIFY(dialog.HasNames()->isChecked());
        QCOMPARE(dialog.HasNames()->text(), QStringLiteral("Clipboard contains column names"));

        QTest::mouseClick(dialog.Reset(), Qt::LeftButton);
        QCOMPARE(dialog.Choice(0)->currentIndex(), 0);
        QTest::mouseClick(dialog.SameOrder(), Qt::LeftButton);
        QCOMPARE(dialog.Choice(1)->currentText(), QStringLiteral("amount"));
        dialog.Choice(2)->setCurrentIndex(1);
        dialog.HasNames()->setChecked(false);
        dialog.accept();
        QCOMPARE(request.mapping, (std::vector<int>{1, 2, 1}));
        QVERIFY(!request.hasNames);
    }

    void PlacePreselectsTheLastChoice()
    {
        PastePlaceRequest request;
        request.place = kPasteAtBeginning;
        PastePlaceDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Paste Row(s)"));
        QVERIFY(dialog.Places()[2]->isChecked());
        QCOMPARE(dialog.Places()[3]->text(), QStringLiteral("End of table"));
        dialog.Places()[1]->setChecked(true);
        dialog.accept();
        QCOMPARE(request.place, int(kPasteAfterCurrent));
    }

    void CopyColumnsFillsTheChosenColumns()
    {
        CopyColumnsRequest request;
        request.title = "Cut Column";
        request.text = "Choose which columns should be cut.";
        request.columns = {"a", "b"};
        request.chosen = {false, true};
        CopyColumnsDialog dialog(request);
        QCOMPARE(dialog.Columns()->item(1)->checkState(), Qt::Checked);
        dialog.Columns()->item(0)->setCheckState(Qt::Checked);
        dialog.IncludeNames()->setChecked(false);
        dialog.accept();
        QCOMPARE(request.chosen, (std::vector<bool>{true, true}));
        QVERIFY(!request.includeNames);
    }

    void PasteColumnNamesAreEnteredOnlyWithoutANamesRow()
    {
        PasteColumnRequest request;
        request.columns = {"#", "a", "b"};
        request.insertAfter = 1;
        request.firstRowNames = true;
        request.names = {"k", "l"};
        PasteColumnDialog dialog(request);
        QCOMPARE(dialog.InsertAfter()->currentText(), QStringLiteral("a"));
        QVERIFY(!dialog.Names()[0]->isEnabled());
        dialog.FirstRowNames()->setChecked(false);
        QVERIFY(dialog.Names()[0]->isEnabled());
        dialog.Names()[1]->setText(QStringLiteral("second"));
        dialog.InsertAfter()->setCurrentIndex(0);
        dialog.accept();
        QCOMPARE(request.insertAfter, 0);
        QVERIFY(!request.firstRowNames);
        QCOMPARE(request.names, (std::vector<std::string>{"k", "second"}));
    }
};

QTEST_MAIN(TestClipboardDialogs)
#include "tst_clipboard_dialogs.moc"
