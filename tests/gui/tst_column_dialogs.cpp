// The column commands' dialogs show their requests' defaults and fill in the user's choices.

#include "editing/column_commands.h"
#include "editing/qt/column_dialogs.h"
#include "editing/qt/shift_cells_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>

using namespace quirnel;

namespace {

QStringList Items(const QComboBox* box)
{
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        items << box->itemText(i);
    return items;
}

QStringList Labels(const QWidget* dialog)
{
    QStringList texts;
    for (const QLabel* label : dialog->findChildren<QLabel*>())
        texts << label->text();
    return texts;
}

QStringList GroupTitles(const QWidget* dialog)
{
    QStringList titles;
    for (const QGroupBox* group : dialog->findChildren<QGroupBox*>())
        titles << group->title();
    return titles;
}

QPushButton* OkButton(const QWidget* dialog)
{
    return dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
}

QString PreviewRow(const QTableWidget* preview, int row)
{
    QStringList cells;
    for (int c = 0; c < preview->columnCount(); ++c)
        cells << (preview->item(row, c) ? preview->item(row, c)->text() : QStringLiteral("?"));
    return cells.join(QLatin1Char('|'));
}

const std::vector<std::string> kColumns = {"#", "id", "name", "note"};

} // namespace

class TestColumnDialogs : public QObject
{
    Q_OBJECT

private slots:
    void NewColumnShowsItsChoicesAndFillsTheRequest()
    {
        NewColumnRequest request;
        request.title = "Insert Column After";
        request.columns = kColumns;
        request.insertAfter = 2;
        NewColumnDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Insert Column After"));
        QVERIFY(Labels(&dialog).contains(
            QStringLiteral("Please specify the details for the new column.")));
        QCOMPARE(dialog.Name()->maxLength(), 255);
        QCOMPARE(
            Items(dialog.SortMethod()),
            QStringList({"Text (case insensitive)", "Text (case sensitive)", "Numeric (blanks=0)",
                         "Numeric (blanks=-9999)", "Date/time", "Memory (e.g. 3.1 KB)"}));
        QCOMPARE(dialog.SortMethod()->currentIndex(), 0);
        QVERIFY(dialog.SortMethod()->toolTip().contains(
            QStringLiteral("When sorting the column, this determines how the cell data is "
                           "interpreted.")));
        QCOMPARE(Items(dialog.AlignmentChoice()), QStringList({"Left", "Right", "Center"}));
        QCOMPARE(dialog.AlignmentChoice()->currentText(), QStringLiteral("Left"));
        QVERIFY(dialog.AlignmentChoice()->toolTip().contains(
            QStringLiteral("Determines how the contents of the column are justified.")));
        QCOMPARE(Items(dialog.InsertAfter()), QStringList({"#", "id", "name", "note"}));
        QCOMPARE(dialog.InsertAfter()->currentText(), QStringLiteral("name"));
        QVERIFY(dialog.InsertAfter()->toolTip().contains(
            QStringLiteral("Determines which column the new column is inserted after.")));
        QCOMPARE(dialog.Another()->toolTip(),
                 QStringLiteral("Create this column, then create another one."));

        dialog.Name()->setText(QStringLiteral("Größe"));
        dialog.SortMethod()->setCurrentIndex(2);
        dialog.AlignmentChoice()->setCurrentIndex(2);
        dialog.InsertAfter()->setCurrentIndex(0);
        dialog.Another()->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(request.name, std::string("Größe"));
        QCOMPARE(request.sortMethod, kSortNumeric);
        QCOMPARE(request.alignment, Alignment::Center);
        QCOMPARE(request.insertAfter, 0);
        QVERIFY(request.another);
    }

    void NewColumnOkIsNotAnother()
    {
        NewColumnRequest request;
        request.columns = kColumns;
        request.another = true;
        NewColumnDialog dialog(request);
        OkButton(&dialog)->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(!request.another);
        QCOMPARE(request.insertAfter, 0);
    }

    void DeleteColumnPreselectsAndReturnsTheColumn()
    {
        DeleteColumnRequest request;
        request.columns = kColumns;
        request.column = 2;
        DeleteColumnDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Delete Column"));
        QVERIFY(Labels(&dialog).contains(QStringLiteral("This will delete an entire column.")));
        QVERIFY(Labels(&dialog).contains(QStringLiteral("Column to delete:")));
        QCOMPARE(Items(dialog.Column()), QStringList({"id", "name", "note"}));
        QCOMPARE(dialog.Column()->currentText(), QStringLiteral("name"));
        dialog.Column()->setCurrentIndex(2);
        OkButton(&dialog)->click();
        QCOMPARE(request.column, 3);
    }

