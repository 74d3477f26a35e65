#include "editing/warnings_commands.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/table_commands.h"
#include "editing/tool_context.h"
#include "editing/utf8_cells.h"
#include "ostrand/core/clipboard.h"

namespace quirnel {

namespace {

/// The selected warning; nullptr when the line is not a warning's.
const CSV_Warning* SelectedWarning(const TableDocument& document, int line)
{
    if (line < 0 || line >= static_cast<int>(document.Warnings().size()))
        return nullptr;
    return &document.Warnings()[static_cast<std::size_t>(line)];
}

MenuEntry PaneEntry(int id)
{
    MenuEntry entry;
    const PaneCommandText* text = FindPaneCommand(id);
    entry.text = text ? std::string(text->menuText) : std::string();
    entry.command = id;
    return entry;
}

} // namespace

bool SetWarningsVisible(const TableDocument& document, WarningsList& list, bool& flag, bool visible)
{
    const bool value = visible && document.FileOpen();
    if (value == flag)
        return false;
    flag = value;
    if (value)
        list.Refill(document);
    list.ShowPane(value);
    return true;
}

void ToggleWarnings(const TableDocument& document, WarningsList& list, bool& flag)
{
    SetWarningsVisible(document, list, flag, !flag);
}

void GoToWarningCommand(ToolContext& context, WarningsList& list)
{
    const CSV_Warning* warning = SelectedWarning(context.document, list.SelectedLine());
    if (!warning)
        return;
    const TableControl& table = context.document.Table();
    list.FocusTable();
    // A warning may name no row (-1), or a row that later deletions took away.
    if (warning->row < 0 || warning->row >= table.RowCount() || table.IsRowHidden(warning->row))
        return;
    const int column = table.FocusColumn();
    MoveFocusTo(context, warning->row,
                column >= 1 && column < table.ColumnCount() ? column
                : table.ColumnCount() > 1                   ? 1
                                                            : -1);
}

void DismissWarningCommand(ToolContext& context, WarningsList& list, bool& flag)
{
    TableDocument& document = context.document;
    const int line = list.SelectedLine();
    if (!SelectedWarning(document, line) || !list.DeleteLine(line))
        return;
    document.DeleteWarning(static_cast<std::size_t>(line));
    list.Refill(document);
    if (document.Warnings().empty())
        SetWarningsVisible(document, list, flag, false);
}

void CopyWarningExtraDataCommand(ToolContext& context, const WarningsList& list)
{
    const CSV_Warning* warning = SelectedWarning(context.document, list.SelectedLine());
    if (!warning || warning->extraData.empty())
        return;
    // Extra fields of an 8-bit document are system code page text; the clipboard takes UTF-8.
    std::string text = warning->extraData;
    if (!context.document.IsUnicode()) {
        Utf8Cells cells(context.document);
        std::string scratch;
        text = std::string(cells.FromSystem(warning->extraData, scratch));
    }
    context.clipboard.Write({{std::string(ost::kClipboardPlainText), std::move(text)}});
}

std::vector<MenuEntry> WarningsContextMenu(const TableDocument& document, int line)
{
    const CSV_Warning* warning = SelectedWarning(document, line);
    if (!warning)
        return {};
    std::vector<MenuEntry> menu;
    menu.push_back(PaneEntry(cmd::kGoToWarning));
    menu.push_back(PaneEntry(cmd::kDismissWarning));
    if (!warning->extraData.empty())
        menu.push_back(PaneEntry(cmd::kCopyWarningExtraData));
    return menu;
}

} // namespace quirnel
