#pragma once
// Readers that turn cell text into sortable values: numbers, dates with times, and memory
// sizes. The sort methods and the statistics report use them; the graph reads dates with them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quirnel {

/// Reads a number at the start of the text, the way people type them in tables:
///   [spaces] [+|-] [$] digits [,ddd]... [.digits] [(e|E)[+|-]digits] [anything]
/// or a number that starts with the decimal point (".5"). Commas count as thousands
/// separators only when exactly three digits follow. Whatever follows the number is ignored
/// ("12 kg" is 12). nullopt when no digit starts the text.
std::optional<double> ReadNumber(std::string_view text);
std::optional<double> ReadNumber(std::u16string_view text);

struct DateTime
{
    int year = 0;
    int month = 0; ///< 1..12
    int day = 0;   ///< 1..31
    int hour = 0;
    int minute = 0;
    int second = 0;

    /// Seconds since 0000-03-01 of the proleptic Gregorian calendar; grows with time.
    std::int64_t Serial() const;
    /// "yy/mm/dd HH:ii:ss": two-digit year; sorts as text within a century.
    std::string SortText() const;
    /// "yyyy/mm/dd HH:ii:ss", for reports.
    std::string Text() const;
};

/// Reads a date with an optional time (leading and trailing spaces allowed):
///   yyyy-mm-dd, yyyy/mm/dd, yyyy.mm.dd             year first, always
///   a/b/y, a-b-y, a.b.y                             day/month order from `dayFirst`; y has
///                                                   2 digits (00-49 -> 20yy, 50-99 -> 19yy)
///                                                   or 4; when that order gives no valid date
///                                                   the other order is tried (03/17/2024)
///   17 Mar 2024, 17-Mar-2024, Mar 17 2024, March 17, 2024   English month names
/// then optionally, after spaces or "T": H:MM[:SS[.fraction]] [AM|PM] [Z|+hh[:mm]|-hh[:mm]].
/// A time alone ("14:30") gives that time on day 0000-03-01. nullopt for anything else,
/// including impossible dates (31 April).
std::optional<DateTime> ReadDateTime(std::string_view text, bool dayFirst);
std::optional<DateTime> ReadDateTime(std::u16string_view text, bool dayFirst);

/// Reads a memory size as a number of bytes: a number (as ReadNumber, without separators
/// after it) then an optional unit after optional spaces: B, byte(s), KB, MB, GB, TB (and
/// K, M, G, T, KiB, MiB, GiB, TiB), any letter case, each step 1,024. "3.1 KB" is 3,174.4.
/// A plain number is bytes. nullopt when no number starts the text or the unit is unknown.
std::optional<double> ReadMemorySize(std::string_view text);
std::optional<double> ReadMemorySize(std::u16string_view text);

/// True when the numeric reader consumes the whole text but surrounding spaces ("12 kg" is a
/// number to sort by, yet not wholly one).
bool IsWholeNumber(std::string_view text);
bool IsWholeNumber(std::u16string_view text);

/// The day/month order of the user's regional settings (the locale's date layout).
bool SystemDateIsDayFirst();

} // namespace quirnel
