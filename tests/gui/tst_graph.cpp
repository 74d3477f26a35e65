// The graph window draws what the chart holds and keeps its options in graph.xml; the Graph
// options and spell-check dialogs fill their requests as the user left them.

#include "editing/graph_command.h"
#include "editing/qt/graph_options_dialog.h"
#include "editing/qt/spell_check_dialog.h"
#include "editing/spell_check.h"
#include "ostrand/core/clipboard.h"
#include "ostrand/core/user_interface.h"
#include "view/qt/graph_window.h"

#include <QAreaSeries>
#include <QCategoryAxis>
#include <QChart>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QLineSeries>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QValueAxis>

#include <filesystem>

using namespace quirnel;

namespace {

class NoUi : public ost::UserInterface
{
public:
    int MessageBox(const ost::MessageBoxRequest&) override { return ost::kButtonCancel; }
    void Beep() override {}
    void BeginProgress(const std::string&) override {}
    bool UpdateProgress(double) override { return true; }
    void EndProgress() override {}
};

class NoClipboard : public ost::Clipboard
{
public:
    bool Write(const std::vector<ost::ClipboardItem>&) override { return false; }
    std::optional<std::string> Read(std::string_view) override { return std::nullopt; }
};

/// Two data sets over three January days.
GraphChart TwoSets()
{
    GraphChart chart;
    chart.title = "Daily Totals";
    chart.xLabel = "Day";
    chart.yLabel = "amount";
    chart.division = kDivisionDaily;
    chart.referenceDate = DayNumber(2024, 1, 3);
    GraphSeries first{"amount", 0x0000FF, GraphDataSet(kDivisionDaily)};
    GraphSeries second{"qty", 0x008000, GraphDataSet(kDivisionDaily)};
    for (int day = 1; day <= 3; ++day) {
        first.data.Add(DayNumber(2024, 1, day), day * 10.0);
        second.data.Add(DayNumber(2024, 1, day), 40.0 - day * 5);
    }
    first.data.Finish();
    second.data.Finish();
    chart.series = {first, second};
    return chart;
}

} // namespace

class TstGraph : public QObject
{
    Q_OBJECT

private slots:
    void WindowDrawsBothSetsInTheirColours()
    {
        QTemporaryDir dir;
        NoUi ui;
        NoClipboard clipboard;
        GraphWindow window(TwoSets(), dir.filePath("graph.xml").toStdString(), ui, clipboard);
        QCOMPARE(window.windowTitle(), QStringLiteral("Daily Totals"));
        const QList<QAbstractSeries*> series = window.Chart()->series();
        QCOMPARE(series.size(), 2);
        auto* first = qobject_cast<QLineSeries*>(series[0]);
        QVERIFY(first);
        QCOMPARE(first->name(), QStringLiteral("amount"));
        QCOMPARE(first->pen().color(), QColor(0, 0, 255));
        QCOMPARE(first->count(), 3);
        QCOMPARE(qobject_cast<QLineSeries*>(series[1])->pen().color(), QColor(0, 128, 0));
        auto* x = qobject_cast<QCategoryAxis*>(window.Chart()->axes(Qt::Horizontal).value(0));
        QVERIFY(x);
        QCOMPARE(x->titleText(), QStringLiteral("Day"));
        QVERIFY(x->categoriesLabels().contains(QStringLiteral("Jan 1")));
        auto* y = qobject_cast<QValueAxis*>(window.Chart()->axes(Qt::Vertical).value(0));
        QVERIFY(y);
        QCOMPARE(y->titleText(), QStringLiteral("amount"));
        QVERIFY(y->max() >= 30.0);
    }

    void StyleAndLinesPersistInGraphXml()
    {
        QTemporaryDir dir;
        const std::filesystem::path file = dir.filePath("graph.xml").toStdString();
        NoUi ui;
        NoClipboard clipboard;
        {
            GraphWindow window(TwoSets(), file, ui, clipboard);
            window.SetStyle(kGraphStyleRibbon);
            window.SetVerticalLines(true);
            window.SetHorizontalLines(false);
            QVERIFY(qobject_cast<QAreaSeries*>(window.Chart()->series().value(0)));
            QVERIFY(window.Chart()->axes(Qt::Horizontal).value(0)->isGridLineVisible());
            QVERIFY(!window.Chart()->axes(Qt::Vertical).value(0)->isGridLineVisible());
        }
        GraphWindow again(TwoSets(), file, ui, clipboard);
        QCOMPARE(again.Settings().style, kGraphStyleRibbon);
        QVERIFY(again.Settings().verticalLines);
        QVERIFY(!again.Settings().horizontalLines);
        QVERIFY(qobject_cast<QAreaSeries*>(again.Chart()->series().value(1)));
    }

    void AWindowOfItsOwnReturnsWhereItWas()
    {
        QTemporaryDir dir;
        const std::filesystem::path file = dir.filePath("graph.xml").toStdString();
        NoUi ui;
        NoClipboard clipboard;
        {
            GraphWindow window(TwoSets(), file, ui, clipboard);
            window.show();
            window.setGeometry(70, 80, 640, 480);
            QVERIFY(QTest::qWaitForWindowExposed(&window));
        }
        GraphWindow again(TwoSets(), file, ui, clipboard);
        QVERIFY(again.Settings().hasPosition);
        QCOMPARE(again.geometry(), QRect(70, 80, 640, 480));
    }

