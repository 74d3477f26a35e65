#include "document/csv_writer.h"

#include <array>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quirnel {

namespace {

enum QuoteClass : unsigned char
{
    kForcesQuotes = 1,
    kQuoteMark = 2,
    kBackslash = 4,
};

/// Characters that force quoting are all four separators, whatever the file's own one is.
constexpr std::array<unsigned char, 256> MakeQuoteClasses()
{
    std::array<unsigned char, 256> table{};
    for (char c : std::string_view(",\"\t\r\n;|"))
        table[static_cast<unsigned char>(c)] = kForcesQuotes;
    table[static_cast<unsigned char>('"')] |= kQuoteMark;
    table[static_cast<unsigned char>('\\')] = kBackslash;
    return table;
}
constexpr std::array<unsigned char, 256> kQuoteClasses = MakeQuoteClasses();

template <typename Char> unsigned char QuoteClassOf(Char c)
{
    const auto unit = static_cast<std::make_unsigned_t<Char>>(c);
    return unit < 256 ? kQuoteClasses[unit] : 0;
}

template <typename Char>
void AppendQuoted(std::basic_string<Char>& out, std::basic_string_view<Char> text, unsigned flags)
{
    const bool escapes = flags & CSV_BACKSLASH_ESCAPE;
    // One pass gathers every class present; no branch per character, so it runs fast over the
    // millions of cells of a large file.
    unsigned classes = 0;
    for (Char c : text)
        classes |= QuoteClassOf(c);
    bool quote = (flags & CSV_QUOTE_ALL) || (classes & kForcesQuotes);
    const bool rewrite = (classes & kQuoteMark) || (escapes && (classes & kBackslash));
    if (!quote && !text.empty() &&
        (text.front() == Char(' ') || text.front() == Char('\'') || text.back() == Char(' ')))
        quote = true;
    if (quote)
        out.push_back(Char('"'));
    if (!rewrite) {
        out.append(text);
    } else {
        for (Char c : text) {
            if (c == Char('"') || (escapes && c == Char('\\')))
                out.push_back(c);
            out.push_back(c);
        }
    }
    if (quote)
        out.push_back(Char('"'));
}

template <typename Char>
bool WriteFields(BasicRecordSink<Char>& out, unsigned flags,
                 const std::vector<std::basic_string_view<Char>>& fields, Char separator,
                 std::basic_string_view<Char> newline)
{
    if (fields.empty())
        return true;
    // One buffer per thread and character width: records are written millions of times.
    thread_local std::basic_string<Char> record;
    record.clear();
    if (fields.size() == 1 && fields[0].empty()) {
        record.push_back(Char('"'));
        record.push_back(Char('"'));
    } else {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (i)
                record.push_back(separator);
            AppendQuoted(record, fields[i], flags);
        }
    }
    record.append(newline);
    return out.Write(record);
}

/// The classes present in the text, one byte at a time.
unsigned ScanClasses(const unsigned char* bytes, std::size_t size)
{
    unsigned classes = 0;
    for (std::size_t i = 0; i < size; ++i)
        classes |= kQuoteClasses[bytes[i]];
    return classes;
}

std::uint64_t Load64(const unsigned char* at)
{
    std::uint64_t value = 0;
    std::memcpy(&value, at, sizeof value);
    return value;
}

std::uint32_t Load32(const unsigned char* at)
{
    std::uint32_t value = 0;
    std::memcpy(&value, at, sizeof value);
    return value;
}

#if defined(__SSE2__)
/// Whether the block holds any character with a quote class.
bool AnyClassed(__m128i block)
{
    auto hits = [block](char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
    const __m128i a =
        _mm_or_si128(_mm_or_si128(hits(','), hits('"')), _mm_or_si128(hits('\t'), hits('\r')));
    const __m128i b =
        _mm_or_si128(_mm_or_si128(hits('\n'), hits(';')), _mm_or_si128(hits('|'), hits('\\')));
    return _mm_movemask_epi8(_mm_or_si128(a, b)) != 0;
}
#endif

/// ScanClasses, sixteen bytes at a time where it can. Nearly every cell has no classed
/// character, so only the question "any?" is asked of whole blocks; the rare yes is answered
/// byte by byte. Every load lies inside the text: short texts are read as two overlapping
/// halves, and a long text's last block ends at its last byte.
unsigned Classes(const unsigned char* bytes, std::size_t size)
{
#if defined(__SSE2__)
    bool any = false;
    if (size >= 16) {
        std::size_t i = 0;
        for (; i + 16 <= size && !any; i += 16)
            any = AnyClassed(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i)));
        if (!any && i != size)
            any = AnyClassed(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + size - 16)));
    } else if (size >= 8) {
        any = AnyClassed(_mm_set_epi64x(static_cast<long long>(Load64(bytes + size - 8)),
                                        static_cast<long long>(Load64(bytes))));
    } else if (size >= 4) {
        // The zero bytes filling the block have no class.
        any = AnyClassed(_mm_set_epi32(0, 0, static_cast<int>(Load32(bytes + size - 4)),
                                       static_cast<int>(Load32(bytes))));
    } else {
        return ScanClasses(bytes, size);
    }
    return any ? ScanClasses(bytes, size) : 0;
