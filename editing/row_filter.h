#pragma once
// The row filter: hides every row that holds the filter text in none of its data cells, so
// that the user sees and edits only the rows that do. The toolbar's "Filter:" box and "Filter
// Text" field and the two Options entries decide what it does; the hidden flags then stay until
// the filter is applied again. Hiding never changes the file.

#include <string>

namespace quirnel {

class ByteCharset;
class TableControl;
struct ToolContext;

struct RowFilterSettings
{
    /// The "Filter:" check box.
    bool enabled = false;
    /// The "Filter Text" field.
    std::u16string text;
    /// "Filter: case sensitive" ("FilterCS") and "Filter: whole word" ("FilterWW").
    bool caseSensitive = false;
    bool wholeWord = false;
};

/// Sets every row's hidden flag as the filter says, in storage order, without redrawing: an
/// inactive filter (box unchecked, or no text) shows every row. 8-bit cells are searched with
/// the text in `charset`, UTF-16 cells with the text as it is. True when any row's flag changed.
bool FilterRows(TableControl& table, const RowFilterSettings& settings, const ByteCharset& charset);

/// Applies the filter as the commands of the box, the field and the options do: ends the cell
/// edit in progress, filters, and when anything changed redraws and puts the focus cell back,
/// or forgets it (and ends multiline editing) when its row was hidden.
void ApplyRowFilter(ToolContext& context, const RowFilterSettings& settings);

} // namespace quirnel
