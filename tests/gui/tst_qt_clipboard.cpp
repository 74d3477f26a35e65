// The clipboard over Qt: one copy carries every format at once, and each reads back by name.

#include "ostrand/qt/qt_clipboard.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTest>

class TestQtClipboard : public QObject
{
    Q_OBJECT

private slots:
    void OneWriteCarriesEveryFormat()
    {
        ost::QtClipboard clipboard;
        const std::string tabbed = "Name\tGr\xc3\xbc\xc3\x9f"
                                   "e\r\n";
        QVERIFY(clipboard.Write({{std::string(ost::kClipboardPlainText), tabbed},
                                 {std::string(ost::kClipboardCsv), "Name,\"a,b\"\r\n"},
                                 {std::string(ost::kClipboardCsvMarker), "1"}}));

        const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
        QVERIFY(mime);
        QCOMPARE(mime->text(), QStringLiteral("Name\tGr\u00fc\u00dfe\r\n"));
        QCOMPARE(mime->data(QStringLiteral("text/csv")), QByteArray("Name,\"a,b\"\r\n"));
        QCOMPARE(mime->data(QStringLiteral("application/x-ostrand-csv-data")), QByteArray("1"));

        QCOMPARE(clipboard.Read(ost::kClipboardPlainText).value_or("-"), tabbed);
        QCOMPARE(clipboard.Read(ost::kClipboardCsv).value_or("-"), std::string("Name,\"a,b\"\r\n"));
        QVERIFY(clipboard.Has(ost::kClipboardCsvMarker));
    }

    void AnotherProgramsTextReplacesEveryFormat()
    {
        ost::QtClipboard clipboard;
        QVERIFY(clipboard.Write({{std::string(ost::kClipboardCsv), "a\r\n"},
                                 {std::string(ost::kClipboardCsvMarker), "1"}}));
        QVERIFY(!clipboard.Has(ost::kClipboardPlainText));
        QGuiApplication::clipboard()->setText(QStringLiteral("plain"));
        QCOMPARE(clipboard.Read(ost::kClipboardPlainText).value_or("-"), std::string("plain"));
        QVERIFY(!clipboard.Has(ost::kClipboardCsv));
        QVERIFY(!clipboard.Has(ost::kClipboardCsvMarker));
    }
};

QTEST_MAIN(TestQtClipboard)
#include "tst_qt_clipboard.moc"
