#include "app/association.h"

#include "ostrand/core/text_file.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace quirnel {

namespace {

constexpr const char* kTitle = "Associate";
constexpr const char* kBackupValue = "Quirnel Backup";
constexpr const char* kDescription = "Comma Separated Values";
constexpr const char* kProductName = "Quirnel";
constexpr const char* kFileExts =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\";

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool IsRefusedAsDefault(const std::string& extension)
{
    static const char* const kRefused[] = {"exe", "bat", "pif", "com", "dll", "scr"};
    std::string lower = Lower(extension);
    return std::any_of(std::begin(kRefused), std::end(kRefused),
                       [&](const char* refused) { return lower == refused; });
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

std::string Trimmed(const std::string& text)
{
    std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos)
        return {};
    std::size_t last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

/// The command the class runs for its default verb ("open" unless the class names another).
std::string CommandOfClass(AssociationStore& store, const std::string& className)
{
    std::string verb = store.ReadValue(AssociationRoot::Classes, className + "\\shell", "")
                           .value_or(std::string());
    if (verb.empty())
        verb = "open";
    return store
        .ReadValue(AssociationRoot::Classes, className + "\\shell\\" + verb + "\\command", "")
        .value_or(std::string());
}

struct Writer
{
    AssociationStore& store;
    StoreResult result = StoreResult::Ok;
    std::string failedKey;

    bool Write(AssociationRoot root, const std::string& key, const std::string& name,
               const std::string& value)
    {
        return Note(store.WriteValue(root, key, name, value), key);
    }
    bool Note(StoreResult r, const std::string& key)
    {
        if (r != StoreResult::Ok && result == StoreResult::Ok) {
            result = r;
            failedKey = key;
        }
        return result == StoreResult::Ok;
    }
};

} // namespace

std::string DisplayedCommand(const std::string& command)
{
    std::string text = command;
    ReplaceAll(text, "%1", "");
    text.erase(std::remove(text.begin(), text.end(), '"'), text.end());
    return Trimmed(text);
}

bool AssociateExtension(const std::vector<std::string>& extensions, const AssociateOptions& options,
                        AssociationStore& store, ost::UserInterface& ui,
                        const std::string& programPath)
{
    bool another = false;
    for (std::string extension : extensions) {
        if (!extension.empty() && extension[0] == '.')
            extension.erase(0, 1);
        const std::string dotted = "." + extension;

        if (options.asDefault && IsRefusedAsDefault(extension)) {
            ui.Message(kTitle,
                       "You are not allowed to change the association for \"" + dotted +
                           "\" files.",
                       ost::MessageIcon::Error);
            return false;
        }

        const std::string previous =
            store.ReadValue(AssociationRoot::Classes, dotted, "").value_or(std::string());
        if (!previous.empty() && previous != kAssociationClass && !options.skipConfirmation) {
            std::string other = DisplayedCommand(CommandOfClass(store, previous));
            if (other.empty())
                other = previous;
            int answer = ui.Message(kTitle,
                                    dotted + " files are currently associated with:\r\n\r\n" +
                                        other + "\r\n\r\nShould the association be changed?",
                                    ost::MessageIcon::Question, ost::kButtonYes | ost::kButtonNo);
            if (answer != ost::kButtonYes)
                return false;
        }

        Writer writer{store, StoreResult::Ok, {}};
        writer.Write(AssociationRoot::Classes, dotted, "", kAssociationClass);
        if (!previous.empty() && previous != kAssociationClass)
            writer.Write(AssociationRoot::Classes, dotted, kBackupValue, previous);
        if (options.addNewFileEntry)
            writer.Write(AssociationRoot::Classes, dotted + "\\ShellNew", "NullFile", "");

        const std::string classKey = kAssociationClass;
        const std::string verb = options.asDefault ? "open" : "edit";
        const std::string verbText =
            options.asDefault ? std::string("Open") : std::string("Edit with ") + kProductName;
        const std::string verbKey = classKey + "\\shell\\" + verb;
        if (options.asDefault)
            writer.Write(AssociationRoot::Classes, classKey + "\\shell", "", verb);
        bool commandWritten = writer.Write(AssociationRoot::Classes, verbKey + "\\command", "",
                                           "\"" + programPath + "\" \"%1\"");
        writer.Write(AssociationRoot::Classes, verbKey, "", verbText);
        writer.Write(AssociationRoot::Classes, classKey + "\\DefaultIcon", "", programPath + ",0");
        writer.Write(AssociationRoot::Classes, classKey, "", kDescription);

        if (commandWritten) {
            // The user's own choice for the extension wins over the class, so it has to go.
            const std::string extKey = kFileExts + dotted;
            writer.Note(store.DeleteKey(AssociationRoot::CurrentUser, extKey + "\\UserChoice"),
                        extKey + "\\UserChoice");
            writer.Note(store.DeleteValue(AssociationRoot::CurrentUser, extKey, "Progid"), extKey);
        }

        if (writer.result == StoreResult::AccessDenied && store.CanElevate()) {
            // Only a Windows store gets here; the elevated copy associates quietly and reports.
            store.RestartElevated("/nc /rs /a\"" + extension + "\"");
            return false;
        }
        if (writer.result == StoreResult::AccessDenied) {
            ui.Message(kTitle,
                       "The association failed.  This is usually caused by registry security "
                       "settings.",
                       ost::MessageIcon::Error);
            return false;
        }
        if (writer.result == StoreResult::Failed) {
            ui.Message(kTitle, "Failed to open/create registry key.\r\n\r\n" + writer.failedKey,
                       ost::MessageIcon::Error);
            return false;
        }

        store.NotifyChanged();
        if (!options.suppressSuccess) {
            ost::MessageBoxRequest box;
            box.title = kTitle;
            box.text = "The association was successful.";
            box.icon = ost::MessageIcon::Information;
            box.buttons = ost::kButtonOk;
            box.extraButtons.push_back(
                {"Another", "Make another association.", ost::kFirstExtraButtonId});
            if (ui.MessageBox(box) == ost::kFirstExtraButtonId)
                another = true;
        }
    }
    return another;
}

std::optional<std::string> InMemoryAssociationStore::ReadValue(AssociationRoot root,
                                                               const std::string& key,
                                                               const std::string& name)
{
    auto found = m_keys.find({root, key});
    if (found == m_keys.end())
        return std::nullopt;
    auto value = found->second.find(name);
    if (value == found->second.end())
        return std::nullopt;
    return value->second;
}

StoreResult InMemoryAssociationStore::Denied(AssociationRoot root, const std::string& key) const
{
    for (const auto& [denied, result] : m_denied) {
        if (denied.first != root)
            continue;
        if (key == denied.second || key.starts_with(denied.second + "\\"))
            return result;
    }
    return StoreResult::Ok;
}

StoreResult InMemoryAssociationStore::WriteValue(AssociationRoot root, const std::string& key,
                                                 const std::string& name, const std::string& value)
{
    if (StoreResult denied = Denied(root, key); denied != StoreResult::Ok)
        return denied;
    // Like the registry, creating a key creates its parents.
    for (std::size_t at = key.find('\\'); at != std::string::npos; at = key.find('\\', at + 1))
        m_keys[{root, key.substr(0, at)}];
    m_keys[{root, key}][name] = value;
    return StoreResult::Ok;
}

StoreResult InMemoryAssociationStore::DeleteKey(AssociationRoot root, const std::string& key)
{
    if (StoreResult denied = Denied(root, key); denied != StoreResult::Ok)
        return denied;
    for (auto it = m_keys.begin(); it != m_keys.end();) {
        if (it->first.first == root &&
            (it->first.second == key || it->first.second.starts_with(key + "\\")))
            it = m_keys.erase(it);
        else
            ++it;
    }
    return StoreResult::Ok;
}

StoreResult InMemoryAssociationStore::DeleteValue(AssociationRoot root, const std::string& key,
                                                  const std::string& name)
{
    if (StoreResult denied = Denied(root, key); denied != StoreResult::Ok)
        return denied;
    auto found = m_keys.find({root, key});
    if (found != m_keys.end())
        found->second.erase(name);
    return StoreResult::Ok;
}

bool InMemoryAssociationStore::HasKey(AssociationRoot root, const std::string& key) const
{
    return m_keys.count({root, key}) != 0;
}

void InMemoryAssociationStore::Deny(AssociationRoot root, const std::string& key,
                                    StoreResult result)
{
    m_denied[{root, key}] = result;
}

// ---------------------------------------------------------------------------------------------

namespace {

std::string ReadText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

/// Value of `key` in `section` of an ini-like desktop file, or "".
std::string IniValue(const std::string& text, const std::string& section, const std::string& key)
{
    bool inSection = false;
    for (const std::string& line : Lines(text)) {
        if (!line.empty() && line[0] == '[') {
            inSection = line == "[" + section + "]";
            continue;
        }
        if (inSection && line.starts_with(key + "="))
            return line.substr(key.size() + 1);
    }
    return {};
}

/// Sets key=value in a section of an ini-like text, adding section or key as needed and keeping
/// every other line as it was.
std::string SetIniValue(const std::string& text, const std::string& section, const std::string& key,
                        const std::string& value)
{
    std::vector<std::string> lines = Lines(text);
    const std::string header = "[" + section + "]";
    auto start = std::find(lines.begin(), lines.end(), header);
    if (start == lines.end()) {
        if (!lines.empty() && !lines.back().empty())
            lines.emplace_back();
        lines.push_back(header);
        lines.push_back(key + "=" + value);
    } else {
        auto end = std::find_if(start + 1, lines.end(),
                                [](const std::string& l) { return !l.empty() && l[0] == '['; });
        auto existing = std::find_if(
            start + 1, end, [&](const std::string& l) { return l.starts_with(key + "="); });
        if (existing != end) {
            *existing = key + "=" + value;
        } else {
            // Insert after the section's last non-empty line so blank separators stay put.
            auto insertAt = end;
            while (insertAt != start + 1 && (insertAt - 1)->empty())
                --insertAt;
            lines.insert(insertAt, key + "=" + value);
        }
    }
    std::string out;
    for (const std::string& line : lines)
        out += line + "\n";
    return out;
}

bool WriteTextAtomically(const std::string& path, const std::string& text)
{
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    return ost::ReplaceTextFile(path, text);
}

std::string DataDirsSearchPath()
{
    const char* dirs = std::getenv("XDG_DATA_DIRS");
    return dirs && *dirs ? dirs : "/usr/local/share:/usr/share";
}

} // namespace

FreedesktopAssociationStore::FreedesktopAssociationStore(std::string dataFolder,
                                                         std::string configFolder)
    : m_dataFolder(std::move(dataFolder)), m_configFolder(std::move(configFolder))
{}

std::string FreedesktopAssociationStore::DesktopPath() const
{
    return m_dataFolder + "/applications/" + kDesktopFileName;
}

std::string FreedesktopAssociationStore::MimeAppsPath() const
{
    return m_configFolder + "/mimeapps.list";
}

std::string FreedesktopAssociationStore::MimeTypeForExtension(const std::string& extension)
{
    static const std::pair<const char*, const char*> kKnown[] = {
        {"csv", "text/csv"},
        {"tsv", "text/tab-separated-values"},
        {"tab", "text/tab-separated-values"},
        {"txt", "text/plain"},
        {"psv", "text/csv"},
    };
    std::string lower = Lower(extension);
    for (const auto& [ext, mime] : kKnown)
        if (lower == ext)
            return mime;
    // The desktop's own convention for types that only an extension names.
    return "application/x-extension-" + lower;
}

std::string FreedesktopAssociationStore::DefaultDesktopEntry(const std::string& mimeType) const
{
    std::string entries = IniValue(ReadText(MimeAppsPath()), "Default Applications", mimeType);
    std::size_t end = entries.find(';');
    return entries.substr(0, end);
}

std::string FreedesktopAssociationStore::ExecOfDesktopEntry(const std::string& entry) const
{
    std::vector<std::string> folders{m_dataFolder};
    std::string search = DataDirsSearchPath();
    for (std::size_t start = 0; start <= search.size();) {
        std::size_t colon = search.find(':', start);
        if (colon == std::string::npos)
            colon = search.size();
        if (colon > start)
            folders.push_back(search.substr(start, colon - start));
        start = colon + 1;
    }
    for (const std::string& folder : folders) {
        std::string text = ReadText(folder + "/applications/" + entry);
        if (text.empty())
            continue;
        std::string exec = IniValue(text, "Desktop Entry", "Exec");
        // Field codes stand where the file name goes, like the registry's "%1".
        for (const char* code : {"%f", "%F", "%u", "%U"})
            ReplaceAll(exec, code, "\"%1\"");
        return exec;
    }
    return {};
}

std::optional<std::string> FreedesktopAssociationStore::ReadValue(AssociationRoot root,
                                                                  const std::string& key,
                                                                  const std::string& name)
{
    if (auto held = InMemoryAssociationStore::ReadValue(root, key, name))
        return held;
    if (root != AssociationRoot::Classes || !name.empty())
        return std::nullopt;
    if (key.size() > 1 && key[0] == '.' && key.find('\\') == std::string::npos) {
        std::string entry = DefaultDesktopEntry(MimeTypeForExtension(key.substr(1)));
        if (entry.empty())
            return std::nullopt;
        return entry == kDesktopFileName ? std::string(kAssociationClass) : entry;
    }
    const std::string suffix = "\\shell\\open\\command";
    if (key.ends_with(suffix) && key.ends_with(".desktop" + suffix)) {
        std::string exec = ExecOfDesktopEntry(key.substr(0, key.size() - suffix.size()));
        if (!exec.empty())
            return exec;
    }
    return std::nullopt;
}

void FreedesktopAssociationStore::NotifyChanged()
{
    InMemoryAssociationStore::NotifyChanged();
    const std::string classKey = kAssociationClass;
    std::vector<std::string> mimeTypes;
    for (const auto& [key, values] : m_keys) {
        const std::string& path = key.second;
        if (key.first != AssociationRoot::Classes || path.size() < 2 || path[0] != '.' ||
            path.find('\\') != std::string::npos)
            continue;
        auto value = values.find("");
        if (value != values.end() && value->second == classKey)
            mimeTypes.push_back(MimeTypeForExtension(path.substr(1)));
    }
    std::sort(mimeTypes.begin(), mimeTypes.end());
    mimeTypes.erase(std::unique(mimeTypes.begin(), mimeTypes.end()), mimeTypes.end());

    std::string verb =
        InMemoryAssociationStore::ReadValue(AssociationRoot::Classes, classKey + "\\shell", "")
            .value_or("open");
    std::string command =
        InMemoryAssociationStore::ReadValue(AssociationRoot::Classes,
                                            classKey + "\\shell\\" + verb + "\\command", "")
            .value_or("");
    if (command.empty()) {
        // Associated for "edit" only: the verb key holds the command.
        command = InMemoryAssociationStore::ReadValue(AssociationRoot::Classes,
                                                      classKey + "\\shell\\edit\\command", "")
                      .value_or("");
    }
    std::string exec = command;
    ReplaceAll(exec, "\"%1\"", "%f");
    ReplaceAll(exec, "%1", "%f");

    std::string mimeList;
    for (const std::string& mime : mimeTypes)
        mimeList += mime + ";";
    std::string desktop =
        "[Desktop Entry]\n"
        "Type=Application\n"
        "Name=Quirnel\n"
        "Comment=" +
        InMemoryAssociationStore::ReadValue(AssociationRoot::Classes, classKey, "")
            .value_or(kDescription) +
        "\n"
        "Exec=" +
        exec +
        "\n"
        "Terminal=false\n"
        "Categories=Office;Spreadsheet;\n"
        "MimeType=" +
        mimeList + "\n";
    m_commitOk = WriteTextAtomically(DesktopPath(), desktop);

    const bool asDefault = verb == "open";
    std::string apps = ReadText(MimeAppsPath());
    for (const std::string& mime : mimeTypes) {
        std::string added = IniValue(apps, "Added Associations", mime);
        if (added.find(kDesktopFileName) == std::string::npos)
            apps = SetIniValue(apps, "Added Associations", mime,
                               std::string(kDesktopFileName) + ";" + added);
        if (asDefault)
            apps = SetIniValue(apps, "Default Applications", mime, kDesktopFileName);
    }
    if (!mimeTypes.empty())
        m_commitOk = WriteTextAtomically(MimeAppsPath(), apps) && m_commitOk;
}

} // namespace quirnel
