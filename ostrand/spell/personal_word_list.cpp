#include "ostrand/spell/personal_word_list.h"

#include "ostrand/core/text_file.h"

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
    std::string text;
    for (const std::string& known : m_words)
        text.append(known).push_back('\n');
    return ReplaceTextFile(m_path, text);
}

} // namespace ost
