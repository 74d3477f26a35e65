#include "view/value_readers.h"

#include <charconv>
#include <cstdio>
#include <langinfo.h>
#include <locale.h>

namespace quirnel {
namespace {

// Cell texts worth reading as values are short; longer ones are cut to this many characters,
// which never shortens a real number or date.
constexpr std::size_t kAsciiLimit = 96;

// Wide text is read through an ASCII copy: every accepted character is ASCII, and anything
// else simply ends what can be read.
std::string_view ToAscii(std::u16string_view text, char (&buffer)[kAsciiLimit])
{
    std::size_t n = 0;
    for (char16_t ch : text) {
        if (n == kAsciiLimit)
            break;
        buffer[n++] = ch < 0x80 ? static_cast<char>(ch) : '\x7f';
    }
    return {buffer, n};
}

bool IsDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

char Lower(char ch)
{
    return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch + 32) : ch;
}

void SkipSpaces(std::string_view text, std::size_t& i)
{
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
}

// The number at text[i]; i moves past it.
std::optional<double> ScanNumber(std::string_view text, std::size_t& i)
{
    SkipSpaces(text, i);
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    if (i < text.size() && text[i] == '$')
        ++i;
    // Digits are gathered without separators so that from_chars reads them exactly.
    char digits[kAsciiLimit + 8];
    std::size_t n = 0;
    bool any = false;
    while (i < text.size() && IsDigit(text[i]) && n < kAsciiLimit) {
        digits[n++] = text[i++];
        any = true;
    }
    while (any && i + 3 < text.size() && text[i] == ',' && IsDigit(text[i + 1]) &&
           IsDigit(text[i + 2]) && IsDigit(text[i + 3]) &&
           (i + 4 >= text.size() || !IsDigit(text[i + 4])) && n + 3 < kAsciiLimit) {
        for (int k = 1; k <= 3; ++k)
            digits[n++] = text[i + k];
        i += 4;
    }
    if (i < text.size() && text[i] == '.' && n < kAsciiLimit) {
        std::size_t j = i + 1;
        if (j < text.size() && IsDigit(text[j])) {
            digits[n++] = '.';
            while (j < text.size() && IsDigit(text[j]) && n < kAsciiLimit)
                digits[n++] = text[j++];
            any = true;
            i = j;
        } else if (any) {
            i = j;
        }
    }
    if (!any)
        return std::nullopt;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        char exponent[8];
        std::size_t e = 0;
        exponent[e++] = 'e';
        if (j < text.size() && (text[j] == '+' || text[j] == '-'))
            exponent[e++] = text[j++];
        std::size_t digitsStart = j;
        while (j < text.size() && IsDigit(text[j]) && e < sizeof exponent)
            exponent[e++] = text[j++];
        if (j > digitsStart) {
            for (std::size_t k = 0; k < e; ++k)
                digits[n++] = exponent[k];
            i = j;
        }
    }
    double value = 0;
    auto [end, error] = std::from_chars(digits, digits + n, value);
    (void)end;
    if (error == std::errc::result_out_of_range) {
        // Only exponents do this; the sign of the exponent says which way it overflowed.
        bool tiny = false;
        for (std::size_t k = 0; k + 1 < n; ++k)
            if (digits[k] == 'e')
                tiny = digits[k + 1] == '-';
        value = tiny ? 0.0 : 1.7976931348623157e308;
    } else if (error != std::errc()) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

const char* const kMonthNames[12] = {"january",   "february", "march",    "april",
                                     "may",       "june",     "july",     "august",
                                     "september", "october",  "november", "december"};

// A month name or its first three letters at text[i].
int ScanMonthName(std::string_view text, std::size_t& i)
{
    std::size_t j = i;
    std::string word;
    while (j < text.size() &&
           ((text[j] >= 'a' && text[j] <= 'z') || (text[j] >= 'A' && text[j] <= 'Z')))
        word += Lower(text[j++]);
    if (word.size() < 3)
        return 0;
    for (int m = 0; m < 12; ++m) {
        std::string_view name = kMonthNames[m];
        if (word == name || (word.size() == 3 && name.substr(0, 3) == word) ||
            (word == "sept" && m == 8)) {
            if (j < text.size() && text[j] == '.')
                ++j;
            i = j;
            return m + 1;
        }
    }
    return 0;
}

// Up to `maxDigits` digits at text[i]; -1 when none.
int ScanInt(std::string_view text, std::size_t& i, int maxDigits, int* digitCount = nullptr)
{
    int value = 0;
    int count = 0;
    while (i < text.size() && IsDigit(text[i]) && count < maxDigits) {
        value = value * 10 + (text[i] - '0');
        ++i;
        ++count;
    }
    if (digitCount)
        *digitCount = count;
    return count == 0 ? -1 : value;
}

int DaysInMonth(int year, int month)
{
    static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month == 2 && ((year % 4 == 0 && year % 100 != 0) || year % 400 == 0))
        return 29;
    return kDays[month - 1];
}

