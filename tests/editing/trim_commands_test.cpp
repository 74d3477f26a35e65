#include "editing/scope_dialog.h"
#include "editing/trim_commands.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace quirnel::test {
namespace {

using Texts = std::vector<std::string>;

class TrimCommands : public ::testing::Test, public EditingFixture
{
protected:
    TableControl& Table() { return document.Table(); }

    /// Answers the scope dialog with `scope` and the two options; the request is kept.
    void AnswerScope(int scope, bool linesEnd, bool reduce)
    {
        dialogs.Expect<ScopeRequest>("Scope", [=, this](ScopeRequest& request) {
            seen = request;
            request.scope = scope;
            request.options[0].checked = linesEnd;
            request.options[1].checked = reduce;
            return true;
        });
    }
    ScopeRequest seen;
};

TEST(TrimReport, CountsReadAsSentences)
{
    EXPECT_EQ(TrimReport(0, 0), "No whitespace characters were found.");
    EXPECT_EQ(TrimReport(1, 1), "1 whitespace character was trimmed from 1 cell.");
    EXPECT_EQ(TrimReport(3, 2), "3 whitespace characters were trimmed from 2 cells.");
    EXPECT_EQ(TrimReport(2, 1), "2 whitespace characters were trimmed from 1 cell.");
}

TEST_F(TrimCommands, EachMaskBitTrimsItsOwnPart)
{
    struct Case
    {
        int mask;
        const char* before;
        const char* after;
    };
    const Case cases[] = {
        {kTrimLeading, " \t a  b \t", "a  b \t"},
        {kTrimTrailing, " \t a  b \t", " \t a  b"},
        {kTrimLineEnds, "x \t\ny \r\nz ", "x\ny\r\nz"},
        {kTrimReduceSpaces, "a  b   c\t\td", "a b c\t\td"},
        {kTrimLeading | kTrimTrailing, "\t  \t", ""},
    };
    Open({"a"}, {{""}});
    for (const Case& c : cases) {
        document.SetCellText8(0, 1, c.before);
        EXPECT_EQ(Table().TrimCell(0, 1, c.mask),
                  static_cast<int>(std::strlen(c.before) - std::strlen(c.after)))
            << c.before;
        EXPECT_EQ(document.CellText8(0, 1), c.after) << "mask " << c.mask;
    }
    EXPECT_EQ(Table().TrimCell(5, 1, kTrimLeading), -1);
}

TEST_F(TrimCommands, OneTrailingSpaceInTheEntireTable)
{
    Open({"a", "b"}, {{"x ", "y"}, {"z", "w"}});
    AnswerScope(kScopeTable, false, false);
    ui.Expect("Trim Whitespace", "1 whitespace character was trimmed from 1 cell.");
    // Only cell texts change, yet the view must hear of it once, or it shows the old text.
    struct Notices : TableControlObserver
    {
        void OnTableReset() override { ++count; }
        void OnTableRepaint() override { ++count; }
        int count = 0;
    } notices;
    Table().AddObserver(&notices);
    TrimWhitespaceCommand(context);
    Table().RemoveObserver(&notices);
    EXPECT_EQ(notices.count, 1);
    EXPECT_EQ(Stored(), (Texts{"x", "z"}));
    EXPECT_TRUE(document.Modified());
    EXPECT_EQ(host.modifiedMarks, 1);
    EXPECT_FALSE(host.busy);
    EXPECT_EQ(seen.title, "Trim Whitespace");
    ASSERT_EQ(seen.options.size(), 2u);
    EXPECT_EQ(seen.options[0].text, "Trim end of each line");
    EXPECT_EQ(seen.options[0].helpTitle, "Trim End Of Each Line");
    EXPECT_EQ(seen.options[0].help, "If checked, spaces and tabs are also trimmed from the end "
                                    "of each line/paragraph within each cell.");
    EXPECT_EQ(seen.options[1].text, "Reduce spaces");
    EXPECT_EQ(seen.options[1].helpTitle, "Reduce Spaces");
    EXPECT_EQ(seen.options[1].help,
              "If checked, runs of multiple spaces will be reduced to a single space.");
}

TEST_F(TrimCommands, NothingToTrimLeavesTheDocumentUnmodified)
{
    Open({"a"}, {{"x"}, {"a  b"}});
    AnswerScope(kScopeTable, false, false);
    ui.Expect("Trim Whitespace", "No whitespace characters were found.");
    TrimWhitespaceCommand(context);
    EXPECT_FALSE(document.Modified());
    EXPECT_EQ(host.modifiedMarks, 0);
    EXPECT_FALSE(host.busy);
    // The cell edit in progress was still taken into the table before looking.
    EXPECT_GE(host.commits, 1);
}

TEST_F(TrimCommands, OptionsAddTheirBitsAndAreRemembered)
{
    Open({"a", "b"}, {{"a  b", "x \ny"}});
    AnswerScope(kScopeTable, false, false);
    ui.Expect("Trim Whitespace", "No whitespace characters were found.");
    TrimWhitespaceCommand(context);
    EXPECT_EQ(document.CellText8(0, 1), "a  b");
    EXPECT_FALSE(prefs.trimLinesEnd);

    AnswerScope(kScopeTable, true, true);
    ui.Expect("Trim Whitespace", "2 whitespace characters were trimmed from 2 cells.");
    TrimWhitespaceCommand(context);
    EXPECT_EQ(document.CellText8(0, 1), "a b");
    EXPECT_EQ(document.CellText8(0, 2), "x\ny");
    EXPECT_TRUE(prefs.trimLinesEnd);
    EXPECT_TRUE(prefs.trimReduce);

    // The next dialog starts from the remembered choices.
    dialogs.Expect<ScopeRequest>("Scope", [](ScopeRequest& request) {
        EXPECT_TRUE(request.options[0].checked);
        EXPECT_TRUE(request.options[1].checked);
        return false;
    });
    TrimWhitespaceCommand(context);
}

TEST_F(TrimCommands, CancelChangesNothingNotEvenTheOptions)
{
    Open({"a"}, {{" x "}});
    dialogs.Expect<ScopeRequest>("Scope", [](ScopeRequest& request) {
        request.options[0].checked = true;
        request.scope = kScopeCell;
        return false;
    });
    TrimWhitespaceCommand(context);
    EXPECT_EQ(document.CellText8(0, 1), " x ");
    EXPECT_FALSE(prefs.trimLinesEnd);
    EXPECT_EQ(prefs.scope, kScopeTable);
    EXPECT_FALSE(document.Modified());
}

TEST(TrimScopes, EachScopeTrimsItsCellsOnly)
{
    struct Case
    {
        int scope;
        Texts column1;
        Texts column2;
        const char* report;
    };
    // Focus on row 1, column 2; rows 0 and 2 selected.
    const Case cases[] = {
        {kScopeTable,
         {"a", "b", "c"},
         {"d", "e", "f"},
         "6 whitespace characters were trimmed from 6 cells."},
        {kScopeRow,
         {" a", "b", " c"},
         {" d", "e", " f"},
         "2 whitespace characters were trimmed from 2 cells."},
        {kScopeColumn,
         {" a", " b", " c"},
         {"d", "e", "f"},
         "3 whitespace characters were trimmed from 3 cells."},
        {kScopeSelectedRows,
         {"a", " b", "c"},
         {"d", " e", "f"},
         "4 whitespace characters were trimmed from 4 cells."},
        {kScopeCell,
         {" a", " b", " c"},
         {" d", "e", " f"},
         "1 whitespace character was trimmed from 1 cell."},
    };
    for (const Case& c : cases) {
        EditingFixture f;
        f.Open({"one", "two"}, {{" a", " d"}, {" b", " e"}, {" c", " f"}});
        f.Focus(1, 2);
        f.Select({0, 2});
        f.dialogs.Expect<ScopeRequest>("Scope", [&c](ScopeRequest& request) {
            request.scope = c.scope;
            return true;
        });
        f.ui.Expect("Trim Whitespace", c.report);
        TrimWhitespaceCommand(f.context);
        EXPECT_EQ(f.Stored(1), c.column1) << "scope " << c.scope;
        EXPECT_EQ(f.Stored(2), c.column2) << "scope " << c.scope;
        EXPECT_EQ(f.prefs.scope, c.scope);
    }
}

TEST_F(TrimCommands, ScopeEntriesNameTheCurrentPlace)
{
    Open({"Name", "Größe"}, {{"a", "b"}, {"c", "d"}, {"e", "f"}});
    ScopeRequest request;
    Focus(-1, -1);
    FillScopeEntries(Table(), request);
    EXPECT_EQ(request.entries[0], "Entire table");
    EXPECT_EQ(request.entries[1], "Current row");
    EXPECT_EQ(request.entries[2], "Current column");
    EXPECT_EQ(request.entries[3], "Selected rows (0)");
    EXPECT_EQ(request.entries[4], "Current cell");
    EXPECT_EQ(request.available, (std::array<bool, 5>{true, false, false, false, false}));

    Focus(2, 2);
    Select({0, 1});
    FillScopeEntries(Table(), request);
    EXPECT_EQ(request.entries[1], "Current row (3)");
    EXPECT_EQ(request.entries[2], "Current column (Größe)");
    EXPECT_EQ(request.entries[3], "Selected rows (2)");
    EXPECT_EQ(request.available, (std::array<bool, 5>{true, true, true, true, true}));
}

TEST_F(TrimCommands, LastScopeIsPreselectedWhileItHasCells)
{
    Open({"a"}, {{" x"}, {" y"}});
    Focus(1, 1);
    AnswerScope(kScopeCell, false, false);
    ui.Expect("Trim Whitespace", "1 whitespace character was trimmed from 1 cell.");
    TrimWhitespaceCommand(context);
    EXPECT_EQ(prefs.scope, kScopeCell);
    EXPECT_EQ(Stored(), (Texts{" x", "y"}));
    // The focus stayed where it was.
    EXPECT_EQ(Table().FocusRow(), 1);
    EXPECT_EQ(Table().FocusColumn(), 1);

    dialogs.Expect<ScopeRequest>("Scope", [](ScopeRequest& request) {
        EXPECT_EQ(request.scope, kScopeCell);
        return false;
    });
    TrimWhitespaceCommand(context);

    // Without a current cell the remembered scope has nothing to work on.
    Focus(-1, -1);
    dialogs.Expect<ScopeRequest>("Scope", [](ScopeRequest& request) {
        EXPECT_EQ(request.scope, kScopeTable);
        return false;
    });
    TrimWhitespaceCommand(context);
}

TEST_F(TrimCommands, HiddenColumnsAreLeftOutOfRowScopesButNotANamedColumn)
{
    Open({"a", "b"}, {{" x", " y"}});
    Table().SetColumnHidden(2, true);
    AnswerScope(kScopeTable, false, false);
    ui.Expect("Trim Whitespace", "1 whitespace character was trimmed from 1 cell.");
    TrimWhitespaceCommand(context);
    EXPECT_EQ(document.CellText8(0, 2), " y");

    ui.Expect("Trim Column Whitespace", "1 whitespace character was trimmed from 1 cell.");
    TrimColumnWhitespaceCommand(context, 2);
    EXPECT_EQ(document.CellText8(0, 2), "y");
}

TEST_F(TrimCommands, UnicodeCellsAreTrimmedAlike)
{
    Open({"a"}, {});
    document.SetRowCount(1);
    Table().SetCellText16(0, 1, u"\t\u00e9t\u00e9  ");
    AnswerScope(kScopeTable, false, false);
    ui.Expect("Trim Whitespace", "3 whitespace characters were trimmed from 1 cell.");
    TrimWhitespaceCommand(context);
    EXPECT_EQ(Table().CellText16(0, 1), u"\u00e9t\u00e9");
}

TEST_F(TrimCommands, ColumnTrimOnlyTouchesBothEndsOfTheCurrentColumn)
{
    Open({"a", "b"}, {{"  p  q ", " r"}, {"s\t", " t"}});
    Focus(0, 1);
    ui.Expect("Trim Column Whitespace", "4 whitespace characters were trimmed from 2 cells.");
    TrimColumnWhitespaceCommand(context);
    EXPECT_EQ(Stored(1), (Texts{"p  q", "s"}));
    EXPECT_EQ(Stored(2), (Texts{" r", " t"}));
    EXPECT_TRUE(document.Modified());

    Focus(0, -1);
    ui.Expect("Trim Column Whitespace",
              "Please select a column first by clicking on any cell in the column.");
    TrimColumnWhitespaceCommand(context);
}

TEST_F(TrimCommands, EmptyTableIsRefused)
{
    Open({"a"}, {});
    ui.Expect("Trim Whitespace", "This tool cannot run on an empty table.");
    TrimWhitespaceCommand(context);
}

} // namespace
} // namespace quirnel::test
