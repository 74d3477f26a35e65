#include "document/file_history.h"

#include "ostrand/settings/settings_file.h"
#include "ostrand/settings/settings_folder.h"

#include <algorithm>

namespace quirnel {

const std::string* FileRecord::Find(std::string_view key) const
{
    for (const auto& [k, v] : m_values)
        if (k == key)
            return &v;
    return nullptr;
}

void FileRecord::Set(std::string_view key, std::string value)
{
    for (auto& [k, v] : m_values) {
        if (k == key) {
            v = std::move(value);
            return;
        }
    }
    m_values.emplace_back(std::string(key), std::move(value));
}

void FileRecord::Remove(std::string_view key)
{
    std::erase_if(m_values, [&](const auto& entry) { return entry.first == key; });
}

const FileRecord* FileHistory::Find(std::string_view path) const
{
    for (const auto& [p, record] : m_entries)
        if (p == path)
            return &record;
    return nullptr;
}

void FileHistory::Put(std::string_view path, FileRecord record)
{
    Remove(path);
    m_entries.insert(m_entries.begin(), {std::string(path), std::move(record)});
}

void FileHistory::Touch(std::string_view path)
{
    FileRecord record;
    if (const FileRecord* existing = Find(path))
        record = *existing;
    Put(path, std::move(record));
}

void FileHistory::Remove(std::string_view path)
{
    std::erase_if(m_entries, [&](const auto& entry) { return entry.first == path; });
}

void FileHistory::Trim(int maxEntries)
{
    if (maxEntries < 0)
        maxEntries = 0;
    if (Count() > maxEntries)
        m_entries.resize(static_cast<std::size_t>(maxEntries));
}

std::vector<std::string> FileHistory::Paths() const
{
    std::vector<std::string> paths;
    for (const auto& entry : m_entries)
        paths.push_back(entry.first);
    return paths;
}

ost::SettingsLoadStatus FileHistory::Load(const std::filesystem::path& file)
{
    ost::SettingsFile settings;
    m_loadStatus = settings.Load(file);
    m_loadError = settings.LoadError();
    m_unreadable.clear();
    if (m_loadStatus == ost::SettingsLoadStatus::Unreadable)
        m_unreadable = file;
    Read(settings);
    return m_loadStatus;
}

bool FileHistory::Save(const std::filesystem::path& file) const
{
    std::error_code ignored;
    if (!m_unreadable.empty() && (file.lexically_normal() == m_unreadable.lexically_normal() ||
                                  std::filesystem::equivalent(file, m_unreadable, ignored)))
        return false;
    ost::SettingsFile settings;
    Write(settings);
    return settings.Save(file);
}

// One section per path, "File0" the most recent; "Path" first, then the record's keys.
void FileHistory::Read(const ost::SettingsFile& settings)
{
    m_entries.clear();
    for (const std::string& section : settings.Sections()) {
        if (!section.starts_with("File"))
            continue;
        std::optional<std::string> path = settings.GetText(section, "Path");
        if (!path || path->empty() || Find(*path))
            continue;
        FileRecord record;
        for (const std::string& key : settings.Keys(section)) {
            if (key == "Path")
                continue;
            if (std::optional<std::string> value = settings.GetText(section, key))
                record.Set(key, *value);
        }
        m_entries.emplace_back(*path, std::move(record));
    }
    Trim();
}

void FileHistory::Write(ost::SettingsFile& settings) const
{
    settings.Clear();
    int index = 0;
    for (const auto& [path, record] : m_entries) {
        const std::string section = "File" + std::to_string(index++);
        settings.SetText(section, "Path", path);
        for (const auto& [key, value] : record.Values())
            settings.SetText(section, key, value);
    }
}

std::filesystem::path FileHistory::DefaultFile()
{
    return ost::SettingsFolder() / "filehistory.dat";
}

} // namespace quirnel
