#include "editing/row_drag.h"

#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/tool_context.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <charconv>

namespace quirnel {

std::string EncodeRowDrag(const RowDragPayload& payload)
{
    std::string text = std::to_string(payload.source) + ":";
    for (std::size_t i = 0; i < payload.rows.size(); ++i) {
        if (i > 0)
            text += ',';
        text += std::to_string(payload.rows[i]);
    }
    return text;
}

std::optional<RowDragPayload> DecodeRowDrag(std::string_view text)
{
    RowDragPayload payload;
    const char* at = text.data();
    const char* end = text.data() + text.size();
    auto [afterSource, sourceError] = std::from_chars(at, end, payload.source);
    if (sourceError != std::errc() || afterSource == end || *afterSource != ':')
        return std::nullopt;
    at = afterSource + 1;
    while (at < end) {
        int row = 0;
        auto [next, error] = std::from_chars(at, end, row);
        if (error != std::errc() || row < 0)
            return std::nullopt;
        payload.rows.push_back(row);
        at = next;
        if (at == end)
            break;
        // A comma must be followed by another row.
        if (*at != ',' || ++at == end)
            return std::nullopt;
    }
    if (payload.rows.empty())
        return std::nullopt;
    return payload;
}

std::vector<int> DraggedRows(const ToolContext& context, int pressedRow)
{
    const TableControl& table = context.document.Table();
    if (pressedRow < 0 || pressedRow >= table.RowCount())
        return {};
    if (table.IsRowSelected(pressedRow))
        return table.SelectedRows();
    return {pressedRow};
}

void MoveRowsToCommand(ToolContext& context, const std::vector<int>& rows, int target)
{
    TableControl& table = context.document.Table();
    const int count = table.RowCount();
    std::vector<char> moving(static_cast<std::size_t>(count), 0);
    std::vector<int> moved;
    for (int row : rows) {
        if (row >= 0 && row < count && !moving[static_cast<std::size_t>(row)]) {
            moving[static_cast<std::size_t>(row)] = 1;
            moved.push_back(row);
        }
    }
    std::sort(moved.begin(), moved.end());
    if (target < 0 || target > count)
        target = count;
    if (moved.empty() || !table.ShowsFileOrder()) {
        context.ui.Beep();
        return;
    }
    // The rows that stay keep their order; the moved ones go in before the target.
    std::vector<int> from;
    from.reserve(static_cast<std::size_t>(count));
    bool placed = false;
    for (int row = 0; row <= count; ++row) {
        if (row == target) {
            from.insert(from.end(), moved.begin(), moved.end());
            placed = true;
        }
        if (row < count && !moving[static_cast<std::size_t>(row)])
            from.push_back(row);
    }
    if (!placed)
        from.insert(from.end(), moved.begin(), moved.end());
    bool same = true;
    for (int i = 0; i < count && same; ++i)
        same = from[static_cast<std::size_t>(i)] == i;
    if (same) {
        context.ui.Beep();
        return;
    }
    const int first =
        static_cast<int>(std::find(from.begin(), from.end(), moved.front()) - from.begin());
    ChangeFrame frame(context);
    if (!table.ReorderRows(from))
        return;
    frame.Done(0, first);
}

} // namespace quirnel
