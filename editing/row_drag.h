#pragma once
// Rows dragged by the "#" column to a new place. The drag carries our own payload under the
// row-drag format: which window's rows they are and their storage indices, so a drop from
// another window or program is never mistaken for one of ours.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

struct ToolContext;

struct RowDragPayload
{
    /// Tells drags of this window from those of another instance.
    std::uint64_t source = 0;
    /// Storage indices, ascending.
    std::vector<int> rows;
};

/// "source:row,row,..." in decimal.
std::string EncodeRowDrag(const RowDragPayload& payload);
/// nullopt for anything that is not such a text.
std::optional<RowDragPayload> DecodeRowDrag(std::string_view text);

/// The rows a drag from `pressedRow` takes: the selection when that row is selected, else the
/// row alone. Storage indices, ascending.
std::vector<int> DraggedRows(const ToolContext& context, int pressedRow);

/// Moves `rows` (storage indices) so that they stand, in their order, right before `target`
/// (-1 or past the last row: at the end). Only a table shown in file order can take it: a
/// sorted one would put the rows straight back, so that is an impossible move and beeps, as is
/// a drop that changes nothing.
void MoveRowsToCommand(ToolContext& context, const std::vector<int>& rows, int target);

} // namespace quirnel
