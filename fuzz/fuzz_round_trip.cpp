// Loads any bytes as a CSV file, saves the table in the file's own format and loads what was
// saved: the table must come back the same, column names, rows and cells.

#include "fuzz/batch_ui.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/memory_file_system.h"

#include "document/csv_loader.h"
#include "document/csv_saver.h"

#include <cstdlib>

using namespace quirnel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::LoadChoice choice = fuzz::Choose(data, size);
    // A code page that cannot write back every character it reads (1252 has unassigned bytes)
    // saves them as "?", which is a loss the save reports, not a round trip.
    if (choice.format.codePage == 1252)
        choice.format.codePage = 0;
    fuzz::MemoryFileSystem files;
    files.files[choice.format.path] = std::string(choice.file);
    fuzz::BatchUi ui(choice.answerYes);
    TableDocument document(ui);
    document.SetFileSystem(files);
    document.SetBackupLevels(0);

    FileFormat format = choice.format;
    if (!LoadCsvFile(document, format, "Open"))
        return 0;
    // The writer's own options come from the remembered file properties; the input chooses.
    FileFormat written = document.Format();
    written.delimitAllCells = size > 0 && (data[0] & 0x80);
    document.StoreFormat(written);
    const auto loaded = fuzz::Contents(document);
    if (!SaveCsvFile(document, choice.format.path))
        std::abort();

    // Read back as the file is now: comments were not written, so none are skipped.
    FileFormat back;
    back.path = choice.format.path;
    back.separator = written.separator;
    back.backslashEscape = written.backslashEscape;
    back.noColumnNames = written.noColumnNames;
    back.codePage = written.codePage;
    // A first name that begins with "#" asks the comment question again; the names are data.
    fuzz::BatchUi reloadUi;
    TableDocument reloaded(reloadUi);
    reloaded.SetFileSystem(files);
    if (!LoadCsvFile(reloaded, back, "Open") || fuzz::Contents(reloaded) != loaded)
        std::abort();
    return 0;
}
