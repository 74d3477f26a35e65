#include "editing/spell_check.h"
#include "ostrand/spell/spell_dictionary.h"
#include "tests/support/editing_doubles.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <set>

namespace quirnel::test {
namespace {

constexpr const char* kTitle = "Spell Check Table";

/// Knows a fixed word list; suggests "table" for anything else.
class FakeDictionary : public ost::SpellDictionary
{
public:
    explicit FakeDictionary(std::set<std::string, std::less<>> words) : m_words(std::move(words)) {}
    bool Knows(std::string_view word) override { return m_words.count(word) > 0; }
    std::vector<std::string> Suggest(std::string_view word) override
    {
        return word == "tabel" ? std::vector<std::string>{"table", "label"}
                               : std::vector<std::string>{};
    }
    void AddWord(std::string_view word) override { m_words.emplace(word); }

private:
    std::set<std::string, std::less<>> m_words;
};

std::vector<std::string> Words(std::string_view text)
{
    std::vector<std::string> words;
    for (const WordSpan& span : FindWords(text))
        words.emplace_back(text.substr(span.start, span.length));
    return words;
}

TEST(FindWords, TakesLettersAndInnerApostrophesAndSkipsCodes)
{
    EXPECT_EQ(Words("Don't stop, 'quoted' words."),
              (std::vector<std::string>{"Don't", "stop", "quoted", "words"}));
    EXPECT_EQ(Words("3rd file_name x2 42 ok"), (std::vector<std::string>{"ok"}));
    EXPECT_EQ(Words("mail bob@example.com, see https://example.org/page now"),
              (std::vector<std::string>{"mail", "see", "now"}));
    EXPECT_EQ(Words("Stra\xC3\x9F"
                    "e\xE2\x80\x94"
                    "caf\xC3\xA9 it\xE2\x80\x99s"),
              (std::vector<std::string>{"Stra\xC3\x9F"
                                        "e",
                                        "caf\xC3\xA9", "it\xE2\x80\x99s"}));
    EXPECT_TRUE(Words("").empty());
    EXPECT_TRUE(Words("'' \xE2\x80\x99 -- 12.5").empty());
    // Broken UTF-8 separates words and never reads past the end.
    EXPECT_EQ(Words("ab\xC3"), (std::vector<std::string>{"ab"}));
    EXPECT_EQ(Words("ab\x80"
                    "cd\xF0\x9F"),
              (std::vector<std::string>{"ab", "cd"}));
}

class SpellCheckTest : public ::testing::Test, public EditingFixture
{
protected:
    SpellCheckTest()
    {
        host.dictionary = [this]() -> std::unique_ptr<ost::SpellDictionary> {
            return std::make_unique<FakeDictionary>(known);
        };
        host.personalWordList = (dir / "words.txt").string();
    }

    /// The next unknown word shown must be `word` in cell (row, column); `action` answers it.
    void ExpectWord(std::string word, int row, int column, SpellAction action,
                    std::string replacement = {})
    {
        dialogs.Expect<SpellCheckRequest>("SpellCheck", [=, this](SpellCheckRequest& request) {
            EXPECT_EQ(request.word, word);
            EXPECT_EQ(request.row, row);
            EXPECT_EQ(request.column, column);
            EXPECT_EQ(request.title, kTitle);
            EXPECT_EQ(request.cellText.substr(request.wordStart, request.wordLength), word);
            // The grid shows the cell being asked about.
            EXPECT_EQ(document.Table().FocusRow(), row);
            EXPECT_EQ(document.Table().FocusColumn(), column);
            seen.push_back(request);
            request.action = action;
            if (!replacement.empty())
                request.replacement = replacement;
            return true;
        });
    }

    std::set<std::string, std::less<>> known = {"a",    "the", "table", "is",
                                                "here", "red", "Name",  "note"};
    TempDir dir;
    std::vector<SpellCheckRequest> seen;
};

TEST_F(SpellCheckTest, FindsAMisspeltWordInItsCellWithSuggestions)
{
    Open({"Name", "note"}, {{"the table", "red"}, {"here", "a tabel is red"}});
    ExpectWord("tabel", 1, 2, SpellAction::Ignore);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].cellText, "a tabel is red");
    EXPECT_EQ(seen[0].wordStart, 2u);
    EXPECT_EQ(seen[0].rowNumber, 2);
    EXPECT_EQ(seen[0].columnName, "note");
    EXPECT_EQ(seen[0].suggestions, (std::vector<std::string>{"table", "label"}));
    EXPECT_EQ(seen[0].replacement, "table");
    EXPECT_FALSE(document.Modified());
}

TEST_F(SpellCheckTest, ReplaceChangesOnlyThatOccurrence)
{
    Open({"note"}, {{"tabel tabel"}});
    ExpectWord("tabel", 0, 1, SpellAction::Replace);
    ExpectWord("tabel", 0, 1, SpellAction::Ignore);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_EQ(Stored(), std::vector<std::string>{"table tabel"});
    EXPECT_EQ(seen[1].wordStart, 6u);
    EXPECT_TRUE(document.Modified());
}

TEST_F(SpellCheckTest, ReplaceAllChangesEveryOccurrenceAndMarksTheDocumentModified)
{
    Open({"Name", "note"}, {{"tabel", "the tabel"}, {"tabels", "tabel, tabel"}});
    // The first one is ignored, the second replaced everywhere: the first changes too.
    ExpectWord("tabel", 0, 1, SpellAction::Ignore);
    ExpectWord("tabel", 0, 2, SpellAction::ReplaceAll, "table");
    ExpectWord("tabels", 1, 1, SpellAction::Ignore);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_EQ(Stored(1), (std::vector<std::string>{"table", "tabels"}));
    EXPECT_EQ(Stored(2), (std::vector<std::string>{"the table", "table, table"}));
    EXPECT_TRUE(document.Modified());
    EXPECT_GE(host.modifiedMarks, 1);
    EXPECT_FALSE(host.busy);
}

