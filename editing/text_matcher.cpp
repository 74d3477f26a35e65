#include "editing/text_matcher.h"

#include "editing/unicode_chars.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/core/string.h"

#include <cctype>
#include <strings.h>

namespace quirnel {

namespace {

/// Pattern markers; neither is a character.
constexpr char32_t kAnyCharMark = 0xFFFFFFFE;
constexpr char32_t kAnyRunMark = 0xFFFFFFFF;
constexpr char32_t kReplacement = 0xFFFD;

bool IsUtf8Charset(const std::string& name)
{
    return strcasecmp(name.c_str(), "UTF-8") == 0 || strcasecmp(name.c_str(), "UTF8") == 0;
}

/// Reads UTF-8; a byte that starts no valid sequence reads as U+FFFD on its own.
struct Utf8Reader
{
    const unsigned char* s;
    std::size_t n;

    unsigned Unit(std::size_t pos) const { return s[pos]; }
    std::size_t Decode(std::size_t pos, char32_t& c) const
    {
        const unsigned b0 = s[pos];
        if (b0 < 0x80) {
            c = b0;
            return pos + 1;
        }
        std::size_t length;
        char32_t cp;
        char32_t least;
        if (b0 >= 0xC2 && b0 <= 0xDF) {
            length = 2, cp = b0 & 0x1F, least = 0x80;
        } else if (b0 >= 0xE0 && b0 <= 0xEF) {
            length = 3, cp = b0 & 0x0F, least = 0x800;
        } else if (b0 >= 0xF0 && b0 <= 0xF4) {
            length = 4, cp = b0 & 0x07, least = 0x10000;
        } else {
            c = kReplacement;
            return pos + 1;
        }
        if (n - pos < length) {
            c = kReplacement;
            return pos + 1;
        }
        for (std::size_t i = 1; i < length; ++i) {
            const unsigned b = s[pos + i];
            if ((b & 0xC0) != 0x80) {
                c = kReplacement;
                return pos + 1;
            }
            cp = (cp << 6) | (b & 0x3F);
        }
        if (cp < least || cp > 0x10FFFF || (cp >= 0xD800 && cp < 0xE000)) {
            c = kReplacement;
            return pos + 1;
        }
        c = cp;
        return pos + length;
    }
    /// The character that ends at `pos` (> 0).
    char32_t Previous(std::size_t pos) const
    {
        std::size_t start = pos - 1;
        while (start > 0 && pos - start < 4 && (s[start] & 0xC0) == 0x80)
            --start;
        char32_t c;
        return Decode(start, c) == pos ? c : kReplacement;
    }
};

struct Utf16Reader
{
    const char16_t* s;
    std::size_t n;

    unsigned Unit(std::size_t pos) const { return s[pos]; }
    std::size_t Decode(std::size_t pos, char32_t& c) const
    {
        const char32_t u = s[pos];
        if (u < 0xD800 || u >= 0xE000) {
            c = u;
            return pos + 1;
        }
        if (u < 0xDC00 && pos + 1 < n && s[pos + 1] >= 0xDC00 && s[pos + 1] < 0xE000) {
            c = 0x10000 + ((u - 0xD800) << 10) + (s[pos + 1] - 0xDC00);
            return pos + 2;
        }
        c = kReplacement;
        return pos + 1;
    }
    char32_t Previous(std::size_t pos) const
    {
        const char32_t u = s[pos - 1];
        if (u < 0xD800 || u >= 0xE000)
            return u;
        if (u >= 0xDC00 && pos >= 2 && s[pos - 2] >= 0xD800 && s[pos - 2] < 0xDC00)
            return 0x10000 + ((s[pos - 2] - 0xD800) << 10) + (u - 0xDC00);
        return kReplacement;
    }
};

/// A single-byte code page; its ASCII half is taken as ASCII by the start test.
struct ByteReader
{
    const unsigned char* s;
    std::size_t n;
    const ByteCharset* charset;

