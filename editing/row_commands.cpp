#include "editing/row_commands.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace quirnel {

namespace {

constexpr const char* kUnsortedTip = "Disable the table's sorting so that ";

std::string Caption(int id)
{
    return std::string(CommandLabel(id));
}

std::string_view Icon(int id)
{
    return CommandIconName(id);
}

int Ask(ToolContext& context, const std::string& title, std::string text, std::string_view icon)
{
    ost::MessageBoxRequest box;
    box.title = title;
    box.text = std::move(text);
    box.icon = ost::MessageIcon::Question;
    box.commandIcon = std::string(icon);
    box.buttons = ost::kButtonYes | ost::kButtonNo;
    return context.ui.MessageBox(box);
}

/// A sorted table cannot take row insertions or moves: offers "Unsort" and, once unsorted,
/// asks whether to go on. False when the command is to end.
bool UnsortFirst(ToolContext& context, const std::string& title, std::string_view icon,
                 const std::string& refusal, const std::string& tip, const std::string& again)
{
    TableControl& table = context.document.Table();
    if (table.SortColumn() < 0)
        return true;
    ost::MessageBoxRequest box;
    box.title = title;
    box.text = refusal;
    box.icon = ost::MessageIcon::Question;
    box.commandIcon = std::string(icon);
    box.buttons = ost::kButtonCancel;
    box.extraButtons.push_back({"Unsort", tip, ost::kFirstExtraButtonId});
    if (context.ui.MessageBox(box) != ost::kFirstExtraButtonId)
        return false;
    // The sort is given up for good, whatever the next answer: the user chose it.
    context.host.CommitCellEdit();
    table.Unsort();
    context.host.ShowFocusCell();
    return Ask(context, title, again, icon) == ost::kButtonYes;
}

/// The rows the user sees, in the order shown: a move happens among these, while hidden rows
/// keep their places in the file.
std::vector<int> ShownRows(const TableControl& table)
{
    std::vector<int> rows(static_cast<std::size_t>(table.VisibleRowCount()));
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i] = table.RowAtDisplayPosition(static_cast<int>(i));
    // In file order the shown rows are in storage order except a trailing row; file order it
    // is, so that "up" means towards the start of the file. An order kept from a deleted sort
    // column is what the user sees, so "up" means the row shown above.
    if (table.ShowsFileOrder())
        std::sort(rows.begin(), rows.end());
    return rows;
}

/// The display position of the row, or -1 when there is no such row.
int PositionOf(const TableControl& table, int row)
{
    return row >= 0 && row < table.RowCount() ? table.Row(row).displayPosition : -1;
}

/// The row at the position after clamping it to the shown rows; -1 for an empty table.
int RowAtClampedPosition(const TableControl& table, int position)
{
    const int shown = table.VisibleRowCount();
    const int last = (shown > 0 ? shown : table.RowCount()) - 1;
    if (last < 0)
        return -1;
    return table.RowAtDisplayPosition(std::clamp(position, 0, last));
}

} // namespace

void InsertRowCommand(ToolContext& context, int offset)
{
    const int id = offset >= 2   ? cmd::kCreateRow
                   : offset == 0 ? cmd::kInsertRowBefore
                                 : cmd::kInsertRowAfter;
    const std::string title = Caption(id);
    TableControl& table = context.document.Table();
    if (offset < 2 &&
        !UnsortFirst(context, title, Icon(id),
                     "Rows cannot be inserted when the table is sorted.  To unsort the table, "
                     "right click on a column heading and choose \"Don't sort rows\".",
                     std::string(kUnsortedTip) + "a row can be inserted.",
                     std::string("The table is now unsorted.  Do you still want to insert a "
                                 "new row ") +
                         (offset == 0 ? "before" : "after") + " this one?"))
        return;
    if (CheckToolPreconditions(context, offset < 2 ? kToolNeedsCell : 0, title, Icon(id)))
        return;
    if (table.ColumnCount() < 2)
        return;
    const int current = table.FocusRow();
    const long long wanted =
        current < 0 ? table.RowCount() : static_cast<long long>(current) + offset;
    const int position = static_cast<int>(std::clamp<long long>(wanted, 0, table.RowCount()));
    // Shown in an order kept from a sort, the new row goes next to the current row on screen;
    // in file order the table places it by storage order anyway.
    const int shownAt = current >= 0 && offset < 2 ? PositionOf(table, current) + offset : -1;
    ChangeFrame frame(context);
    if (!table.InsertRows(position, 1, shownAt))
        return;
    frame.Done(PositionOf(table, position), position);
}

