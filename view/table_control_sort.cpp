// Sorting the grid's rows by a column: the sort keys of each method, the comparators, and
// where hidden rows and the trailing row end up.

#include "view/table_control.h"
#include "view/table_storage.h"
#include "view/value_readers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <deque>
#include <iterator>
#include <thread>

namespace quirnel {

using namespace detail;

namespace {

// Hidden rows sort after everything (they are moved last anyway); blanks under "Numeric
// (blanks=-9999)" sort before every number. The menu says -9999 but the value is the lowest
// double we use: kept so, since a real -9999 must not tie with a blank.
constexpr double kHiddenNumber = 1.7e308;
constexpr double kBlankLow = -1.7e308;
constexpr std::size_t kPaddedWidth = 24;

struct TextRef
{
    const void* data = nullptr;
    std::uint32_t length = 0;
    bool wide = false;

    std::uint32_t Unit(std::size_t i) const
    {
        return wide ? static_cast<const char16_t*>(data)[i]
                    : static_cast<unsigned char>(static_cast<const char*>(data)[i]);
    }
};

// Case folding for "Text (case insensitive)": 8-bit text folds ASCII letters only (bytes of
// UTF-8 and of other code pages keep their order); UTF-16 text also folds the Latin-1,
// Latin Extended-A, Greek and Cyrillic capitals.
std::uint32_t Fold(std::uint32_t ch, bool wide)
{
    if (ch >= 'A' && ch <= 'Z')
        return ch + 32;
    if (!wide || ch < 0xC0)
        return ch;
    if ((ch >= 0xC0 && ch <= 0xDE && ch != 0xD7) || (ch >= 0x391 && ch <= 0x3AB && ch != 0x3A2) ||
        (ch >= 0x410 && ch <= 0x42F))
        return ch + 32;
    if (ch >= 0x400 && ch <= 0x40F)
        return ch + 80;
    if (ch >= 0x100 && ch <= 0x17F && ch != 0x130 && ch != 0x138 && ch != 0x149 && ch != 0x17F) {
        // Pairs: even capital, odd small, except the block 0x139..0x148 and 0x179..0x17E
        // where the capital is odd.
        bool oddCapitals = (ch >= 0x139 && ch <= 0x148) || (ch >= 0x179 && ch <= 0x17E);
        if (oddCapitals ? (ch % 2 == 1) : (ch % 2 == 0))
            return ch + 1;
    }
    return ch;
}

template <typename T> int ThreeWay(T a, T b)
{
    return a < b ? -1 : (a > b ? 1 : 0);
}

// Compares two texts unit by unit; `padA`/`padB` virtual leading "0"s stand in front.
template <bool FoldCase>
int CompareUnits(const TextRef& a, std::size_t padA, const TextRef& b, std::size_t padB)
{
    const std::size_t lengthA = a.length + padA;
    const std::size_t lengthB = b.length + padB;
    const std::size_t common = std::min(lengthA, lengthB);
    for (std::size_t i = 0; i < common; ++i) {
        std::uint32_t x = i < padA ? '0' : a.Unit(i - padA);
        std::uint32_t y = i < padB ? '0' : b.Unit(i - padB);
        if constexpr (FoldCase) {
            x = Fold(x, a.wide);
            y = Fold(y, b.wide);
        }
        if (x != y)
            return x < y ? -1 : 1;
    }
    return ThreeWay(lengthA, lengthB);
}

int CompareText(const TextRef& a, const TextRef& b, bool foldCase)
{
    if (!a.wide && !b.wide) {
        const std::size_t common = std::min(a.length, b.length);
        const auto* x = static_cast<const unsigned char*>(a.data);
        const auto* y = static_cast<const unsigned char*>(b.data);
        if (!foldCase) {
            int c = common ? std::memcmp(x, y, common) : 0;
            if (c != 0)
                return c < 0 ? -1 : 1;
        } else {
            for (std::size_t i = 0; i < common; ++i) {
                unsigned u = x[i];
                unsigned v = y[i];
                if (u == v)
                    continue;
                u = u - 'A' < 26u ? u + 32 : u;
                v = v - 'A' < 26u ? v + 32 : v;
                if (u != v)
                    return u < v ? -1 : 1;
            }
        }
        return ThreeWay(a.length, b.length);
    }
    return foldCase ? CompareUnits<true>(a, 0, b, 0) : CompareUnits<false>(a, 0, b, 0);
}

enum class SecondaryKind
{
    Index,       ///< no secondary column: the storage index as "%06d"
    Text,        ///< methods 0 and 4
    Padded,      ///< method 1: "0"s in front up to 24 characters
    PaddedBlank, ///< method 3: as Padded, but blank stays blank
    Date,        ///< method 2: "yy/mm/dd HH:ii:ss"
    Bytes        ///< method 5: "%024.0f"
};

// One per row for the duration of a sort: the keys are built once, then records are ordered.
struct TableControlSortObject
{
    std::int32_t row = 0; ///< storage index
    TextRef primaryText;
    double primaryNumber = 0;
    TextRef secondaryText;
    /// The date as yymmddHHiiss (sorts as its text does), or the byte count.
    double secondaryNumber = 0;
    /// The first units of the secondary text as it is compared (folded, padded), packed so
    /// that differing words decide the order. Only when `secondaryKeyed`.
    std::uint64_t secondaryWords[3] = {0, 0, 0};
    bool secondaryKeyed = false;
    /// The words hold the whole secondary text: equal words mean equal texts.
    bool secondaryExact = false;
    /// Nothing was filled in (hidden rows): the secondary key is the empty text.
    bool secondaryBlank = false;
};

// "%06d" compared as text: numerically while both have six digits.
int CompareIndexText(std::int32_t a, std::int32_t b)
{
    if (a < 1000000 && b < 1000000)
        return ThreeWay(a, b);
    char x[16];
    char y[16];
    std::snprintf(x, sizeof x, "%06d", a);
    std::snprintf(y, sizeof y, "%06d", b);
    return ThreeWay(std::strcmp(x, y), 0);
}

int CompareBytesText(double a, double b)
{
    if (a >= 0 && b >= 0 && a < 1e23 && b < 1e23)
        return ThreeWay(std::nearbyint(a), std::nearbyint(b));
    char x[400];
    char y[400];
    std::snprintf(x, sizeof x, "%024.0f", a);
    std::snprintf(y, sizeof y, "%024.0f", b);
    return ThreeWay(std::strcmp(x, y), 0);
}

struct Comparator
{
    bool textPrimary = false;
    bool foldCase = false;
    SecondaryKind secondaryKind = SecondaryKind::Index;