    unsigned Unit(std::size_t pos) const { return s[pos]; }
    std::size_t Decode(std::size_t pos, char32_t& c) const
    {
        c = charset->ByteChar(s[pos]);
        return pos + 1;
    }
    char32_t Previous(std::size_t pos) const { return charset->ByteChar(s[pos - 1]); }
};

void AppendUtf16(char32_t c, std::u16string& out)
{
    if (c < 0x10000) {
        out += static_cast<char16_t>(c);
    } else {
        c -= 0x10000;
        out += static_cast<char16_t>(0xD800 + (c >> 10));
        out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    }
}

/// Whether another character folds to the same one as `folded` (itself folded).
bool HasOtherCase(char32_t folded)
{
    if (FoldCase(folded) != folded)
        return true;
    for (std::size_t i = 0; i < detail::kCaseFoldCount; ++i)
        if (detail::kCaseFolds[i].to == folded)
            return true;
    return false;
}

} // namespace

ByteCharset ByteCharset::System()
{
    if (IsUtf8Charset(ost::SystemCharset()))
        return ByteCharset();
    return ForCodePage(ost::kCodePageSystem);
}

ByteCharset ByteCharset::ForCodePage(unsigned codePage)
{
    ByteCharset charset;
    if (codePage == ost::kCodePageUtf8)
        return charset;
    charset.m_utf8 = false;
    ost::CodePageConverter converter(codePage);
    std::u16string wide;
    for (int b = 0; b < 256; ++b) {
        const char byte = static_cast<char>(b);
        char32_t c = kReplacement;
        if (converter.ToUtf16(std::string_view(&byte, 1), wide) && wide.size() == 1)
            c = wide[0];
        charset.m_table[b] = c;
    }
    return charset;
}

std::u32string ByteCharset::Decode(std::string_view text) const
{
    std::u32string out;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    for (std::size_t pos = 0; pos < text.size();) {
        char32_t c;
        pos = m_utf8 ? Utf8Reader{bytes, text.size()}.Decode(pos, c)
                     : ByteReader{bytes, text.size(), this}.Decode(pos, c);
        out += c;
    }
    return out;
}

bool ByteCharset::Encode(std::u32string_view text, std::string& out) const
{
    out.clear();
    bool complete = true;
    for (char32_t c : text) {
        if (m_utf8) {
            ost::AppendUtf8(c, out);
            continue;
        }
        int found = -1;
        for (int b = 0; b < 256 && found < 0; ++b)
            if (m_table[b] == c && c != kReplacement)
                found = b;
        complete = complete && found >= 0;
        out += found >= 0 ? static_cast<char>(found) : '?';
    }
    return complete;
}

std::u32string Utf16ToUtf32(std::u16string_view text)
{
    std::u32string out;
    Utf16Reader reader{text.data(), text.size()};
    for (std::size_t pos = 0; pos < text.size();) {
        char32_t c;
        pos = reader.Decode(pos, c);
        out += c;
    }
    return out;
}

std::size_t Utf16Offset(const ByteCharset& charset, std::string_view text, std::size_t bytes)
{
    if (!charset.IsUtf8())
        return std::min(bytes, text.size());
    Utf8Reader reader{reinterpret_cast<const unsigned char*>(text.data()), text.size()};
    std::size_t units = 0;
    for (std::size_t pos = 0; pos < bytes && pos < text.size();) {
        char32_t c;
        pos = reader.Decode(pos, c);
        units += c >= 0x10000 ? 2 : 1;
    }
    return units;
}

TextMatcher::TextMatcher(std::u32string_view pattern, unsigned flags, ByteCharset charset)
    : m_flags(flags), m_charset(charset)
{
    m_elements.reserve(pattern.size());
    std::size_t segmentStart = 0;
    bool wildcard = false;
    for (char32_t c : pattern) {
        if (c == U'?' && (flags & kMatchAnyChar)) {
            m_elements.push_back(kAnyCharMark);
            wildcard = true;
        } else if (c == U'*' && (flags & kMatchAnyRun)) {
            m_segments.push_back({segmentStart, m_elements.size()});
            m_elements.push_back(kAnyRunMark);
            segmentStart = m_elements.size();
            wildcard = true;
        } else {
            m_elements.push_back(Fold(c));
        }
    }
    m_segments.push_back({segmentStart, m_elements.size()});
    m_shortest = m_elements.size() - (m_segments.size() - 1);
    for (unsigned u = 0; u < 256; ++u)
        m_stop[u] = u >= 128 || Starts(u);
    // Ignoring case changes nothing for a pattern of characters without other cases (digits,
    // punctuation): then a plain search of the code units does the work.
    bool caseless = true;
    for (char32_t c : m_elements)
        caseless = caseless && !HasOtherCase(c);
    m_plain = !wildcard && (!(flags & kMatchIgnoreCase) || caseless) && !m_elements.empty();
    if (m_plain) {
        m_needle8Valid = m_charset.Encode(pattern, m_needle8);
        for (char32_t c : pattern)
            AppendUtf16(c, m_needle16);
    }
}

TextMatcher TextMatcher::FromUtf16(std::u16string_view pattern, unsigned flags, ByteCharset charset)
{
    return TextMatcher(Utf16ToUtf32(pattern), flags, charset);
}

char32_t TextMatcher::Fold(char32_t c) const
{
    if (!(m_flags & kMatchIgnoreCase))
        return c;
    if (c < 128)
        return c >= U'A' && c <= U'Z' ? c + 32 : c;
    return FoldCase(c);
}

bool TextMatcher::Starts(char32_t c) const
{
    const Segment& first = m_segments.front();
    if (first.begin == first.end)
        return true; // a leading "*": any place will do
    const char32_t wanted = m_elements[first.begin];
    return wanted == kAnyCharMark || Fold(c) == wanted;
}

template <class Reader>
bool TextMatcher::MatchSegment(const Reader& reader, std::size_t pos, const Segment& segment,
                               std::size_t& end) const
{
    for (std::size_t k = segment.begin; k < segment.end; ++k) {
        if (pos >= reader.n)
            return false;
        char32_t c;
        pos = reader.Decode(pos, c);
        const char32_t wanted = m_elements[k];
        if (wanted != kAnyCharMark && Fold(c) != wanted)
            return false;
    }
    end = pos;
    return true;
}

template <class Reader> bool TextMatcher::EndsWord(const Reader& reader, std::size_t end) const
{
    if (!(m_flags & kMatchWholeWord) || end >= reader.n)
        return true;
    char32_t c;
    reader.Decode(end, c);
    return !IsWordChar(c);
}

template <class Reader>
bool TextMatcher::MatchAt(const Reader& reader, std::size_t start, std::size_t& end) const
{
    if ((m_flags & kMatchWholeWord) && start > 0 && IsWordChar(reader.Previous(start)))
        return false;
    std::size_t pos;
    if (!MatchSegment(reader, start, m_segments.front(), pos))
        return false;
    const std::size_t last = m_segments.size() - 1;
    if (last == 0) {
        if (!EndsWord(reader, pos))
            return false;
        end = pos;
        return true;
    }
    // Each middle run at its earliest place leaves the most room for the rest; the last run
    // may need a later place for the word test at its end. So "*" takes the shortest run
    // that makes a match.
    for (std::size_t s = 1; s <= last; ++s) {
        for (std::size_t at = pos;;) {
            std::size_t after;
            if (MatchSegment(reader, at, m_segments[s], after) &&
                (s < last || EndsWord(reader, after))) {
                pos = after;
                break;
            }
            if (at >= reader.n)
                return false;
            char32_t skipped;
            at = reader.Decode(at, skipped);
        }
    }
    end = pos;
    return true;
}

template <class Reader>
std::optional<TextMatch> TextMatcher::FindIn(const Reader& reader, std::size_t from) const
{
    // Every character takes at least one code unit: a shorter cell cannot hold a match.
    if (m_elements.empty() || reader.n < m_shortest || reader.n - m_shortest < from)
        return std::nullopt;
    // No match starts where the rest of the cell is too short for one.
    const std::size_t limit = reader.n - m_shortest + 1;
    for (std::size_t pos = from; pos < limit;) {
        // Most text is ASCII that cannot start a match: pass over it four units at a time.
        while (pos + 4 <= limit && !(Stops(reader.Unit(pos)) | Stops(reader.Unit(pos + 1)) |
                                     Stops(reader.Unit(pos + 2)) | Stops(reader.Unit(pos + 3))))
            pos += 4;
        while (pos < limit && !Stops(reader.Unit(pos)))
            ++pos;
        if (pos >= limit)
            break;
        const unsigned unit = reader.Unit(pos);
        std::size_t next;
        bool candidate = true;
        if (unit < 128) {
            next = pos + 1;
        } else {
            char32_t c;
            next = reader.Decode(pos, c);
            candidate = Starts(c);
        }
        std::size_t end;
        if (candidate && MatchAt(reader, pos, end))
            return TextMatch{pos, end - pos};
        pos = next;
    }
    return std::nullopt;
}

namespace {

/// A plain code-unit search with the word test; `needle` is not empty.
template <class View, class Reader>
std::optional<TextMatch> PlainFind(View cell, View needle, std::size_t from, bool wholeWord,
                                   const Reader& reader)
{
    while (from < cell.size()) {
        const std::size_t found = cell.find(needle, from);
        if (found == View::npos)
            return std::nullopt;
        const std::size_t end = found + needle.size();
        bool ok = true;
        if (wholeWord) {
            char32_t after = 0;
            if (end < cell.size())
                reader.Decode(end, after);
            ok = (found == 0 || !IsWordChar(reader.Previous(found))) &&
                 (end >= cell.size() || !IsWordChar(after));
        }
        if (ok)
            return TextMatch{found, needle.size()};
        from = found + 1;
    }
    return std::nullopt;
}

} // namespace

std::optional<TextMatch> TextMatcher::Find(std::string_view cell, std::size_t from) const
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(cell.data());
    const bool whole = (m_flags & kMatchWholeWord) != 0;
    if (m_charset.IsUtf8()) {
        Utf8Reader reader{bytes, cell.size()};
        if (m_plain && m_needle8Valid)
            return PlainFind(cell, std::string_view(m_needle8), from, whole, reader);
        return FindIn(reader, from);
    }
    ByteReader reader{bytes, cell.size(), &m_charset};
    if (m_plain && m_needle8Valid)
        return PlainFind(cell, std::string_view(m_needle8), from, whole, reader);
    return FindIn(reader, from);
}

