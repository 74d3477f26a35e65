#pragma once
// The two character properties text matching needs beyond ASCII: simple case folding (one
// character to one character, so that offsets found in folded text are offsets in the cell) and
// whether a character belongs to a word (a letter, a combining mark, a digit or an underscore).

#include <cstddef>
#include <cstdint>

namespace quirnel {

/// The character that `c` and its other-case forms share; `c` itself when it has no case.
char32_t FoldCase(char32_t c);
/// Letters, combining marks, decimal and letter numbers, and the underscore.
bool IsWordChar(char32_t c);

namespace detail {
struct CaseFoldPair
{
    std::uint32_t from;
    std::uint32_t to;
};
struct CodePointRange
{
    std::uint32_t first;
    std::uint32_t last;
};
/// Sorted by `from` / `first`; in unicode_tables.cpp.
extern const CaseFoldPair kCaseFolds[];
extern const std::size_t kCaseFoldCount;
extern const CodePointRange kWordRanges[];
extern const std::size_t kWordRangeCount;
} // namespace detail

} // namespace quirnel