bool ValidDate(int year, int month, int day)
{
    return year >= 0 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
           day <= DaysInMonth(year, month);
}

int ExpandYear(int year, int digitCount)
{
    if (digitCount <= 2)
        return year < 50 ? 2000 + year : 1900 + year;
    return year;
}

bool IsDateSeparator(char ch)
{
    return ch == '/' || ch == '-' || ch == '.';
}

// The year closing a month-name date: two or four digits (one or three are a typo, not a
// year), checked against the month's length.
bool ScanYearOfDate(std::string_view text, std::size_t& i, int month, int day, DateTime& out)
{
    int yearDigits = 0;
    int year = ScanInt(text, i, 4, &yearDigits);
    if (year < 0 || yearDigits == 3 || yearDigits == 1)
        return false;
    year = ExpandYear(year, yearDigits);
    if (!ValidDate(year, month, day))
        return false;
    out.year = year;
    out.month = month;
    out.day = day;
    return true;
}

bool ScanDate(std::string_view text, std::size_t& i, bool dayFirst, DateTime& out)
{
    std::size_t start = i;
    int firstDigits = 0;
    int first = ScanInt(text, i, 4, &firstDigits);
    if (first < 0) {
        // Mon D[,] Y
        int month = ScanMonthName(text, i);
        if (month == 0)
            return false;
        SkipSpaces(text, i);
        if (i < text.size() && text[i] == '-')
            ++i;
        int day = ScanInt(text, i, 2);
        if (day < 0)
            return false;
        if (i < text.size() && text[i] == ',')
            ++i;
        SkipSpaces(text, i);
        if (i < text.size() && text[i] == '-')
            ++i;
        return ScanYearOfDate(text, i, month, day, out);
    }
    if (i >= text.size()) {
        i = start;
        return false;
    }
    // D Mon Y, D-Mon-Y
    {
        std::size_t j = i;
        SkipSpaces(text, j);
        if (j < text.size() && text[j] == '-')
            ++j;
        int month = ScanMonthName(text, j);
        if (month != 0 && firstDigits <= 2) {
            SkipSpaces(text, j);
            if (j < text.size() && (text[j] == '-' || text[j] == ','))
                ++j;
            SkipSpaces(text, j);
            if (!ScanYearOfDate(text, j, month, first, out))
                return false;
            i = j;
            return true;
        }
    }
    char separator = text[i];
    if (!IsDateSeparator(separator))
        return false;
    ++i;
    int secondDigits = 0;
    int second = ScanInt(text, i, 2, &secondDigits);
    if (second < 0 || i >= text.size() || text[i] != separator)
        return false;
    ++i;
    int thirdDigits = 0;
    int third = ScanInt(text, i, 4, &thirdDigits);
    if (third < 0)
        return false;
    if (firstDigits == 4) {
        if (thirdDigits > 2 || !ValidDate(first, second, third))
            return false;
        out.year = first;
        out.month = second;
        out.day = third;
        return true;
    }
    if (firstDigits > 2 || thirdDigits == 3 || thirdDigits == 1)
        return false;
    int year = ExpandYear(third, thirdDigits);
    int day = dayFirst ? first : second;
    int month = dayFirst ? second : first;
    if (!ValidDate(year, month, day))
        std::swap(day, month);
    if (!ValidDate(year, month, day))
        return false;
    out.year = year;
    out.month = month;
    out.day = day;
    return true;
}

