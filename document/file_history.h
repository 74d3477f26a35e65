#pragma once
// The file history: per path, the view state the program remembers from one run to the next,
// most recently used first and never more than 100 paths.

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

    /// A missing file gives an empty history; damaged entries are skipped.
    void Load(const std::filesystem::path& file);
    /// Atomic; false when the file could not be written.
    bool Save(const std::filesystem::path& file) const;

    /// "filehistory.dat" in the settings folder.
    static std::filesystem::path DefaultFile();

private:
    std::vector<std::pair<std::string, FileRecord>> m_entries;
};

} // namespace quirnel