void DeleteRowsCommand(ToolContext& context)
{
    TableControl& table = context.document.Table();
    const int selected = table.SelectedRowCount();
    const std::string title = selected >= 2 ? "Delete Rows" : "Delete Row";
    const std::string_view icon = Icon(cmd::kDeleteRows);
    if (CheckToolPreconditions(context, kToolCellOrSelection, title, icon))
        return;
    const int current = table.FocusRow();
    if (selected == 0 && (current < 0 || current >= table.RowCount()))
        return;
    if (!context.prefs.noConfirmDeleteRow) {
        bool never = false;
        ost::MessageBoxRequest box;
        box.title = title;
        box.text = selected > 0 ? "Delete the " + std::to_string(selected) + " selected rows?"
                                : std::string("Delete the current row?");
        box.icon = ost::MessageIcon::Question;
        box.commandIcon = std::string(icon);
        box.buttons = ost::kButtonYes | ost::kButtonNo;
        box.checkBoxText = "Never ask this question again";
        box.checkBoxTip = "If checked, this question will never be asked again.  The row(s) "
                          "will be deleted immediately without confirmation.";
        box.checked = &never;
        const int answer = context.ui.MessageBox(box);
        // The check box speaks for the future, whatever was answered now.
        context.prefs.noConfirmDeleteRow = never;
        if (answer != ost::kButtonYes)
            return;
    }
    // The bound shrinks with p itself: selected rows just below the shrunken bound are not
    // counted. The next current row depends on exactly this.
    int p = PositionOf(table, current);
    for (int i = 0; i < p; ++i)
        if (table.IsRowSelected(table.RowAtDisplayPosition(i)))
            --p;
    std::vector<int> doomed = selected > 0 ? table.SelectedRows() : std::vector<int>{current};
    int firstPosition = table.RowCount();
    for (int row : doomed)
        firstPosition = std::min(firstPosition, PositionOf(table, row));
    if (current < 0)
        firstPosition = 0;
    ChangeFrame frame(context);
    table.DeleteRows(doomed);
    frame.Done(firstPosition, RowAtClampedPosition(table, p));
}

void DuplicateRowsCommand(ToolContext& context)
{
    TableControl& table = context.document.Table();
    const std::string title = Caption(cmd::kDuplicateRows);
    if (CheckToolPreconditions(context, kToolCellOrSelection, title, Icon(cmd::kDuplicateRows)))
        return;
    if (table.SelectedRowCount() > 0) {
        const std::vector<int> sources = table.SelectedRows();
        int firstPosition = table.RowCount();
        for (int row : sources)
            firstPosition = std::min(firstPosition, PositionOf(table, row));
        ChangeFrame frame(context);
        // One pass for the whole selection; each copy still lands right below its source.
        if (table.DuplicateRows(sources).empty())
            return;
        frame.Done(firstPosition, table.FocusRow());
        return;
    }
    const int source = table.FocusRow();
    if (source < 0 || source >= table.RowCount()) {
        context.ui.Message("Duplicate Row", "You must first select the row to be duplicated.",
                           ost::MessageIcon::Information);
        return;
    }
    ChangeFrame frame(context);
    const int copy = table.DuplicateRow(source);
    if (copy < 0)
        return;
    frame.Done(PositionOf(table, source), copy);
}

