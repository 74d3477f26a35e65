#pragma once
// The program's settings file: typed values by section and key, read from and written to a
// UTF-8 text file of "[Section]" and "Key=type:value" lines. Keys the program does not know
// survive a rewrite, and a save replaces the file atomically or not at all.

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

/// A step of SettingsFile::Save, for making it fail in tests (root ignores permissions).
enum class SettingsSaveStep
{
    None,
    CreateTemporary,
    Write,
    Sync,
    Rename
};

class SettingsFile
{
public:
    /// Replaces the contents with the file's. Never throws; damaged lines are skipped.
    SettingsLoadStatus Load(const std::filesystem::path& path);
    /// Writes a temporary file beside `path`, flushes it to disk and renames it into place.
    /// False when any step failed; the previous file is then untouched and no temporary is left.
    bool Save(const std::filesystem::path& path) const;

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

    /// Test seam: every following Save fails at `step` (None restores normal saving).
    static void FailSaveAtForTest(SettingsSaveStep step);

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

    std::vector<Section> m_sections;
    int m_damagedLines = 0;
};

} // namespace ost
