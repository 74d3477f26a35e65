#pragma once
// The program's settings file: typed values by section and key, read from and written to a
// UTF-8 text file of "[Section]" and "Key=type:value" lines. Keys the program does not know
// survive a rewrite, and a save replaces the file atomically or not at all.

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ost {

/// One stored value. Type letters in the file: b, i, d, s (8-bit text), w (wide text).
using SettingsValue = std::variant<bool, int, double, std::string, std::u16string>;

enum class SettingsLoadStatus
{
    /// No file: the program has not run before (or its settings were removed).
    FirstRun,
    Loaded,
    /// Read, but some lines could not be understood and were skipped.
    Damaged,
    /// The file exists but could not be read; nothing was loaded.
    Unreadable
};

class SettingsFile
{
public:
    /// Replaces the contents with the file's. Never throws; damaged lines are skipped.
    SettingsLoadStatus Load(const std::filesystem::path& path);
    /// Writes a temporary file beside `path` (beside the file it links to, for a link), flushes
    /// it to disk and renames it into place. False when any step failed; the previous file is
    /// then untouched and no temporary is left. Always false for the file that the last Load
    /// found Unreadable: its settings were never seen, and writing these would lose them.
    bool Save(const std::filesystem::path& path) const;
    /// What the last Load found; FirstRun before any.
    SettingsLoadStatus LoadStatus() const { return m_loadStatus; }
    /// The errno value that made the last Load Unreadable; 0 otherwise.
    int LoadError() const { return m_loadError; }

    /// Replaces the contents with those of `text` (the file format). Loaded or Damaged.
    SettingsLoadStatus Parse(std::string_view text);
    std::string Serialize() const;
    /// Lines skipped by the last Load or Parse.
    int DamagedLines() const { return m_damagedLines; }

    /// Null when the key is absent.
    const SettingsValue* Find(std::string_view section, std::string_view key) const;
    /// Replaces a value in place (its position in the file stays), or appends it to the
    /// section, which is appended to the file when new.
    void Set(std::string_view section, std::string_view key, SettingsValue value);
    /// False when there was no such key.
    bool Remove(std::string_view section, std::string_view key);
    bool RemoveSection(std::string_view section);
    void Clear();

    /// The value as 8-bit text; nullopt when absent or of another type.
    std::optional<std::string> GetText(std::string_view section, std::string_view key) const;
    void SetText(std::string_view section, std::string_view key, std::string_view text);

    /// Section names and a section's keys, in file order.
    std::vector<std::string> Sections() const;
    std::vector<std::string> Keys(std::string_view section) const;

    /// Test seam, as root ignores permissions: the file calls of Load and Save are counted
    /// from 1 after this call, and the one numbered `call` fails with `error`; a failing write
    /// first puts out half of its bytes when `midway`. 0 turns failing off.
    static void FailCallForTest(int call, int error = EIO, bool midway = false);
    /// The file calls counted since the last FailCallForTest.
    static int CallsForTest();

private:
    struct Entry
    {
        std::string key;
        SettingsValue value;
    };
    struct Section
    {
        std::string name;
        std::vector<Entry> entries;
    };

    Section* FindSection(std::string_view name);
    const Section* FindSection(std::string_view name) const;
    bool ParseLine(std::string_view line, Section*& current);
    SettingsLoadStatus ReadAndParse(const std::filesystem::path& path);

    std::vector<Section> m_sections;
    int m_damagedLines = 0;
    SettingsLoadStatus m_loadStatus = SettingsLoadStatus::FirstRun;
    int m_loadError = 0;
    /// The file the last Load could not read; empty when it could.
    std::filesystem::path m_unreadable;
};

/// The message for a settings file that exists but could not be read (`error` is the errno
/// value), for the user to see once.
std::string UnreadableSettingsMessage(const std::filesystem::path& file, int error);

} // namespace ost
