#include "ostrand/spell/hunspell_dictionary.h"
#include "ostrand/spell/personal_word_list.h"
#include "ostrand/spell/spell_dictionary.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace ost {
namespace {

using quirnel::test::ReadFile;
using quirnel::test::TempDir;
using quirnel::test::WriteFile;

TEST(ChooseDictionary, PrefersTheUsersLanguageThenEnglish)
{
    const std::vector<std::string> installed = {"de_DE", "de_AT", "en_GB", "en_US", "fr"};
    EXPECT_EQ(ChooseDictionary("de_DE", installed), "de_DE");
    EXPECT_EQ(ChooseDictionary("de_CH", installed), "de_AT");
    EXPECT_EQ(ChooseDictionary("fr_FR", installed), "fr");
    EXPECT_EQ(ChooseDictionary("pt_BR", installed), "en_US");
    EXPECT_EQ(ChooseDictionary("", installed), "en_US");
    EXPECT_EQ(ChooseDictionary("pt_BR", {"en_GB", "en_AU"}), "en_AU");
    EXPECT_EQ(ChooseDictionary("pt_BR", {"de_DE"}), "");
    EXPECT_EQ(ChooseDictionary("en_US", {}), "");
}

TEST(OpenSystemDictionary, NoneInstalledGivesNothing)
{
    TempDir dir;
    EXPECT_EQ(OpenSystemDictionary("en_US", {dir.Path(), dir / "missing"}), nullptr);
    // A .dic without its .aff is no dictionary.
    WriteFile(dir / "en_US.dic", "1\nword\n");
    EXPECT_EQ(OpenSystemDictionary("en_US", {dir.Path()}), nullptr);
}

TEST(OpenSystemDictionary, ReadsADictionaryInItsOwnEncoding)
{
    // A tiny Latin-1 dictionary: words come and go as UTF-8 all the same.
    TempDir dir;
    WriteFile(dir / "xx_XX.aff", "SET ISO8859-1\nTRY abcdefghijklmnopqrstuvwxyz\xE9\n");
    WriteFile(dir / "xx_XX.dic", "3\ncaf\xE9\ntable\nlabel\n");
    std::unique_ptr<SpellDictionary> dictionary = OpenSystemDictionary("xx_XX", {dir.Path()});
    ASSERT_NE(dictionary, nullptr);
    EXPECT_TRUE(dictionary->Knows("caf\xC3\xA9"));
    EXPECT_TRUE(dictionary->Knows("table"));
    EXPECT_FALSE(dictionary->Knows("tabel"));
    // A character Latin-1 cannot write is simply unknown.
    EXPECT_FALSE(dictionary->Knows("\xE2\x82\xAC"));
    const std::vector<std::string> suggestions = dictionary->Suggest("tabel");
    EXPECT_NE(std::find(suggestions.begin(), suggestions.end(), "table"), suggestions.end());
    EXPECT_EQ(dictionary->Suggest("cafe").front(), "caf\xC3\xA9");
    dictionary->AddWord("Quirnel");
    EXPECT_TRUE(dictionary->Knows("Quirnel"));
}

TEST(PersonalWordList, KeepsWordsAcrossRuns)
{
    TempDir dir;
    {
        PersonalWordList list(dir / "words.txt");
        EXPECT_TRUE(list.Words().empty());
        EXPECT_TRUE(list.Add("Quirnel"));
        EXPECT_TRUE(list.Add("caf\xC3\xA9"));
        EXPECT_TRUE(list.Add("Quirnel"));
        EXPECT_FALSE(list.Add("two\nlines"));
        EXPECT_FALSE(list.Add(""));
    }
    PersonalWordList again(dir / "words.txt");
    EXPECT_TRUE(again.Contains("Quirnel"));
    EXPECT_TRUE(again.Contains("caf\xC3\xA9"));
    EXPECT_FALSE(again.Contains("two"));
    EXPECT_EQ(again.Words().size(), 2u);
    EXPECT_EQ(dir.Entries(), std::vector<std::string>{"words.txt"});

    WriteFile(dir / "crlf.txt", "one\r\n\r\ntwo");
    PersonalWordList crlf(dir / "crlf.txt");
    EXPECT_EQ(crlf.Words().size(), 2u);
    EXPECT_TRUE(crlf.Contains("one"));
}

TEST(PersonalWordList, AnUnwritableListStillKnowsTheWordForThisRun)
{
    TempDir dir;
    PersonalWordList list(dir / "missing" / "words.txt");
    EXPECT_FALSE(list.Add("Quirnel"));
    EXPECT_TRUE(list.Contains("Quirnel"));
    EXPECT_TRUE(dir.Entries().empty());
}

} // namespace
} // namespace ost
