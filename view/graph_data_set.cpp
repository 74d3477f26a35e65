#include "view/graph_data_set.h"

#include <cstdio>

namespace quirnel {

bool IsKnownDivision(int division)
{
    switch (division) {
    case kDivisionDaily:
    case kDivisionWeeksAgo:
    case kDivisionMonthsAgo:
    case kDivisionMonthly:
    case kDivisionYearly:
        return true;
    default:
        return false;
    }
}

// The usual civil-to-days conversion over 400-year eras, with March as the first month so
// that the leap day ends the year.
std::int64_t DayNumber(int year, int month, int day)
{
    const std::int64_t y = static_cast<std::int64_t>(year) - (month <= 2 ? 1 : 0);
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yearOfEra = y - era * 400;
    const std::int64_t dayOfYear = (153 * ((month + 9) % 12) + 2) / 5 + day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

CivilDate CivilFromDayNumber(std::int64_t dayNumber)
{
    const std::int64_t z = dayNumber + 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const std::int64_t dayOfEra = z - era * 146097;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthIndex = (5 * dayOfYear + 2) / 153;
    CivilDate date;
    date.day = static_cast<int>(dayOfYear - (153 * monthIndex + 2) / 5 + 1);
    date.month = static_cast<int>(monthIndex < 10 ? monthIndex + 3 : monthIndex - 9);
    date.year = static_cast<int>(yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0));
    return date;
}

void GraphDataSet::NoteDate(std::int64_t day)
{
    if (!m_hasDates) {
        m_earliest = m_latest = day;
        m_hasDates = true;
        return;
    }
    if (day < m_earliest)
        m_earliest = day;
    if (day > m_latest)
        m_latest = day;
}

namespace {

/// More buckets than this (daily over some 11,000 years) stay in the map.
constexpr std::int64_t kMaxDenseBuckets = 4 * 1024 * 1024;

std::int64_t MonthIndex(std::int64_t day)
{
    const CivilDate date = CivilFromDayNumber(day);
    return static_cast<std::int64_t>(date.year) * 12 + (date.month - 1);
}

} // namespace

void GraphDataSet::SetReferenceDate(std::int64_t day)
{
    m_reference = day;
    m_referenceMonth = MonthIndex(day);
}

void GraphDataSet::PrepareBuckets()
{
    m_dense.clear();
    m_denseUsed.clear();
    if (!m_hasDates)
        return;
    // Every bucket rule grows with the date, so the range's ends bound every bucket in it.
    const std::int64_t first = BucketOf(m_earliest);
    const std::int64_t last = BucketOf(m_latest);
    if (last < first || last - first >= kMaxDenseBuckets)
        return;
    m_denseFirst = first;
    m_dense.assign(static_cast<std::size_t>(last - first + 1), 0.0);
    m_denseUsed.assign(m_dense.size(), 0);
}

std::int64_t GraphDataSet::BucketOf(std::int64_t day) const
{
    switch (m_division) {
    case kDivisionWeeksAgo:
        // Division truncates toward zero: the six days before the reference are week 0.
        return (day - m_reference) / 7;
    case kDivisionMonthsAgo:
        // A month here is always 30 days: the buckets are of equal width.
        return (day - m_reference) / 30;
    case kDivisionMonthly:
        return MonthIndex(day) - m_referenceMonth;
    case kDivisionYearly:
        return CivilFromDayNumber(day).year;
    default:
        return day;
    }
}

void GraphDataSet::Add(std::int64_t day, double amount)
{
    const std::int64_t bucket = BucketOf(day);
    if (!m_dense.empty()) {
        const std::uint64_t index = static_cast<std::uint64_t>(bucket - m_denseFirst);
        if (index < m_dense.size()) {
            m_dense[index] += amount;
            m_denseUsed[index] = 1;
            return;
        }
    }
    if (!m_lastTotal || bucket != m_lastBucket) {
        m_lastTotal = &m_buckets.try_emplace(bucket, 0.0).first->second;
        m_lastBucket = bucket;
        if (!m_hasBuckets || bucket < m_smallest)
            m_smallest = bucket;
        m_hasBuckets = true;
    }
    *m_lastTotal += amount;
}

void GraphDataSet::Finish()
{
    for (std::size_t i = 0; i < m_dense.size(); ++i) {
        if (!m_denseUsed[i])
            continue;
        const std::int64_t bucket = m_denseFirst + static_cast<std::int64_t>(i);
        m_buckets[bucket] += m_dense[i];
        if (!m_hasBuckets || bucket < m_smallest)
            m_smallest = bucket;
        m_hasBuckets = true;
    }
    m_dense.clear();
    m_denseUsed.clear();
    m_lastTotal = nullptr;
    m_points.assign(m_buckets.begin(), m_buckets.end());
}

std::string DivisionTitlePrefix(int division)
{
    switch (division) {
    case kDivisionDaily:
        return "Daily ";
    case kDivisionWeeksAgo:
        return "Weekly ";
    case kDivisionMonthsAgo:
    case kDivisionMonthly:
        return "Monthly ";
    case kDivisionYearly:
        return "Yearly ";
    default:
        return "";
    }
}

std::string WriteDate(std::int64_t day, bool dayFirst)
{
    const CivilDate date = CivilFromDayNumber(day);
    char text[48];
    std::snprintf(text, sizeof text, "%02d/%02d/%04d", dayFirst ? date.day : date.month,
                  dayFirst ? date.month : date.day, date.year);
    return text;
}

std::string DivisionAxisLabel(int division, std::int64_t reference, bool dayFirst)
{
    switch (division) {
    case kDivisionDaily:
        return "Day";
    case kDivisionWeeksAgo:
        return "Weeks before " + WriteDate(reference, dayFirst);
    case kDivisionMonthsAgo:
        return "Months before " + WriteDate(reference, dayFirst);
    case kDivisionMonthly:
        return "Month";
    case kDivisionYearly:
        return "Year";
    default:
        return "";
    }
}

std::string DivisionTickLabel(int division, std::int64_t reference, std::int64_t bucket)
{
    static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    char text[48];
    switch (division) {
    case kDivisionDaily: {
        // Month by name, so that the label reads the same in either day/month order.
        const CivilDate date = CivilFromDayNumber(bucket);
        std::snprintf(text, sizeof text, "%s %d", kMonths[date.month - 1], date.day);
        return text;
    }
    case kDivisionMonthly: {
        const CivilDate base = CivilFromDayNumber(reference);
        const std::int64_t months =
            static_cast<std::int64_t>(base.year) * 12 + (base.month - 1) + bucket;
        const std::int64_t year = months >= 0 ? months / 12 : (months - 11) / 12;
        std::snprintf(text, sizeof text, "%d/%lld", static_cast<int>(months - year * 12) + 1,
                      static_cast<long long>(year));
        return text;
    }
    default:
        return std::to_string(bucket);
    }
}

} // namespace quirnel