    int Secondary(const TableControlSortObject& a, const TableControlSortObject& b) const
    {
        if (a.secondaryBlank || b.secondaryBlank) {
            if (a.secondaryBlank && b.secondaryBlank)
                return 0;
            const TableControlSortObject& other = a.secondaryBlank ? b : a;
            bool otherEmpty = (secondaryKind == SecondaryKind::Text ||
                               secondaryKind == SecondaryKind::PaddedBlank) &&
                              other.secondaryText.length == 0;
            if (otherEmpty)
                return 0;
            return a.secondaryBlank ? -1 : 1;
        }
        if (a.secondaryKeyed && b.secondaryKeyed) {
            for (int w = 0; w < 3; ++w)
                if (a.secondaryWords[w] != b.secondaryWords[w])
                    return a.secondaryWords[w] < b.secondaryWords[w] ? -1 : 1;
            if (a.secondaryExact && b.secondaryExact)
                return 0;
        }
        switch (secondaryKind) {
        case SecondaryKind::Index:
            return CompareIndexText(a.row, b.row);
        case SecondaryKind::Text:
            return CompareText(a.secondaryText, b.secondaryText, foldCase);
        case SecondaryKind::Padded:
        case SecondaryKind::PaddedBlank: {
            bool keepBlank = secondaryKind == SecondaryKind::PaddedBlank;
            auto pad = [keepBlank](const TextRef& t) -> std::size_t {
                if ((keepBlank && t.length == 0) || t.length >= kPaddedWidth)
                    return 0;
                return kPaddedWidth - t.length;
            };
            return foldCase ? CompareUnits<true>(a.secondaryText, pad(a.secondaryText),
                                                 b.secondaryText, pad(b.secondaryText))
                            : CompareUnits<false>(a.secondaryText, pad(a.secondaryText),
                                                  b.secondaryText, pad(b.secondaryText));
        }
        case SecondaryKind::Date:
            return a.secondaryNumber < b.secondaryNumber
                       ? -1
                       : (a.secondaryNumber > b.secondaryNumber ? 1 : 0);
        case SecondaryKind::Bytes:
            return CompareBytesText(a.secondaryNumber, b.secondaryNumber);
        }
        return 0;
    }

