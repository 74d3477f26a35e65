#pragma once
// The command line of the editor: one document path and a handful of switches, read before any
// window exists. A fault in it ends the program with one of two fixed messages.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

struct StartupOptions
{
    /// The document to open, absolute; empty when none. A path of blanks is kept as given.
    std::string path;
    /// ',' '\t' ';' '|' from /sep<n>; 0 means "detect".
    char delimiter = 0;
    /// Present only when /a"ext?ext" was given; the extensions in order, without quotes.
    std::optional<std::vector<std::string>> associationList;
    bool noConfirm = false;
    bool reportSuccess = false;
    bool newVersion = false;
};

/// Cuts a command line at white space; double-quoted stretches do not cut and keep their quotes.
std::vector<std::string> TokenizeCommandLine(std::string_view commandLine);

/// True when a token is the switch "help" written with either switch character.
bool HasHelpSwitch(const std::vector<std::string>& tokens);

/// Reads the tokens (program name excluded). Relative paths are resolved against
/// `currentFolder`. On a fault returns nullopt and sets *message to the text to show.
std::optional<StartupOptions> ParseStartupOptions(const std::vector<std::string>& tokens,
                                                  const std::string& currentFolder,
                                                  std::string* message);

/// True when the text holds a character other than space, CR, LF and TAB.
bool HasNonBlank(std::string_view text);

/// What /help prints.
std::string UsageText();

} // namespace quirnel
