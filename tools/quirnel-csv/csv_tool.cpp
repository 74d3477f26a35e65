#include "tools/quirnel-csv/csv_tool.h"

#include "document/backup_file.h"
#include "document/csv_loader.h"
#include "document/csv_saver.h"
#include "document/table_document.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"
#include "ostrand/settings/settings_file.h"
#include "ostrand/settings/settings_folder.h"
#include "view/html_table_writer.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <variant>

namespace quirnel {

namespace {

const char kUsage[] =
    "usage: quirnel-csv dump-json FILE [options]\n"
    "       quirnel-csv check FILE [options]\n"
    "       quirnel-csv normalize IN OUT [options] [--backups N]\n"
    "       quirnel-csv export-html FILE OUT [options] [--font-size N]\n"
    "options: --sep auto|comma|tab|semicolon|bar  --no-column-names  --backslash-escape\n"
    "         --ignore-comments  --code-page N  --no-warn-too-few\n"
    "         --threads N (threads that read the file; 1 reads it on one thread)\n"
    "normalize rewrites IN into OUT; when OUT is IN it keeps \".bk\" backups as the editor\n"
    "does, as many as the editor's preferences say (9 without them) or N (0 for none).\n";

/// Backups kept when the preferences file cannot tell, as the editor's own default.
constexpr int kDefaultBackupLevels = 9;

/// No one is at the screen: messages are collected for standard error and every question is
/// answered No, which never drops data (comment lines stay rows).
class BatchUi : public ost::UserInterface
{
public:
    int MessageBox(const ost::MessageBoxRequest& request) override
    {
        if (request.buttons & ost::kButtonNo)
            return ost::kButtonNo;
        if (!messages.empty())
            messages += "\n";
        messages += request.text;
        return ost::kButtonOk;
    }
    void Beep() override {}
    void BeginProgress(const std::string&) override {}
    bool UpdateProgress(double) override { return true; }
    void EndProgress() override {}

    std::string messages;
};

/// Length of the valid UTF-8 sequence at `text[i]`, or 0.
std::size_t Utf8SequenceLength(std::string_view text, std::size_t i)
{
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    std::size_t length = 0;
    char32_t cp = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        cp = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        cp = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        cp = lead & 0x07;
    } else {
        return 0;
    }
    if (i + length > text.size())
        return 0;
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80)
            return 0;
        cp = (cp << 6) | (byte(i + k) & 0x3F);
    }
    const char32_t minimum[] = {0, 0, 0x80, 0x800, 0x10000};
    if (cp < minimum[length] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
        return 0;
    return length;
}

std::string CellUtf8(const TableDocument& document, int row, int column)
{
    if (document.IsUnicode())
        return ost::Utf16ToUtf8(document.CellText16(row, column));
    return std::string(document.CellText8(row, column));
}

struct ToolOptions
{
    FileFormat format;
    bool warnTooFew = true;
    /// Backup levels given with --backups.
    std::optional<int> backups;
    LoadThreads threads;
};

