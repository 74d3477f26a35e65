// The "Open Nonstandard File" dialog fills its request from the widgets.

#include "document/qt/open_nonstandard_file_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QtTest>

using namespace quirnel;

class TestOpenNonstandardFile : public QObject
{
    Q_OBJECT

private slots:
    void opensWithDefaults()
    {
        OpenNonstandardFileRequest request = MakeNonstandardRequest(0);
        OpenNonstandardFileDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Open Nonstandard File"));
        QCOMPARE(dialog.SeparatorList()->currentText(), QStringLiteral("Auto-Detect"));
        QCOMPARE(dialog.SeparatorList()->count(), 5);
        QVERIFY(!dialog.CharacterSetBox()->isChecked());
        QVERIFY(!dialog.CodePageList()->isEnabled());
        QCOMPARE(dialog.IgnoreCommentsBox()->text(),
                 QStringLiteral("Ignore comments beginning with \"#\""));
    }

    void rememberedCodePageIsPreselected()
    {
        OpenNonstandardFileRequest request = MakeNonstandardRequest(1251);
        OpenNonstandardFileDialog dialog(request);
        QVERIFY(dialog.CharacterSetBox()->isChecked());
        QVERIFY(dialog.CodePageList()->isEnabled());
        QCOMPARE(dialog.CodePageList()->currentData().toUInt(), 1251u);
    }

    void acceptFillsRequest()
    {
        OpenNonstandardFileRequest request = MakeNonstandardRequest(0);
        OpenNonstandardFileDialog dialog(request);
        dialog.NoColumnNamesBox()->setChecked(true);
        dialog.SeparatorList()->setCurrentIndex(3);
        dialog.CharacterSetBox()->setChecked(true);
        QVERIFY(dialog.CodePageList()->isEnabled());
        dialog.CodePageList()->setCurrentIndex(0);
        dialog.BackslashEscapeBox()->setChecked(true);
        dialog.IgnoreCommentsBox()->setChecked(true);
        dialog.accept();
        QVERIFY(request.noColumnNames);
        QCOMPARE(request.separator, ';');
        QVERIFY(request.useCharacterSet);
        QCOMPARE(request.codePage, 65001u);
        QVERIFY(request.backslashEscape);
        QVERIFY(request.ignoreComments);
        const FileFormat format = FormatFromRequest(request, "/x.csv");
        QCOMPARE(format.codePage, 65001u);
        QCOMPARE(format.newline, std::string("\r\n"));
    }

    void uncheckedCharacterSetMeansSystemCodePage()
    {
        OpenNonstandardFileRequest request = MakeNonstandardRequest(1251);
        OpenNonstandardFileDialog dialog(request);
        dialog.CharacterSetBox()->setChecked(false);
        dialog.accept();
        QCOMPARE(FormatFromRequest(request, "/x.csv").codePage, 0u);
    }
};

QTEST_MAIN(TestOpenNonstandardFile)
#include "tst_open_nonstandard_file.moc"
