#pragma once
// Export to HTML: the whole table as one HTML table element, into a file or onto the
// clipboard. The file's success box offers to open the file with the desktop's program for it.

#include <cstdint>
#include <string>

namespace quirnel {

struct ToolContext;
class TableDocument;

/// The "Export HTML" dialog's choices; defaults in, choices out.
struct ExportHtmlRequest
{
    /// True: "Export to file"; false: "Export to clipboard".
    bool toFile = true;
    /// UTF-8.
    std::string path;
};

/// How the file export went; `error` holds the message when `ok` is false.
struct HtmlFileResult
{
    bool ok = false;
    std::int64_t bytes = 0;
    std::int64_t lines = 0;
    std::string error;
};

/// Writes the document's table as HTML into the file (created or replaced). `fontSize` in
/// points, 0 for none. The failure text is "Failed to create file.\r\n\r\n" or "Failed to
/// write file.\r\n\r\n" followed by the system's reason.
HtmlFileResult WriteHtmlFile(const TableDocument& document, const std::string& path,
                             double fontSize);

/// The success box's text: size in the framework's byte-size form and the line count.
std::string ExportSucceededText(std::int64_t bytes, std::int64_t lines);

void ExportToHtmlCommand(ToolContext& context);

} // namespace quirnel
