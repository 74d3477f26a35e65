#include "editing/graph_command.h"
#include "tests/support/editing_doubles.h"
#include "view/graph_data_set.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

using Points = std::vector<std::pair<std::int64_t, double>>;

std::int64_t Day(int year, int month, int day)
{
    return DayNumber(year, month, day);
}

class GraphCommandTest : public ::testing::Test, public EditingFixture
{
protected:
    /// Dates in column 1, two amounts in columns 2 and 3.
    void OpenSales()
    {
        Open({"date", "amount", "qty"}, {{"2024-01-02", "10", "1"},
                                         {"2024-01-01", "2.5", "1"},
                                         {"2024-01-02", "$1,000", "x"},
                                         {"not a date", "99", "99"},
                                         {"2024-01-05", "", "3"}});
    }

    /// Answers the options dialog; `edit` changes the proposed request first.
    void Answer(std::function<void(GraphOptionsRequest&)> edit)
    {
        dialogs.Expect<GraphOptionsRequest>("GraphOptions", [this, edit](GraphOptionsRequest& r) {
            proposed = r;
            edit(r);
            return true;
        });
    }

    /// Runs the command with these choices and returns the chart shown.
    GraphChart Run(int amount1, int amount2, int division = kDivisionDaily)
    {
        Answer([=](GraphOptionsRequest& r) {
            r.amount1Used = amount1 > 0;
            r.amount1Column = amount1;
            r.amount2Used = amount2 > 0;
            r.amount2Column = amount2;
            r.dateColumn = 1;
            r.dateFormat = kGraphMonthFirst;
            r.division = division;
        });
        GraphCommand(context);
        dialogs.VerifyAllUsed();
        ui.VerifyAllUsed();
        return host.graphs.empty() ? GraphChart() : host.graphs.back();
    }

    GraphOptionsRequest proposed;
};

TEST_F(GraphCommandTest, WithoutAmountColumnsEachBucketCountsItsRows)
{
    OpenSales();
    const GraphChart chart = Run(0, 0);
    ASSERT_EQ(chart.series.size(), 1u);
    EXPECT_EQ(chart.series[0].name, "Count");
    EXPECT_EQ(chart.yLabel, "Count");
    EXPECT_EQ(chart.title, "Daily Totals");
    EXPECT_EQ(chart.xLabel, "Day");
    EXPECT_EQ(chart.series[0].color, 0x0000FFu);
    // The row whose date does not read counts nowhere.
    EXPECT_EQ(chart.series[0].data.Points(),
              (Points{{Day(2024, 1, 1), 1}, {Day(2024, 1, 2), 2}, {Day(2024, 1, 5), 1}}));
    EXPECT_FALSE(document.Modified());
}

TEST_F(GraphCommandTest, TwoAmountColumnsMakeTwoIndependentSets)
{
    OpenSales();
    const GraphChart chart = Run(2, 3);
    ASSERT_EQ(chart.series.size(), 2u);
    EXPECT_EQ(chart.series[0].name, "amount");
    EXPECT_EQ(chart.yLabel, "amount");
    EXPECT_EQ(chart.series[1].name, "qty");
    EXPECT_EQ(chart.series[1].color, 0x008000u);
    // Amounts read as the numeric sort reads them: "$1,000" is 1000, blanks and words are 0.
    EXPECT_EQ(chart.series[0].data.Points(),
              (Points{{Day(2024, 1, 1), 2.5}, {Day(2024, 1, 2), 1010}, {Day(2024, 1, 5), 0}}));
    EXPECT_EQ(chart.series[1].data.Points(),
              (Points{{Day(2024, 1, 1), 1}, {Day(2024, 1, 2), 1}, {Day(2024, 1, 5), 3}}));
    EXPECT_EQ(chart.referenceDate, Day(2024, 1, 5));
}

TEST_F(GraphCommandTest, HiddenRowsAreNeverCountedNorSetTheReferenceDate)
{
    Open({"date"}, {{"2024-03-31"}, {"2024-03-02"}, {"2024-03-01"}, {"2024-02-29"}});
    document.Table().SetRowHidden(0, true);
    const GraphChart chart = Run(0, 0, kDivisionMonthsAgo);
    // Without the hidden row the latest date is March 2, so February 29 is 2 days back.
    EXPECT_EQ(chart.referenceDate, Day(2024, 3, 2));
    EXPECT_EQ(chart.series[0].data.Points(), (Points{{0, 3}}));
    EXPECT_EQ(chart.xLabel, "Months before 03/02/2024");
    EXPECT_EQ(chart.title, "Monthly Totals");
}

TEST_F(GraphCommandTest, MonthsAgoPutsDay29InTheLatestMonthAndDay30InTheOneBefore)
{
    Open({"date"}, {{"2024-06-30"}, {"2024-06-01"}, {"2024-05-31"}, {"2024-05-02"}});
    const GraphChart chart = Run(0, 0, kDivisionMonthsAgo);
    // June 1 is 29 days before June 30, May 31 is 30 days before.
    EXPECT_EQ(chart.series[0].data.Points(), (Points{{-1, 2}, {0, 2}}));
    EXPECT_EQ(chart.series[0].data.SmallestBucket(), -1);
}

TEST_F(GraphCommandTest, CalendarMonthsRunAcrossTheYearBoundary)
{
    Open({"date", "n"},
         {{"2023-11-30", "1"}, {"2023-12-01", "2"}, {"2024-01-31", "4"}, {"2024-01-01", "8"}});
    const GraphChart chart = Run(2, 0, kDivisionMonthly);
    EXPECT_EQ(chart.series[0].data.Points(), (Points{{-2, 1}, {-1, 2}, {0, 12}}));
    EXPECT_EQ(chart.xLabel, "Month");
}

