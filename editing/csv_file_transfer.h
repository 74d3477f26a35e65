#pragma once
// The grid's "Import from CSV file" and "Export to CSV file": rows of another CSV file appended
// to the table, read as Open reads a file; and the table as shown written to a new file, as
// Save writes one.

#include <string>

namespace quirnel {

struct ToolContext;

/// The file dialog of Import and Export.
struct CsvFileRequest
{
    /// The command's caption.
    std::string title;
    /// True: a file to write (Export); false: an existing file to read.
    bool save = false;
    /// In: where to start (a folder or file); out: the file chosen.
    std::string path;
};

/// Appends the rows of a chosen CSV file; through the mapping dialog unless its column names
/// are the table's, in the same order.
void ImportCsvFileCommand(ToolContext& context);
/// Writes the column names and the rows the filter shows, in the order shown, of the columns
/// not hidden, in the document's separator, newline, code page and quoting, to a chosen file.
/// The document itself stays as it was, its path and modified flag included.
void ExportCsvFileCommand(ToolContext& context);

inline constexpr const char* kExportCsvTitle = "Export To CSV File";

} // namespace quirnel
