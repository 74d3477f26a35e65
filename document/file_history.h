#pragma once
// The file history: per path, the view state the program remembers from one run to the next,
// most recently used first and never more than 100 paths.

#include "ostrand/settings/settings_file.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quirnel {

/// Key/value texts of one path, in the order they were put.
class FileRecord
{
public:
    /// nullptr when the key is absent.
    const std::string* Find(std::string_view key) const;
    void Set(std::string_view key, std::string value);
    void Remove(std::string_view key);
    const std::vector<std::pair<std::string, std::string>>& Values() const { return m_values; }
    bool operator==(const FileRecord&) const = default;

private:
    std::vector<std::pair<std::string, std::string>> m_values;
};

class FileHistory
{
public:
    static constexpr int kMaxEntries = 100;

    /// nullptr when the path has no record.
    const FileRecord* Find(std::string_view path) const;
    /// Stores the record and makes the path the most recent one.
    void Put(std::string_view path, FileRecord record);
    /// Moves the path to the front, adding an empty record when it has none.
    void Touch(std::string_view path);
    void Remove(std::string_view path);
    /// Drops the least recent entries beyond `maxEntries`.
    void Trim(int maxEntries = kMaxEntries);
    void Clear() { m_entries.clear(); }
    int Count() const { return static_cast<int>(m_entries.size()); }
    /// Most recent first.
    std::vector<std::string> Paths() const;

    /// A missing file gives an empty history; damaged entries are skipped. So does a file that
    /// is there but cannot be read (Unreadable), which Save then leaves alone.
    ost::SettingsLoadStatus Load(const std::filesystem::path& file);
    /// Atomic; false when the file could not be written, and always for the file that the last
    /// Load found Unreadable: the history in it was never seen, and writing this one would
    /// lose it.
    bool Save(const std::filesystem::path& file) const;
    /// The history held by settings read from a file; damaged entries are skipped.
    void Read(const ost::SettingsFile& settings);
    /// Replaces the contents of `settings` with the history, as Save writes it.
    void Write(ost::SettingsFile& settings) const;
    /// What the last Load found; FirstRun before any.
    ost::SettingsLoadStatus LoadStatus() const { return m_loadStatus; }
    /// The errno value that made the last Load Unreadable; 0 otherwise.
    int LoadError() const { return m_loadError; }

    /// "filehistory.dat" in the settings folder.
    static std::filesystem::path DefaultFile();

private:
    std::vector<std::pair<std::string, FileRecord>> m_entries;
    ost::SettingsLoadStatus m_loadStatus = ost::SettingsLoadStatus::FirstRun;
    int m_loadError = 0;
    /// The file the last Load could not read; empty when it could.
    std::filesystem::path m_unreadable;
};

} // namespace quirnel