std::optional<TextMatch> TextMatcher::Find(std::u16string_view cell, std::size_t from) const
{
    Utf16Reader reader{cell.data(), cell.size()};
    if (m_plain)
        return PlainFind(cell, std::u16string_view(m_needle16), from,
                         (m_flags & kMatchWholeWord) != 0, reader);
    return FindIn(reader, from);
}

namespace {

/// The last match that starts before `before`: matches are found from the left, each search
/// starting one character after the previous match's start (`next` steps over that character,
/// so that a "?" never starts inside one).
template <typename View, typename Next>
std::optional<TextMatch> LastMatchBefore(const TextMatcher& matcher, View cell, std::size_t before,
                                         Next next)
{
    std::optional<TextMatch> last;
    for (std::size_t pos = 0; pos < before;) {
        const std::optional<TextMatch> match = matcher.Find(cell, pos);
        if (!match || match->start >= before)
            break;
        last = match;
        pos = next(match->start);
    }
    return last;
}

} // namespace

std::optional<TextMatch> TextMatcher::FindLast(std::string_view cell, std::size_t before) const
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(cell.data());
    return LastMatchBefore(*this, cell, before, [&](std::size_t start) {
        char32_t c;
        return m_charset.IsUtf8() ? Utf8Reader{bytes, cell.size()}.Decode(start, c) : start + 1;
    });
}

std::optional<TextMatch> TextMatcher::FindLast(std::u16string_view cell, std::size_t before) const
{
    return LastMatchBefore(*this, cell, before, [&](std::size_t start) {
        char32_t c;
        return Utf16Reader{cell.data(), cell.size()}.Decode(start, c);
    });
}

TextMatcher NarrowMatcher(std::u16string_view text, unsigned flags, const ByteCharset& charset,
                          std::string* text8)
{
    std::string bytes;
    charset.Encode(Utf16ToUtf32(text), bytes);
    TextMatcher matcher(charset.Decode(bytes), flags, charset);
    if (text8)
        *text8 = std::move(bytes);
    return matcher;
}

} // namespace quirnel