void MoveRowsCommand(ToolContext& context, bool up)
{
    TableControl& table = context.document.Table();
    const bool selection = table.SelectedRowCount() > 0;
    const int id = up ? cmd::kMoveRowUp : cmd::kMoveRowDown;
    const std::string title =
        std::string(selection ? "Move Rows " : "Move Row ") + (up ? "Up" : "Down");
    if (CheckToolPreconditions(context, kToolCellOrSelection, title, Icon(id)))
        return;
    const std::string what = selection ? "selected rows" : "row";
    if (!UnsortFirst(context, title, Icon(id),
                     "Rows cannot be moved when the table is sorted.  To unsort the table, right "
                     "click on a column heading and choose \"Don't sort rows\".",
                     std::string(kUnsortedTip) + "the " + what + " can be moved.",
                     "The table is now unsorted.  Do you still want to move the " + what + "?"))
        return;
    const int current = table.FocusRow();
    if (!selection && current < 0)
        return;

    // Slots: the shown rows in file order. Selected slots move one step; those already packed
    // against the edge they move towards stay, so a selection with gaps closes up there.
    const std::vector<int> shown = ShownRows(table);
    const int count = static_cast<int>(shown.size());
    std::vector<int> arranged = shown;
    std::vector<int> moving;
    for (int slot = 0; slot < count; ++slot)
        if (selection ? table.IsRowSelected(shown[static_cast<std::size_t>(slot)])
                      : shown[static_cast<std::size_t>(slot)] == current)
            moving.push_back(slot);
    if (!up)
        std::reverse(moving.begin(), moving.end());
    const int edge = up ? 0 : count - 1;
    const int step = up ? -1 : 1;
    std::size_t packed = 0;
    while (packed < moving.size() && moving[packed] == edge - step * static_cast<int>(packed))
        ++packed;
    if (packed == moving.size()) {
        // Nothing can move any further: an impossible move, not an error.
        context.ui.Beep();
        return;
    }
    for (std::size_t i = packed; i < moving.size(); ++i) {
        const auto slot = static_cast<std::size_t>(moving[i]);
        std::swap(arranged[slot], arranged[static_cast<std::size_t>(moving[i] + step)]);
    }
    std::vector<int> from(static_cast<std::size_t>(table.RowCount()));
    std::iota(from.begin(), from.end(), 0);
    for (std::size_t slot = 0; slot < shown.size(); ++slot)
        from[static_cast<std::size_t>(shown[slot])] = arranged[slot];
    ChangeFrame frame(context);
    table.ReorderRows(from);
    frame.Done(0, table.FocusRow());
}

std::uint32_t RowTextHash(const void* bytes, std::size_t size)
{
    std::uint32_t hash = 0x79E2BC9Du;
    if (size == 0)
        return hash;
    const auto* p = static_cast<const unsigned char*>(bytes);
    const std::size_t words = size / 4;
    for (std::size_t i = 0; i < words; ++i) {
        std::uint32_t word;
        std::memcpy(&word, p + i * 4, 4);
        hash += word; // little-endian machines only: the key of a row is not stored anywhere
    }
    for (std::size_t i = words * 4; i < size; ++i)
        hash +=
            static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<signed char>(p[i])));
    return hash + static_cast<std::uint32_t>(size);
}

