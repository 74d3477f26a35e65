#pragma once
// Writes the table document back in its own format: through a temporary file beside the target,
// after rotating the target's numbered backups.

#include <string>

namespace quirnel {

class TableDocument;

/// Saves to `path` and makes it the document's path. False, with one message box titled
/// `title`, when the file could not be written or replaced; the existing file is then as it
/// was and no temporary file is left behind.
bool SaveCsvFile(TableDocument& document, const std::string& path,
                 const std::string& title = "Error");

} // namespace quirnel
