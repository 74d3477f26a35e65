#include "document/csv_record_reader.h"

#include "ostrand/core/string.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quirnel {

namespace {

enum CharClass : unsigned char
{
    kOrdinary = 0,
    kSeparator = 1,
    kLineEnd = 2,
    kNul = 3,
    kBackslash = 4,
};

/// The unit as an unsigned number, so that 8-bit text above 127 indexes the class table.
template <typename Char> std::size_t Unit(Char c)
{
    if constexpr (sizeof(Char) == 1)
        return static_cast<unsigned char>(c);
    else
        return static_cast<std::size_t>(c);
}

template <typename Char> bool Contains(std::basic_string_view<Char> set, Char c)
{
    for (Char s : set)
        if (s == c)
            return true;
    return false;
}

template <typename Char> bool IsTrimmed(Char c)
{
    return c == Char(' ') || c == Char('\r') || c == Char('\n') || c == Char('\t');
}

/// Finds the next quote mark or NUL at or after `from`; `end` when there is none.
template <typename Char> const Char* FindQuoteOrNul(const Char* from, const Char* end)
{
    if constexpr (sizeof(Char) == 1) {
        const void* quote = std::memchr(from, '"', static_cast<std::size_t>(end - from));
        const Char* stop = quote ? static_cast<const Char*>(quote) : end;
        const void* nul = std::memchr(from, 0, static_cast<std::size_t>(stop - from));
        return nul ? static_cast<const Char*>(nul) : stop;
    } else {
        while (from != end && *from != Char('"') && *from != Char(0))
            ++from;
        return from;
    }
}

#if defined(__SSE2__)
/// Bit i set when p[i] is the separator, CR, LF or NUL: the characters that end an unquoted
/// field when there is one separator and no escapes. Reads p[0] to p[15].
unsigned StopMask(const char* p, char separator)
{
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i hits = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8(separator)),
                                                   _mm_cmpeq_epi8(block, _mm_set1_epi8('\r'))),
                                      _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n')),
                                                   _mm_cmpeq_epi8(block, _mm_setzero_si128())));
    return static_cast<unsigned>(_mm_movemask_epi8(hits));
}
#endif

/// The first character at or after `p` whose class is not ordinary. With a single separator and
/// no escapes that set is {separator, CR, LF, NUL}, which is tested sixteen bytes at a time.
const char* SkipOrdinary(const char* p, const char* end, const unsigned char* classes,
                         char simpleSeparator)
{
#if defined(__SSE2__)
    if (simpleSeparator) {
        while (end - p >= 16) {
            const unsigned mask = StopMask(p, simpleSeparator);
            if (mask)
                return p + __builtin_ctz(mask);
            p += 16;
        }
    }
#endif
    while (p != end && classes[static_cast<unsigned char>(*p)] == kOrdinary)
        ++p;
    return p;
}

/// Whether any of the bytes is a quote mark. Short texts, most cells, are tested as two
/// overlapping words that lie inside the text, a zero byte in (word ^ quotes) marking a hit.
bool HasQuoteMark(const char* text, std::size_t length)
{
    if (length >= 16)
        return std::memchr(text, '"', length) != nullptr;
    auto hasZeroByte64 = [](std::uint64_t word) {
        return ((word - 0x0101010101010101ull) & ~word & 0x8080808080808080ull) != 0;
    };
    auto hasZeroByte32 = [](std::uint32_t word) {
        return ((word - 0x01010101u) & ~word & 0x80808080u) != 0;
    };
    if (length >= 8) {
        std::uint64_t head = 0;
        std::uint64_t tail = 0;
        std::memcpy(&head, text, 8);
        std::memcpy(&tail, text + length - 8, 8);
        return hasZeroByte64(head ^ 0x2222222222222222ull) ||
               hasZeroByte64(tail ^ 0x2222222222222222ull);
    }
    if (length >= 4) {
        std::uint32_t head = 0;
        std::uint32_t tail = 0;
        std::memcpy(&head, text, 4);
        std::memcpy(&tail, text + length - 4, 4);
        return hasZeroByte32(head ^ 0x22222222u) || hasZeroByte32(tail ^ 0x22222222u);
    }
    for (std::size_t i = 0; i < length; ++i)
        if (text[i] == '"')
            return true;
    return false;
}