bool ScanTime(std::string_view text, std::size_t& i, DateTime& out)
{
    int hour = ScanInt(text, i, 2);
    if (hour < 0 || i >= text.size() || text[i] != ':')
        return false;
    ++i;
    int minuteDigits = 0;
    int minute = ScanInt(text, i, 2, &minuteDigits);
    if (minuteDigits != 2)
        return false;
    int second = 0;
    if (i < text.size() && text[i] == ':') {
        ++i;
        int secondDigits = 0;
        second = ScanInt(text, i, 2, &secondDigits);
        if (secondDigits != 2)
            return false;
        if (i < text.size() && (text[i] == '.' || text[i] == ',')) {
            ++i;
            while (i < text.size() && IsDigit(text[i]))
                ++i;
        }
    }
    std::size_t j = i;
    SkipSpaces(text, j);
    if (j + 1 < text.size() && Lower(text[j + 1]) == 'm' &&
        (Lower(text[j]) == 'a' || Lower(text[j]) == 'p')) {
        if (hour < 1 || hour > 12)
            return false;
        bool pm = Lower(text[j]) == 'p';
        hour = hour % 12 + (pm ? 12 : 0);
        i = j + 2;
    }
    if (hour > 23 || minute > 59 || second > 60)
        return false;
    // A zone suffix is accepted and ignored: cells of one column share their zone.
    if (i < text.size() && (text[i] == 'Z' || text[i] == 'z')) {
        ++i;
    } else if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        std::size_t j2 = i + 1;
        if (ScanInt(text, j2, 2) >= 0) {
            if (j2 < text.size() && text[j2] == ':')
                ++j2;
            ScanInt(text, j2, 2);
            i = j2;
        }
    }
    out.hour = hour;
    out.minute = minute;
    out.second = second;
    return true;
}

std::optional<DateTime> ReadDateTimeAscii(std::string_view text, bool dayFirst)
{
    std::size_t i = 0;
    SkipSpaces(text, i);
    DateTime result;
    std::size_t probe = i;
    if (ScanTime(text, probe, result)) {
        SkipSpaces(text, probe);
        if (probe == text.size()) {
            result.year = 0;
            result.month = 3;
            result.day = 1;
            return result;
        }
        result = DateTime{};
    }
    if (!ScanDate(text, i, dayFirst, result))
        return std::nullopt;
    if (i < text.size() && (text[i] == 'T' || text[i] == ' ' || text[i] == '\t')) {
        if (text[i] == 'T')
            ++i;
        SkipSpaces(text, i);
        if (i < text.size() && !ScanTime(text, i, result))
            return std::nullopt;
    }
    SkipSpaces(text, i);
    if (i != text.size())
        return std::nullopt;
    return result;
}

std::optional<double> ReadMemoryAscii(std::string_view text)
{
    std::size_t i = 0;
    std::optional<double> number = ScanNumber(text, i);
    if (!number)
        return std::nullopt;
    SkipSpaces(text, i);
    std::string unit;
    while (i < text.size() && text[i] != ' ' && text[i] != '\t')
        unit += Lower(text[i++]);
    SkipSpaces(text, i);
    if (i != text.size())
        return std::nullopt;
    static const struct
    {
        const char* name;
        int power;
    } kUnits[] = {{"", 0},    {"b", 0}, {"byte", 0}, {"bytes", 0}, {"k", 1}, {"kb", 1},
                  {"kib", 1}, {"m", 2}, {"mb", 2},   {"mib", 2},   {"g", 3}, {"gb", 3},
                  {"gib", 3}, {"t", 4}, {"tb", 4},   {"tib", 4}};
    for (const auto& u : kUnits) {
        if (unit == u.name) {
            double value = *number;
            for (int k = 0; k < u.power; ++k)
                value *= 1024.0;
            return value;
        }
    }
    return std::nullopt;
}

