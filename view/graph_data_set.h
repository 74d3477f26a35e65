#pragma once
// Totals over time for the graph: each data set gathers amounts into buckets of days, weeks,
// months or years counted from a reference date, and the label writers name the buckets and
// axes. Dates are whole day numbers (see DayNumber), so that a bucket rule is plain arithmetic.

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quirnel {

/// Division codes, as the graph options store them.
inline constexpr int kDivisionDaily = 0;
inline constexpr int kDivisionWeeksAgo = 1;
inline constexpr int kDivisionMonthsAgo = 2;
inline constexpr int kDivisionMonthly = 3;
inline constexpr int kDivisionYearly = 6;

bool IsKnownDivision(int division);

/// Days since 1970-01-01 of the proleptic Gregorian calendar; negative before.
std::int64_t DayNumber(int year, int month, int day);
struct CivilDate
{
    int year = 1970;
    int month = 1; ///< 1..12
    int day = 1;   ///< 1..31
};
CivilDate CivilFromDayNumber(std::int64_t dayNumber);

/// One series of totals: one per amount column in use.
class GraphDataSet
{
public:
    explicit GraphDataSet(int division = kDivisionDaily) : m_division(division) {}

    int Division() const { return m_division; }
    /// A valid date was seen: widens the earliest..latest range.
    void NoteDate(std::int64_t day);
    bool HasDates() const { return m_hasDates; }
    std::int64_t EarliestDate() const { return m_earliest; }
    std::int64_t LatestDate() const { return m_latest; }

    /// The date the "ago" and calendar-month divisions count back from.
    void SetReferenceDate(std::int64_t day);
    std::int64_t ReferenceDate() const { return m_reference; }

    /// The bucket a date falls into under this set's division and reference date.
    std::int64_t BucketOf(std::int64_t day) const;
    /// After the dates were noted and the reference set: keeps the totals of the buckets
    /// between the earliest and the latest date in one array, which a million rows fill far
    /// faster than a map. Dates outside that range still count.
    void PrepareBuckets();
    /// Adds `amount` to the bucket of `day`; a bucket starts at 0.
    void Add(std::int64_t day, double amount);
    /// Puts the buckets in order of bucket number, for drawing.
    void Finish();

    /// Bucket number to total; complete once finished.
    const std::map<std::int64_t, double>& Buckets() const { return m_buckets; }
    /// The finished buckets in ascending order; empty before Finish().
    const std::vector<std::pair<std::int64_t, double>>& Points() const { return m_points; }
    /// The smallest bucket number seen; 0 when none.
    std::int64_t SmallestBucket() const { return m_smallest; }

private:
    int m_division;
    bool m_hasDates = false;
    std::int64_t m_earliest = 0;
    std::int64_t m_latest = 0;
    std::int64_t m_reference = 0;
    /// The reference date's year * 12 + month - 1, for the calendar-month buckets.
    std::int64_t m_referenceMonth = 1970 * 12;
    std::int64_t m_smallest = 0;
    bool m_hasBuckets = false;
    /// Consecutive rows often share a bucket (daily data in date order): the last one used.
    std::int64_t m_lastBucket = 0;
    double* m_lastTotal = nullptr;
    /// The prepared range: totals of buckets m_denseFirst .. + size - 1, and which were hit.
    std::int64_t m_denseFirst = 0;
    std::vector<double> m_dense;
    std::vector<std::uint8_t> m_denseUsed;
    std::map<std::int64_t, double> m_buckets;
    std::vector<std::pair<std::int64_t, double>> m_points;
};

/// What the graph window draws.
struct GraphSeries
{
    std::string name;
    std::uint32_t color = 0; ///< 0xRRGGBB
    GraphDataSet data;
};
struct GraphChart
{
    std::string title;
    std::string xLabel;
    std::string yLabel;
    int division = kDivisionDaily;
    std::int64_t referenceDate = 0;
    std::vector<GraphSeries> series;
};

/// "Daily ", "Weekly ", "Monthly " or "Yearly ": put before the base title; "" when unknown.
std::string DivisionTitlePrefix(int division);
/// A date as the user reads dates: "dd/mm/yyyy" day-first, "mm/dd/yyyy" month-first.
std::string WriteDate(std::int64_t day, bool dayFirst);
/// The X-axis label: "Day", "Weeks before <date>", "Months before <date>", "Month", "Year".
std::string DivisionAxisLabel(int division, std::int64_t reference, bool dayFirst);
/// The text of an X-axis tick at `bucket`: a day as month and day ("Mar 17"), a calendar
/// month as "m/yyyy", a year as itself, and the "ago" divisions as the bucket number.
std::string DivisionTickLabel(int division, std::int64_t reference, std::int64_t bucket);

} // namespace quirnel