/// An 8-bit field with nothing to trim, no surrounding quotes and no quote mark inside is
/// already clean; most fields are.
bool AlreadyClean(const char* text, std::size_t length, unsigned flags)
{
    return !(flags & CSV_BACKSLASH_ESCAPE) && length != 0 && !IsTrimmed(text[0]) &&
           text[0] != '"' && !IsTrimmed(text[length - 1]) && !HasQuoteMark(text, length);
}

/// Narrows [first, last) to the field's text: blanks trimmed, then one pair of enclosing
/// quote marks dropped. A lone quote mark is one character, not a first and a last one: it
/// stays, or an unterminated quote at the end of a file would vanish from the cell.
template <typename Ptr> void TrimAndStripQuotes(Ptr& first, Ptr& last)
{
    while (first != last && IsTrimmed(*first))
        ++first;
    while (last != first && IsTrimmed(last[-1]))
        --last;
    if (last - first >= 2 && first[0] == '"' && last[-1] == '"') {
        ++first;
        --last;
    }
}

} // namespace

template <typename Char>
void BasicCsvRecordReader<Char>::SetSeparators(View separators, unsigned flags)
{
    const unsigned relevant = flags & CSV_BACKSLASH_ESCAPE;
    if (m_classFlags == relevant && View(m_classSeparators) == separators)
        return;
    std::memset(m_classes, kOrdinary, sizeof m_classes);
    m_classes[static_cast<unsigned char>('\r')] = kLineEnd;
    m_classes[static_cast<unsigned char>('\n')] = kLineEnd;
    m_classes[0] = kNul;
    if (relevant)
        m_classes[static_cast<unsigned char>('\\')] = kBackslash;
    for (Char s : separators)
        if (Unit(s) < 256)
            m_classes[Unit(s)] = kSeparator;
    m_classSeparators.assign(separators);
    m_classFlags = relevant;
}

template <typename Char>
bool BasicCsvRecordReader<Char>::SkipToRecord(unsigned flags, std::vector<Text>* comments)
{
    const Char* const begin = m_data.data();
    const std::size_t size = m_data.size();
    for (;;) {
        while (m_position < size &&
               (begin[m_position] == Char('\r') || begin[m_position] == Char('\n')))
            ++m_position;
        if (m_position >= size)
            return false;
        if ((flags & CSV_IGNORE_COMMENTS) && begin[m_position] == Char('#')) {
            const std::size_t start = m_position;
            while (m_position < size && begin[m_position] != Char('\r') &&
                   begin[m_position] != Char('\n'))
                ++m_position;
            if (comments)
                comments->emplace_back(begin + start, m_position - start);
            continue;
        }
        return true;
    }
}

template <typename Char>
bool BasicCsvRecordReader<Char>::ReadRecord(View& record, unsigned flags, View separators,
                                            std::vector<Text>* comments)
{
    if (!SkipToRecord(flags, comments)) {
        record = View();
        return false;
    }
    if (separators.empty())
        return ReadDetecting(record, flags);
    return ReadSeparated(record, flags, separators, nullptr);
}

template <typename Char>
bool BasicCsvRecordReader<Char>::ReadRecordRaw(View& record, std::vector<View>& rawFields,
                                               unsigned flags, View separators,
                                               std::vector<Text>* comments)
{
    rawFields.clear();
    if (!SkipToRecord(flags, comments)) {
        record = View();
        return false;
    }
    // The record scan and the field splitter agree on field bounds except where a backslash
    // inside quotes matters, which only the splitter honours.
    if (separators.empty() || (flags & CSV_BACKSLASH_ESCAPE)) {
        const bool read = separators.empty() ? ReadDetecting(record, flags)
                                             : ReadSeparated(record, flags, separators, nullptr);
        SplitRecordRaw(record, rawFields, separators, flags);
        return read;
    }
    return ReadSeparated(record, flags, separators, &rawFields);
}