    /// For records whose primary keys are equal.
    int Tie(const TableControlSortObject& a, const TableControlSortObject& b) const
    {
        int c = Secondary(a, b);
        if (c != 0)
            return c;
        return ThreeWay(a.row, b.row);
    }

    /// Negative when a sorts first. The row (the record's place when the keys were built)
    /// breaks every remaining tie, so no two records compare equal.
    int Compare(const TableControlSortObject& a, const TableControlSortObject& b) const
    {
        int c;
        if (textPrimary)
            c = CompareText(a.primaryText, b.primaryText, foldCase);
        else
            c = a.primaryNumber < b.primaryNumber ? -1
                                                  : (a.primaryNumber > b.primaryNumber ? 1 : 0);
        if (c != 0)
            return c;
        c = Secondary(a, b);
        if (c != 0)
            return c;
        return ThreeWay(a.row, b.row);
    }
};

// A fixed-width prefix of the primary key that orders records like the full comparison
// whenever two prefixes differ, so most comparisons touch only this 16-byte array.
struct FastKey
{
    std::uint64_t key;
    std::uint32_t index;
};

std::uint64_t NumberKey(double value)
{
    if (value == 0)
        value = 0; // -0 and +0 compare equal
    auto bits = std::bit_cast<std::uint64_t>(value);
    return (bits & 0x8000000000000000ull) ? ~bits : (bits | 0x8000000000000000ull);
}

// Units [from, from + 8) (8-bit) or [from, from + 4) (UTF-16) of the text, folded as compared,
// zero past its end. `*nul` is set when the text itself holds a zero unit there, since the
// packing could not tell that from the end.
std::uint64_t TextPrefix(const TextRef& text, bool foldCase, bool wideUnits, std::size_t from,
                         bool* nul)
{
    std::uint64_t key = 0;
    const std::size_t units = wideUnits ? 4 : 8;
    const int bits = wideUnits ? 16 : 8;
    if (!text.wide && !wideUnits && from + units <= text.length) {
        const auto* bytes = static_cast<const unsigned char*>(text.data) + from;
        for (std::size_t i = 0; i < 8; ++i) {
            unsigned unit = bytes[i];
            *nul |= unit == 0;
            if (foldCase && unit - 'A' < 26u)
                unit += 32;
            key = (key << 8) | unit;
        }
        return key;
    }
    if (text.wide && wideUnits && from + units <= text.length) {
        const char16_t* chars = static_cast<const char16_t*>(text.data) + from;
        for (std::size_t i = 0; i < 4; ++i) {
            std::uint32_t unit = chars[i];
            *nul |= unit == 0;
            if (foldCase)
                unit = unit < 0x80 ? (unit - 'A' < 26u ? unit + 32 : unit) : Fold(unit, true);
            key = (key << 16) | unit;
        }
        return key;
    }
    for (std::size_t i = from; i < from + units; ++i) {
        std::uint32_t unit = 0;
        if (i < text.length) {
            unit = text.Unit(i);
            *nul |= unit == 0;
        }
        if (foldCase)
            unit = Fold(unit, text.wide);
        key = (key << bits) | unit;
    }
    return key;
}

// The secondary text's first units as compared: padded with "0"s to 24 for the numeric
// methods, folded for method 0, one byte each. Texts with NUL characters or wider units in
// that stretch are not keyed and always take the full comparison.
void KeySecondary(TableControlSortObject& key, bool foldCase, bool padded, bool keepBlank)
{
    const TextRef& text = key.secondaryText;
    std::size_t pad = 0;
    if (padded && !(keepBlank && text.length == 0) && text.length < kPaddedWidth)
        pad = kPaddedWidth - text.length;
    const std::size_t total = text.length + pad;
    const std::size_t words = padded ? 3 : 1;
    for (std::size_t i = 0; i < total && i < words * 8; ++i) {
        std::uint32_t unit = i < pad ? '0' : text.Unit(i - pad);
        if (foldCase)
            unit = Fold(unit, text.wide);
        // Units beyond one byte cannot be packed here; such texts take the full comparison.
        if (unit == 0 || unit > 0xFF)
            return;
        key.secondaryWords[i / 8] |= static_cast<std::uint64_t>(unit) << (56 - 8 * (i % 8));
    }
    for (std::size_t i = words * 8; i < text.length; ++i)
        if (text.Unit(i) == 0)
            return;
    key.secondaryKeyed = true;
    key.secondaryExact = total <= words * 8;
}

/// Tables from this many rows up share a sort between the processors: below it, starting the
/// threads costs more than they save.
constexpr std::size_t kParallelSortRows = 100000;

/// Runs body(part, from, to) for `parts` slices of [0, count), one per thread, this thread
/// taking the first.
template <class Body> void InParallel(int parts, std::size_t count, Body&& body)
{
    if (parts <= 1) {
        body(0, 0, count);
        return;
    }
    const auto n = static_cast<std::size_t>(parts);
    std::vector<std::thread> helpers;
    for (std::size_t p = 1; p < n; ++p)
        helpers.emplace_back(
            [&, p] { body(static_cast<int>(p), count * p / n, count * (p + 1) / n); });
    body(0, 0, count / n);
    for (std::thread& helper : helpers)
        helper.join();
}

/// std::sort on `threads` threads: the range is split around a pivot drawn from a sample and
/// the parts are sorted at once. The comparison must be a strict total order.
template <class It, class Compare> void SortInParallel(It first, It last, Compare comp, int threads)
{
    const auto n = last - first;
    if (threads <= 1 || n < 2) {
        std::sort(first, last, comp);
        return;
    }
    constexpr int kSample = 255;
    std::vector<typename std::iterator_traits<It>::value_type> sample;
    sample.reserve(kSample);
    for (int i = 0; i < kSample; ++i)
        sample.push_back(first[n * i / kSample]);
    std::sort(sample.begin(), sample.end(), comp);
    const auto pivot = sample[kSample / 2];
    const It middle = std::partition(first, last, [&](const auto& x) { return comp(x, pivot); });
    const int left = threads / 2;
    std::thread helper([&] { SortInParallel(first, middle, comp, left); });
    SortInParallel(middle, last, comp, threads - left);
    helper.join();
}

} // namespace

int TableControl::SortThreads(std::size_t rows) const
{
    if (m_sortThreads > 0)
        return m_sortThreads;
    if (rows < kParallelSortRows)
        return 1;
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 8);
}

