#pragma once
// The spelling dictionaries installed on the system (Hunspell's .aff/.dic pairs), and the
// choice among them by the user's language with English as the fallback.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ost {

class SpellDictionary;

/// Where Debian and most systems keep Hunspell dictionaries.
std::vector<std::filesystem::path> DefaultDictionaryFolders();

/// The user's language as a dictionary name ("de_DE") from LC_ALL, LC_MESSAGES or LANG;
/// "" for the C and POSIX locales.
std::string UserLanguage();

/// The dictionary to use for `language` among `available` names (file names without
/// ".dic"): the exact name, then another of the same language ("de_AT" for "de_DE"), then
/// "en_US", then any English one. "" when none fits.
std::string ChooseDictionary(std::string_view language, const std::vector<std::string>& available);

/// Opens the chosen dictionary from the first folder holding it; nullptr when none is
/// installed or it cannot be read.
std::unique_ptr<SpellDictionary>
OpenSystemDictionary(std::string_view language, const std::vector<std::filesystem::path>& folders);

} // namespace ost
