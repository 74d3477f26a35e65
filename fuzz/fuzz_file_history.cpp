// Reads any bytes as a file-history file. The history understood from it must be written so
// that reading it back gives the same paths, in the same order, with the same records.

#include "document/file_history.h"
#include "ostrand/settings/settings_file.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace quirnel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ost::SettingsFile file;
    file.Parse(std::string_view(reinterpret_cast<const char*>(data), size));
    FileHistory history;
    history.Read(file);
    if (history.Count() > FileHistory::kMaxEntries)
        std::abort();
    ost::SettingsFile written;
    history.Write(written);
    ost::SettingsFile parsed;
    if (parsed.Parse(written.Serialize()) != ost::SettingsLoadStatus::Loaded)
        std::abort();
    FileHistory back;
    back.Read(parsed);
    if (back.Paths() != history.Paths())
        std::abort();
    for (const std::string& path : history.Paths())
        if (!back.Find(path) || !(*back.Find(path) == *history.Find(path)))
            std::abort();
    return 0;
}