template <typename Char>
bool BasicCsvRecordReader<Char>::ReadDetecting(View& record, unsigned flags)
{
    const Char* const begin = m_data.data();
    const std::size_t size = m_data.size();
    const bool escapes = flags & CSV_BACKSLASH_ESCAPE;
    const std::size_t start = m_position;
    std::size_t pos = m_position;
    bool inQuotes = false;
    while (pos < size) {
        const Char c = begin[pos];
        if (c == Char('"')) {
            inQuotes = !inQuotes;
        } else if (c == Char(0)) {
            record = View(begin + start, pos - start);
            m_position = pos + 1;
            return true;
        } else if (!inQuotes && (c == Char('\r') || c == Char('\n'))) {
            record = View(begin + start, pos - start);
            ++pos;
            if (pos < size && begin[pos] != c &&
                (begin[pos] == Char('\r') || begin[pos] == Char('\n')))
                ++pos;
            m_position = pos;
            return true;
        } else if (!inQuotes && escapes && c == Char('\\') && pos + 1 < size &&
                   begin[pos + 1] != Char(0)) {
            ++pos;
        }
        ++pos;
    }
    record = View(begin + start, size - start);
    m_position = size;
    return true;
}

template <typename Char>
bool BasicCsvRecordReader<Char>::ReadSeparated(View& record, unsigned flags, View separators,
                                               std::vector<View>* rawFields)
{
    SetSeparators(separators, flags);
    const Char* const begin = m_data.data();
    const Char* const end = begin + m_data.size();
    const Char* const start = begin + m_position;
    const Char* p = start;
    // Characters above 255 are never line ends, NULs or backslashes; they are separators only
    // when the caller asked for such a separator.
    const bool wideSeparators = [&] {
        for (Char s : separators)
            if (Unit(s) >= 256)
                return true;
        return false;
    }();
    auto classify = [&](Char c) -> unsigned char {
        if (Unit(c) < 256)
            return m_classes[Unit(c)];
        return wideSeparators && Contains(separators, c) ? kSeparator : kOrdinary;
    };
    const Char* fieldStart = start;
    auto finish = [&](const Char* recordEnd, const Char* next) {
        record = View(start, static_cast<std::size_t>(recordEnd - start));
        if (rawFields && recordEnd != start) {
            if (fieldStart > recordEnd)
                fieldStart = recordEnd;
            rawFields->emplace_back(fieldStart, static_cast<std::size_t>(recordEnd - fieldStart));
        }
        m_position = static_cast<std::size_t>(next - begin);
        return true;
    };
    auto finishAtLineEnd = [&](const Char* lineEnd) {
        const Char* next = lineEnd + 1;
        // CR LF, LF CR, CR and LF each end one record.
        if (next != end && *next != *lineEnd && (*next == Char('\r') || *next == Char('\n')))
            ++next;
        return finish(lineEnd, next);
    };

    const char simpleSeparator =
        (!(flags & CSV_BACKSLASH_ESCAPE) && separators.size() == 1 && Unit(separators[0]) < 128)
            ? static_cast<char>(separators[0])
            : '\0';
    bool atFieldStart = true;
    while (p != end) {
        if (atFieldStart) {
            while (p != end && *p == Char(' '))
                ++p;
            fieldStart = p;
            if (p == end)
                break;
            atFieldStart = false;
            if (*p == Char('"')) {
                ++p;
                for (;;) {
                    const Char* q = FindQuoteOrNul(p, end);
                    if (q == end)
                        return finish(end, end);
                    if (*q == Char(0))
                        return finish(q, q + 1);
                    // At a quote mark the next character decides.
                    const Char* after = q + 1;
                    if (after == end)
                        return finish(end, end);
                    if (*after == Char('"')) {
                        p = after + 1;
                        continue;
                    }
                    if (*after == Char('\r') || *after == Char('\n'))
                        return finishAtLineEnd(after);
                    p = after;
                    break;
                }
                continue;
            }
        }
        if constexpr (sizeof(Char) == 1) {
#if defined(__SSE2__)
            if (simpleSeparator && rawFields) {
                // Inside an unquoted field. Every separator in a block is taken in turn while
                // the field after it starts plainly (no space, no quote mark), so a block of
                // short fields is loaded once. Anything else goes back to the steps below.
                bool atStart = false;
                bool stopped = false;
                while (!stopped && end - p >= 16) {
                    for (unsigned mask = StopMask(p, simpleSeparator); mask; mask &= mask - 1) {
                        const Char* const hit = p + __builtin_ctz(mask);
                        if (*hit != simpleSeparator) {
                            p = hit;
                            stopped = true;
                            break;
                        }
                        rawFields->emplace_back(fieldStart,
                                                static_cast<std::size_t>(hit - fieldStart));
                        fieldStart = hit + 1;
                        if (fieldStart == end || *fieldStart == Char(' ') ||
                            *fieldStart == Char('"')) {
                            p = fieldStart;
                            atStart = true;
                            stopped = true;
                            break;
                        }
                    }
                    if (!stopped)
                        p += 16;
                }
                if (atStart) {
                    atFieldStart = true;
                    continue;
                }
            }
#endif
            p = SkipOrdinary(p, end, m_classes, simpleSeparator);
            if (p == end)
                break;
        }
        switch (classify(*p)) {
        case kSeparator:
            if (rawFields)
                rawFields->emplace_back(fieldStart, static_cast<std::size_t>(p - fieldStart));
            ++p;
            fieldStart = p;
            atFieldStart = true;
            break;
        case kLineEnd:
            return finishAtLineEnd(p);
        case kNul:
            return finish(p, p + 1);
        case kBackslash:
            // The escaped character is taken whatever it is, a line end included; but a NUL
            // ends the record wherever it stands, here as inside quotes. A cell holding one
            // could not be written back: the writer has no way to keep it from ending a record.
            if (end - p >= 2 && p[1] == Char(0))
                return finish(p + 1, p + 2);
            p = (end - p >= 2) ? p + 2 : end;
            break;
        default:
            ++p;
            break;
        }
    }
    return finish(end, end);
}

