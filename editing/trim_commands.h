#pragma once
// Trim Whitespace over a chosen scope of cells, and Trim Column Whitespace over the current
// column. Both change cell text only, never the table's shape, and leave the document
// unmodified when there was nothing to trim.

#include <string>

namespace quirnel {

struct ToolContext;

/// Bits of the trim mask handed to TableControl::TrimCell.
inline constexpr int kTrimLeading = 1;
inline constexpr int kTrimTrailing = 2;
inline constexpr int kTrimLineEnds = 4;     ///< spaces and tabs before every line end in a cell
inline constexpr int kTrimReduceSpaces = 8; ///< runs of spaces become one space

/// The report of a trim: "No whitespace characters were found." or the count sentence.
std::string TrimReport(long long characters, long long cells);

void TrimWhitespaceCommand(ToolContext& context);
/// `column` -1: the current column.
void TrimColumnWhitespaceCommand(ToolContext& context, int column = -1);

} // namespace quirnel
