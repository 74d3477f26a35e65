#include "editing/export_html.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "ostrand/core/byte_size.h"
#include "ostrand/core/clipboard.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"
#include "view/html_table_writer.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace quirnel {

namespace {

HtmlTableOptions OptionsFor(const TableDocument& document, double fontSize)
{
    HtmlTableOptions options;
    options.fontSize = fontSize;
    options.codePage = document.Format().codePage;
    return options;
}

} // namespace

HtmlFileResult WriteHtmlFile(const TableDocument& document, const std::string& path,
                             double fontSize)
{
    HtmlFileResult result;
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) {
        result.error = std::string("Failed to create file.\r\n\r\n") + std::strerror(errno);
        return result;
    }
    int writeError = 0;
    const bool written = WriteHtmlTable(
        document.Table(), OptionsFor(document, fontSize), [&](std::string_view piece) {
            if (std::fwrite(piece.data(), 1, piece.size(), file) != piece.size()) {
                writeError = errno;
                return false;
            }
            result.bytes += static_cast<std::int64_t>(piece.size());
            result.lines += std::count(piece.begin(), piece.end(), '\n');
            return true;
        });
    if (std::fclose(file) != 0 && written)
        writeError = errno;
    if (!written || writeError != 0) {
        result.error = std::string("Failed to write file.\r\n\r\n") +
                       std::strerror(writeError != 0 ? writeError : EIO);
        return result;
    }
    result.ok = true;
    return result;
}

std::string ExportSucceededText(std::int64_t bytes, std::int64_t lines)
{
    return "Export succeeded.\r\n\r\nSize: " + ost::FormatByteSize(bytes) +
           "\r\nLines: " + std::to_string(lines);
}

void ExportToHtmlCommand(ToolContext& context)
{
    const CommandSpec* command = FindCommand(cmd::kExportToHtml);
    const std::string title = command ? std::string(command->label) : std::string();
    const std::string icon(CommandIconName(cmd::kExportToHtml));
    if (CheckToolPreconditions(context, kToolNeedsRows | kToolGoesOnAfterOpen, title, icon))
        return;
    ExportHtmlRequest request;
    request.toFile = context.prefs.exportHtmlTo;
    request.path = ost::Utf16ToUtf8(context.prefs.exportHtmlFilepath);
    if (!context.dialogs.ExportHtml(request))
        return;
    context.prefs.exportHtmlTo = request.toFile;
    context.prefs.exportHtmlFilepath = ost::Utf8ToUtf16(request.path);
    context.host.CommitCellEdit();
    const TableDocument& document = context.document;

    if (!request.toFile) {
        const std::string html = HtmlTable(document.Table(), OptionsFor(document, 0));
        // Plain text for editors, HTML for programs that paste a table as a table.
        if (!context.clipboard.Write(
                {{std::string(ost::kClipboardPlainText), html}, {"text/html", html}}))
            context.ui.Message(title, "The clipboard could not be opened.",
                               ost::MessageIcon::Error);
        return;
    }
    if (request.path.empty()) {
        context.ui.Message(title, "Please enter the path of the file to export to.",
                           ost::MessageIcon::Information);
        return;
    }
    const HtmlFileResult result = WriteHtmlFile(document, request.path, 0);
    if (!result.ok) {
        context.ui.Message("Error", result.error, ost::MessageIcon::Error);
        return;
    }
    ost::MessageBoxRequest box;
    box.title = title;
    box.text = ExportSucceededText(result.bytes, result.lines);
    box.icon = ost::MessageIcon::Information;
    box.commandIcon = icon;
    box.buttons = ost::kButtonOk;
    box.extraButtons.push_back(
        {"Open File", "Open the export file that was just created.", ost::kFirstExtraButtonId});
    if (context.ui.MessageBox(box) == ost::kFirstExtraButtonId &&
        !context.host.OpenWithDefaultProgram(request.path))
        context.ui.Message(title, "No program could be found to open the file.",
                           ost::MessageIcon::Error);
}

} // namespace quirnel