TEST_F(SpellCheckTest, ViewsHearOfEachReplacement)
{
    struct Counter : TableControlObserver
    {
        void OnTableReset() override { ++told; }
        void OnTableRepaint() override { ++told; }
        int told = 0;
    } view;
    Open({"note"}, {{"tabel"}, {"tabel"}, {"qq"}});
    document.Table().AddObserver(&view);
    ExpectWord("tabel", 0, 1, SpellAction::Replace);
    dialogs.Expect<SpellCheckRequest>("SpellCheck", [&view](SpellCheckRequest& request) {
        // The first replacement shows before the next question.
        EXPECT_EQ(view.told, 1);
        request.action = SpellAction::ReplaceAll;
        return true;
    });
    ExpectWord("qq", 2, 1, SpellAction::Ignore);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_EQ(view.told, 2);
    document.Table().RemoveObserver(&view);
}

TEST_F(SpellCheckTest, ReplaceAllKeepsCheckingTheRestOfTheCell)
{
    known.insert("desk");
    Open({"note"}, {{"tabel x tabel qq tabel"}});
    ExpectWord("tabel", 0, 1, SpellAction::Ignore);
    ExpectWord("x", 0, 1, SpellAction::Ignore);
    ExpectWord("tabel", 0, 1, SpellAction::ReplaceAll, "desk");
    ExpectWord("qq", 0, 1, SpellAction::Ignore);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_EQ(Stored(), std::vector<std::string>{"desk x desk qq desk"});
    EXPECT_EQ(seen[3].wordStart, 12u);
}

TEST_F(SpellCheckTest, IgnoreAllSkipsLaterOccurrences)
{
    Open({"note"}, {{"qq"}, {"zz qq"}, {"qq zz"}});
    ExpectWord("qq", 0, 1, SpellAction::IgnoreAll);
    ExpectWord("zz", 1, 1, SpellAction::Ignore);
    ExpectWord("zz", 2, 1, SpellAction::Ignore);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_FALSE(document.Modified());
}

TEST_F(SpellCheckTest, AddedWordsPersistInThePersonalWordList)
{
    Open({"note"}, {{"Quirnel rocks"}, {"Quirnel"}});
    ExpectWord("Quirnel", 0, 1, SpellAction::AddToDictionary);
    ExpectWord("rocks", 0, 1, SpellAction::Ignore);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_EQ(ReadFile(dir / "words.txt"), "Quirnel\n");

    // A later check, with a fresh dictionary, knows the word from the list.
    ExpectWord("rocks", 0, 1, SpellAction::AddToDictionary);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_EQ(ReadFile(dir / "words.txt"), "Quirnel\nrocks\n");
    ui.Expect(kTitle, "No spelling mistakes were found.");
    SpellCheckTableCommand(context);
}

TEST_F(SpellCheckTest, OnlyShownRowsAndColumnsAreChecked)
{
    Open({"Name", "note", "extra"}, {{"qq", "ww", "ee"}, {"rr", "tt", "yy"}});
    document.Table().SetRowHidden(0, true);
    document.Table().SetColumnHidden(2, true);
    ExpectWord("rr", 1, 1, SpellAction::Ignore);
    ExpectWord("yy", 1, 3, SpellAction::Ignore);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_EQ(seen[0].rowNumber, 1);
}

TEST_F(SpellCheckTest, StoppingEndsTheCheckWithoutAReport)
{
    Open({"note"}, {{"qq"}, {"ww"}});
    dialogs.Expect<SpellCheckRequest>("SpellCheck", [](SpellCheckRequest&) { return false; });
    SpellCheckTableCommand(context);
    EXPECT_FALSE(document.Modified());
}

TEST_F(SpellCheckTest, UnicodeCellsAreReplacedInTheirOwnTextMode)
{
    document.SetTextMode(true);
    document.AddColumn("", u"note");
    document.SetRowCount(1);
    document.SetCellText16(0, 1, u"caf\u00e9 tabel");
    document.SetFileOpen(true);
    known.insert("caf\xC3\xA9");
    ExpectWord("tabel", 0, 1, SpellAction::Replace);
    ui.Expect(kTitle, "The spell check is complete.");
    SpellCheckTableCommand(context);
    EXPECT_EQ(document.CellTextWide(0, 1), u"caf\u00e9 table");
    EXPECT_EQ(seen[0].wordStart, 6u);
}

TEST_F(SpellCheckTest, WithoutADictionaryItSaysSoAndChangesNothing)
{
    Open({"note"}, {{"tabel"}});
    host.dictionary = nullptr;
    ui.Expect(kTitle, "No spelling dictionary is installed, so the table cannot be spell checked.");
    SpellCheckTableCommand(context);
    EXPECT_FALSE(document.Modified());
    EXPECT_EQ(Stored(), std::vector<std::string>{"tabel"});
    EXPECT_FALSE(std::filesystem::exists(dir / "words.txt"));
}

TEST_F(SpellCheckTest, AnEmptyTableIsRefusedFirst)
{
    Open({"note"}, {});
    ui.Expect(kTitle, "This tool cannot run on an empty table.");
    SpellCheckTableCommand(context);
}

} // namespace
} // namespace quirnel::test
