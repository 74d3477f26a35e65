#include "ostrand/core/text_file.h"

#include <fstream>
#include <system_error>

namespace ost {

bool ReplaceTextFile(const std::filesystem::path& path, std::string_view text)
{
    std::filesystem::path temporary = path;
    temporary += ".tmp";
    std::error_code error;
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        out.flush();
        if (!out) {
            out.close();
            std::filesystem::remove(temporary, error);
            return false;
        }
    }
    std::filesystem::rename(temporary, path, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        return false;
    }
    return true;
}

} // namespace ost
