#include "ostrand/spell/personal_word_list.h"

#include <cstdio>
#include <fstream>
#include <system_error>

namespace ost {

PersonalWordList::PersonalWordList(std::filesystem::path path) : m_path(std::move(path))
{
    if (m_path.empty())
        return;
    std::ifstream in(m_path, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty())
            m_words.insert(line);
    }
}

bool PersonalWordList::Contains(std::string_view word) const
{
    return m_words.find(word) != m_words.end();
}

bool PersonalWordList::Add(std::string_view word)
{
    // A line break inside a "word" would split it into two entries on the next read.
    if (word.empty() || word.find_first_of("\r\n") != std::string_view::npos)
        return false;
    m_words.emplace(word);
    if (m_path.empty())
        return true;
    std::filesystem::path temporary = m_path;
    temporary += ".tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        for (const std::string& known : m_words)
            out << known << '\n';
        out.flush();
        if (!out) {
            out.close();
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            return false;
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, m_path, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        return false;
    }
    return true;
}

} // namespace ost