void TableControl::SortRows()
{
    Storage& s = *m_store;
    s.needsResort = false;
    s.orderDirty = false;
    // Any sort, and "Don't sort rows", replaces an order kept from a deleted sort column.
    m_orderKept = false;
    if (m_rowCount == 0)
        return;
    const int c = m_sortColumn;
    if (c < 1 || c >= ColumnCount()) {
        // No valid column: every row keeps its storage index as its order.
        RestoreOrder(true);
        KeepFocusInView();
        return;
    }
    const TableColumn& column = m_columns[static_cast<std::size_t>(c)];
    const int m = column.sortMethod;
    int sc = -1;
    if (m_previousSort[0] != c)
        sc = m_previousSort[0];
    else if (m_previousSort[1] != c)
        sc = m_previousSort[1];
    if (sc < 1 || sc >= ColumnCount())
        sc = -1;
    const int ms = sc >= 0 ? m_columns[static_cast<std::size_t>(sc)].sortMethod : 0;

    Comparator comparator;
    comparator.textPrimary = m == kSortTextNoCase || m == kSortTextCase;
    comparator.foldCase = m == kSortTextNoCase;
    if (sc < 0)
        comparator.secondaryKind = SecondaryKind::Index;
    else if (ms == kSortNumeric)
        comparator.secondaryKind = SecondaryKind::Padded;
    else if (ms == kSortNumericLow)
        comparator.secondaryKind = SecondaryKind::PaddedBlank;
    else if (ms == kSortDateTime)
        comparator.secondaryKind = SecondaryKind::Date;
    else if (ms == kSortMemory)
        comparator.secondaryKind = SecondaryKind::Bytes;
    else
        comparator.secondaryKind = SecondaryKind::Text;

    // Texts made up for integer cells live in the deque of the thread that reads them, for as
    // long as it needs them.
    static const char kTilde[] = "~";
    static const char kOne[] = "1";
    static const char kZero[] = "0";
    auto cellText = [&](int row, int col, std::deque<std::string>& madeTexts) -> TextRef {
        const TableColumn& info = m_columns[static_cast<std::size_t>(col)];
        std::uint64_t ref =
            s.cells[static_cast<std::size_t>(col - 1)][static_cast<std::size_t>(row)];
        if (info.kind == kColumnCheck || info.kind == kColumnCheckAlt)
            return TextRef{(ref & kCheckedBit) ? kOne : kZero, 1, false};
        if (info.kind == kColumnChoice) {
            madeTexts.push_back(std::to_string(CellValue(row, col)));
            return TextRef{madeTexts.back().data(),
                           static_cast<std::uint32_t>(madeTexts.back().size()), false};
        }
        if (IsWide(ref)) {
            std::u16string_view text = s.pool.View16(ref);
            return TextRef{text.data(), static_cast<std::uint32_t>(text.size()), true};
        }
        std::string_view text = s.pool.View8(ref);
        return TextRef{text.data(), static_cast<std::uint32_t>(text.size()), false};
    };
    auto readNumber = [](const TextRef& t) -> double {
        std::optional<double> value =
            t.wide ? ReadNumber(std::u16string_view(static_cast<const char16_t*>(t.data), t.length))
                   : ReadNumber(std::string_view(static_cast<const char*>(t.data), t.length));
        return value.value_or(0.0);
    };
    auto readDate = [this](const TextRef& t) -> std::optional<DateTime> {
        return t.wide ? ReadDateTime(
                            std::u16string_view(static_cast<const char16_t*>(t.data), t.length),
                            m_dayFirst)
                      : ReadDateTime(std::string_view(static_cast<const char*>(t.data), t.length),
                                     m_dayFirst);
    };
    auto readMemory = [](const TextRef& t) -> double {
        std::optional<double> value =
            t.wide ? ReadMemorySize(
                         std::u16string_view(static_cast<const char16_t*>(t.data), t.length))
                   : ReadMemorySize(std::string_view(static_cast<const char*>(t.data), t.length));
        return value.value_or(0.0);
    };

    // The primary key of row r, as text (text methods) or as a number.
    const bool choiceNumbers =
        column.kind == kColumnChoice && (m == kSortNumeric || m == kSortNumericLow);
    auto primaryText = [&](std::size_t r, std::deque<std::string>& made) -> TextRef {
        if (s.flags[r] & kRowHidden)
            return TextRef{kTilde, 1, false};
        return cellText(static_cast<int>(r), c, made);
    };
    auto primaryNumber = [&](std::size_t r, std::deque<std::string>& made) -> double {
        const int row = static_cast<int>(r);
        if (s.flags[r] & kRowHidden)
            return kHiddenNumber;
        if (choiceNumbers) {
            std::int32_t value = CellValue(row, c);
            if (value == kEmptyChoice)
                return m == kSortNumeric ? 0.0 : -2147483648.0;
            return value;
        }
        if (m == kSortStoredValue)
            return CellValue(row, c);
        TextRef text = cellText(row, c, made);
        switch (m) {
        case kSortNumeric:
            return readNumber(text);
        case kSortNumericLow:
            return text.length == 0 ? kBlankLow : readNumber(text);
        case kSortDateTime: {
            std::optional<DateTime> date = readDate(text);
            return date ? static_cast<double>(date->Serial()) : 0.0;
        }
        case kSortMemory:
            return readMemory(text);
        default:
            return 0.0;
        }
    };
    // The whole record of row r, for the records whose fast keys tie. Built only for them:
    // a record per row of a big table would take more memory than the table's cells.
    // Rows that tie are visited in key order, far apart in memory: their cells and texts are
    // asked for a few rows ahead, so that the waits for memory overlap.
    constexpr std::size_t kCellsAhead = 16;
    constexpr std::size_t kTextsAhead = 8;
    auto prefetchCell = [&](int col, std::size_t r) {
        if (col >= 1)
            __builtin_prefetch(&s.cells[static_cast<std::size_t>(col - 1)][r]);
    };
    auto prefetchText = [&](int col, std::size_t r) {
        if (col < 1)
            return;
        const std::uint64_t ref = s.cells[static_cast<std::size_t>(col - 1)][r];
        const void* text = IsWide(ref) ? static_cast<const void*>(s.pool.View16(ref).data())
                                       : static_cast<const void*>(s.pool.View8(ref).data());
        if (text)
            __builtin_prefetch(text);
    };
    auto fillRecord = [&](TableControlSortObject& key, std::size_t r, bool withPrimary,
                          std::deque<std::string>& made) {
        key = TableControlSortObject();
        const int row = static_cast<int>(r);
        key.row = row;
        if (s.flags[r] & kRowHidden) {
            key.primaryText = TextRef{kTilde, 1, false};
            key.primaryNumber = kHiddenNumber;
            key.secondaryBlank = true;
            return;
        }
        if (comparator.textPrimary && withPrimary)
            key.primaryText = cellText(row, c, made);
        if (sc < 0)
            return;
        switch (comparator.secondaryKind) {
        case SecondaryKind::Index:
            break;
        case SecondaryKind::Text:
        case SecondaryKind::Padded:
        case SecondaryKind::PaddedBlank:
            key.secondaryText = cellText(row, sc, made);
            KeySecondary(key, comparator.foldCase, comparator.secondaryKind != SecondaryKind::Text,
                         comparator.secondaryKind == SecondaryKind::PaddedBlank);
            break;
        case SecondaryKind::Date: {
            std::optional<DateTime> date = readDate(cellText(row, sc, made));
            key.secondaryNumber =
                date ? ((((date->year % 100) * 100.0 + date->month) * 100.0 + date->day) * 100.0 +
                        date->hour) *
                               10000.0 +
                           date->minute * 100.0 + date->second
                     : -1.0;
            break;
        }
        case SecondaryKind::Bytes:
            key.secondaryNumber = readMemory(cellText(row, sc, made));
            break;
        }
    };

    const std::size_t count = static_cast<std::size_t>(m_rowCount);
    const int threads = SortThreads(count);
    // Texts are compared in 16-bit units as soon as one of them is UTF-16.
    bool anyWide = false;
    if (comparator.textPrimary && column.kind != kColumnCheck && column.kind != kColumnCheckAlt &&
        column.kind != kColumnChoice) {
        const std::vector<std::uint64_t>& cells = s.cells[static_cast<std::size_t>(c - 1)];
        for (std::size_t r = 0; r < count && !anyWide; ++r)
            anyWide = IsWide(cells[r]) && !(s.flags[r] & kRowHidden);
    }
    const bool wideUnits = anyWide;

    std::vector<FastKey> fast(count);
    std::vector<std::uint8_t> nulSeen(static_cast<std::size_t>(threads), 0);
    // Whether every primary text fits in the first window, per thread.
    std::vector<std::uint8_t> shortSeen(static_cast<std::size_t>(threads), 1);
    const std::size_t firstWindow = wideUnits ? 4 : 8;
    InParallel(threads, count, [&](int part, std::size_t from, std::size_t to) {
        std::deque<std::string> made;
        bool nul = false;
        bool allShort = true;
        for (std::size_t r = from; r < to; ++r) {
            fast[r].index = static_cast<std::uint32_t>(r);
            if (comparator.textPrimary) {
                const TextRef text = primaryText(r, made);
                allShort = allShort && text.length <= firstWindow;
                fast[r].key = TextPrefix(text, comparator.foldCase, wideUnits, 0, &nul);
            } else {
                fast[r].key = NumberKey(primaryNumber(r, made));
            }
            made.clear();
        }
        nulSeen[static_cast<std::size_t>(part)] = nul;
        shortSeen[static_cast<std::size_t>(part)] = allShort;
    });
    const bool anyNul = std::find(nulSeen.begin(), nulSeen.end(), 1) != nulSeen.end();
    const bool allShort = comparator.textPrimary &&
                          std::find(shortSeen.begin(), shortSeen.end(), 0) == shortSeen.end();

    // First by the fast key alone (then storage index), which touches only this small array.
    // Where fast keys tie, each run is ordered further: texts by their next units, window by
    // window (each window reads every text once instead of comparing pairs over and over),
    // and records with equal primary keys by the secondary key and the row. Every step orders
    // by the one comparison, which no two records tie in, so how the work is shared between
    // threads cannot change the order.
    auto byKey = [](const FastKey& a, const FastKey& b) {
        return a.key != b.key ? a.key < b.key : a.index < b.index;
    };
    SortInParallel(fast.begin(), fast.end(), byKey, threads);
    // With no secondary column and numeric keys the storage index already is the tie-break
    // ("%06d" compares like the number up to 999,999).
    const bool indexDecidesTies = !comparator.textPrimary &&
                                  comparator.secondaryKind == SecondaryKind::Index &&
                                  count <= 1000000;
    struct Run
    {
        std::size_t start;
        std::size_t end;
        std::size_t window;
        /// The texts of the run were whole in the windows that made it: they are equal.
        bool complete;
    };
    auto pushRuns = [&](std::vector<Run>& work, std::size_t start, std::size_t end,
                        std::size_t window, bool complete) {
        for (std::size_t i = start; i < end;) {
            std::size_t j = i + 1;
            while (j < end && fast[j].key == fast[i].key)
                ++j;
            if (j - i > 1)
                work.push_back(Run{i, j, window, complete});
            i = j;
        }
    };
    std::vector<Run> runs;
    if (!indexDecidesTies)
        pushRuns(runs, 0, count, 1, allShort);
    const std::size_t windowUnits = wideUnits ? 4 : 8;
    // Orders a run by the whole comparison (`tie`: the primary keys are known to be equal).
    auto sortRecords = [&](Run run, bool tie, std::deque<std::string>& made) {
        const std::size_t n = run.end - run.start;
        std::vector<TableControlSortObject> records(n);
        std::vector<FastKey> items(fast.begin() + static_cast<std::ptrdiff_t>(run.start),
                                   fast.begin() + static_cast<std::ptrdiff_t>(run.end));
        const bool textSecondary = comparator.secondaryKind != SecondaryKind::Index &&
                                   comparator.secondaryKind != SecondaryKind::Date &&
                                   comparator.secondaryKind != SecondaryKind::Bytes;
        const int wanted[2] = {tie ? 0 : c, sc};
        for (std::size_t i = 0; i < n; ++i) {
            for (int col : wanted) {
                if (i + kCellsAhead < n)
                    prefetchCell(col, items[i + kCellsAhead].index);
                if (i + kTextsAhead < n && (col == c || textSecondary))
                    prefetchText(col, items[i + kTextsAhead].index);
            }
            fillRecord(records[i], items[i].index, !tie, made);
            items[i].index = static_cast<std::uint32_t>(i);
        }
        std::sort(items.begin(), items.end(), [&](const FastKey& a, const FastKey& b) {
            const TableControlSortObject& x = records[a.index];
            const TableControlSortObject& y = records[b.index];
            return (tie ? comparator.Tie(x, y) : comparator.Compare(x, y)) < 0;
        });
        for (std::size_t i = 0; i < n; ++i)
            fast[run.start + i] = FastKey{fast[run.start + i].key,
                                          static_cast<std::uint32_t>(records[items[i].index].row)};
        made.clear();
    };
    auto refine = [&](std::vector<Run> work) {
        std::deque<std::string> made;
        bool nul = anyNul;
        while (!work.empty()) {
            Run run = work.back();
            work.pop_back();
            auto first = fast.begin() + static_cast<std::ptrdiff_t>(run.start);
            auto last = fast.begin() + static_cast<std::ptrdiff_t>(run.end);
            if (!comparator.textPrimary || nul) {
                sortRecords(run, comparator.textPrimary ? false : true, made);
                continue;
            }
            if (run.complete) {
                sortRecords(run, true, made);
                continue;
            }
            const std::size_t from = run.window * windowUnits;
            bool exhausted = true;
            bool fits = true;
            for (auto it = first; it != last; ++it) {
                if (last - it > static_cast<std::ptrdiff_t>(kCellsAhead))
                    prefetchCell(c, it[kCellsAhead].index);
                if (last - it > static_cast<std::ptrdiff_t>(kTextsAhead))
                    prefetchText(c, it[kTextsAhead].index);
                const TextRef text = primaryText(it->index, made);
                exhausted = exhausted && text.length <= from;
                fits = fits && text.length <= from + windowUnits;
                it->key = TextPrefix(text, comparator.foldCase, wideUnits, from, &nul);
            }
            made.clear();
            if (nul) {
                sortRecords(run, false, made);
            } else if (exhausted) {
                sortRecords(run, true, made);
            } else {
                std::sort(first, last, byKey);
                pushRuns(work, run.start, run.end, run.window + 1, fits);
            }
        }
    };
    // Runs are disjoint stretches of the array: each thread takes its share whole.
    std::vector<std::vector<Run>> shares(static_cast<std::size_t>(threads));
    {
        std::size_t total = 0;
        for (const Run& run : runs)
            total += run.end - run.start;
        std::size_t done = 0;
        for (const Run& run : runs) {
            const std::size_t share = std::min<std::size_t>(
                done * static_cast<std::size_t>(threads) / std::max<std::size_t>(total, 1),
                static_cast<std::size_t>(threads) - 1);
            shares[share].push_back(run);
            done += run.end - run.start;
        }
    }
    InParallel(threads, static_cast<std::size_t>(threads), [&](int part, std::size_t, std::size_t) {
        refine(std::move(shares[static_cast<std::size_t>(part)]));
    });

    // Hidden rows, then the trailing row, go last; descending reverses only the visible rows,
    // which is where moving them to the front before the reversal leaves them.
    std::vector<std::int32_t>& order = s.order;
    order.resize(count);
    std::size_t write = 0;
    std::vector<std::int32_t> hidden;
    for (const FastKey& item : fast) {
        auto row = static_cast<std::int32_t>(item.index);
        if (row == m_trailingRow)
            continue;
        if (s.flags[item.index] & kRowHidden)
            hidden.push_back(row);
        else
            order[write++] = row;
    }
    if (!m_sortAscending)
        std::reverse(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(write));
    for (std::int32_t row : hidden)
        order[write++] = row;
    if (m_trailingRow >= 0 && m_trailingRow < m_rowCount)
        order[write++] = m_trailingRow;
    FillPositions();
    KeepFocusInView();
}

