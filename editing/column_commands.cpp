#include "editing/column_commands.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <type_traits>

namespace quirnel {

namespace {

std::string Caption(int id)
{
    return std::string(CommandLabel(id));
}

void Tell(ToolContext& context, const std::string& title, const char* text, int id)
{
    InformUser(context, title, text, CommandIconName(id));
}

bool IsDataColumn(const TableControl& table, int column)
{
    return column >= 1 && column < table.ColumnCount();
}

/// The column a command acts on: the one given (a clicked heading), else the current one.
int ChosenColumn(const TableControl& table, int column)
{
    return column >= 0 ? column : table.FocusColumn();
}

/// A clicked heading names the column itself: the command needs no current column then.
unsigned WithoutCurrentColumn(const TableControl& table, unsigned flags, int column)
{
    return IsDataColumn(table, column) ? flags & ~kToolNeedsColumn : flags;
}

/// UTF-8 from a dialog as 8-bit text in the system code page.
std::string SystemText(std::string_view utf8)
{
    std::string out;
    ost::CodePageConverter(ost::kCodePageSystem).FromUtf16(ost::Utf8ToUtf16(utf8), out, '?');
    return out;
}

// Cells are read and written in the document's text mode, 8-bit (char) or UTF-16 (char16_t),
// so that no command converts a million cells it only moves around.
template <class Char> std::basic_string<Char> FromUtf8(std::string_view utf8)
{
    if constexpr (std::is_same_v<Char, char>)
        return SystemText(utf8);
    else
        return ost::Utf8ToUtf16(utf8);
}

template <class Char>
std::basic_string_view<Char> CellView(const TableDocument& document, int row, int column)
{
    if constexpr (std::is_same_v<Char, char>)
        return document.CellText8(row, column);
    else
        return document.CellText16(row, column);
}

template <class Char>
void StoreCell(TableDocument& document, int row, int column, std::basic_string_view<Char> text)
{
    if constexpr (std::is_same_v<Char, char>)
        document.SetCellText8(row, column, text);
    else
        document.SetCellText16(row, column, text);
}

/// Runs `work` with a char for 8-bit documents and a char16_t for UTF-16 ones.
template <class Work> void InTextMode(const TableDocument& document, Work&& work)
{
    if (document.IsUnicode())
        work(char16_t{});
    else
        work(char{});
}

/// The data column named `utf8`, compared exactly in the document's text mode, other than
/// `except`; -1 when none.
int FindColumnNamed(const TableDocument& document, const std::string& utf8, int except)
{
    const std::string name = document.IsUnicode() ? utf8 : SystemText(utf8);
    for (int column = 1; column < document.ColumnCount(); ++column)
        if (column != except && document.ColumnName(column) == name)
            return column;
    return -1;
}

/// The current column after `deleted` went, as Delete Column leaves it: the same index,
/// within the data columns.
int ColumnAfterDeleting(const TableControl& table, int deleted)
{
    return table.ColumnCount() > 1 ? std::clamp(deleted, 1, table.ColumnCount() - 1) : -1;
}

std::string NameUtf8(const TableDocument& document, int column)
{
    return document.IsUnicode() ? document.ColumnName(column)
                                : ost::Utf16ToUtf8(document.ColumnNameWide(column));
}

template <class Char>
void CombineRows(TableDocument& document, const CombineColumnsRequest& request)
{
    using View = std::basic_string_view<Char>;
    const std::basic_string<Char> separator = FromUtf8<Char>(request.separator);
    std::basic_string<Char> combined;
    for (int row = 0; row < document.RowCount(); ++row) {
        const View target = CellView<Char>(document, row, request.target);
        const View source = CellView<Char>(document, row, request.source);
        combined.assign(target);
        if (request.alwaysSeparate || (!target.empty() && !source.empty()))
            combined.append(separator);
        combined.append(source);
        // A row that gains nothing keeps its cell as it is.
        if (combined.size() != target.size())
            StoreCell<Char>(document, row, request.target, combined);
    }
}

bool InFillScope(const TableControl& table, int row, int column, FillScope scope)
{
    if (scope == FillScope::All)
        return true;
    return table.CellIsEmpty(row, column) == (scope == FillScope::Blank);
}

/// A whole number as typed, blanks around it allowed.
bool ParseStartNumber(std::string_view text, long long& number)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

template <class Char>
void FillColumn(ToolContext& context, int column, const SetEntireColumnRequest& request,
                long long number)
{
    TableDocument& document = context.document;
    const TableControl& table = document.Table();
    const std::basic_string<Char> text = FromUtf8<Char>(request.text);
    std::basic_string<Char> made;
    // Top to bottom as shown, so that numbers count down the screen.
    for (int position = 0; position < table.RowCount(); ++position) {
        const int row = table.RowAtDisplayPosition(position);
        if (!InFillScope(table, row, column, request.scope))
            continue;
        if (request.fill == ColumnFill::Text) {
            StoreCell<Char>(document, row, column, text);
            continue;
        }
        char digits[48];
        std::string_view ascii;
        std::string guid;
        if (request.fill == ColumnFill::Numbers) {
            const auto result = std::to_chars(digits, digits + sizeof digits, number++);
            ascii = std::string_view(digits, static_cast<std::size_t>(result.ptr - digits));
        } else {
            const std::uint64_t high = context.random.Next();
            guid = FormatGuid(high, context.random.Next());
            ascii = guid;
        }
        made.assign(ascii.begin(), ascii.end());
        StoreCell<Char>(document, row, column, made);
    }
}

/// The rows Shift Cells works on, as shown: the selected rows, else the current row.
std::vector<int> ShiftedRows(const TableControl& table)
{
    std::vector<int> rows;
    if (table.SelectedRowCount() > 0)
        rows = table.SelectedRows();
    else if (table.FocusRow() >= 0 && table.FocusRow() < table.RowCount())
        rows.push_back(table.FocusRow());
    std::sort(rows.begin(), rows.end(), [&table](int a, int b) {
        return table.DisplayPosition(a) < table.DisplayPosition(b);
    });
    return rows;
}

template <class Text> void ShiftRowCells(std::vector<Text>& cells, bool left, ShiftBounds bounds)
{
    const int lo = bounds.lo;
    const int hi = std::min(bounds.hi, static_cast<int>(cells.size()));
    if (lo < 1 || lo > hi)
        return;
    auto cell = [&cells](int column) -> Text& {
        return cells[static_cast<std::size_t>(column - 1)];
    };
    // The text pushed out at the far end is lost.
    if (left) {
        for (int c = lo; c < hi; ++c)
            cell(c) = std::move(cell(c + 1));
        cell(hi) = Text();
    } else {
        for (int c = hi; c > lo; --c)
            cell(c) = std::move(cell(c - 1));
        cell(lo) = Text();
    }
}

template <class Char>
void ShiftRows(TableDocument& document, const std::vector<int>& rows, bool left, ShiftBounds bounds)
{
    const int columns = document.ColumnCount();
    std::vector<std::basic_string<Char>> cells(static_cast<std::size_t>(columns - 1));
    for (int row : rows) {
        for (int c = bounds.lo; c <= bounds.hi; ++c)
            cells[static_cast<std::size_t>(c - 1)] = CellView<Char>(document, row, c);
        ShiftRowCells(cells, left, bounds);
        for (int c = bounds.lo; c <= bounds.hi; ++c)
            StoreCell<Char>(document, row, c,
                            std::basic_string_view<Char>(cells[static_cast<std::size_t>(c - 1)]));
    }
}

} // namespace

std::vector<std::string> ColumnNamesUtf8(const TableControl& table)
{
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(table.ColumnCount()));
    for (int column = 0; column < table.ColumnCount(); ++column)
        names.push_back(table.ColumnNameUtf8(column));
    return names;
}

