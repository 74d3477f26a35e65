#pragma once
// The commands that add, remove, copy and reorder whole rows. Each runs its precondition
// check and questions first, then changes the table inside one change frame; a command ended
// at a question leaves the table as it was (an "Unsort" already chosen stays).
//
// Row positions follow what the user sees: a command's "current row" is the control's focus
// row, its neighbours are the rows shown above and below it, and rows hidden by the filter
// keep their places in the file while the shown rows move among themselves.

#include <cstdint>
#include <vector>

namespace quirnel {

struct ToolContext;
class TableControl;

/// The offset of Create Row: past any table, so the new row is always appended.
inline constexpr int kCreateRowOffset = 999'999'999;

/// Create Row (kCreateRowOffset), Insert Row Before (0) and Insert Row After (1).
void InsertRowCommand(ToolContext& context, int offset);
/// Delete Row(s): the selected rows, or the current row alone.
void DeleteRowsCommand(ToolContext& context);
/// Duplicate Row(s): each selected row (or the current one) gets a copy right below it.
void DuplicateRowsCommand(ToolContext& context);
/// Move Row Up / Move Row Down, of the selection or the current row.
void MoveRowsCommand(ToolContext& context, bool up);
void DeduplicateRowsCommand(ToolContext& context);
void ShuffleRowsCommand(ToolContext& context);
/// The grid's "Delete all rows", after a Yes/No question.
void DeleteAllRowsCommand(ToolContext& context);

/// The duplicate-finding key of a cell's stored text: 0x79E2BC9D plus its whole 32-bit
/// little-endian words, its one to three remaining bytes taken as signed, and its length.
std::uint32_t RowTextHash(const void* bytes, std::size_t size);
/// Rows (storage indices, ascending) that equal an earlier row in every data cell, compared as
/// 8-bit bytes or, when `unicode`, as UTF-16 units; of each
/// group of identical rows the first stays.
std::vector<int> FindDuplicateRows(const TableControl& table, bool unicode);

} // namespace quirnel
