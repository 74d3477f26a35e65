#pragma once
// The commands that add, remove, rename, move, combine and fill whole columns, and Shift Cells,
// which slides a row's cells one column left or right. Each runs its precondition check and its
// dialog first, then changes the table inside one change frame. The dialogs are typed requests:
// a refused answer (a duplicate name, no column chosen) is told in a box and the dialog shows
// again with the user's entries.
//
// Column 0 is the "#" column: these commands never create, move, rename, delete or shift it.
// A command given a column (-1: the current one) acts on it, as the heading menu's do on the
// clicked column.

#include "view/table_control.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quirnel {

struct ToolContext;
class TableDocument;

/// The name dialogs show for each column, "#" included: names[c] is column c's, as UTF-8.
std::vector<std::string> ColumnNamesUtf8(const TableControl& table);

/// Create Column, Insert Column Before and Insert Column After share this dialog.
struct NewColumnRequest
{
    /// The command's caption.
    std::string title;
    /// Every column, "#" first: "Insert after:" lists them.
    std::vector<std::string> columns;
    /// UTF-8, at most 255 characters; empty is a valid name.
    std::string name;
    /// A value of kSortMethodNames; the first one to begin with.
    int sortMethod = kSortTextNoCase;
    Alignment alignment = Alignment::Left;
    /// The column the new one goes after (0 puts it first).
    int insertAfter = 0;
    /// Out: "Another" was pressed rather than OK.
    bool another = false;
};

struct DeleteColumnRequest
{
    std::vector<std::string> columns;
    /// In: preselected; out: the column to delete (a data column, else nothing happens).
    int column = -1;
};

struct RenameColumnRequest
{
    std::vector<std::string> columns;
    /// In: preselected; out: the chosen column (-1 when none).
    int column = -1;
    /// UTF-8, at most 255 characters; prefilled with the chosen column's name.
    std::string name;
};

struct CombineColumnsRequest
{
    std::vector<std::string> columns;
    int target = -1;
    int source = -1;
    /// UTF-8.
    std::string separator;
    bool alwaysSeparate = false;
    bool deleteSource = false;
    /// The table has unsaved changes: the dialog advises saving first.
    bool modified = false;
};

enum class ColumnFill
{
    Text,
    Numbers,
    Guids
};

enum class FillScope
{
    All,
    Blank,
    NonBlank
};

struct SetEntireColumnRequest
{
    ColumnFill fill = ColumnFill::Text;
    /// UTF-8.
    std::string text;
    /// A whole number, as typed.
    std::string startNumber = "1";
    FillScope scope = FillScope::All;
};

enum class ShiftScope
{
    All,
    LeftOfPivot,
    RightOfPivot
};

struct ShiftCellsRequest
{
    std::vector<std::string> columns;
    bool left = true;
    ShiftScope scope = ShiftScope::All;
    /// A data column.
    int pivot = 1;
    /// Copies of the affected rows' data cells (UTF-8), for the preview; at most
    /// kShiftPreviewRows of them.
    std::vector<std::vector<std::string>> rows;
};

/// Rows the Shift Cells preview copies at most.
inline constexpr int kShiftPreviewRows = 100;

/// The stretch of data columns a shift touches: lo is the pivot column for "Right of pivot
/// column", else 1; hi the pivot column for "Left of pivot column", else the last column.
struct ShiftBounds
{
    int lo = 1;
    int hi = 0;
};
ShiftBounds ShiftCellBounds(ShiftScope scope, int pivot, int columnCount);

/// The preview rows as they would be after the shift the request describes.
std::vector<std::vector<std::string>> ShiftPreview(const ShiftCellsRequest& request);

/// Create Column (kCreateColumnOffset), Insert Column Before (0) and Insert Column After (1),
/// around `column` (-1: the current column).
inline constexpr int kCreateColumnOffset = 2;
void NewColumnCommand(ToolContext& context, int offset, int column = -1);
void DeleteColumnCommand(ToolContext& context, int column = -1);
void RenameColumnCommand(ToolContext& context, int column = -1);
/// Swaps the column with its neighbour; an impossible move beeps.
void MoveColumnCommand(ToolContext& context, bool left, int column = -1);
void CombineColumnsCommand(ToolContext& context, int column = -1);
void SetEntireColumnCommand(ToolContext& context, int column = -1);
void ShiftCellsCommand(ToolContext& context);

/// A GUID as Windows writes it, "{8-4-4-4-12}" in capital hexadecimal, version 4, from two
/// random words.
std::string FormatGuid(std::uint64_t high, std::uint64_t low);

} // namespace quirnel
