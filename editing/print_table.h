#pragma once
// Print: the table goes out as one HTML table in a temporary file, which the HTML viewer loads
// and prints; pagination, page breaks and headers are the viewer's. This unit holds the command's
// steps and failure messages; the viewer and the system's print dialog sit behind interfaces.

#include <memory>
#include <string>

namespace quirnel {

struct ToolContext;
class TableDocument;

/// The "Print" options dialog; defaults in, choices out.
struct PrintOptionsRequest
{
    bool fontSizeUsed = false;
    /// Points, 4 to 99 in steps of 0.5; only used when `fontSizeUsed`.
    double fontSize = 10.0;
};

/// The system's print dialog: what it was shown with and what the user chose. An empty
/// `outputFile` prints on `printerName` (empty: the default printer); otherwise the job goes
/// to that PDF file.
struct PrintJobRequest
{
    std::string title;
    std::string printerName;
    std::string outputFile;
    int copies = 1;
    /// 1-based page range; 0 and 0 for all pages.
    int fromPage = 0;
    int toPage = 0;
    bool landscape = false;
};

/// The loading state a viewer reports once the file is loaded.
inline constexpr int kViewerComplete = 4;

/// The embedded HTML viewer: it loads a local file (perhaps while the program waits) and
/// prints it. Released by destroying it.
class HtmlViewer
{
public:
    virtual ~HtmlViewer() = default;
    /// Starts loading; false when the file cannot be opened.
    virtual bool Open(const std::string& path) = 0;
    /// kViewerComplete once loaded.
    virtual int ReadyState() = 0;
    /// Lets the window work (paint, take the progress window's Cancel) for about that long.
    virtual void Wait(int milliseconds) = 0;
    /// Prints the loaded document as the job describes; false when printing failed.
    virtual bool Print(const PrintJobRequest& job) = 0;
};

/// What a print job is called: the file's name, or "New file" for a file never saved.
std::string DocumentTitle(const TableDocument& document);

/// `tempFolder` empty: the system's temporary folder.
void PrintCommand(ToolContext& context, const std::string& tempFolder = std::string());

} // namespace quirnel
