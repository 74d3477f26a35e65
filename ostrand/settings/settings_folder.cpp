#include "ostrand/settings/settings_folder.h"

#include <cstdlib>
#include <pwd.h>
#include <system_error>
#include <unistd.h>

namespace ost {
namespace {

std::filesystem::path HomeFolder()
{
    const char* home = std::getenv("HOME");
    if (home && *home)
        return home;
    // Services and some sandboxes run without HOME; the password entry still knows it.
    if (const passwd* entry = ::getpwuid(::getuid()); entry && entry->pw_dir)
        return entry->pw_dir;
    return "/tmp";
}

} // namespace

std::filesystem::path SettingsFolder()
{
    std::filesystem::path folder = SettingsFolderLocation();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return folder;
}

std::filesystem::path SettingsFolderLocation()
{
    std::filesystem::path base;
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    // A relative XDG_CONFIG_HOME is invalid by the XDG rules and would follow the current folder.
    if (configHome && *configHome && std::filesystem::path(configHome).is_absolute())
        base = configHome;
    else
        base = HomeFolder() / ".config";
    return base / "Quirnel";
}

std::filesystem::path SettingsFilePath()
{
    return SettingsFolder() / "quiredit.dat";
}

} // namespace ost
