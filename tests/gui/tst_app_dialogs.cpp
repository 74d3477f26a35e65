// The application's dialogs fill their requests: Preferences, File Properties, New File and
// the association dialog.

#include "app/qt/association_dialog.h"
#include "app/qt/file_dialogs.h"
#include "app/qt/preferences_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace quirnel;

namespace {

template <typename T> T* Named(QWidget* dialog, const char* name)
{
    T* widget = dialog->findChild<T*>(QString::fromUtf8(name));
    if (!widget)
        qFatal("no control named %s", name);
    return widget;
}

QStringList Items(QComboBox* box)
{
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        items << box->itemText(i);
    return items;
}

QStringList Labels(QWidget* dialog)
{
    QStringList texts;
    for (QLabel* label : dialog->findChildren<QLabel*>())
        texts << label->text();
    return texts;
}

} // namespace

class TestAppDialogs : public QObject
{
    Q_OBJECT

private slots:
    void PreferencesShowsChoicesInOrderWithHelp()
    {
        PreferencesRequest request;
        PreferencesDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Preferences"));
        QCOMPARE(Items(Named<QComboBox>(&dialog, "Alternating Rows")),
                 QStringList({"Default", "Enabled", "Disabled"}));
        QCOMPARE(Items(Named<QComboBox>(&dialog, "Row Dividers")),
                 QStringList({"Default", "Visible", "Hidden"}));
        QCOMPARE(Items(Named<QComboBox>(&dialog, "Font Size")),
                 QStringList({"Huge", "Large", "Big", "Normal", "Small", "Tiny"}));
        QCOMPARE(Items(Named<QComboBox>(&dialog, "Default Encoding")),
                 QStringList({"ASCII (8-bit characters)", "UTF-8 (16-bit characters)"}));
        QCOMPARE(Named<QCheckBox>(&dialog, "Don't Confirm Row Deletion")->text(),
                 QStringLiteral("Don't confirm row deletion"));
        QVERIFY(Named<QCheckBox>(&dialog, "Hide Index Column")
                    ->toolTip()
                    .contains(QStringLiteral("labeled &quot;#&quot;")));
        QCOMPARE(Named<QLineEdit>(&dialog, "Backup Levels")->maxLength(), 2);
        QCOMPARE(dialog.findChild<QGroupBox*>()->title(), QStringLiteral("Files"));
    }

    void PreferencesOkWritesBackCancelKeeps()
    {
        PreferencesRequest request;
        request.altRows = 0;
        request.fontSize = -2;
        {
            PreferencesDialog dialog(request);
            QCOMPARE(Named<QComboBox>(&dialog, "Alternating Rows")->currentText(),
                     QStringLiteral("Disabled"));
            QCOMPARE(Named<QComboBox>(&dialog, "Font Size")->currentText(), QStringLiteral("Tiny"));
            Named<QCheckBox>(&dialog, "Full Path On Caption")->setChecked(true);
            dialog.reject();
        }
        QVERIFY(!request.fullPath);

        PreferencesDialog dialog(request);
        Named<QCheckBox>(&dialog, "Full Path On Caption")->setChecked(true);
        Named<QComboBox>(&dialog, "Row Dividers")->setCurrentIndex(1); // "Visible"
        Named<QComboBox>(&dialog, "Default Encoding")->setCurrentIndex(1);
        QLineEdit* levels = Named<QLineEdit>(&dialog, "Backup Levels");
        levels->clear();
        QTest::keyClicks(levels, QStringLiteral("150"));
        QCOMPARE(levels->text(), QStringLiteral("15"));
        dialog.accept();
        QVERIFY(request.fullPath);
        QCOMPARE(request.rowDividers, 2);
        QCOMPARE(request.defaultEncoding, 1);
        QCOMPARE(request.backupLevels, std::string("15"));
    }

    void FilePropertiesListsAndValues()
    {
        FileFormat format;
        format.codePage = 65001;
        format.separator = '|';
        format.newline = "\n";
        format.delimitAllCells = true;
        FilePropertiesRequest request = MakeFilePropertiesRequest(format);
        FilePropertiesDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("File Properties"));
        QVERIFY(Labels(&dialog).contains(
            QStringLiteral("These properties apply to the currently open file.")));
        QCOMPARE(dialog.CharacterSet()->itemText(0),
                 QStringLiteral("8-bit ASCII (System Default)"));
        QCOMPARE(dialog.CharacterSet()->itemText(1), QStringLiteral("UTF-8 (Unicode)"));
        QCOMPARE(dialog.CharacterSet()->currentIndex(), 1);
        QCOMPARE(Items(dialog.Separator()), QStringList({",", ";", "|", "tab"}));
        QCOMPARE(dialog.Separator()->currentText(), QStringLiteral("|"));
        QCOMPARE(Items(dialog.Newline()), QStringList({"CR+LF (Windows)", "LF (Linux, Unix)",
                                                       "CR (older Mac OS)", "LF+CR (RISC OS)"}));
        QCOMPARE(dialog.Newline()->currentIndex(), 1);
        QVERIFY(dialog.DelimitAllCells()->isChecked());
        QCOMPARE(dialog.NoColumnNames()->text(), QStringLiteral("No column names"));

        dialog.CharacterSet()->setCurrentIndex(0);
        dialog.Separator()->setCurrentIndex(3);
        dialog.NoColumnNames()->setChecked(true);
        dialog.accept();
        QCOMPARE(request.codePage, 0u);
        QCOMPARE(request.separator, 9);
        QVERIFY(request.noColumnNames);
    }

    void NewFilePreselectsEncodingAndCommas()
    {
        NewFileRequest request;
        request.encoding = 1;
        NewFileDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("New File"));
        QVERIFY(
            Labels(&dialog).contains(QStringLiteral("Please review the new CSV file's setup.")));
        QCOMPARE(dialog.Encoding()->currentText(), QStringLiteral("UTF-8 (16-bit characters)"));
        QCOMPARE(Items(dialog.Separator()),
                 QStringList({"Commas", "Tabs", "Semi-colons", "Vertical bars"}));
        QCOMPARE(dialog.Separator()->currentText(), QStringLiteral("Commas"));
        dialog.Separator()->setCurrentIndex(2);
        dialog.accept();
        QCOMPARE(request.separator, 59);
        QCOMPARE(request.encoding, 1);
    }

    void AssociationAsksForExtension()
    {
        AssociationDialog dialog;
        QVERIFY(Labels(&dialog).contains(
            QStringLiteral("What file extension would you like to associate with Quirnel?")));
        QVERIFY(Labels(&dialog).contains(
            QStringLiteral("Files of this type will be opened by Quirnel by default.")));
        QCOMPARE(dialog.ExtensionField()->text(), QStringLiteral("CSV"));
        QVERIFY(dialog.ExtensionField()->toolTip().contains(QStringLiteral(
            "The filename extension of the file type that should be opened by Quirnel.")));
        dialog.ExtensionField()->setText(QStringLiteral(" .tsv "));
        QCOMPARE(dialog.Extension(), std::string(".tsv"));
    }
};

QTEST_MAIN(TestAppDialogs)
#include "tst_app_dialogs.moc"
