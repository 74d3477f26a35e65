#include "ostrand/spell/hunspell_dictionary.h"

#include "ostrand/spell/spell_dictionary.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <hunspell.hxx>
#include <iconv.h>
#include <system_error>

namespace ost {

namespace {

/// Converts between UTF-8 and a dictionary's own encoding; identity for UTF-8 dictionaries.
class Recoder
{
public:
    Recoder(const std::string& from, const std::string& to)
    {
        if (from != to)
            m_handle = iconv_open(to.c_str(), from.c_str());
    }
    ~Recoder()
    {
        if (m_handle != reinterpret_cast<iconv_t>(-1))
            iconv_close(m_handle);
    }
    Recoder(const Recoder&) = delete;
    Recoder& operator=(const Recoder&) = delete;

    /// False when the text has characters the other side lacks.
    bool Convert(std::string_view in, std::string& out)
    {
        if (m_handle == reinterpret_cast<iconv_t>(-1)) {
            out.assign(in);
            return true;
        }
        out.assign(in.size() * 4 + 16, '\0');
        char* source = const_cast<char*>(in.data());
        std::size_t sourceLeft = in.size();
        char* target = out.data();
        std::size_t targetLeft = out.size();
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        if (iconv(m_handle, &source, &sourceLeft, &target, &targetLeft) ==
            static_cast<std::size_t>(-1))
            return false;
        out.resize(out.size() - targetLeft);
        return true;
    }

private:
    iconv_t m_handle = reinterpret_cast<iconv_t>(-1);
};

std::string NormalEncoding(std::string encoding)
{
    // Hunspell names ISO-8859 sets "ISO8859-1"; iconv knows both spellings, but UTF-8 must
    // compare equal for the identity case.
    std::transform(encoding.begin(), encoding.end(), encoding.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return encoding == "UTF8" ? std::string("UTF-8") : encoding;
}

class HunspellDictionary : public SpellDictionary
{
public:
    HunspellDictionary(const std::string& aff, const std::string& dic)
        : m_hunspell(aff.c_str(), dic.c_str()),
          m_encoding(NormalEncoding(m_hunspell.get_dict_encoding())),
          m_toDictionary("UTF-8", m_encoding), m_fromDictionary(m_encoding, "UTF-8")
    {}

    bool Knows(std::string_view word) override
    {
        std::string own;
        // A word the dictionary's character set cannot even write is not one of its words.
        return m_toDictionary.Convert(word, own) && m_hunspell.spell(own);
    }

    std::vector<std::string> Suggest(std::string_view word) override
    {
        std::string own;
        std::vector<std::string> suggestions;
        if (!m_toDictionary.Convert(word, own))
            return suggestions;
        for (const std::string& suggestion : m_hunspell.suggest(own)) {
            std::string utf8;
            if (m_fromDictionary.Convert(suggestion, utf8))
                suggestions.push_back(std::move(utf8));
        }
        return suggestions;
    }

    void AddWord(std::string_view word) override
    {
        std::string own;
        if (m_toDictionary.Convert(word, own))
            m_hunspell.add(own);
    }

private:
    Hunspell m_hunspell;
    std::string m_encoding;
    Recoder m_toDictionary;
    Recoder m_fromDictionary;
};

std::string LanguageOf(std::string_view name)
{
    return std::string(name.substr(0, name.find('_')));
}

} // namespace

std::vector<std::filesystem::path> DefaultDictionaryFolders()
{
    return {"/usr/share/hunspell", "/usr/share/myspell/dicts", "/usr/share/myspell"};
}

std::string UserLanguage()
{
    const char* value = nullptr;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        value = std::getenv(variable);
        if (value && *value)
            break;
    }
    std::string name = value ? value : "";
    name = name.substr(0, name.find_first_of(".@"));
    if (name == "C" || name == "POSIX")
        return "";
    return name;
}

std::string ChooseDictionary(std::string_view language, const std::vector<std::string>& available)
{
    auto has = [&](std::string_view name) {
        return std::find(available.begin(), available.end(), name) != available.end();
    };
    auto sameLanguage = [&](std::string_view wanted) -> std::string {
        std::vector<std::string> matches;
        for (const std::string& name : available)
            if (LanguageOf(name) == wanted)
                matches.push_back(name);
        std::sort(matches.begin(), matches.end());
        return matches.empty() ? std::string() : matches.front();
    };
    if (!language.empty()) {
        if (has(language))
            return std::string(language);
        std::string near = sameLanguage(LanguageOf(language));
        if (!near.empty())
            return near;
    }
    if (has("en_US"))
        return "en_US";
    return sameLanguage("en");
}

std::unique_ptr<SpellDictionary>
OpenSystemDictionary(std::string_view language, const std::vector<std::filesystem::path>& folders)
{
    std::vector<std::string> available;
    for (const std::filesystem::path& folder : folders) {
        std::error_code error;
        for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
             it.increment(error)) {
            const std::filesystem::path& file = it->path();
            if (file.extension() != ".dic")
                continue;
            std::filesystem::path aff = file;
            aff.replace_extension(".aff");
            if (std::filesystem::exists(aff, error))
                available.push_back(file.stem().string());
        }
    }
    const std::string chosen = ChooseDictionary(language, available);
    if (chosen.empty())
        return nullptr;
    for (const std::filesystem::path& folder : folders) {
        const std::filesystem::path dic = folder / (chosen + ".dic");
        const std::filesystem::path aff = folder / (chosen + ".aff");
        std::error_code error;
        if (std::filesystem::exists(dic, error) && std::filesystem::exists(aff, error))
            return std::make_unique<HunspellDictionary>(aff.string(), dic.string());
    }
    return nullptr;
}

} // namespace ost
