#pragma once
// Turns a file on disk into the table document: reads it whole, decides its encoding, separator
// and newline, makes the columns from the first record, fills the rows and lists irregular rows
// as warnings.

#include "document/file_format.h"

#include <climits>
#include <cstddef>
#include <string>
#include <string_view>

namespace quirnel {

class TableDocument;

/// The most that one load takes in.
struct LoadLimits
{
    /// Records, one row each: row indices are ints.
    int maxRecords = INT_MAX;
    /// Fields of the first record, one column each, beside the index column.
    int maxColumns = INT_MAX - 1;
};

/// How a load spreads the reading of records over threads. The document comes out the same,
/// byte for byte and warning for warning, whatever these say.
struct LoadThreads
{
    /// Threads that read records; 0 takes one per processor, 1 reads on the calling thread.
    int threads = 0;
    /// Bytes of the file a thread takes at a time; 0 picks a size. A file shorter than two
    /// pieces is read on the calling thread.
    std::size_t pieceBytes = 0;
};

/// Loads `format.path` into the document; `format` comes back as detected (code page,
/// separator, newline, ignoreComments). `title` heads the failure messages. False when the
/// document refused to let go of its file, the load failed, or the user cancelled it (the
/// document is then cleared). A file with more than `limits` allow is refused, never cut.
bool LoadCsvFile(TableDocument& document, FileFormat& format, const std::string& title,
                 const LoadLimits& limits = {}, const LoadThreads& threads = {});

/// "A" .. "Z", "AA", "AB", ... for column `n` counted from 0.
std::string GeneratedColumnName(int n);

/// The newline a file ends with: "\r\n" unless its last two bytes say otherwise.
std::string DetectNewline(std::string_view data);

} // namespace quirnel