// Days from 0000-03-01; the usual civil-to-days conversion with March as the first month,
// so that the leap day ends the year.
std::int64_t DaysFromCivil(int year, int month, int day)
{
    int y = year - (month <= 2 ? 1 : 0);
    int era = (y >= 0 ? y : y - 399) / 400;
    int yearOfEra = y - era * 400;
    int monthIndex = (month + 9) % 12;
    int dayOfYear = (153 * monthIndex + 2) / 5 + day - 1;
    int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return static_cast<std::int64_t>(era) * 146097 + dayOfEra;
}

} // namespace

std::optional<double> ReadNumber(std::string_view text)
{
    std::size_t i = 0;
    return ScanNumber(text.substr(0, kAsciiLimit), i);
}

std::optional<double> ReadNumber(std::u16string_view text)
{
    char buffer[kAsciiLimit];
    return ReadNumber(ToAscii(text, buffer));
}

std::int64_t DateTime::Serial() const
{
    return DaysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second;
}

std::string DateTime::SortText() const
{
    char text[40];
    std::snprintf(text, sizeof text, "%02d/%02d/%02d %02d:%02d:%02d", year % 100, month, day, hour,
                  minute, second);
    return text;
}

std::string DateTime::Text() const
{
    char text[40];
    std::snprintf(text, sizeof text, "%04d/%02d/%02d %02d:%02d:%02d", year, month, day, hour,
                  minute, second);
    return text;
}

std::optional<DateTime> ReadDateTime(std::string_view text, bool dayFirst)
{
    return ReadDateTimeAscii(text.substr(0, kAsciiLimit), dayFirst);
}

std::optional<DateTime> ReadDateTime(std::u16string_view text, bool dayFirst)
{
    char buffer[kAsciiLimit];
    return ReadDateTimeAscii(ToAscii(text, buffer), dayFirst);
}

std::optional<double> ReadMemorySize(std::string_view text)
{
    if (text.size() > kAsciiLimit)
        return std::nullopt;
    return ReadMemoryAscii(text);
}

std::optional<double> ReadMemorySize(std::u16string_view text)
{
    if (text.size() > kAsciiLimit)
        return std::nullopt;
    char buffer[kAsciiLimit];
    return ReadMemoryAscii(ToAscii(text, buffer));
}

bool IsWholeNumber(std::string_view text)
{
    if (text.size() > kAsciiLimit)
        return false;
    std::size_t i = 0;
    if (!ScanNumber(text, i))
        return false;
    SkipSpaces(text, i);
    return i == text.size();
}

bool IsWholeNumber(std::u16string_view text)
{
    if (text.size() > kAsciiLimit)
        return false;
    char buffer[kAsciiLimit];
    return IsWholeNumber(ToAscii(text, buffer));
}

bool SystemDateIsDayFirst()
{
    // The locale's own date layout ("%d/%m/%Y", "%m/%d/%y") says which comes first; under the
    // plain C locale there is no preference and day-first is the default.
    locale_t locale = newlocale(LC_TIME_MASK, "", static_cast<locale_t>(nullptr));
    if (!locale)
        return true;
    std::string_view layout = nl_langinfo_l(D_FMT, locale);
    std::size_t day = layout.find("%d");
    if (day == std::string_view::npos)
        day = layout.find("%e");
    std::size_t month = layout.find("%m");
    bool dayFirst =
        !(day != std::string_view::npos && month != std::string_view::npos && month < day);
    freelocale(locale);
    return dayFirst;
}

} // namespace quirnel