    void HostedGraphIs590By440AndADamagedFileIsNoObstacle()
    {
        QTemporaryDir dir;
        QFile damaged(dir.filePath("graph.xml"));
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("<GraphNode><Setting name=\"Style\" value=\"\xff\xfe");
        damaged.close();
        NoUi ui;
        NoClipboard clipboard;
        QWidget host;
        host.resize(800, 600);
        GraphWindow window(TwoSets(), dir.filePath("graph.xml").toStdString(), ui, clipboard, &host,
                           true);
        QCOMPARE(window.size(), QSize(590, 440));
        QCOMPARE(window.parentWidget(), &host);
        QVERIFY(!window.isWindow());
        QCOMPARE(window.Settings().style, kGraphStyleLine);
    }

    void EmptyChartStillDraws()
    {
        QTemporaryDir dir;
        NoUi ui;
        NoClipboard clipboard;
        GraphChart chart;
        chart.series.push_back({"Count", 0x0000FF, GraphDataSet()});
        GraphWindow window(chart, dir.filePath("graph.xml").toStdString(), ui, clipboard);
        QCOMPARE(window.Chart()->series().size(), 1);
    }

    void OptionsDialogFillsTheRequest()
    {
        GraphOptionsRequest request;
        request.columns = {"date", "amount", "qty"};
        request.amount1Used = true;
        request.amount1Column = 2;
        request.amount2Column = 3;
        request.dateColumn = 1;
        request.dateFormat = kGraphDateAuto;
        request.division = kDivisionMonthsAgo;
        GraphOptionsDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Graph"));
        auto* amount2Used = dialog.findChild<QCheckBox*>(QStringLiteral("Amount Column #2 Used"));
        QVERIFY(amount2Used);
        QCOMPARE(amount2Used->text(), QStringLiteral("Amount column #2:"));
        auto* amount2 = dialog.findChild<QComboBox*>(QStringLiteral("Amount Column #2"));
        QVERIFY(amount2 && !amount2->isEnabled());
        auto* division = dialog.findChild<QComboBox*>(QStringLiteral("Division"));
        QVERIFY(division);
        QCOMPARE(division->currentText(), QStringLiteral("Months ago"));
        QCOMPARE(division->count(), 5);
        auto* title = dialog.findChild<QLineEdit*>(QStringLiteral("Title"));
        QVERIFY(title && !title->isEnabled());

        amount2Used->setChecked(true);
        QVERIFY(amount2->isEnabled());
        amount2->setCurrentIndex(0);
        division->setCurrentIndex(division->findText(QStringLiteral("Yearly")));
        dialog.findChild<QCheckBox*>(QStringLiteral("Title Used"))->setChecked(true);
        title->setText(QStringLiteral("Sales"));
        dialog.accept();
        QVERIFY(request.amount2Used);
        QCOMPARE(request.amount2Column, 1);
        QCOMPARE(request.division, kDivisionYearly);
        QVERIFY(request.titleUsed);
        QCOMPARE(request.title, std::string("Sales"));
    }

    void OptionsDialogKeepsAStoredDivisionItDoesNotOffer()
    {
        GraphOptionsRequest request;
        request.columns = {"date"};
        request.dateColumn = 1;
        request.division = 4;
        GraphOptionsDialog dialog(request);
        QCOMPARE(dialog.findChild<QComboBox*>(QStringLiteral("Division"))->currentIndex(), -1);
        dialog.accept();
        QCOMPARE(request.division, 4);
    }

    void SpellDialogOffersSuggestionsAndReturnsTheChoice()
    {
        SpellCheckRequest request;
        request.title = "Spell Check Table";
        request.cellText = "a tabel here";
        request.wordStart = 2;
        request.wordLength = 5;
        request.word = "tabel";
        request.suggestions = {"table", "label"};
        request.replacement = "table";
        request.rowNumber = 4;
        request.columnName = "note";
        SpellCheckDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Spell Check Table"));
        auto* replacement = dialog.findChild<QLineEdit*>(QStringLiteral("Replacement"));
        QCOMPARE(replacement->text(), QStringLiteral("table"));
        dialog.findChild<QListWidget*>(QStringLiteral("Suggestions"))->setCurrentRow(1);
        QCOMPARE(replacement->text(), QStringLiteral("label"));
        dialog.findChild<QPushButton*>(QStringLiteral("Replace All"))->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(request.action, SpellAction::ReplaceAll);
        QCOMPARE(request.replacement, std::string("label"));

        SpellCheckDialog stopped(request);
        stopped.findChild<QPushButton*>(QStringLiteral("Stop"))->click();
        QCOMPARE(stopped.result(), int(QDialog::Rejected));
    }
};

QTEST_MAIN(TstGraph)
#include "tst_graph.moc"
