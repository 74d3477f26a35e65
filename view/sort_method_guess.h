#pragma once
// The sort method a freshly loaded column starts with when the file has no remembered
// properties: numbers sort as numbers, dates as dates and memory sizes by size, judged from a
// sample of the column so that the guess costs nothing noticeable on a million-row file.

namespace quirnel {

class TableControl;

/// Rows looked at: this many from the top, and as many again spread over the rest.
inline constexpr int kSortGuessSample = 1000;

/// kSortNumeric when every non-empty sampled cell is wholly a number; else kSortDateTime when
/// every one is a date or time (either day/month order); else kSortMemory when every one is a
/// memory size with a unit; otherwise, and for a column without a non-empty sampled cell,
/// kSortTextNoCase.
int GuessSortMethod(const TableControl& table, int column, bool dayFirst);

/// Sets every data column's sort method from GuessSortMethod.
void GuessSortMethods(TableControl& table);

} // namespace quirnel
