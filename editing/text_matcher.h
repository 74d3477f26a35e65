#pragma once
// The one way the editor looks for a piece of text in a cell: Find and Replace, the column
// search and the row filter all ask a TextMatcher. It compares characters, not code units, so
// that ignoring case and telling words apart work beyond ASCII, for 8-bit cells (in the system
// code page) and UTF-16 cells alike. A matcher is built once per command; searching a cell
// allocates and converts nothing.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

/// Matching option bits.
inline constexpr unsigned kMatchIgnoreCase = 1;
/// A match with a letter, digit or underscore directly before or after it is no match.
inline constexpr unsigned kMatchWholeWord = 2;
/// "?" in the pattern stands for any one character.
inline constexpr unsigned kMatchAnyChar = 4;
/// "*" in the pattern stands for any run of characters, none included.
inline constexpr unsigned kMatchAnyRun = 8;

/// How 8-bit text is read: UTF-8, or a single-byte code page through a table of its 256 bytes.
class ByteCharset
{
public:
    /// UTF-8.
    ByteCharset() = default;
    /// What code page 0 stands for on this machine now.
    static ByteCharset System();
    /// 65001 is UTF-8; any other code page is read one byte per character (bytes it cannot
    /// read alone become U+FFFD).
    static ByteCharset ForCodePage(unsigned codePage);

    bool IsUtf8() const { return m_utf8; }
    /// The character a byte stands for; single-byte code pages only.
    char32_t ByteChar(unsigned char byte) const { return m_table[byte]; }
    std::u32string Decode(std::string_view text) const;
    /// Characters the code page lacks become "?"; false when that happened.
    bool Encode(std::u32string_view text, std::string& out) const;

private:
    bool m_utf8 = true;
    std::array<char32_t, 256> m_table{};
};

/// Code units of the cell (bytes of 8-bit text, UTF-16 units of wide text).
struct TextMatch
{
    std::size_t start = 0;
    std::size_t length = 0;
};

std::u32string Utf16ToUtf32(std::u16string_view text);
/// The UTF-16 length of the first `bytes` bytes of 8-bit text: where a match found in an 8-bit
/// cell lies in the text a widget shows.
std::size_t Utf16Offset(const ByteCharset& charset, std::string_view text, std::size_t bytes);

class TextMatcher
{
public:
    /// `pattern` in characters; `charset` says how the 8-bit cells searched later read.
    TextMatcher(std::u32string_view pattern, unsigned flags, ByteCharset charset = {});
    static TextMatcher FromUtf16(std::u16string_view pattern, unsigned flags,
                                 ByteCharset charset = {});

    /// An empty pattern finds nothing.
    bool Empty() const { return m_elements.empty(); }

    /// The first match that starts at or after `from`.
    std::optional<TextMatch> Find(std::string_view cell, std::size_t from = 0) const;
    std::optional<TextMatch> Find(std::u16string_view cell, std::size_t from = 0) const;
    /// The last match that starts before `before`.
    std::optional<TextMatch> FindLast(std::string_view cell, std::size_t before) const;
    std::optional<TextMatch> FindLast(std::u16string_view cell, std::size_t before) const;

private:
    struct Segment
    {
        std::size_t begin;
        std::size_t end;
    };
    template <class Reader>
    std::optional<TextMatch> FindIn(const Reader& reader, std::size_t from) const;
    template <class Reader>
    bool MatchAt(const Reader& reader, std::size_t start, std::size_t& end) const;
    template <class Reader>
    bool MatchSegment(const Reader& reader, std::size_t pos, const Segment& segment,
                      std::size_t& end) const;
    template <class Reader> bool EndsWord(const Reader& reader, std::size_t end) const;
    bool Starts(char32_t c) const;
    char32_t Fold(char32_t c) const;

    unsigned m_flags = 0;
    ByteCharset m_charset;
    /// Characters (folded when case is ignored) and the two wildcard markers.
    std::vector<char32_t> m_elements;
    /// Runs of m_elements between "*" wildcards.
    std::vector<Segment> m_segments;
    /// Code units the shortest match takes: one for each character of the pattern.
    std::size_t m_shortest = 0;
    /// For each code unit below 256: may a match start there (an ASCII unit), or must the
    /// character there be read to tell (any other).
    std::array<bool, 256> m_stop{};
    bool Stops(unsigned unit) const { return unit >= 256 || m_stop[unit]; }
    /// A plain code-unit search does it: no wildcard, and case counts.
    bool m_plain = false;
    std::string m_needle8;
    bool m_needle8Valid = false;
    std::u16string m_needle16;
};

/// The matcher for 8-bit cells of a text typed as UTF-16: the text as the code page holds it,
/// so that a character it lacks is looked for as the "?" that stands in its place in a cell.
/// `text8` (when given) receives those bytes.
TextMatcher NarrowMatcher(std::u16string_view text, unsigned flags, const ByteCharset& charset,
                          std::string* text8 = nullptr);

} // namespace quirnel