bool ParseOptions(const std::vector<std::string>& args, std::size_t first, ToolOptions& options,
                  std::string& err)
{
    FileFormat& format = options.format;
    for (std::size_t i = first; i < args.size(); ++i) {
        const std::string& option = args[i];
        if (option == "--no-column-names") {
            format.noColumnNames = true;
        } else if (option == "--backslash-escape") {
            format.backslashEscape = true;
        } else if (option == "--ignore-comments") {
            format.ignoreComments = true;
        } else if (option == "--no-warn-too-few") {
            options.warnTooFew = false;
        } else if (option == "--backups" && i + 1 < args.size()) {
            const std::string& value = args[++i];
            int levels = -1;
            const auto [end, error] =
                std::from_chars(value.data(), value.data() + value.size(), levels);
            if (value.empty() || error != std::errc() || end != value.data() + value.size() ||
                levels < 0 || levels > kMaxBackupLevels) {
                err += "quirnel-csv: bad backup count '" + value + "'\n";
                return false;
            }
            options.backups = levels;
        } else if (option == "--threads" && i + 1 < args.size()) {
            const std::string& value = args[++i];
            int threads = 0;
            const auto [end, error] =
                std::from_chars(value.data(), value.data() + value.size(), threads);
            if (value.empty() || error != std::errc() || end != value.data() + value.size() ||
                threads < 1 || threads > 64) {
                err += "quirnel-csv: bad thread count '" + value + "'\n";
                return false;
            }
            options.threads.threads = threads;
        } else if (option == "--sep" && i + 1 < args.size()) {
            const std::string& value = args[++i];
            if (value == "auto")
                format.separator = kSeparatorAuto;
            else if (value == "comma")
                format.separator = ',';
            else if (value == "tab")
                format.separator = '\t';
            else if (value == "semicolon")
                format.separator = ';';
            else if (value == "bar")
                format.separator = '|';
            else {
                err += "quirnel-csv: unknown separator '" + value + "'\n";
                return false;
            }
        } else if (option == "--code-page" && i + 1 < args.size()) {
            char* end = nullptr;
            const std::string& value = args[++i];
            const unsigned long codePage = std::strtoul(value.c_str(), &end, 10);
            if (value.empty() || *end != '\0' || codePage > 0xFFFFFFFFul) {
                err += "quirnel-csv: bad code page '" + value + "'\n";
                return false;
            }
            format.codePage = static_cast<std::uint32_t>(codePage);
        } else {
            err += "quirnel-csv: unknown option '" + option + "'\n";
            return false;
        }
    }
    return true;
}

/// "BackupLevels" of the editor's preferences, as the Preferences dialog bounds it; the default
/// when the preferences file is missing, cannot be read or does not hold the value.
int PreferredBackupLevels()
{
    ost::SettingsFile settings;
    const ost::SettingsLoadStatus status =
        settings.Load(ost::SettingsFolderLocation() / "quiredit.dat");
    if (status != ost::SettingsLoadStatus::Loaded && status != ost::SettingsLoadStatus::Damaged)
        return kDefaultBackupLevels;
    const ost::SettingsValue* value = settings.Find("Settings", "BackupLevels");
    if (!value || !std::holds_alternative<int>(*value))
        return kDefaultBackupLevels;
    return std::clamp(std::get<int>(*value), 0, 99);
}

bool SameFile(const std::string& a, const std::string& b)
{
    std::error_code error;
    return a == b || std::filesystem::equivalent(a, b, error);
}

} // namespace

std::string JsonString(std::string_view text)
{
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80) {
            const std::size_t length = Utf8SequenceLength(text, i);
            if (length) {
                out.append(text.substr(i, length));
                i += length;
            } else {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04X", c);
                out += escaped;
                ++i;
            }
            continue;
        }
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20) {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04X", c);
                out += escaped;
            } else {
                out.push_back(static_cast<char>(c));
            }
        }
        ++i;
    }
    out += "\"";
    return out;
}

std::string DocumentJson(const TableDocument& document)
{
    const FileFormat& format = document.Format();
    std::string json = "{\n";
    json += "  \"ok\": true,\n  \"error\": \"\",\n";
    json += "  \"separator\": " + JsonString(std::string(1, format.separator)) + ",\n";
    json += "  \"newline\": " + JsonString(format.newline) + ",\n";
    json += "  \"codePage\": " + std::to_string(format.codePage) + ",\n";
    json += "  \"columns\": [";
    for (int c = 1; c < document.ColumnCount(); ++c)
        json += (c > 1 ? ", " : "") + JsonString(document.ColumnName(c));
    json += "],\n  \"rows\": [";
    for (int r = 0; r < document.RowCount(); ++r) {
        json += r ? ",\n    [" : "\n    [";
        for (int c = 1; c < document.ColumnCount(); ++c)
            json += (c > 1 ? ", " : "") + JsonString(CellUtf8(document, r, c));
        json += "]";
    }
    json += document.RowCount() ? "\n  ],\n" : "],\n";
    json += "  \"warnings\": [";
    const auto& warnings = document.Warnings();
    for (std::size_t i = 0; i < warnings.size(); ++i) {
        json += i ? ",\n    " : "\n    ";
        json += "{\"message\": " + JsonString(warnings[i].message) +
                ", \"row\": " + std::to_string(warnings[i].row) +
                ", \"extra\": " + JsonString(warnings[i].extraData) + "}";
    }
    json += warnings.empty() ? "]\n" : "\n  ]\n";
    json += "}\n";
    return json;
}