TEST_F(GraphCommandTest, ShuffledRowsGiveTheSameDataSets)
{
    Open({"date", "n"}, {{"2024-01-03", "1"},
                         {"2023-12-30", "2"},
                         {"2024-01-10", "4"},
                         {"2024-01-03", "8"},
                         {"2023-11-01", "16"},
                         {"bad", "32"},
                         {"2024-01-04", "64"}});
    for (int division : {kDivisionDaily, kDivisionWeeksAgo, kDivisionMonthsAgo, kDivisionMonthly,
                         kDivisionYearly}) {
        SCOPED_TRACE(division);
        document.Table().Unsort();
        const GraphChart before = Run(2, 0, division);
        document.Table().Shuffle(7 + division);
        document.Table().SetSort(1, false);
        const GraphChart after = Run(2, 0, division);
        EXPECT_EQ(after.series[0].data.Points(), before.series[0].data.Points());
        EXPECT_EQ(after.referenceDate, before.referenceDate);
    }
}

TEST_F(GraphCommandTest, DateFormatDecidesHowAmbiguousDatesRead)
{
    Open({"date"}, {{"03/04/2024"}, {"2024-04-03"}});
    Answer([](GraphOptionsRequest& r) {
        r.amount1Used = false;
        r.dateColumn = 1;
        r.dateFormat = kGraphDayFirst;
    });
    GraphCommand(context);
    ASSERT_EQ(host.graphs.size(), 1u);
    EXPECT_EQ(host.graphs[0].series[0].data.Points(), (Points{{Day(2024, 4, 3), 2}}));

    const GraphChart monthFirst = Run(0, 0);
    EXPECT_EQ(monthFirst.series[0].data.Points(),
              (Points{{Day(2024, 3, 4), 1}, {Day(2024, 4, 3), 1}}));
}

TEST_F(GraphCommandTest, RefusalsShowTheirBoxAndDrawNothing)
{
    Open({"when", "n"}, {{"soon", "1"}, {"14:30", "2"}, {"", "3"}});
    ui.Expect("Error", "The date column \"when\" does not contain any valid dates.");
    Run(2, 0);

    document.SetCellText8(0, 1, "2024-01-01");
    for (int division : {4, 5, 7}) {
        ui.Expect("Error", "The division must be specified.");
        Run(2, 0, division);
    }
    EXPECT_TRUE(host.graphs.empty());
    EXPECT_FALSE(document.Modified());
}

TEST_F(GraphCommandTest, CancelledDialogChangesNoChoice)
{
    OpenSales();
    prefs.graphDivision = kDivisionYearly;
    dialogs.Expect<GraphOptionsRequest>("GraphOptions", [](GraphOptionsRequest& r) {
        r.division = kDivisionDaily;
        return false;
    });
    GraphCommand(context);
    EXPECT_EQ(prefs.graphDivision, kDivisionYearly);
    EXPECT_TRUE(host.graphs.empty());
}

TEST_F(GraphCommandTest, ChoicesAreRememberedAndColumnsFoundAgainByName)
{
    OpenSales();
    Answer([](GraphOptionsRequest& r) {
        r.amount1Used = true;
        r.amount1Column = 3;
        r.amount2Used = true;
        r.amount2Column = 2;
        r.dateColumn = 1;
        r.dateFormat = kGraphMonthFirst;
        r.division = kDivisionYearly;
        r.titleUsed = true;
        r.title = "Umsatz \xC3\xBC"
                  "ber Zeit";
    });
    GraphCommand(context);
    ASSERT_EQ(host.graphs.size(), 1u);
    EXPECT_EQ(host.graphs[0].title, "Umsatz \xC3\xBC"
                                    "ber Zeit");
    EXPECT_EQ(prefs.graphAmount, "qty");
    EXPECT_EQ(prefs.graphAmount2, "amount");
    EXPECT_EQ(prefs.graphDate, "date");
    EXPECT_TRUE(prefs.graphAmount2Used);
    EXPECT_EQ(prefs.graphDivision, kDivisionYearly);
    EXPECT_EQ(prefs.graphTitle, u"Umsatz \u00fcber Zeit");

    // The columns move; the next dialog still proposes them by name.
    document.MoveColumn(1, 3);
    Answer([](GraphOptionsRequest&) {});
    GraphCommand(context);
    EXPECT_EQ(proposed.columns, (std::vector<std::string>{"amount", "qty", "date"}));
    EXPECT_EQ(proposed.amount1Column, 2);
    EXPECT_EQ(proposed.amount2Column, 1);
    EXPECT_EQ(proposed.dateColumn, 3);
    EXPECT_EQ(proposed.division, kDivisionYearly);
    EXPECT_TRUE(proposed.titleUsed);
}

TEST_F(GraphCommandTest, UnicodeColumnNamesAreRememberedUnderTheWideKeys)
{
    document.SetTextMode(true);
    document.AddColumn("", u"Datum \u00e4");
    document.SetRowCount(1);
    document.SetCellText16(0, 1, u"2024-05-01");
    document.SetFileOpen(true);
    Answer([](GraphOptionsRequest& r) {
        r.amount1Used = false;
        r.dateColumn = 1;
    });
    GraphCommand(context);
    EXPECT_EQ(prefs.graphDateW, "Datum \xC3\xA4");
    EXPECT_EQ(prefs.graphDate, "");
    ASSERT_EQ(host.graphs.size(), 1u);
    EXPECT_EQ(host.graphs[0].series[0].data.Points(), (Points{{Day(2024, 5, 1), 1}}));
}

} // namespace
} // namespace quirnel::test
