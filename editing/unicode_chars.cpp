#include "editing/unicode_chars.h"

#include <algorithm>
#include <array>

namespace quirnel {

namespace {

/// Latin-1 answers straight from a table: most cells are made of these characters.
struct Latin1Tables
{
    std::array<char32_t, 256> fold{};
    std::array<bool, 256> word{};
};

char32_t FoldFromTable(char32_t c)
{
    const detail::CaseFoldPair* begin = detail::kCaseFolds;
    const detail::CaseFoldPair* end = begin + detail::kCaseFoldCount;
    const auto* found = std::lower_bound(
        begin, end, c, [](const detail::CaseFoldPair& pair, char32_t v) { return pair.from < v; });
    return found != end && found->from == c ? static_cast<char32_t>(found->to) : c;
}

bool WordFromTable(char32_t c)
{
    const detail::CodePointRange* begin = detail::kWordRanges;
    const detail::CodePointRange* end = begin + detail::kWordRangeCount;
    // The first range that ends at or after c.
    const auto* found =
        std::lower_bound(begin, end, c, [](const detail::CodePointRange& range, char32_t v) {
            return range.last < v;
        });
    return found != end && found->first <= c;
}

const Latin1Tables& Latin1()
{
    static const Latin1Tables tables = [] {
        Latin1Tables t;
        for (char32_t c = 0; c < 256; ++c) {
            t.fold[c] = FoldFromTable(c);
            t.word[c] = WordFromTable(c);
        }
        return t;
    }();
    return tables;
}

} // namespace

char32_t FoldCase(char32_t c)
{
    return c < 256 ? Latin1().fold[c] : FoldFromTable(c);
}

bool IsWordChar(char32_t c)
{
    return c < 256 ? Latin1().word[c] : WordFromTable(c);
}

} // namespace quirnel
