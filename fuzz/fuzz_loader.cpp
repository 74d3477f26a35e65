// Loads any bytes as a CSV file under every combination of the reader's options. A load may
// fail; it must not crash, and a loaded table must be whole and the same when loaded again.

#include "fuzz/batch_ui.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/memory_file_system.h"

#include "document/csv_loader.h"

#include <cstdlib>

using namespace quirnel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::LoadChoice choice = fuzz::Choose(data, size);
    fuzz::MemoryFileSystem files;
    files.files[choice.format.path] = std::string(choice.file);
    fuzz::BatchUi ui(choice.answerYes);
    TableDocument document(ui);
    document.SetFileSystem(files);
    document.SetWarnTooFew(choice.warnTooFew);

    FileFormat format = choice.format;
    if (!LoadCsvFile(document, format, "Open"))
        return 0;
    if (document.ColumnCount() < 2 || !document.FileOpen() || document.Modified())
        std::abort();
    for (const CSV_Warning& warning : document.Warnings())
        if (warning.row < -1 || warning.row >= document.RowCount())
            std::abort();
    if (!choice.format.noColumnNames)
        for (int c = 1; c < document.ColumnCount(); ++c)
            if (document.ColumnName(c).find("\r\n") != std::string::npos)
                std::abort();
    const auto first = fuzz::Contents(document);

    // The same file again into the same document: nothing of the first load may linger.
    FileFormat again = choice.format;
    if (!LoadCsvFile(document, again, "Open") || fuzz::Contents(document) != first)
        std::abort();
    return 0;
}