template <typename Char>
bool BasicCsvRecordReader<Char>::ReadFields(std::vector<Text>& fields, unsigned flags,
                                            View separators, std::vector<Text>* comments)
{
    View record;
    if (!ReadRecord(record, flags, separators, comments)) {
        if (!(flags & CSV_APPEND))
            fields.clear();
        return false;
    }
    SplitRecord(record, fields, separators, flags);
    return true;
}

template <typename Char>
bool BasicCsvRecordReader<Char>::ReadFirstRecordDetecting(std::vector<Text>& fields, unsigned flags,
                                                          Char& separatorOut,
                                                          std::vector<Text>* comments)
{
    View record;
    if (!ReadRecord(record, flags, View(), comments)) {
        if (!(flags & CSV_APPEND))
            fields.clear();
        return false;
    }
    separatorOut = DetectSeparator(record, flags);
    const std::size_t before = (flags & CSV_APPEND) ? fields.size() : 0;
    SplitRecord(record, fields, View(&separatorOut, 1), flags);
    for (std::size_t i = before; i < fields.size(); ++i)
        if (!fields[i].empty())
            return true;
    return false;
}

template <typename Char>
void BasicCsvRecordReader<Char>::SplitRecordRaw(View record, std::vector<View>& rawFields,
                                                View separators, unsigned flags)
{
    rawFields.clear();
    const bool escapes = flags & CSV_BACKSLASH_ESCAPE;
    const std::size_t n = record.size();
    const Char* r = record.data();
    auto isSeparator = [&](Char c) {
        return separators.size() == 1 ? c == separators[0] : Contains(separators, c);
    };
    std::size_t pos = 0;
    if (n == 0)
        return;
    for (;;) {
        while (pos < n && r[pos] == Char(' '))
            ++pos;
        const std::size_t fieldStart = pos;
        if (pos < n && r[pos] == Char('"')) {
            ++pos;
            while (pos < n) {
                const Char c = r[pos];
                if (escapes && c == Char('\\')) {
                    pos += 2;
                    continue;
                }
                if (c == Char('"')) {
                    if (pos + 1 < n && r[pos + 1] == Char('"')) {
                        pos += 2;
                        continue;
                    }
                    ++pos;
                    break;
                }
                ++pos;
            }
        }
        if constexpr (sizeof(Char) == 1) {
            if (!escapes && separators.size() == 1) {
                const void* found = std::memchr(r + pos, separators[0], n - pos);
                pos = found ? static_cast<std::size_t>(static_cast<const Char*>(found) - r) : n;
            }
        }
        while (pos < n && !isSeparator(r[pos]))
            pos += (escapes && r[pos] == Char('\\')) ? 2 : 1;
        if (pos > n)
            pos = n;
        rawFields.emplace_back(r + fieldStart, pos - fieldStart);
        if (pos >= n)
            return;
        ++pos;
        if (pos == n) {
            rawFields.emplace_back(r + n, 0);
            return;
        }
    }
}

template <typename Char>
void BasicCsvRecordReader<Char>::SplitRecord(View record, std::vector<Text>& fields,
                                             View separators, unsigned flags)
{
    if (!(flags & CSV_APPEND))
        fields.clear();
    std::vector<View> raw;
    SplitRecordRaw(record, raw, separators, flags);
    for (View field : raw)
        fields.push_back(UnquoteField(field, flags));
}