ShiftBounds ShiftCellBounds(ShiftScope scope, int pivot, int columnCount)
{
    ShiftBounds bounds;
    bounds.lo = scope == ShiftScope::RightOfPivot ? pivot : 1;
    bounds.hi = scope == ShiftScope::LeftOfPivot ? pivot : columnCount - 1;
    return bounds;
}

std::vector<std::vector<std::string>> ShiftPreview(const ShiftCellsRequest& request)
{
    const ShiftBounds bounds =
        ShiftCellBounds(request.scope, request.pivot, static_cast<int>(request.columns.size()));
    std::vector<std::vector<std::string>> rows = request.rows;
    for (std::vector<std::string>& row : rows)
        ShiftRowCells(row, request.left, bounds);
    return rows;
}

std::string FormatGuid(std::uint64_t high, std::uint64_t low)
{
    // Version 4 (random) in the third group, the RFC 4122 variant in the fourth.
    const auto data1 = static_cast<unsigned>(high >> 32);
    const auto data2 = static_cast<unsigned>((high >> 16) & 0xFFFF);
    const auto data3 = static_cast<unsigned>((high & 0x0FFF) | 0x4000);
    const auto data4 = static_cast<unsigned>(((low >> 48) & 0x3FFF) | 0x8000);
    const auto node = static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFull);
    char text[40];
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%04X-%012llX}", data1, data2, data3, data4,
                  node);
    return text;
}