void TableControl::KeepFocusInView()
{
    int first = m_geometry.firstVisiblePosition;
    const int page = std::max(1, m_geometry.completelyVisibleRows);
    int position = DisplayPosition(m_focusRow);
    if (position >= 0) {
        if (position < first)
            first = position;
        else if (position > first + page - 1)
            first = position - page + 1;
    }
    first = std::clamp(first, 0, std::max(0, m_visibleCount - page));
    m_geometry.firstVisiblePosition = first;
}

bool TableControl::SetSort(int column, bool ascending, bool sortNow)
{
    if (column < 0 || column >= ColumnCount())
        return false;
    if (m_columns[static_cast<std::size_t>(column)].flags & COLUMN_NO_SORT)
        return false;
    if (column == m_sortColumn && ascending == m_sortAscending)
        return true;
    if (column != m_sortColumn && m_sortColumn >= 0) {
        m_previousSort[1] = m_previousSort[0];
        m_previousSort[0] = m_sortColumn;
    }
    m_sortColumn = column;
    m_sortAscending = ascending;
    m_orderKept = false;
    if (sortNow) {
        SortRows();
        NotifyReset();
        if (m_owner)
            m_owner->OnSortChanged();
    }
    return true;
}

void TableControl::Sort()
{
    SortRows();
    NotifyReset();
}

void TableControl::Unsort()
{
    if (m_sortColumn >= 0) {
        m_previousSort[1] = m_previousSort[0];
        m_previousSort[0] = m_sortColumn;
    }
    m_sortColumn = -1;
    m_sortAscending = true;
    SortRows();
    NotifyReset();
    if (m_owner)
        m_owner->OnSortChanged();
}

} // namespace quirnel
