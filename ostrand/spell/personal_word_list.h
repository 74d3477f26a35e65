#pragma once
// The words the user added to the dictionary, kept in a text file of one UTF-8 word a line so
// that they are known in every later run.

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

namespace ost {

class PersonalWordList
{
public:
    /// Reads the file at `path`; a missing or unreadable file gives an empty list. An empty
    /// path keeps the words in memory only.
    explicit PersonalWordList(std::filesystem::path path);

    bool Contains(std::string_view word) const;
    /// Adds the word and rewrites the file (through a temporary file, so that a failed write
    /// keeps the old list). False when the file could not be written; the word is known for
    /// this run anyway.
    bool Add(std::string_view word);
    const std::set<std::string, std::less<>>& Words() const { return m_words; }

private:
    std::filesystem::path m_path;
    std::set<std::string, std::less<>> m_words;
};

} // namespace ost
