#pragma once
// What the table search remembers between commands: the options of the last "Search" dialog,
// whether a search was made since the file was opened, the direction it went and where its
// last match lies, so that Find/Next and Find/Previous carry on from there; and the same for the
// grid's column search.

#include <cstddef>
#include <string>

namespace quirnel {

/// The "Direction: " list, in its order.
enum class SearchDirection : int
{
    ForwardFromHere = 0,
    ForwardFromBeginning = 1,
    BackwardFromHere = 2,
    BackwardFromEnd = 3,
};

inline bool IsBackward(SearchDirection direction)
{
    return direction == SearchDirection::BackwardFromHere ||
           direction == SearchDirection::BackwardFromEnd;
}

/// The "Search" dialog's fields. The texts are edited as UTF-16; an 8-bit table searches them
/// in the system code page.
struct SearchOptions
{
    std::u16string searchText;
    /// "Replace occurrences with:"
    bool replace = false;
    std::u16string replaceText;
    bool caseSensitive = false;
    bool wholeWord = false;
    /// "Use ? wildcard", "Use * wildcard"
    bool anyChar = false;
    bool anyRun = false;
    SearchDirection direction = SearchDirection::ForwardFromHere;
    bool promptOnReplace = false;
    bool replaceAll = true;
};

struct SearchState
{
    SearchOptions options;
    /// A search was made since the file was opened.
    bool made = false;
    /// The last dialog chose a backward direction.
    bool backward = false;
    /// The last match: storage row, column, code units within the cell; row -1 when none.
    int row = -1;
    int column = -1;
    std::size_t start = 0;
    std::size_t length = 0;
    /// Set while a search runs: a search command then is ignored.
    bool running = false;
};

struct ColumnSearchState
{
    std::u16string text;
    bool caseSensitive = false;
    bool wholeWord = false;
    bool made = false;
    /// The last match: storage row and column; -1 when none.
    int row = -1;
    int column = -1;
};

} // namespace quirnel
