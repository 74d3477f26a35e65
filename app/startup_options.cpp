#include "app/startup_options.h"

#include <charconv>
#include <filesystem>

namespace quirnel {

namespace {

constexpr const char* kInvalidSwitch = "Invalid command line switch:\r\n";
constexpr const char* kTwoPaths =
    "Only one project file may be specified on the command line.\r\n\r\nIf the project file's "
    "name contains spaces, you must enclose it in quotes.";

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsSwitch(std::string_view token)
{
    if (token.empty())
        return false;
    if (token[0] == '-')
        return true;
    // An absolute path starts with the switch character here; no switch name holds a '/', so a
    // second one marks the token as a path.
    return token[0] == '/' && token.find('/', 1) == std::string_view::npos;
}

std::string WithoutQuotes(std::string_view token)
{
    std::string out;
    for (char c : token)
        if (c != '"')
            out += c;
    return out;
}

/// "sep" must be followed directly by the number; "sep=2" and "sep" alone mean nothing.
char DelimiterFromSwitch(std::string_view rest)
{
    if (!rest.empty() && rest[0] == '+')
        rest.remove_prefix(1);
    long number = 0;
    auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    (void)end;
    if (error != std::errc())
        return 0;
    switch (number) {
    case 1:
        return ',';
    case 2:
        return '\t';
    case 3:
        return ';';
    case 4:
        return '|';
    default:
        return 0;
    }
}

std::vector<std::string> ExtensionList(std::string_view quoted)
{
    // quoted starts after the opening quote; the list ends at the closing one (or the token).
    std::size_t close = quoted.find('"');
    if (close != std::string_view::npos)
        quoted = quoted.substr(0, close);
    std::vector<std::string> list;
    while (!quoted.empty()) {
        std::size_t mark = quoted.find('?');
        std::string_view item = quoted.substr(0, mark);
        if (!item.empty())
            list.emplace_back(item);
        if (mark == std::string_view::npos)
            break;
        quoted.remove_prefix(mark + 1);
    }
    return list;
}

std::string MakeAbsolute(const std::string& path, const std::string& currentFolder)
{
    if (!HasNonBlank(path))
        return path;
    std::filesystem::path p(path);
    if (p.is_relative())
        p = std::filesystem::path(currentFolder) / p;
    return p.lexically_normal().string();
}

} // namespace

std::vector<std::string> TokenizeCommandLine(std::string_view commandLine)
{
    std::vector<std::string> tokens;
    std::string token;
    bool inQuotes = false;
    bool haveToken = false;
    for (char c : commandLine) {
        if (c == '"') {
            inQuotes = !inQuotes;
            token += c;
            haveToken = true;
        } else if (!inQuotes && IsBlank(c)) {
            if (haveToken)
                tokens.push_back(std::move(token));
            token.clear();
            haveToken = false;
        } else {
            token += c;
            haveToken = true;
        }
    }
    if (haveToken)
        tokens.push_back(std::move(token));
    return tokens;
}

bool HasHelpSwitch(const std::vector<std::string>& tokens)
{
    for (const std::string& token : tokens)
        if (IsSwitch(token) && std::string_view(token).substr(1) == "help")
            return true;
    return false;
}

bool HasNonBlank(std::string_view text)
{
    for (char c : text)
        if (!IsBlank(c))
            return true;
    return false;
}

std::optional<StartupOptions> ParseStartupOptions(const std::vector<std::string>& tokens,
                                                  const std::string& currentFolder,
                                                  std::string* message)
{
    StartupOptions options;
    bool havePath = false;
    auto fail = [message](std::string text) -> std::optional<StartupOptions> {
        if (message)
            *message = std::move(text);
        return std::nullopt;
    };

    for (const std::string& token : tokens) {
        if (!IsSwitch(token)) {
            if (havePath)
                return fail(kTwoPaths);
            havePath = true;
            options.path = MakeAbsolute(WithoutQuotes(token), currentFolder);
            continue;
        }
        std::string_view name = std::string_view(token).substr(1);
        if (name == "ost_new_version") {
            options.newVersion = true;
        } else if (name == "nc") {
            options.noConfirm = true;
        } else if (name == "rs") {
            options.reportSuccess = true;
        } else if (name.starts_with("sep")) {
            options.delimiter = DelimiterFromSwitch(name.substr(3));
        } else if (name.starts_with("a\"") && !options.associationList) {
            options.associationList = ExtensionList(name.substr(2));
        } else {
            return fail(kInvalidSwitch + token);
        }
    }
    return options;
}

std::string UsageText()
{
    return "Usage: quirnel [switches] [file]\n"
           "\n"
           "Opens the file (a CSV file or other delimited text) in the editor. When another\n"
           "running instance already shows the file, that instance is brought forward instead.\n"
           "\n"
           "Switches start with / or -:\n"
           "  /sep<n>            separator of the file: 1 comma, 2 tab, 3 semicolon, 4 bar\n"
           "  /a\"ext?ext\"        make the editor the default program for these extensions\n"
           "  /nc                with /a: do not ask before changing an association\n"
           "  /rs                with /a: report when the association succeeded\n"
           "  /ost_new_version   reopen the most recent file\n"
           "  /help              print this text\n";
}

} // namespace quirnel