#else
    return ScanClasses(bytes, size);
#endif
}

/// Copies the text, short ones as two overlapping fixed-size moves rather than a call.
char* PutBytes(char* out, const unsigned char* bytes, std::size_t size)
{
    if (size >= 8 && size <= 16) {
        std::memcpy(out, bytes, 8);
        std::memcpy(out + size - 8, bytes + size - 8, 8);
    } else if (size >= 4 && size < 8) {
        std::memcpy(out, bytes, 4);
        std::memcpy(out + size - 4, bytes + size - 4, 4);
    } else if (size != 0) {
        // An empty view may have no address at all, which memcpy must not be given.
        std::memcpy(out, bytes, size);
    }
    return out + size;
}

/// AppendQuoted for 8-bit text into memory known to be large enough (2 * size + 2).
char* PutQuoted(char* out, std::string_view text, unsigned flags)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t size = text.size();
    const unsigned classes = Classes(bytes, size);
    const bool escapes = flags & CSV_BACKSLASH_ESCAPE;
    bool quote = (flags & CSV_QUOTE_ALL) || (classes & kForcesQuotes);
    const bool rewrite = (classes & kQuoteMark) || (escapes && (classes & kBackslash));
    if (!quote && size != 0 && (bytes[0] == ' ' || bytes[0] == '\'' || bytes[size - 1] == ' '))
        quote = true;
    if (quote)
        *out++ = '"';
    if (!rewrite) {
        out = PutBytes(out, bytes, size);
    } else if (!escapes) {
        // Quote marks are few even in a text that has them: copy the runs between them.
        const unsigned char* at = bytes;
        const unsigned char* const end = bytes + size;
        while (const void* found = std::memchr(at, '"', static_cast<std::size_t>(end - at))) {
            const auto* mark = static_cast<const unsigned char*>(found);
            out = PutBytes(out, at, static_cast<std::size_t>(mark - at) + 1);
            *out++ = '"';
            at = mark + 1;
        }
        out = PutBytes(out, at, static_cast<std::size_t>(end - at));
    } else {
        for (std::size_t k = 0; k < size; ++k) {
            const char c = static_cast<char>(bytes[k]);
            if (c == '"' || (escapes && c == '\\'))
                *out++ = c;
            *out++ = c;
        }
    }
    if (quote)
        *out++ = '"';
    return out;
}

} // namespace

std::size_t RecordBound(const std::string_view* fields, std::size_t count, std::string_view newline)
{
    std::size_t bound = newline.size() + 2;
    for (std::size_t i = 0; i < count; ++i)
        bound += 2 * fields[i].size() + 3;
    return bound;
}

char* PutRecord(char* out, unsigned flags, const std::string_view* fields, std::size_t count,
                char separator, std::string_view newline)
{
    if (count == 0)
        return out;
    if (count == 1 && fields[0].empty()) {
        *out++ = '"';
        *out++ = '"';
    } else {
        out = PutQuoted(out, fields[0], flags);
        for (std::size_t i = 1; i < count; ++i) {
            *out++ = separator;
            out = PutQuoted(out, fields[i], flags);
        }
    }
    if (!newline.empty())
        std::memcpy(out, newline.data(), newline.size());
    return out + newline.size();
}

void AppendQuotedField(std::string& out, std::string_view text, unsigned flags)
{
    AppendQuoted(out, text, flags);
}

void AppendQuotedField(std::u16string& out, std::u16string_view text, unsigned flags)
{
    AppendQuoted(out, text, flags);
}

std::string QuoteField(std::string_view text, unsigned flags)
{
    std::string out;
    AppendQuoted(out, text, flags);
    return out;
}

std::u16string QuoteField(std::u16string_view text, unsigned flags)
{
    std::u16string out;
    AppendQuoted(out, text, flags);
    return out;
}

bool WriteRecord(RecordSink& out, unsigned flags, const std::vector<std::string_view>& fields,
                 char separator, std::string_view newline)
{
    if (fields.empty())
        return true;
    // One buffer per thread: records are written millions of times. It only ever grows, so
    // its bytes are cleared once, not per record.
    thread_local std::string record;
    const std::size_t bound = RecordBound(fields.data(), fields.size(), newline);
    if (record.size() < bound)
        record.resize(bound);
    const char* end =
        PutRecord(record.data(), flags, fields.data(), fields.size(), separator, newline);
    return out.Write(
        std::string_view(record.data(), static_cast<std::size_t>(end - record.data())));
}

bool WriteRecord(RecordSink16& out, unsigned flags, const std::vector<std::u16string_view>& fields,
                 char16_t separator, std::u16string_view newline)
{
    return WriteFields(out, flags, fields, separator, newline);
}

} // namespace quirnel
