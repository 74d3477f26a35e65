#pragma once
// Where the program keeps its settings: the user's configuration folder for Quirnel.

#include <filesystem>

namespace ost {

/// $XDG_CONFIG_HOME/Quirnel, or ~/.config/Quirnel when that variable is unset or not an
/// absolute path. Created when missing; a failure to create it shows later, when saving.
std::filesystem::path SettingsFolder();
/// The same folder, left as it is: for tools that only read the user's settings.
std::filesystem::path SettingsFolderLocation();

/// The main settings file, "quiredit.dat" in the settings folder.
std::filesystem::path SettingsFilePath();

} // namespace ost
