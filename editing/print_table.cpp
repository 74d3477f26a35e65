#include "editing/print_table.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/export_html.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace quirnel {

namespace {

constexpr int kPollMilliseconds = 50;

/// Removes the temporary file however the command ends.
class TemporaryFile
{
public:
    explicit TemporaryFile(const std::string& folder)
    {
        std::error_code error;
        const std::filesystem::path base = folder.empty()
                                               ? std::filesystem::temp_directory_path(error)
                                               : std::filesystem::path(folder);
        if (error)
            return;
        std::string pattern = (base / "quirnel-print-XXXXXX.htm").string();
        const int fd = ::mkstemps(pattern.data(), 4);
        if (fd < 0)
            return;
        ::close(fd);
        m_path = pattern;
    }
    ~TemporaryFile()
    {
        if (!m_path.empty())
            ::unlink(m_path.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

/// The dialog's number box: 4 to 99 in half points.
double ClampFontSize(double size)
{
    if (!std::isfinite(size))
        return 10.0;
    return std::round(std::clamp(size, 4.0, 99.0) * 2) / 2;
}

} // namespace

std::string DocumentTitle(const TableDocument& document)
{
    if (document.Path().empty())
        return "New file";
    return std::filesystem::path(document.Path()).filename().string();
}

void PrintCommand(ToolContext& context, const std::string& tempFolder)
{
    const std::string title = "Print";
    // A table of the index column alone still prints: an empty header row and empty rows.
    if (CheckToolPreconditions(context, kToolAllowsNoColumns | kToolGoesOnAfterOpen, title,
                               CommandIconName(cmd::kPrint)))
        return;
    PrintOptionsRequest options;
    options.fontSizeUsed = context.prefs.printSizeUsed;
    options.fontSize = ClampFontSize(context.prefs.printSize);
    if (!context.dialogs.PrintOptions(options))
        return;
    context.prefs.printSizeUsed = options.fontSizeUsed;
    context.prefs.printSize = ClampFontSize(options.fontSize);
    context.host.CommitCellEdit();

    TemporaryFile file(tempFolder);
    if (file.Path().empty()) {
        context.ui.Message(title, "Failed to create temporary file.", ost::MessageIcon::Error);
        return;
    }
    const HtmlFileResult written = WriteHtmlFile(
        context.document, file.Path(), options.fontSizeUsed ? context.prefs.printSize : 0);
    if (!written.ok) {
        context.ui.Message("Error", written.error, ost::MessageIcon::Error);
        return;
    }
    std::unique_ptr<HtmlViewer> viewer = context.host.CreateHtmlViewer();
    if (!viewer || !viewer->Open(file.Path())) {
        context.ui.Message(title, "Failed to open temporary file into browser.",
                           ost::MessageIcon::Error);
        return;
    }
    context.ui.BeginProgress("Loading file...");
    while (viewer->ReadyState() != kViewerComplete) {
        if (!context.ui.UpdateProgress(0)) {
            context.ui.EndProgress();
            return;
        }
        viewer->Wait(kPollMilliseconds);
    }
    context.ui.EndProgress();

    PrintJobRequest job;
    job.title = DocumentTitle(context.document);
    if (!context.dialogs.PrintSetup(job))
        return;
    // The job keeps the document's name whatever the dialog did with it.
    job.title = DocumentTitle(context.document);
    if (!viewer->Print(job))
        context.ui.Message(title, "The table could not be printed.", ost::MessageIcon::Error);
}

} // namespace quirnel
