#include "app/command_ids.h"
#include "editing/find_replace.h"
#include "editing/row_filter.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

using Texts = std::vector<std::string>;

struct Cell
{
    int row;
    int column;
    bool operator==(const Cell&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Cell& cell)
{
    return out << "(" << cell.row << ", " << cell.column << ")";
}

class FindReplace : public ::testing::Test, public EditingFixture
{
protected:
    TableControl& Table() { return document.Table(); }
    Cell Current() { return {Table().FocusRow(), Table().FocusColumn()}; }

    /// The next dialog is "Search"; `fill` sets the options and the user presses OK.
    void Answer(std::function<void(SearchOptions&)> fill)
    {
        dialogs.Expect<SearchRequest>("Search", [fill](SearchRequest& request) {
            EXPECT_FALSE(request.caption.empty());
            fill(request.options);
            return true;
        });
    }
    void Find(SearchMode mode = SearchMode::Find)
    {
        SearchTableCommand(context, mode, false,
                           mode == SearchMode::FindReplace ? cmd::kFindReplace : cmd::kFind);
    }
    void Next() { SearchTableCommand(context, SearchMode::Continue, false, cmd::kFindNext); }
    void Previous() { SearchTableCommand(context, SearchMode::Continue, true, cmd::kFindPrevious); }