    void RenameColumnOffersTheChosenColumnsName()
    {
        RenameColumnRequest request;
        request.columns = kColumns;
        request.column = 1;
        request.name = "id";
        RenameColumnDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Rename Column"));
        QVERIFY(Labels(&dialog).contains(QStringLiteral("Column to rename:")));
        QVERIFY(Labels(&dialog).contains(QStringLiteral("New name:")));
        QCOMPARE(dialog.Name()->text(), QStringLiteral("id"));
        QCOMPARE(dialog.Name()->maxLength(), 255);
        dialog.Column()->setCurrentIndex(2);
        QCOMPARE(dialog.Name()->text(), QStringLiteral("note"));
        dialog.Name()->setText(QStringLiteral("remark"));
        OkButton(&dialog)->click();
        QCOMPARE(request.column, 3);
        QCOMPARE(request.name, std::string("remark"));
    }

    void CombineColumnsAdvisesSavingWhenModified()
    {
        CombineColumnsRequest request;
        request.columns = kColumns;
        request.target = 1;
        request.modified = true;
        request.separator = ", ";
        request.alwaysSeparate = true;
        CombineColumnsDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Combine Columns"));
        const QStringList labels = Labels(&dialog);
        for (const char* text :
             {"This will combine two columns into one.",
              "It would be wise to save the file before using this tool.",
              "The target column is the one that is modified.",
              "The source column is the one that gets appended to the target column.",
              "Target column:", "Source column:", "Separator:"})
            QVERIFY2(labels.contains(QString::fromUtf8(text)), text);
        QCOMPARE(GroupTitles(&dialog), QStringList({"Options"}));
        QCOMPARE(dialog.Target()->currentText(), QStringLiteral("id"));
        QCOMPARE(dialog.Source()->currentIndex(), -1);
        QCOMPARE(dialog.Separator()->text(), QStringLiteral(", "));
        QVERIFY(dialog.AlwaysSeparate()->isChecked());
        QCOMPARE(dialog.AlwaysSeparate()->text(), QStringLiteral("Always insert separator"));
        QVERIFY(dialog.AlwaysSeparate()->toolTip().contains(
            QStringLiteral("even if one of the cells is blank.")));
        QCOMPARE(dialog.DeleteSource()->text(), QStringLiteral("Delete source column"));
        QVERIFY(dialog.DeleteSource()->toolTip().contains(
            QStringLiteral("If checked, the Source Column will be deleted.")));
        QVERIFY(dialog.Target()->toolTip().contains(
            QStringLiteral("The column that is to be modified.  Text from the source column "
                           "will be appended to the text in the target column.")));
        QVERIFY(dialog.Source()->toolTip().contains(
            QStringLiteral("The column that gets appended to the target column.  This column "
                           "is not modified.")));
        QVERIFY(dialog.Separator()->toolTip().contains(
            QStringLiteral("Any text entered here will be inserted at the end of the target "
                           "cells, before the source cells are appended.")));

        dialog.Source()->setCurrentIndex(2);
        dialog.Separator()->setText(QStringLiteral(" - "));
        dialog.AlwaysSeparate()->setChecked(false);
        dialog.DeleteSource()->setChecked(true);
        OkButton(&dialog)->click();
        QCOMPARE(request.target, 1);
        QCOMPARE(request.source, 3);
        QCOMPARE(request.separator, std::string(" - "));
        QVERIFY(!request.alwaysSeparate);
        QVERIFY(request.deleteSource);
    }

    void CombineColumnsUnmodifiedSaysNothingAboutSaving()
    {
        CombineColumnsRequest request;
        request.columns = kColumns;
        CombineColumnsDialog dialog(request);
        QVERIFY(!Labels(&dialog).contains(
            QStringLiteral("It would be wise to save the file before using this tool.")));
        OkButton(&dialog)->click();
        QCOMPARE(request.target, -1);
        QCOMPARE(request.source, -1);
    }