template <typename Char>
bool BasicCsvRecordReader<Char>::CleanWithoutRewrite(View field, unsigned flags, View& cleaned)
{
    const Char* first = field.data();
    const Char* last = first + field.size();
    if constexpr (sizeof(Char) == 1) {
        if (AlreadyClean(first, field.size(), flags)) {
            cleaned = field;
            return true;
        }
    }
    // The same steps as UnquoteInPlace up to its first rewrite.
    TrimAndStripQuotes(first, last);
    const bool escapes = flags & CSV_BACKSLASH_ESCAPE;
    for (const Char* in = first; in != last; ++in)
        if (*in == Char('"') || (escapes && *in == Char('\\')))
            return false;
    cleaned = View(first, static_cast<std::size_t>(last - first));
    return true;
}

template <typename Char>
typename BasicCsvRecordReader<Char>::View
BasicCsvRecordReader<Char>::UnquoteInPlace(Char* text, std::size_t length, unsigned flags)
{
    if constexpr (sizeof(Char) == 1) {
        if (AlreadyClean(text, length, flags))
            return View(text, length);
    }
    Char* first = text;
    Char* last = text + length;
    TrimAndStripQuotes(first, last);
    const bool escapes = flags & CSV_BACKSLASH_ESCAPE;
    // Most fields need no rewriting: find the first character that does.
    Char* in = first;
    if constexpr (sizeof(Char) == 1) {
        if (!escapes) {
            void* quote = std::memchr(in, '"', static_cast<std::size_t>(last - in));
            in = quote ? static_cast<Char*>(quote) : last;
        }
    }
    while (in != last && *in != Char('"') && !(escapes && *in == Char('\\')))
        ++in;
    if (in == last)
        return View(first, static_cast<std::size_t>(last - first));
    Char* out = in;
    while (in != last) {
        const Char c = *in;
        if (escapes && c == Char('\\')) {
            ++in;
            if (in == last)
                break;
            const Char next = *in++;
            *out++ = next == Char('n') ? Char('\n') : next == Char('r') ? Char('\r') : next;
        } else if (c == Char('"') && last - in >= 2 && in[1] == Char('"')) {
            *out++ = c;
            in += 2;
        } else {
            *out++ = c;
            ++in;
        }
    }
    return View(first, static_cast<std::size_t>(out - first));
}

template <typename Char>
typename BasicCsvRecordReader<Char>::Text BasicCsvRecordReader<Char>::UnquoteField(View field,
                                                                                   unsigned flags)
{
    Text copy(field);
    const View cleaned = UnquoteInPlace(copy.data(), copy.size(), flags);
    return Text(cleaned);
}

template <typename Char> Char BasicCsvRecordReader<Char>::DetectSeparator(View record, unsigned)
{
    std::size_t commas = 0, tabs = 0, semicolons = 0, bars = 0;
    bool inQuotes = false;
    for (Char c : record) {
        if (c == Char('"'))
            inQuotes = !inQuotes;
        else if (inQuotes)
            continue;
        else if (c == Char(','))
            ++commas;
        else if (c == Char('\t'))
            ++tabs;
        else if (c == Char(';'))
            ++semicolons;
        else if (c == Char('|'))
            ++bars;
    }
    if (commas >= tabs && commas >= semicolons && commas >= bars)
        return Char(',');
    if (tabs >= commas && tabs >= semicolons && tabs >= bars)
        return Char('\t');
    if (semicolons >= commas && semicolons >= tabs && semicolons >= bars)
        return Char(';');
    if (bars >= commas && bars >= tabs && bars >= semicolons)
        return Char('|');
    return Char(',');
}

template class BasicCsvRecordReader<char>;
template class BasicCsvRecordReader<char16_t>;

void SplitRecordFromUtf8(std::string_view record, std::vector<std::u16string>& fields,
                         std::string_view separators, unsigned flags)
{
    if (!(flags & CSV_APPEND))
        fields.clear();
    std::vector<std::string_view> raw;
    CsvRecordReader::SplitRecordRaw(record, raw, separators, flags);
    for (std::string_view field : raw)
        fields.push_back(ost::Utf8ToUtf16(CsvRecordReader::UnquoteField(field, flags)));
}

} // namespace quirnel