    /// Extra button captions of the last box shown.
    std::vector<std::string> LastButtons()
    {
        std::vector<std::string> captions;
        for (const ost::ExtraButton& button : ui.Shown().back().extraButtons)
            captions.push_back(button.caption + " | " + button.tip);
        return captions;
    }
};

constexpr int kRevise = ost::kFirstExtraButtonId;
constexpr int kRestart = ost::kFirstExtraButtonId + 1;
constexpr int kReplace = ost::kFirstExtraButtonId + 2;
constexpr int kSkip = ost::kFirstExtraButtonId + 3;
constexpr int kReplaceRest = ost::kFirstExtraButtonId + 4;

TEST_F(FindReplace, FindWalksRowsThenColumnsAndContinuesPastEachMatch)
{
    Open({"a", "b"}, {{"x", "a cat"}, {"cat", "y"}, {"z", "Cat cat"}});
    Answer([](SearchOptions& o) {
        o.searchText = u"cat";
        o.direction = SearchDirection::ForwardFromBeginning;
    });
    Find();
    EXPECT_EQ(Current(), (Cell{0, 2}));
    ASSERT_EQ(host.matches.size(), 1u);
    EXPECT_EQ(host.matches[0].start, 2);
    EXPECT_EQ(host.matches[0].length, 3);
    Next();
    EXPECT_EQ(Current(), (Cell{1, 1}));
    Next();
    EXPECT_EQ(Current(), (Cell{2, 2}));
    Next();
    EXPECT_EQ(Current(), (Cell{2, 2}));
    EXPECT_EQ(host.matches.back().start, 4);
    // Past the last match: the walk did not start at the table's edge, so it may restart.
    ui.Expect("Find", "No occurrences were found.", kRestart);
    Next();
    EXPECT_EQ(LastButtons(), (Texts{"Revise | Edit the search options and try again.",
                                    "Restart at beginning | Restart the search from the first "
                                    "cell in the table."}));
    EXPECT_EQ(Current(), (Cell{0, 2}));
    EXPECT_FALSE(document.Modified());
}

TEST_F(FindReplace, FindNextWithoutASearchAsksFirst)
{
    Open({"a"}, {{"one"}, {"two"}});
    Focus(1);
    dialogs.Expect<SearchRequest>("Search", [](SearchRequest& request) {
        EXPECT_FALSE(request.options.replace);
        return false;
    });
    Next();
    EXPECT_EQ(Current(), (Cell{1, 1}));
    EXPECT_TRUE(host.matches.empty());
}

TEST_F(FindReplace, BackwardSearchesContinueBackwardAndPreviousTurnsRound)
{
    Open({"a", "b"}, {{"ab", "x"}, {"y", "ab"}, {"ab", "z"}});
    Focus(1, 2);
    Answer([](SearchOptions& o) {
        o.searchText = u"AB";
        o.direction = SearchDirection::BackwardFromHere;
    });
    Find();
    // The current cell itself is searched from its end.
    EXPECT_EQ(Current(), (Cell{1, 2}));
    Next();
    EXPECT_EQ(Current(), (Cell{0, 1}));
    Previous();
    EXPECT_EQ(Current(), (Cell{1, 2}));
    Previous();
    EXPECT_EQ(Current(), (Cell{2, 1}));
    // Find/Previous turned round only for itself: Find/Next still goes backward.
    Next();
    EXPECT_EQ(Current(), (Cell{1, 2}));
}

TEST_F(FindReplace, NoMatchFromTheEdgeOffersReviseOnlyAndTheIndexColumnIsNeverSearched)
{
    Open({"a"}, {{"x"}, {"y"}});
    Answer([](SearchOptions& o) {
        o.searchText = u"2";
        o.direction = SearchDirection::ForwardFromBeginning;
    });
    ui.Expect("Find", "No occurrences were found.", kRevise);
    dialogs.Expect<SearchRequest>("Search", [](SearchRequest& request) {
        EXPECT_EQ(request.options.searchText, u"2");
        EXPECT_EQ(request.options.direction, SearchDirection::ForwardFromBeginning);
        request.options.searchText = u"y";
        request.options.direction = SearchDirection::BackwardFromEnd;
        return true;
    });
    Find();
    EXPECT_EQ(ui.Shown().back().extraButtons.size(), 1u);
    EXPECT_EQ(Current(), (Cell{1, 1}));
    EXPECT_EQ(context.state.search.options.searchText, u"y");
}

TEST_F(FindReplace, BackwardRestartOffersTheLastCell)
{
    Open({"a", "b"}, {{"k", "x"}, {"y", "z"}});
    Focus(1, 1);
    Answer([](SearchOptions& o) {
        o.searchText = u"z";
        o.direction = SearchDirection::BackwardFromHere;
    });
    ui.Expect("Find", "No occurrences were found.", kRestart);
    Find();
    EXPECT_EQ(LastButtons()[1],
              "Restart at end | Restart the search from the last cell in the table.");
    EXPECT_EQ(Current(), (Cell{1, 2}));
}

TEST_F(FindReplace, AsteriskRefusalsComeBeforeAnyCellIsSearched)
{
    Open({"a"}, {{"xay"}});
    Answer([](SearchOptions& o) {
        o.searchText = u"*a";
        o.anyRun = true;
    });
    ui.Expect("Find", "The search string cannot begin or end with an asterisk wildcard.");
    Answer([](SearchOptions& o) {
        EXPECT_EQ(o.searchText, u"*a"); // the dialog comes back as the user left it
        o.searchText = u"x*y";
        o.direction = SearchDirection::BackwardFromEnd;
    });
    ui.Expect("Find", "The asterisk wildcard can only be used in the forward direction.");
    Answer([](SearchOptions& o) { o.direction = SearchDirection::ForwardFromBeginning; });
    Find();
    EXPECT_EQ(host.matches.back().length, 3);
    ui.Expect("Find/Previous", "Sorry, the \"Use * Wildcard\" feature cannot be used in the "
                               "reverse direction.");
    Previous();
    EXPECT_EQ(host.matches.size(), 1u);
}

TEST_F(FindReplace, ReplacingCountsCellsNotOccurrences)
{
    Open({"a", "b"}, {{"aaa", "b"}, {"xa", "A"}});
    Answer([](SearchOptions& o) {
        o.searchText = u"a";
        o.replaceText = u"bc";
        o.caseSensitive = true;
        o.direction = SearchDirection::ForwardFromBeginning;
    });
    // The view hears of the change once, at its end.
    struct Seen : TableControlObserver
    {
        void OnTableReset() override { ++notices; }
        void OnTableRepaint() override { ++notices; }
        int notices = 0;
    } seen;
    Table().AddObserver(&seen);
    ui.Expect("Find/Replace", "2 cells were changed.");
    Find(SearchMode::FindReplace);
    Table().RemoveObserver(&seen);
    EXPECT_EQ(seen.notices, 1);
    EXPECT_EQ(Stored(1), (Texts{"bcbcbc", "xbc"}));
    EXPECT_EQ(Stored(2), (Texts{"b", "A"}));
    EXPECT_TRUE(document.Modified());
    EXPECT_EQ(host.modifiedMarks, 1);
}

TEST_F(FindReplace, WithoutReplaceAllOnlyTheFirstOccurrenceGoes)
{
    Open({"a"}, {{"no"}, {"a a"}, {"a"}});
    Answer([](SearchOptions& o) {
        o.searchText = u"a";
        o.replaceText = u"b";
        o.replaceAll = false;
    });
    ui.Expect("Find/Replace", "1 cells were changed.");
    Find(SearchMode::FindReplace);
    EXPECT_EQ(Stored(), (Texts{"no", "b a", "a"}));
    // Find/Next carries on replacing just past the replacement.
    ui.Expect("Find/Next", "1 cells were changed.");
    Next();
    EXPECT_EQ(Stored(), (Texts{"no", "b b", "a"}));
}

TEST_F(FindReplace, ReplacementSkipsHiddenRowsAndNoMatchChangesNothing)
{
    Open({"a"}, {{"a1"}, {"a2"}, {"a3"}});
    ApplyRowFilter(context, {true, u"2", false, false});
    ASSERT_EQ(Shown(), (Texts{"a2"}));
    Answer([](SearchOptions& o) {
        o.searchText = u"a";
        o.replaceText = u"b";
        o.direction = SearchDirection::ForwardFromBeginning;
    });
    ui.Expect("Find/Replace", "1 cells were changed.");
    Find(SearchMode::FindReplace);
    EXPECT_EQ(Stored(), (Texts{"a1", "b2", "a3"}));

    document.SetModified(false);
    Answer([](SearchOptions& o) { o.searchText = u"zz"; });
    ui.Expect("Find and Replace", "No occurrences were found.");
    Find(SearchMode::FindReplace);
    EXPECT_FALSE(document.Modified());
}

TEST_F(FindReplace, BackwardReplacementTakesTheLastOccurrenceFirst)
{
    Open({"a", "b"}, {{"a", "x"}, {"y", "a-a"}, {"z", "w"}});
    Answer([](SearchOptions& o) {
        o.searchText = u"a";
        o.replaceText = u"B";
        o.direction = SearchDirection::BackwardFromEnd;
        o.replaceAll = false;
    });
    ui.Expect("Find/Replace", "1 cells were changed.");
    Find(SearchMode::FindReplace);
    EXPECT_EQ(Stored(2), (Texts{"x", "a-B", "w"}));
    ui.Expect("Find/Next", "1 cells were changed.");
    Next();
    EXPECT_EQ(Stored(2), (Texts{"x", "B-B", "w"}));
    ui.Expect("Find/Next", "1 cells were changed.");
    Next();
    EXPECT_EQ(Stored(1), (Texts{"B", "y", "z"}));
}

TEST_F(FindReplace, PromptAsksAtEachOccurrenceShownInItsCell)
{
    Open({"a"}, {{"a-a"}, {"a"}, {"a"}, {"a"}});
    Answer([](SearchOptions& o) {
        o.searchText = u"a";
        o.replaceText = u"B";
        o.direction = SearchDirection::ForwardFromBeginning;
        o.promptOnReplace = true;
    });
    ui.Expect("Find and Replace", "Replace this occurrence?", kSkip);
    ui.Expect("Find and Replace", "Replace this occurrence?", kReplace);
    ui.Expect("Find and Replace", "Replace this occurrence?", ost::kButtonCancel);
    ui.Expect("Find/Replace", "1 cells were changed.");
    Find(SearchMode::FindReplace);
    EXPECT_EQ(Stored(), (Texts{"a-B", "a", "a", "a"}));
    ASSERT_EQ(host.matches.size(), 3u);
    EXPECT_EQ(host.matches[1].start, 2);
    EXPECT_EQ(host.matches[2].row, 1);

    Answer([](SearchOptions& o) { o.direction = SearchDirection::ForwardFromBeginning; });
    ui.Expect("Find and Replace", "Replace this occurrence?", kReplaceRest);
    ui.Expect("Find/Replace", "4 cells were changed.");
    Find(SearchMode::FindReplace);
    EXPECT_EQ(Stored(), (Texts{"B-B", "B", "B", "B"}));
}

TEST_F(FindReplace, EightBitAndUnicodeTablesIgnoreCaseBeyondAscii)
{
    Open({"a"}, {{"caf\xC3\xA9"}, {"CAF\xC3\x89"}});
    Answer([](SearchOptions& o) {
        o.searchText = u"É";
        o.replaceText = u"ë";
        o.direction = SearchDirection::ForwardFromBeginning;
    });
    ui.Expect("Find/Replace", "2 cells were changed.");
    Find(SearchMode::FindReplace);
    EXPECT_EQ(Stored(), (Texts{"caf\xC3\xAB", "CAF\xC3\xAB"}));

    TableDocument& wide = document;
    wide.SetTextMode(true);
    wide.Table().SetCellText16(0, 1, u"x café");
    Answer([](SearchOptions& o) {
        o.searchText = u"CAF";
        o.wholeWord = true;
        o.replace = false;
    });
    ui.Expect("Find", "No occurrences were found.");
    Find();
    Answer([](SearchOptions& o) { o.searchText = u"CAFÉ"; });
    Find();
    EXPECT_EQ(host.matches.back().start, 2);
    EXPECT_EQ(host.matches.back().length, 4);
}

TEST_F(FindReplace, GuardsAgainstReentryAndEmptyTables)
{
    Open({"a"}, {});
    ui.Expect("Find and Replace", "This tool cannot run on an empty table.");
    Find();
    context.state.search.running = true;
    Find();
    EXPECT_TRUE(context.state.search.running);
}

TEST_F(FindReplace, ColumnSearchGoesDownTheCurrentColumnFromTheRowBelow)
{
    Open({"a", "b"}, {{"pan", "x"}, {"no", "pan"}, {"Pan", "y"}, {"span", "z"}, {"pan", "w"}});
    ApplyRowFilter(context, {true, u"a", false, false});
    Focus(0, 1);
    dialogs.Expect<SearchColumnRequest>("SearchColumn", [](SearchColumnRequest& request) {
        EXPECT_EQ(request.columnName, "a");
        request.text = u"pan";
        request.wholeWord = true;
        return true;
    });
    SearchColumnCommand(context, false);
    // Row 1 is hidden; the match of column 2 is not in this column.
    EXPECT_EQ(Current(), (Cell{2, 1}));
    SearchColumnCommand(context, true);
    EXPECT_EQ(Current(), (Cell{4, 1}));
    ui.Expect("Search Column/Continue", "No occurrences were found.");
    SearchColumnCommand(context, true);
    EXPECT_EQ(Current(), (Cell{4, 1}));
    EXPECT_TRUE(context.state.columnSearch.made);
}

TEST_F(FindReplace, ColumnSearchNeedsAColumnUnlessTheHeadingNamesOne)
{
    Open({"a", "b"}, {{"x", "y"}, {"x", "y"}});
    ui.Expect("Search Column",
              "Please select a column first by clicking on any cell in the column.");
    SearchColumnCommand(context, false);
    dialogs.Expect<SearchColumnRequest>("SearchColumn", [](SearchColumnRequest& request) {
        EXPECT_EQ(request.columnName, "b");
        request.text = u"Y";
        return true;
    });
    SearchColumnCommand(context, false, 2);
    EXPECT_EQ(Current(), (Cell{0, 2}));
}

} // namespace
} // namespace quirnel::test