std::vector<int> FindDuplicateRows(const TableControl& table, bool unicode)
{
    const int rows = table.RowCount();
    const int columns = table.ColumnCount();
    if (rows < 2 || columns < 2)
        return {};
    struct Keyed
    {
        std::uint32_t key;
        std::int32_t row;
    };
    std::vector<Keyed> keys(static_cast<std::size_t>(rows));
    std::vector<std::string_view> texts(static_cast<std::size_t>(columns - 1));
    for (int row = 0; row < rows; ++row) {
        std::uint32_t key = 0;
        if (unicode) {
            for (int column = 1; column < columns; ++column) {
                const std::u16string_view text = table.CellText16(row, column);
                key += RowTextHash(text.data(), text.size() * sizeof(char16_t));
            }
        } else {
            table.RowText8(row, texts.data());
            for (const std::string_view text : texts)
                key += RowTextHash(text.data(), text.size());
        }
        keys[static_cast<std::size_t>(row)] = {key, row};
    }
    // Buckets are runs of equal keys; within one, rows stay in ascending order.
    std::stable_sort(keys.begin(), keys.end(),
                     [](const Keyed& a, const Keyed& b) { return a.key < b.key; });
    auto equalRows = [&](int a, int b) {
        for (int column = 1; column < columns; ++column) {
            if (unicode ? table.CellText16(a, column) != table.CellText16(b, column)
                        : table.CellText8(a, column) != table.CellText8(b, column))
                return false;
        }
        return true;
    };
    std::vector<int> duplicates;
    for (std::size_t begin = 0; begin < keys.size();) {
        std::size_t end = begin + 1;
        while (end < keys.size() && keys[end].key == keys[begin].key)
            ++end;
        for (std::size_t later = end - 1; later > begin; --later) {
            for (std::size_t earlier = later; earlier-- > begin;) {
                if (equalRows(keys[later].row, keys[earlier].row)) {
                    duplicates.push_back(keys[later].row);
                    break;
                }
            }
        }
        begin = end;
    }
    std::sort(duplicates.begin(), duplicates.end());
    return duplicates;
}

void DeduplicateRowsCommand(ToolContext& context)
{
    TableControl& table = context.document.Table();
    const std::string title = Caption(cmd::kDeduplicateRows);
    const std::string_view icon = Icon(cmd::kDeduplicateRows);
    if (CheckToolPreconditions(context, kToolNeedsRows, title, icon))
        return;
    context.host.CommitCellEdit();
    const std::vector<int> duplicates = FindDuplicateRows(table, context.document.IsUnicode());
    if (duplicates.empty()) {
        ost::MessageBoxRequest box;
        box.title = title;
        box.text = "There are no duplicate rows.";
        box.icon = ost::MessageIcon::Information;
        box.commandIcon = std::string(icon);
        context.ui.MessageBox(box);
        return;
    }
    if (Ask(context, title,
            "There are " + std::to_string(duplicates.size()) +
                " rows that are duplicates of other rows.  Do you wish to discard them?",
            icon) != ost::kButtonYes)
        return;
    // Each deleted row that lay before the current row lowers its position by one.
    const int before = PositionOf(table, table.FocusRow());
    int p = before;
    for (int row : duplicates)
        if (PositionOf(table, row) < before)
            --p;
    ChangeFrame frame(context);
    table.DeleteRows(duplicates);
    frame.Done(0, p < 0 ? -1 : RowAtClampedPosition(table, p));
}

void ShuffleRowsCommand(ToolContext& context)
{
    TableControl& table = context.document.Table();
    if (CheckToolPreconditions(context, kToolNeedsTwoRows, Caption(cmd::kShuffleRows),
                               Icon(cmd::kShuffleRows)))
        return;
    ChangeFrame frame(context);
    table.Shuffle(context.random.Next());
    frame.Done(0, table.FocusRow());
}

void DeleteAllRowsCommand(ToolContext& context)
{
    TableControl& table = context.document.Table();
    const std::string title = "Delete All Rows";
    if (CheckToolPreconditions(context, kToolNeedsRows, title, Icon(cmd::kDeleteRows)))
        return;
    const int rows = table.RowCount();
    if (Ask(context, title,
            rows == 1 ? std::string("Delete the only row of the table?")
                      : "Delete all " + std::to_string(rows) + " rows of the table?",
            Icon(cmd::kDeleteRows)) != ost::kButtonYes)
        return;
    ChangeFrame frame(context);
    table.DeleteRows(0, rows);
    frame.Done(0, -1);
}

} // namespace quirnel
