#pragma once
// Writes the table document back in its own format: through a temporary file beside the target,
// after rotating the target's numbered backups.

#include <string>

namespace quirnel {

class TableDocument;

/// How a save shares the building of its bytes between threads; the file is the same byte
/// for byte whatever these say.
struct SaveThreads
{
    /// Threads that build records; 0 takes one per processor for big tables, 1 builds them on
    /// the calling thread.
    int threads = 0;
    /// Rows a thread builds at a time; 0 picks a number.
    int blockRows = 0;
};

/// Saves to `path` and makes it the document's path. False, with one message box titled
/// `title`, when the file could not be written or replaced; the existing file is then as it
/// was and no temporary file is left behind.
bool SaveCsvFile(TableDocument& document, const std::string& path,
                 const std::string& title = "Error", const SaveThreads& threads = {});

} // namespace quirnel
