#include "editing/tool_preconditions.h"

#include "document/table_document.h"
#include "editing/tool_context.h"
#include "ostrand/core/user_interface.h"

namespace quirnel {

void InformUser(ToolContext& context, const std::string& title, std::string_view text,
                std::string_view icon)
{
    ost::MessageBoxRequest box;
    box.title = title;
    box.text = std::string(text);
    box.icon = ost::MessageIcon::Information;
    box.commandIcon = std::string(icon);
    context.ui.MessageBox(box);
}

namespace {

/// Tells the user why the command cannot run; always "stop".
bool Refuse(ToolContext& context, const std::string& title, std::string_view icon, const char* text)
{
    InformUser(context, title, text, icon);
    return true;
}

/// No file is open: offers to open one (or create one). True when the command must stop.
bool OfferFile(ToolContext& context, unsigned flags, const std::string& title,
               std::string_view icon)
{
    const bool mayCreate = (flags & kToolMayCreateFile) != 0;
    const int newId = ost::kFirstExtraButtonId;
    const int openId = ost::kFirstExtraButtonId + 1;
    ost::MessageBoxRequest box;
    box.title = title;
    box.text = mayCreate ? "You must first open a file or create a new one."
                         : "You must first open a file.";
    box.icon = ost::MessageIcon::Information;
    box.commandIcon = std::string(icon);
    box.buttons = ost::kButtonCancel;
    // The leading backquote marks the captions as the framework's own buttons.
    if (mayCreate)
        box.extraButtons.push_back({"`New File", "Create a new CSV file.", newId});
    box.extraButtons.push_back({"`Open File", "Open an existing CSV file.", openId});
    box.defaultButton = openId;
    const int answer = context.ui.MessageBox(box);
    bool done = false;
    if (answer == newId && mayCreate)
        done = context.host.RunNewFile();
    else if (answer == openId)
        done = context.host.RunOpenFile();
    else
        return true;
    return !done || !(flags & kToolGoesOnAfterOpen) || !context.document.FileOpen();
}

} // namespace

bool CheckToolPreconditions(ToolContext& context, unsigned flags, const std::string& title,
                            std::string_view icon)
{
    if (!context.document.FileOpen() && OfferFile(context, flags, title, icon))
        return true;
    const TableControl& table = context.document.Table();
    const int columns = table.ColumnCount();
    const int rows = table.RowCount();
    const char* const empty = "This tool cannot run on an empty table.";
    if (!(flags & kToolAllowsNoColumns) && columns < 2)
        return Refuse(context, title, icon, empty);
    if ((flags & kToolNeedsRows) && rows < 1)
        return Refuse(context, title, icon, empty);
    if ((flags & kToolNeedsTwoRows) && rows < 2)
        return Refuse(context, title, icon, "There must be at least two rows.");
    const int column = table.FocusColumn();
    const int row = table.FocusRow();
    const bool haveColumn = column >= 1 && column < columns;
    const bool haveCell = haveColumn && row >= 0 && row < rows;
    if ((flags & kToolNeedsColumn) && !haveColumn)
        return Refuse(context, title, icon,
                      "Please select a column first by clicking on any cell in the column.");
    if ((flags & kToolNeedsCell) && !haveCell)
        return Refuse(context, title, icon, "Please click on a cell first.");
    if ((flags & kToolRefusesSelection) && table.SelectedRowCount() > 0)
        return Refuse(context, title, icon,
                      "This tool cannot operate on multiple rows.  Please right click on the "
                      "table and choose \"Deselect All\" first.");
    if ((flags & kToolCellOrSelection) && !haveCell && table.SelectedRowCount() == 0)
        return Refuse(context, title, icon,
                      "Either a cell must have input focus, or one or more rows must be "
                      "selected.  To give a cell input focus, simply click on it.  To select "
                      "rows, hold down the Ctrl key and click on cells in the first column "
                      "which is labeled \"#\".");
    return false;
}

} // namespace quirnel
