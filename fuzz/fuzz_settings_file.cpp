// Reads any bytes as a settings file. Whatever was understood must be written so that reading
// it back gives the same sections, keys and values, with nothing damaged, and writing that
// again gives the same bytes.

#include "ostrand/settings/settings_file.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ost::SettingsFile file;
    file.Parse(std::string_view(reinterpret_cast<const char*>(data), size));
    const std::string written = file.Serialize();
    ost::SettingsFile back;
    if (back.Parse(written) != ost::SettingsLoadStatus::Loaded)
        std::abort();
    if (back.Sections() != file.Sections() || back.Serialize() != written)
        std::abort();
    for (const std::string& section : file.Sections()) {
        if (back.Keys(section) != file.Keys(section))
            std::abort();
        for (const std::string& key : file.Keys(section))
            if (!back.Find(section, key) || *back.Find(section, key) != *file.Find(section, key))
                std::abort();
    }
    return 0;
}