namespace {

/// Takes "--font-size N" (points, above 0) out of the arguments.
bool TakeFontSize(std::vector<std::string>& args, double& size, std::string& err)
{
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] != "--font-size")
            continue;
        const char* text = i + 1 < args.size() ? args[i + 1].c_str() : "";
        char* end = nullptr;
        size = std::strtod(text, &end);
        if (!*text || *end || !(size > 0 && size < 1000)) {
            err += "quirnel-csv: --font-size needs a size in points\n";
            return false;
        }
        args.erase(args.begin() + static_cast<std::ptrdiff_t>(i),
                   args.begin() + static_cast<std::ptrdiff_t>(i + 2));
        return true;
    }
    return true;
}

/// The loaded table as the editor's HTML export writes it.
int ExportHtml(const TableDocument& document, const std::string& path, double fontSize,
               std::string& err)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) {
        err += "quirnel-csv: " + path + ": cannot be created\n";
        return 2;
    }
    HtmlTableOptions options;
    options.fontSize = fontSize;
    options.codePage = document.Format().codePage;
    const bool written = WriteHtmlTable(document.Table(), options, [file](std::string_view piece) {
        return std::fwrite(piece.data(), 1, piece.size(), file) == piece.size();
    });
    if (std::fclose(file) != 0 || !written) {
        err += "quirnel-csv: " + path + ": could not be written\n";
        return 2;
    }
    return 0;
}

} // namespace

int RunCsvTool(const std::vector<std::string>& args, std::string& out, std::string& err)
{
    if (!args.empty() && (args[0] == "--help" || args[0] == "-h")) {
        out += kUsage;
        return 0;
    }
    const bool exportHtml = !args.empty() && args[0] == "export-html";
    const bool known =
        exportHtml ||
        (!args.empty() && (args[0] == "dump-json" || args[0] == "check" || args[0] == "normalize"));
    const std::size_t paths = !args.empty() && (args[0] == "normalize" || exportHtml) ? 2 : 1;
    if (!known || args.size() < 1 + paths) {
        err += kUsage;
        return 2;
    }
    ToolOptions options;
    options.format.path = args[1];
    std::vector<std::string> rest = args;
    double fontSize = 0;
    if (exportHtml && !TakeFontSize(rest, fontSize, err))
        return 2;
    if (!ParseOptions(rest, 1 + paths, options, err))
        return 2;
    FileFormat& format = options.format;

    BatchUi ui;
    TableDocument document(ui);
    document.SetWarnTooFew(options.warnTooFew);
    if (!LoadCsvFile(document, format, "quirnel-csv", {}, options.threads)) {
        err += (ui.messages.empty() ? std::string("the file could not be loaded") : ui.messages) +
               "\n";
        if (args[0] == "dump-json")
            out += "{\n  \"ok\": false,\n  \"error\": " + JsonString(ui.messages) + "\n}\n";
        return 2;
    }
    if (args[0] == "dump-json") {
        out += DocumentJson(document);
        return 0;
    }
    if (exportHtml)
        return ExportHtml(document, args[2], fontSize, err);
    if (args[0] == "check") {
        for (const CSV_Warning& warning : document.Warnings()) {
            if (warning.row >= 0)
                out += "row " + std::to_string(warning.row + 1) + ": ";
            out += warning.message + warning.extraData + "\n";
        }
        return document.Warnings().empty() ? 0 : 1;
    }
    // Rewriting the input in place replaces the user's file, which the editor would never do
    // without backups; a fresh file needs none unless asked for.
    const bool inPlace = SameFile(args[1], args[2]);
    document.SetBackupLevels(options.backups ? *options.backups
                             : inPlace       ? PreferredBackupLevels()
                                             : 0);
    if (!SaveCsvFile(document, args[2], "quirnel-csv")) {
        err += ui.messages + "\n";
        return 2;
    }
    return 0;
}

} // namespace quirnel
