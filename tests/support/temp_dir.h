#pragma once
// A fresh folder per test, removed afterwards, and small file helpers.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel::test {

class TempDir
{
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::filesystem::path operator/(std::string_view name) const { return m_path / name; }
    /// Names in the folder, sorted.
    std::vector<std::string> Entries() const;

private:
    std::filesystem::path m_path;
};

void WriteFile(const std::filesystem::path& path, std::string_view bytes);
std::string ReadFile(const std::filesystem::path& path);

} // namespace quirnel::test