void NewColumnCommand(ToolContext& context, int offset, int column)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    // Without data columns there is nothing to insert beside: the command creates the first.
    if (offset != kCreateColumnOffset && document.FileOpen() && table.ColumnCount() < 2)
        offset = kCreateColumnOffset;
    const int id = offset == kCreateColumnOffset ? cmd::kCreateColumn
                   : offset == 0                 ? cmd::kInsertColumnBefore
                                                 : cmd::kInsertColumnAfter;
    const std::string title = Caption(id);
    const unsigned flags =
        offset == kCreateColumnOffset
            ? kToolGoesOnAfterOpen | kToolMayCreateFile | kToolAllowsNoColumns
            : WithoutCurrentColumn(table, kToolMayCreateFile | kToolNeedsColumn, column);
    if (CheckToolPreconditions(context, flags, title, CommandIconName(id)))
        return;

    NewColumnRequest request;
    request.title = title;
    request.columns = ColumnNamesUtf8(table);
    request.insertAfter = table.ColumnCount() - 1;
    const int around = ChosenColumn(table, column);
    if (offset != kCreateColumnOffset && IsDataColumn(table, around))
        request.insertAfter = offset == 0 ? around - 1 : around;
    for (;;) {
        if (!context.dialogs.NewColumn(request))
            return;
        if (!request.name.empty() && FindColumnNamed(document, request.name, -1) >= 0) {
            // The dialog's title, whichever of the three commands showed it.
            Tell(context, Caption(cmd::kCreateColumn), "A column by that name already exists.", id);
            continue;
        }
        const int at = std::clamp(request.insertAfter, 0, table.ColumnCount() - 1) + 1;
        ChangeFrame frame(context);
        if (document.IsUnicode())
            document.InsertColumn(at, {}, ost::Utf8ToUtf16(request.name));
        else
            document.InsertColumn(at, SystemText(request.name));
        table.SetColumnSortMethod(at, request.sortMethod);
        table.SetColumnAlignment(at, request.alignment);
        frame.Done(0, frame.Row(), at);
        if (!request.another)
            return;
        // "Another": the next column goes after this one.
        NewColumnRequest next;
        next.title = title;
        next.columns = ColumnNamesUtf8(table);
        next.insertAfter = at;
        request = std::move(next);
    }
}

void DeleteColumnCommand(ToolContext& context, int column)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const std::string title = Caption(cmd::kDeleteColumn);
    if (CheckToolPreconditions(context, 0, title, CommandIconName(cmd::kDeleteColumn)))
        return;
    DeleteColumnRequest request;
    request.columns = ColumnNamesUtf8(table);
    request.column = ChosenColumn(table, column);
    if (!context.dialogs.DeleteColumn(request) || !IsDataColumn(table, request.column))
        return;
    ChangeFrame frame(context);
    document.DeleteColumn(request.column);
    frame.Done(0, frame.Row(), ColumnAfterDeleting(table, request.column));
}

void RenameColumnCommand(ToolContext& context, int column)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const int id = cmd::kRenameColumn;
    const std::string title = Caption(id);
    if (CheckToolPreconditions(context, WithoutCurrentColumn(table, kToolNeedsColumn, column),
                               title, CommandIconName(id)))
        return;
    RenameColumnRequest request;
    request.columns = ColumnNamesUtf8(table);
    request.column = ChosenColumn(table, column);
    if (IsDataColumn(table, request.column))
        request.name = NameUtf8(document, request.column);
    for (;;) {
        if (!context.dialogs.RenameColumn(request))
            return;
        if (!IsDataColumn(table, request.column)) {
            Tell(context, title, "No column was chosen.", id);
            continue;
        }
        if (FindColumnNamed(document, request.name, request.column) >= 0) {
            // Names should be unique, yet the user may keep a duplicate after the warning.
            ost::MessageBoxRequest box;
            box.title = "Warning";
            box.text = "There is already a column named \"" + request.name +
                       "\".  Column names should be unique.";
            box.icon = ost::MessageIcon::Warning;
            box.commandIcon = std::string(CommandIconName(id));
            box.buttons = ost::kButtonOk | ost::kButtonCancel;
            if (context.ui.MessageBox(box) != ost::kButtonOk)
                continue;
        }
        break;
    }
    if (NameUtf8(document, request.column) == request.name)
        return;
    ChangeFrame frame(context);
    if (document.IsUnicode())
        document.SetColumnName(request.column, {}, ost::Utf8ToUtf16(request.name));
    else
        document.SetColumnName(request.column, SystemText(request.name));
    frame.Done(0, frame.Row());
}

