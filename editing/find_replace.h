#pragma once
// Find, Find/Replace, Find/Next and Find/Previous over the whole table, and the grid's column
// search. Both walk the rows in the order the user sees them, skip hidden rows and the "#"
// column, and look for the text with one TextMatcher.

#include "editing/search_options.h"

#include <string>

namespace quirnel {

struct ToolContext;

/// The "Search" dialog: the options in and out.
struct SearchRequest
{
    /// The caption of the command that asks; the dialog itself is titled "Search".
    std::string caption;
    SearchOptions options;
    /// The table holds UTF-16 cells (the dialog then edits 16-bit text).
    bool unicode = false;
};

/// The "Search Column" dialog.
struct SearchColumnRequest
{
    /// The column's name, UTF-8.
    std::string columnName;
    std::u16string text;
    bool caseSensitive = false;
    bool wholeWord = false;
};

/// How the table search was asked for.
enum class SearchMode
{
    Find,        ///< the dialog, search only
    FindReplace, ///< the dialog with the replacement part on
    Continue,    ///< Find/Next and Find/Previous: on from the last match
};

/// The reason the options cannot be searched with, or "" when they can.
std::string SearchOptionsRefusal(const SearchOptions& options);

/// The four table-wide commands; `reverse` (Find/Previous) turns the remembered direction
/// round for this one search. `commandId` names the command for the titles of its boxes.
void SearchTableCommand(ToolContext& context, SearchMode mode, bool reverse, int commandId);

/// Search Column (`continueSearch` false) and Search Column/Continue, on the current column or
/// on `column` when the heading menu names one.
void SearchColumnCommand(ToolContext& context, bool continueSearch, int column = -1);

/// "%d cells were changed."
std::string CellsChangedMessage(long long cells);

} // namespace quirnel
