#include "view/graph_data_set.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

TEST(DayNumber, RoundTripsAcrossLeapDaysAndEras)
{
    EXPECT_EQ(DayNumber(1970, 1, 1), 0);
    EXPECT_EQ(DayNumber(2024, 3, 1) - DayNumber(2024, 2, 28), 2);
    EXPECT_EQ(DayNumber(2023, 3, 1) - DayNumber(2023, 2, 28), 1);
    EXPECT_EQ(DayNumber(2000, 3, 1) - DayNumber(2000, 2, 28), 2);
    EXPECT_EQ(DayNumber(1900, 3, 1) - DayNumber(1900, 2, 28), 1);
    for (std::int64_t day = DayNumber(1599, 12, 25); day < DayNumber(2401, 1, 5); day += 13) {
        const CivilDate date = CivilFromDayNumber(day);
        ASSERT_EQ(DayNumber(date.year, date.month, date.day), day);
    }
}

TEST(GraphDataSet, DailyBucketsAreTheDaysThemselves)
{
    GraphDataSet set(kDivisionDaily);
    set.SetReferenceDate(DayNumber(2024, 5, 10));
    set.Add(DayNumber(2024, 5, 1), 2.5);
    set.Add(DayNumber(2024, 5, 1), 1.0);
    set.Add(DayNumber(2023, 1, 1), 4.0);
    set.Finish();
    ASSERT_EQ(set.Points().size(), 2u);
    EXPECT_EQ(set.Points()[0].first, DayNumber(2023, 1, 1));
    EXPECT_EQ(set.Points()[1].second, 3.5);
    EXPECT_EQ(set.SmallestBucket(), DayNumber(2023, 1, 1));
}

TEST(GraphDataSet, AgoDivisionsTruncateTowardZero)
{
    const std::int64_t r = DayNumber(2024, 6, 30);
    GraphDataSet weeks(kDivisionWeeksAgo);
    weeks.SetReferenceDate(r);
    EXPECT_EQ(weeks.BucketOf(r), 0);
    EXPECT_EQ(weeks.BucketOf(r - 6), 0);
    EXPECT_EQ(weeks.BucketOf(r - 7), -1);
    EXPECT_EQ(weeks.BucketOf(r - 13), -1);
    EXPECT_EQ(weeks.BucketOf(r - 14), -2);

    GraphDataSet months(kDivisionMonthsAgo);
    months.SetReferenceDate(r);
    EXPECT_EQ(months.BucketOf(r - 29), 0);
    EXPECT_EQ(months.BucketOf(r - 30), -1);
    EXPECT_EQ(months.BucketOf(r - 59), -1);
    EXPECT_EQ(months.BucketOf(r - 60), -2);
}

TEST(GraphDataSet, CalendarMonthsCountAcrossTheYearBoundary)
{
    GraphDataSet set(kDivisionMonthly);
    set.SetReferenceDate(DayNumber(2024, 2, 3));
    EXPECT_EQ(set.BucketOf(DayNumber(2024, 2, 29)), 0);
    EXPECT_EQ(set.BucketOf(DayNumber(2024, 1, 31)), -1);
    EXPECT_EQ(set.BucketOf(DayNumber(2023, 12, 1)), -2);
    EXPECT_EQ(set.BucketOf(DayNumber(2023, 2, 28)), -12);
    EXPECT_EQ(DivisionTickLabel(kDivisionMonthly, set.ReferenceDate(), -2), "12/2023");
    EXPECT_EQ(DivisionTickLabel(kDivisionMonthly, set.ReferenceDate(), -1), "1/2024");
    EXPECT_EQ(DivisionTickLabel(kDivisionMonthly, set.ReferenceDate(), -14), "12/2022");
}

TEST(GraphDataSet, YearlyBucketsAreYears)
{
    GraphDataSet set(kDivisionYearly);
    set.SetReferenceDate(DayNumber(2024, 6, 1));
    set.Add(DayNumber(2021, 12, 31), 1);
    set.Add(DayNumber(2022, 1, 1), 1);
    set.Add(DayNumber(2022, 12, 31), 1);
    set.Finish();
    ASSERT_EQ(set.Points().size(), 2u);
    EXPECT_EQ(set.Points()[0], (std::pair<std::int64_t, double>{2021, 1.0}));
    EXPECT_EQ(set.Points()[1], (std::pair<std::int64_t, double>{2022, 2.0}));
    EXPECT_EQ(DivisionTickLabel(kDivisionYearly, 0, 2022), "2022");
}

TEST(GraphDataSet, PreparedBucketsGiveWhatTheMapGives)
{
    for (int division : {kDivisionDaily, kDivisionWeeksAgo, kDivisionMonthsAgo, kDivisionMonthly,
                         kDivisionYearly}) {
        SCOPED_TRACE(division);
        GraphDataSet prepared(division);
        GraphDataSet plain(division);
        std::vector<std::int64_t> days;
        for (std::int64_t k = 0; k < 400; ++k)
            days.push_back(DayNumber(2019, 12, 1) + (k * 7919) % 1500);
        for (std::int64_t day : days)
            prepared.NoteDate(day);
        prepared.SetReferenceDate(prepared.LatestDate());
        plain.SetReferenceDate(prepared.LatestDate());
        prepared.PrepareBuckets();
        // A day outside the noted range still counts.
        days.push_back(prepared.EarliestDate() - 400);
        for (std::size_t i = 0; i < days.size(); ++i) {
            prepared.Add(days[i], static_cast<double>(i % 5));
            plain.Add(days[i], static_cast<double>(i % 5));
        }
        prepared.Finish();
        plain.Finish();
        EXPECT_EQ(prepared.Points(), plain.Points());
        EXPECT_EQ(prepared.SmallestBucket(), plain.SmallestBucket());
        EXPECT_EQ(prepared.Buckets(), plain.Buckets());
    }
}

TEST(GraphLabels, TitlesAxesAndTicksPerDivision)
{
    const std::int64_t r = DayNumber(2024, 3, 7);
    EXPECT_EQ(DivisionTitlePrefix(kDivisionDaily), "Daily ");
    EXPECT_EQ(DivisionTitlePrefix(kDivisionWeeksAgo), "Weekly ");
    EXPECT_EQ(DivisionTitlePrefix(kDivisionMonthsAgo), "Monthly ");
    EXPECT_EQ(DivisionTitlePrefix(kDivisionMonthly), "Monthly ");
    EXPECT_EQ(DivisionTitlePrefix(kDivisionYearly), "Yearly ");
    EXPECT_EQ(DivisionAxisLabel(kDivisionDaily, r, true), "Day");
    EXPECT_EQ(DivisionAxisLabel(kDivisionWeeksAgo, r, true), "Weeks before 07/03/2024");
    EXPECT_EQ(DivisionAxisLabel(kDivisionMonthsAgo, r, false), "Months before 03/07/2024");
    EXPECT_EQ(DivisionAxisLabel(kDivisionMonthly, r, false), "Month");
    EXPECT_EQ(DivisionAxisLabel(kDivisionYearly, r, false), "Year");
    EXPECT_EQ(DivisionTickLabel(kDivisionDaily, r, DayNumber(2024, 12, 25)), "Dec 25");
    EXPECT_EQ(DivisionTickLabel(kDivisionWeeksAgo, r, -3), "-3");
    for (int code : {4, 5, 7, -1})
        EXPECT_FALSE(IsKnownDivision(code)) << code;
}

} // namespace
} // namespace quirnel