void MoveColumnCommand(ToolContext& context, bool left, int column)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const int id = left ? cmd::kMoveColumnLeft : cmd::kMoveColumnRight;
    if (CheckToolPreconditions(context, WithoutCurrentColumn(table, kToolNeedsColumn, column),
                               Caption(id), CommandIconName(id)))
        return;
    const int from = ChosenColumn(table, column);
    const int to = left ? from - 1 : from + 1;
    if (!IsDataColumn(table, from) || !IsDataColumn(table, to)) {
        // Past either end, or the "#" column: an impossible move, not an error.
        context.ui.Beep();
        return;
    }
    ChangeFrame frame(context);
    document.MoveColumn(from, to);
    // The current column follows its column, whichever one moved.
    frame.Done(0, frame.Row(), IsDataColumn(table, table.FocusColumn()) ? table.FocusColumn() : to);
}

void CombineColumnsCommand(ToolContext& context, int column)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const int id = cmd::kCombineColumns;
    const std::string title = Caption(id);
    if (CheckToolPreconditions(context, WithoutCurrentColumn(table, kToolNeedsColumn, column),
                               title, CommandIconName(id)))
        return;
    CombineColumnsRequest request;
    request.columns = ColumnNamesUtf8(table);
    request.target = ChosenColumn(table, column);
    request.separator = context.prefs.combineSeparator;
    request.alwaysSeparate = context.prefs.combineAlwaysSeparate;
    request.modified = document.Modified();
    for (;;) {
        if (!context.dialogs.CombineColumns(request))
            return;
        if (!IsDataColumn(table, request.target)) {
            Tell(context, title, "You must choose a target column.", id);
            continue;
        }
        // A column appended to itself, and then deleted as its own source, would be lost.
        if (!IsDataColumn(table, request.source) || request.source == request.target) {
            Tell(context, title, "You must choose a source column.", id);
            continue;
        }
        break;
    }
    context.prefs.combineSeparator = request.separator;
    context.prefs.combineAlwaysSeparate = request.alwaysSeparate;
    ChangeFrame frame(context);
    InTextMode(document, [&](auto unit) { CombineRows<decltype(unit)>(document, request); });
    int current = frame.Column();
    if (request.deleteSource) {
        document.DeleteColumn(request.source);
        current = IsDataColumn(table, table.FocusColumn())
                      ? table.FocusColumn()
                      : ColumnAfterDeleting(table, request.source);
    }
    frame.Done(0, frame.Row(), current);
}

void SetEntireColumnCommand(ToolContext& context, int column)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const int id = cmd::kSetEntireColumn;
    const std::string title = Caption(id);
    if (CheckToolPreconditions(context, WithoutCurrentColumn(table, kToolNeedsColumn, column),
                               title, CommandIconName(id)))
        return;
    const int target = ChosenColumn(table, column);
    if (!IsDataColumn(table, target))
        return;
    SetEntireColumnRequest request;
    long long start = 0;
    for (;;) {
        if (!context.dialogs.SetEntireColumn(request))
            return;
        if (request.fill == ColumnFill::Numbers && !ParseStartNumber(request.startNumber, start)) {
            Tell(context, title, "The starting number must be a whole number.", id);
            continue;
        }
        break;
    }
    ChangeFrame frame(context);
    InTextMode(document,
               [&](auto unit) { FillColumn<decltype(unit)>(context, target, request, start); });
    frame.Done(0, frame.Row());
}

void ShiftCellsCommand(ToolContext& context)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const std::string title = "Shift Cells";
    if (CheckToolPreconditions(context, kToolCellOrSelection, title,
                               CommandIconName(cmd::kShiftCells)))
        return;
    const std::vector<int> rows = ShiftedRows(table);
    if (rows.empty())
        return;
    ShiftCellsRequest request;
    request.columns = ColumnNamesUtf8(table);
    request.left = context.prefs.shiftLeft;
    request.pivot = IsDataColumn(table, table.FocusColumn()) ? table.FocusColumn() : 1;
    const std::size_t preview = std::min(rows.size(), static_cast<std::size_t>(kShiftPreviewRows));
    for (std::size_t i = 0; i < preview; ++i) {
        std::vector<std::string> cells;
        for (int c = 1; c < table.ColumnCount(); ++c)
            cells.push_back(ost::Utf16ToUtf8(document.CellTextWide(rows[i], c)));
        request.rows.push_back(std::move(cells));
    }
    if (!context.dialogs.ShiftCells(request))
        return;
    context.prefs.shiftLeft = request.left;
    const int pivot = std::clamp(request.pivot, 1, table.ColumnCount() - 1);
    const ShiftBounds bounds = ShiftCellBounds(request.scope, pivot, table.ColumnCount());
    ChangeFrame frame(context);
    InTextMode(document,
               [&](auto unit) { ShiftRows<decltype(unit)>(document, rows, request.left, bounds); });
    frame.Done(table.DisplayPosition(rows.front()), frame.Row());
}

} // namespace quirnel