    void SetEntireColumnFillsItsChoices()
    {
        SetEntireColumnRequest request;
        SetEntireColumnDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Set Entire Column"));
        const QStringList labels = Labels(&dialog);
        for (const char* text :
             {"Choose how the column will be filled.",
              "Warning:  the contents of the column will be overwritten, and there is no undo "
              "feature.",
              "Text: ", "Starting number: ", "Scope:"})
            QVERIFY2(labels.contains(QString::fromUtf8(text)), text);
        QCOMPARE(GroupTitles(&dialog), QStringList({"Content", "Options"}));
        QCOMPARE(dialog.FillText()->text(), QStringLiteral("Fill with text"));
        QCOMPARE(dialog.FillNumbers()->text(), QStringLiteral("Fill with sequential numbers"));
        QCOMPARE(dialog.FillGuids()->text(), QStringLiteral("Fill with GUID's"));
        QVERIFY(dialog.FillText()->isChecked());
        QCOMPARE(Items(dialog.Scope()),
                 QStringList({"All cells", "Blank cells", "Non-blank cells"}));
        QVERIFY(dialog.Scope()->toolTip().contains(
            QStringLiteral("This determines which cells are overwritten.")));
        QVERIFY(!dialog.StartNumber()->isEnabled());

        dialog.FillNumbers()->setChecked(true);
        QVERIFY(dialog.StartNumber()->isEnabled());
        QVERIFY(!dialog.Text()->isEnabled());
        dialog.StartNumber()->setText(QStringLiteral("100"));
        dialog.Scope()->setCurrentIndex(1);
        OkButton(&dialog)->click();
        QCOMPARE(request.fill, ColumnFill::Numbers);
        QCOMPARE(request.startNumber, std::string("100"));
        QCOMPARE(request.scope, FillScope::Blank);

        SetEntireColumnRequest guids;
        SetEntireColumnDialog again(guids);
        again.FillGuids()->setChecked(true);
        again.Scope()->setCurrentIndex(2);
        OkButton(&again)->click();
        QCOMPARE(guids.fill, ColumnFill::Guids);
        QCOMPARE(guids.scope, FillScope::NonBlank);
    }

    void ShiftCellsPreviewFollowsTheChoices()
    {
        ShiftCellsRequest request;
        request.columns = {"#", "1", "2", "3", "4"};
        request.pivot = 3;
        request.rows = {{"a", "b", "c", "d"}, {"e", "f", "g", "h"}};
        ShiftCellsDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Shift Cells"));
        QCOMPARE(GroupTitles(&dialog), QStringList({"Direction", "Scope", "Preview"}));
        QVERIFY(Labels(&dialog).contains(QStringLiteral("Pivot column:")));
        QVERIFY(dialog.Left()->isChecked());
        QVERIFY(dialog.ScopeAll()->isChecked());
        QCOMPARE(dialog.Pivot()->currentText(), QStringLiteral("3"));
        QVERIFY(dialog.Pivot()->toolTip().contains(
            QStringLiteral("The column where the shifting starts (when shifting right) or ends "
                           "(when shifting left).")));
        QVERIFY(dialog.Left()->toolTip().contains(QStringLiteral("Cells will be shifted left.")));
        QVERIFY(dialog.Right()->toolTip().contains(QStringLiteral("Cells will be shifted right.")));
        QVERIFY(dialog.ScopeAll()->toolTip().contains(
            QStringLiteral("All cells on the row will be shifted.")));
        QVERIFY(dialog.ScopeLeftOfPivot()->toolTip().contains(
            QStringLiteral("Only cells to the left of the pivot column will be shifted.")));
        QVERIFY(dialog.ScopeRightOfPivot()->toolTip().contains(
            QStringLiteral("Only cells to the right of the pivot column will be shifted.")));
        QCOMPARE(dialog.Preview()->rowCount(), 2);
        QCOMPARE(PreviewRow(dialog.Preview(), 0), QStringLiteral("b|c|d|"));

        dialog.ScopeLeftOfPivot()->setChecked(true);
        QCOMPARE(PreviewRow(dialog.Preview(), 0), QStringLiteral("b|c||d"));
        dialog.Right()->setChecked(true);
        QCOMPARE(PreviewRow(dialog.Preview(), 1), QStringLiteral("|e|f|h"));
        dialog.ScopeRightOfPivot()->setChecked(true);
        dialog.Pivot()->setCurrentIndex(1);
        QCOMPARE(PreviewRow(dialog.Preview(), 0), QStringLiteral("a||b|c"));
        // Until OK, the request keeps what it came with.
        QVERIFY(request.left);
        OkButton(&dialog)->click();
        QVERIFY(!request.left);
        QCOMPARE(request.scope, ShiftScope::RightOfPivot);
        QCOMPARE(request.pivot, 2);
    }
};

QTEST_MAIN(TestColumnDialogs)
#include "tst_column_dialogs.moc"
