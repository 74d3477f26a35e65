#include "editing/column_commands.h"
#include "editing/row_commands.h"
#include "tests/document/case_name.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

#include <set>

namespace quirnel::test {
namespace {

using Texts = std::vector<std::string>;

class ColumnCommands : public ::testing::Test, public EditingFixture
{
protected:
    TableControl& Table() { return document.Table(); }
    /// Column names from column 1 on.
    Texts Names() const
    {
        Texts names;
        for (int c = 1; c < document.ColumnCount(); ++c)
            names.push_back(document.ColumnName(c));
        return names;
    }
    /// Every data cell of a row, in column order.
    Texts RowTexts(int row) const
    {
        Texts texts;
        for (int c = 1; c < document.ColumnCount(); ++c)
            texts.emplace_back(document.CellText8(row, c));
        return texts;
    }
    void ExpectChanged()
    {
        EXPECT_TRUE(document.Modified());
        EXPECT_EQ(host.modifiedMarks, 1);
        EXPECT_FALSE(host.busy);
    }
    void ExpectUnchanged()
    {
        EXPECT_FALSE(document.Modified());
        EXPECT_EQ(host.modifiedMarks, 0);
        EXPECT_FALSE(host.busy);
    }
    /// The next new-column dialog: checks what it offers, then answers with a name.
    void AnswerNewColumn(const std::string& title, int insertAfter, const std::string& name,
                         int after = -1, bool another = false)
    {
        dialogs.Expect<NewColumnRequest>("NewColumn", [=](NewColumnRequest& request) {
            EXPECT_EQ(request.title, title);
            EXPECT_EQ(request.insertAfter, insertAfter);
            EXPECT_EQ(request.sortMethod, kSortTextNoCase);
            EXPECT_EQ(request.alignment, Alignment::Left);
            request.name = name;
            if (after >= 0)
                request.insertAfter = after;
            request.another = another;
            return true;
        });
    }
    void AnswerCombine(int target, int source, const std::string& separator, bool always,
                       bool deleteSource = false)
    {
        dialogs.Expect<CombineColumnsRequest>("CombineColumns",
                                              [=](CombineColumnsRequest& request) {
                                                  request.target = target;
                                                  request.source = source;
                                                  request.separator = separator;
                                                  request.alwaysSeparate = always;
                                                  request.deleteSource = deleteSource;
                                                  return true;
                                              });
    }
    void AnswerShift(bool left, ShiftScope scope, int pivot)
    {
        dialogs.Expect<ShiftCellsRequest>("ShiftCells", [=](ShiftCellsRequest& request) {
            request.left = left;
            request.scope = scope;
            request.pivot = pivot;
            return true;
        });
    }
    void AnswerFill(ColumnFill fill, FillScope scope, const std::string& text = {},
                    const std::string& start = "1")
    {
        dialogs.Expect<SetEntireColumnRequest>("SetEntireColumn",
                                               [=](SetEntireColumnRequest& request) {
                                                   request.fill = fill;
                                                   request.scope = scope;
                                                   request.text = text;
                                                   request.startNumber = start;
                                                   return true;
                                               });
    }
};

TEST_F(ColumnCommands, CreateColumnAppendsAnEmptyColumnAndMovesTheFocusThere)
{
    Open({"a", "b"}, {{"1", "2"}, {"3", "4"}});
    Focus(1, 1);
    dialogs.Expect<NewColumnRequest>("NewColumn", [](NewColumnRequest& request) {
        EXPECT_EQ(request.title, "Create Column");
        EXPECT_EQ(request.columns, (Texts{"#", "a", "b"}));
        EXPECT_EQ(request.insertAfter, 2);
        request.name = "c";
        request.sortMethod = kSortNumeric;
        request.alignment = Alignment::Right;
        return true;
    });
    NewColumnCommand(context, kCreateColumnOffset);
    EXPECT_EQ(Names(), (Texts{"a", "b", "c"}));
    EXPECT_EQ(RowTexts(0), (Texts{"1", "2", ""}));
    EXPECT_EQ(Table().Column(3).sortMethod, kSortNumeric);
    EXPECT_EQ(Table().ColumnAlignment(3), Alignment::Right);
    EXPECT_EQ(Table().FocusRow(), 1);
    EXPECT_EQ(Table().FocusColumn(), 3);
    ExpectChanged();
}

TEST_F(ColumnCommands, InsertBeforeAndAfterPreselectAroundTheCurrentColumn)
{
    Open({"a", "b", "c"}, {{"1", "2", "3"}});
    Focus(0, 2);
    AnswerNewColumn("Insert Column Before", 1, "before");
    NewColumnCommand(context, 0);
    EXPECT_EQ(Names(), (Texts{"a", "before", "b", "c"}));
    EXPECT_EQ(Table().FocusColumn(), 2);

    Focus(0, 4);
    AnswerNewColumn("Insert Column After", 4, "after");
    NewColumnCommand(context, 1);
    EXPECT_EQ(Names(), (Texts{"a", "before", "b", "c", "after"}));
    EXPECT_EQ(RowTexts(0), (Texts{"1", "", "2", "3", ""}));
}

TEST_F(ColumnCommands, InsertBeforeColumnOneGoesFirstAndTheChosenPlaceWins)
{
    Open({"a", "b"}, {{"1", "2"}});
    Focus(0, 1);
    AnswerNewColumn("Insert Column Before", 0, "first");
    NewColumnCommand(context, 0);
    EXPECT_EQ(Names(), (Texts{"first", "a", "b"}));
    // The user may pick another place than the one preselected.
    AnswerNewColumn("Insert Column After", 1, "middle", 2);
    NewColumnCommand(context, 1);
    EXPECT_EQ(Names(), (Texts{"first", "a", "middle", "b"}));
}

TEST_F(ColumnCommands, CreatingADuplicateNameIsRefusedAndTheDialogShowsAgain)
{
    Open({"a", "b"}, {{"1", "2"}});
    Focus(0, 1);
    AnswerNewColumn("Insert Column After", 1, "b");
    ui.Expect("Create Column", "A column by that name already exists.");
    dialogs.Expect<NewColumnRequest>("NewColumn", [](NewColumnRequest& request) {
        // The dialog comes back with what the user entered.
        EXPECT_EQ(request.name, "b");
        request.name = "B";
        return true;
    });
    NewColumnCommand(context, 1);
    EXPECT_EQ(Names(), (Texts{"a", "B", "b"}));
}

TEST_F(ColumnCommands, EmptyNamesMayRepeat)
{
    Open({"", "b"}, {});
    AnswerNewColumn("Create Column", 2, "");
    NewColumnCommand(context, kCreateColumnOffset);
    EXPECT_EQ(Names(), (Texts{"", "b", ""}));
}

TEST_F(ColumnCommands, AnotherCreatesTheColumnAndAsksForTheNextAfterIt)
{
    Open({"a", "b"}, {{"1", "2"}});
    AnswerNewColumn("Create Column", 2, "x", 0, true);
    AnswerNewColumn("Create Column", 1, "y", -1, true);
    dialogs.Expect<NewColumnRequest>("NewColumn", [](NewColumnRequest& request) {
        EXPECT_EQ(request.insertAfter, 2);
        EXPECT_TRUE(request.name.empty());
        return false;
    });
    NewColumnCommand(context, kCreateColumnOffset);
    EXPECT_EQ(Names(), (Texts{"x", "y", "a", "b"}));
}

TEST_F(ColumnCommands, CancelledDialogLeavesTheTable)
{
    Open({"a"}, {{"1"}});
    Focus(0, 1);
    dialogs.Expect<NewColumnRequest>("NewColumn", [](NewColumnRequest&) { return false; });
    NewColumnCommand(context, 1);
    dialogs.Expect<DeleteColumnRequest>("DeleteColumn", [](DeleteColumnRequest&) { return false; });
    DeleteColumnCommand(context);
    EXPECT_EQ(Names(), (Texts{"a"}));
    ExpectUnchanged();
}

TEST_F(ColumnCommands, CreateColumnWithoutAFileOffersOneAndGoesOn)
{
    host.newFile = [this] {
        document.SetFileOpen(true);
        return true;
    };
    ui.Expect("Create Column", "You must first open a file or create a new one.",
              ost::kFirstExtraButtonId);
    AnswerNewColumn("Create Column", 0, "first");
    NewColumnCommand(context, kCreateColumnOffset);
    EXPECT_EQ(Names(), (Texts{"first"}));
    const ost::MessageBoxRequest& box = ui.Shown().front();
    ASSERT_EQ(box.extraButtons.size(), 2u);
    EXPECT_EQ(box.extraButtons[0].caption, "`New File");
    EXPECT_EQ(box.extraButtons[1].caption, "`Open File");
}

TEST_F(ColumnCommands, InsertOnATableWithoutDataColumnsActsAsCreate)
{
    Open({}, {});
    AnswerNewColumn("Create Column", 0, "only");
    NewColumnCommand(context, 0);
    EXPECT_EQ(Names(), (Texts{"only"}));
}

TEST_F(ColumnCommands, InsertNeedsACurrentColumnUnlessAHeadingWasClicked)
{
    Open({"a", "b"}, {{"1", "2"}});
    ui.Expect("Insert Column After",
              "Please select a column first by clicking on any cell in the column.");
    NewColumnCommand(context, 1);
    AnswerNewColumn("Insert Column Before", 1, "h");
    NewColumnCommand(context, 0, 2);
    EXPECT_EQ(Names(), (Texts{"a", "h", "b"}));
}

TEST_F(ColumnCommands, DeleteColumnRemovesTheChosenColumnAndKeepsTheIndexCurrent)
{
    Open({"a", "b", "c"}, {{"1", "2", "3"}, {"4", "5", "6"}});
    Focus(1, 3);
    dialogs.Expect<DeleteColumnRequest>("DeleteColumn", [](DeleteColumnRequest& request) {
        EXPECT_EQ(request.column, 3);
        EXPECT_EQ(request.columns, (Texts{"#", "a", "b", "c"}));
        return true;
    });
    DeleteColumnCommand(context);
    EXPECT_EQ(Names(), (Texts{"a", "b"}));
    EXPECT_EQ(RowTexts(1), (Texts{"4", "5"}));
    // The same index, within the columns left.
    EXPECT_EQ(Table().FocusColumn(), 2);
    EXPECT_EQ(Table().FocusRow(), 1);
    ExpectChanged();

    dialogs.Expect<DeleteColumnRequest>("DeleteColumn", [](DeleteColumnRequest& request) {
        EXPECT_EQ(request.column, 1);
        return true;
    });
    DeleteColumnCommand(context, 1);
    EXPECT_EQ(Names(), (Texts{"b"}));
    EXPECT_EQ(Table().FocusColumn(), 1);
}

TEST_F(ColumnCommands, DeleteColumnOnAnEmptyTableRefuses)
{
    Open({}, {});
    ui.Expect("Delete Column", "This tool cannot run on an empty table.");
    DeleteColumnCommand(context);
}

TEST_F(ColumnCommands, DeletingTheSortColumnKeepsTheRowsWhereTheyAreShown)
{
    Open({"key", "name"}, {{"3", "c"}, {"1", "a"}, {"2", "b"}});
    Table().SetSort(1, true);
    ASSERT_EQ(Shown(2), (Texts{"a", "b", "c"}));
    Focus(1, 1);
    dialogs.Expect<DeleteColumnRequest>("DeleteColumn", [](DeleteColumnRequest&) { return true; });
    DeleteColumnCommand(context);
    EXPECT_EQ(Table().SortColumn(), -1);
    EXPECT_EQ(Shown(), (Texts{"a", "b", "c"}));
    EXPECT_EQ(Stored(), (Texts{"c", "a", "b"}));

    // Row commands act on what is shown: the new row goes below "a" on screen.
    InsertRowCommand(context, 1);
    EXPECT_EQ(Shown(), (Texts{"a", "", "b", "c"}));
    // Move Row Down swaps the new row with the one shown below it.
    MoveRowsCommand(context, false);
    EXPECT_EQ(Shown(), (Texts{"a", "b", "", "c"}));

    // "Don't sort rows" is offered and gives back file order.
    bool offered = false;
    for (const MenuEntry& entry : Table().HeaderMenu(1))
        offered = offered || entry.command == static_cast<int>(GridCommand::DontSort);
    EXPECT_TRUE(offered);
    Table().Unsort();
    EXPECT_EQ(Shown(), Stored());
}

TEST_F(ColumnCommands, TheSortColumnFollowsInsertedAndMovedColumns)
{
    Open({"a", "b"}, {{"2", "x"}, {"1", "y"}});
    Table().SetSort(2, false);
    Focus(0, 1);
    AnswerNewColumn("Insert Column Before", 0, "new");
    NewColumnCommand(context, 0);
    EXPECT_EQ(Table().SortColumn(), 3);
    Focus(0, 3);
    MoveColumnCommand(context, true);
    EXPECT_EQ(Table().SortColumn(), 2);
    EXPECT_EQ(Names(), (Texts{"new", "b", "a"}));
    EXPECT_EQ(Shown(2), (Texts{"y", "x"}));
}

TEST_F(ColumnCommands, RenameWarnsAboutADuplicateAndMayGoBackToTheDialog)
{
    Open({"a", "b"}, {});
    Focus(-1, 2);
    dialogs.Expect<RenameColumnRequest>("RenameColumn", [](RenameColumnRequest& request) {
        EXPECT_EQ(request.column, 2);
        EXPECT_EQ(request.name, "b");
        request.name = "a";
        return true;
    });
    ui.Expect("Warning", "There is already a column named \"a\".  Column names should be unique.",
              ost::kButtonCancel);
    dialogs.Expect<RenameColumnRequest>("RenameColumn", [](RenameColumnRequest& request) {
        EXPECT_EQ(request.name, "a");
        return true;
    });
    ui.Expect("Warning", "There is already a column named \"a\".  Column names should be unique.",
              ost::kButtonOk);
    RenameColumnCommand(context);
    // Kept after the warning: renaming may make names repeat, creating may not.
    EXPECT_EQ(Names(), (Texts{"a", "a"}));
    ExpectChanged();
}

TEST_F(ColumnCommands, RenameWithoutAChosenColumnSaysSo)
{
    Open({"a"}, {});
    dialogs.Expect<RenameColumnRequest>("RenameColumn", [](RenameColumnRequest& request) {
        EXPECT_EQ(request.column, 1);
        request.column = -1;
        return true;
    });
    ui.Expect("Rename Column", "No column was chosen.");
    dialogs.Expect<RenameColumnRequest>("RenameColumn", [](RenameColumnRequest&) { return false; });
    RenameColumnCommand(context, 1);
    EXPECT_EQ(Names(), (Texts{"a"}));
    ExpectUnchanged();
}

TEST_F(ColumnCommands, RenameToTheSameNameChangesNothing)
{
    Open({"a"}, {});
    Focus(-1, 1);
    dialogs.Expect<RenameColumnRequest>("RenameColumn", [](RenameColumnRequest&) { return true; });
    RenameColumnCommand(context);
    ExpectUnchanged();
}

TEST_F(ColumnCommands, MoveLeftFromColumnOneOnlySounds)
{
    Open({"a", "b"}, {{"1", "2"}});
    Focus(0, 1);
    MoveColumnCommand(context, true);
    EXPECT_EQ(ui.Beeps(), 1);
    EXPECT_EQ(Names(), (Texts{"a", "b"}));
    ExpectUnchanged();
    Focus(0, 2);
    MoveColumnCommand(context, false);
    EXPECT_EQ(ui.Beeps(), 2);
    ExpectUnchanged();
}

TEST_F(ColumnCommands, MoveSwapsWithTheNeighbourAndTheFocusFollows)
{
    Open({"a", "b", "c"}, {{"1", "2", "3"}});
    Focus(0, 2);
    MoveColumnCommand(context, false);
    EXPECT_EQ(Names(), (Texts{"a", "c", "b"}));
    EXPECT_EQ(RowTexts(0), (Texts{"1", "3", "2"}));
    EXPECT_EQ(Table().FocusColumn(), 3);
    ExpectChanged();
    // From the heading: the clicked column moves; the current cell stays on its column.
    MoveColumnCommand(context, true, 2);
    EXPECT_EQ(Names(), (Texts{"c", "a", "b"}));
    EXPECT_EQ(Table().FocusColumn(), 3);
}

TEST_F(ColumnCommands, CombineInsertsTheSeparatorOnlyBetweenTwoTexts)
{
    Open({"t", "s"}, {{"a", ""}, {"", "b"}, {"a", "b"}, {"", ""}});
    Focus(0, 1);
    dialogs.Expect<CombineColumnsRequest>("CombineColumns", [](CombineColumnsRequest& request) {
        EXPECT_EQ(request.target, 1);
        EXPECT_EQ(request.source, -1);
        EXPECT_FALSE(request.modified);
        request.source = 2;
        request.separator = "-";
        return true;
    });
    CombineColumnsCommand(context);
    EXPECT_EQ(Stored(1), (Texts{"a", "b", "a-b", ""}));
    EXPECT_EQ(Stored(2), (Texts{"", "b", "b", ""}));
    ExpectChanged();
}

TEST_F(ColumnCommands, CombineAlwaysSeparatingPutsTheSeparatorInEveryCell)
{
    Open({"t", "s"}, {{"a", ""}, {"", "b"}, {"a", "b"}, {"", ""}});
    Focus(0, 1);
    AnswerCombine(1, 2, "-", true);
    CombineColumnsCommand(context);
    EXPECT_EQ(Stored(1), (Texts{"a-", "-b", "a-b", "-"}));
}

TEST_F(ColumnCommands, CombineRemembersItsChoicesAndMayDeleteTheSource)
{
    Open({"s", "t", "u"}, {{"x", "y", "z"}});
    document.SetModified(true);
    prefs.combineSeparator = ", ";
    Focus(0, 3);
    dialogs.Expect<CombineColumnsRequest>("CombineColumns", [](CombineColumnsRequest& request) {
        EXPECT_EQ(request.separator, ", ");
        EXPECT_FALSE(request.alwaysSeparate);
        EXPECT_TRUE(request.modified);
        request.target = 2;
        request.source = 1;
        request.separator = " / ";
        request.alwaysSeparate = true;
        request.deleteSource = true;
        return true;
    });
    CombineColumnsCommand(context);
    EXPECT_EQ(Names(), (Texts{"t", "u"}));
    EXPECT_EQ(RowTexts(0), (Texts{"y / x", "z"}));
    // The current column stays on its column as the source goes.
    EXPECT_EQ(Table().FocusColumn(), 2);
    EXPECT_EQ(prefs.combineSeparator, " / ");
    EXPECT_TRUE(prefs.combineAlwaysSeparate);
}

TEST_F(ColumnCommands, CombineNeedsATargetAndASeparateSource)
{
    Open({"a", "b"}, {{"1", "2"}});
    Focus(0, 1);
    AnswerCombine(-1, 2, "", false);
    ui.Expect("Combine Columns", "You must choose a target column.");
    AnswerCombine(1, -1, "", false);
    ui.Expect("Combine Columns", "You must choose a source column.");
    AnswerCombine(1, 1, "", false);
    ui.Expect("Combine Columns", "You must choose a source column.");
    dialogs.Expect<CombineColumnsRequest>("CombineColumns",
                                          [](CombineColumnsRequest&) { return false; });
    CombineColumnsCommand(context);
    EXPECT_EQ(RowTexts(0), (Texts{"1", "2"}));
    ExpectUnchanged();
}

TEST_F(ColumnCommands, SetEntireColumnFillsTextWithinItsScope)
{
    Open({"a"}, {{"x"}, {""}, {"y"}});
    Focus(0, 1);
    AnswerFill(ColumnFill::Text, FillScope::Blank, "-");
    SetEntireColumnCommand(context);
    EXPECT_EQ(Stored(), (Texts{"x", "-", "y"}));
    AnswerFill(ColumnFill::Text, FillScope::NonBlank, "");
    SetEntireColumnCommand(context);
    AnswerFill(ColumnFill::Text, FillScope::Blank, "b");
    SetEntireColumnCommand(context);
    EXPECT_EQ(Stored(), (Texts{"b", "b", "b"}));
    AnswerFill(ColumnFill::Text, FillScope::All, "all");
    SetEntireColumnCommand(context);
    EXPECT_EQ(Stored(), (Texts{"all", "all", "all"}));
}

TEST_F(ColumnCommands, SequentialNumbersCountTheFilledCellsDownTheScreen)
{
    Open({"key", "n"}, {{"c", "x"}, {"a", ""}, {"b", ""}, {"d", ""}});
    Table().SetSort(1, true);
    Focus(0, 2);
    AnswerFill(ColumnFill::Numbers, FillScope::Blank, {}, " -1 ");
    SetEntireColumnCommand(context);
    // Shown a, b, c, d: c is not blank and is skipped without using a number.
    EXPECT_EQ(Stored(2), (Texts{"x", "-1", "0", "1"}));
}

TEST_F(ColumnCommands, StartingNumberMustBeAWholeNumber)
{
    Open({"a"}, {{"x"}});
    Focus(0, 1);
    AnswerFill(ColumnFill::Numbers, FillScope::All, {}, "1.5");
    ui.Expect("Set Entire Column", "The starting number must be a whole number.");
    dialogs.Expect<SetEntireColumnRequest>("SetEntireColumn", [](SetEntireColumnRequest& request) {
        EXPECT_EQ(request.startNumber, "1.5");
        request.startNumber = "7";
        return true;
    });
    SetEntireColumnCommand(context);
    EXPECT_EQ(Stored(), (Texts{"7"}));
}

TEST_F(ColumnCommands, GuidsAreDistinctAndWrittenAsWindowsDoes)
{
    Open({"a"}, {{""}, {""}, {""}});
    Focus(0, 1);
    AnswerFill(ColumnFill::Guids, FillScope::All);
    SetEntireColumnCommand(context);
    std::set<std::string> seen;
    for (const std::string& guid : Stored()) {
        ASSERT_EQ(guid.size(), 38u) << guid;
        EXPECT_EQ(guid.front(), '{');
        EXPECT_EQ(guid.back(), '}');
        EXPECT_EQ(guid.substr(9, 1) + guid.substr(14, 1) + guid.substr(19, 1) + guid.substr(24, 1),
                  "----");
        EXPECT_EQ(guid[15], '4') << "version 4";
        EXPECT_NE(std::string("89AB").find(guid[20]), std::string::npos) << "variant";
        EXPECT_EQ(guid.find_first_of("abcdef"), std::string::npos) << "capital hexadecimal";
        seen.insert(guid);
    }
    EXPECT_EQ(seen.size(), 3u);
    EXPECT_EQ(FormatGuid(0x0123456789ABCDEFull, 0xFEDCBA9876543210ull),
              "{01234567-89AB-4DEF-BEDC-BA9876543210}");
}

TEST_F(ColumnCommands, SetEntireColumnFromAHeadingFillsTheClickedColumn)
{
    Open({"a", "b"}, {{"1", "2"}});
    AnswerFill(ColumnFill::Text, FillScope::All, "z");
    SetEntireColumnCommand(context, 2);
    EXPECT_EQ(RowTexts(0), (Texts{"1", "z"}));
}

TEST_F(ColumnCommands, ShiftLeftOfPivotSlidesTheCellsBeforeIt)
{
    Open({"1", "2", "3", "4"}, {{"a", "b", "c", "d"}});
    Focus(0, 3);
    dialogs.Expect<ShiftCellsRequest>("ShiftCells", [](ShiftCellsRequest& request) {
        EXPECT_EQ(request.pivot, 3);
        EXPECT_TRUE(request.left);
        EXPECT_EQ(request.rows, (std::vector<Texts>{{"a", "b", "c", "d"}}));
        request.scope = ShiftScope::LeftOfPivot;
        EXPECT_EQ(ShiftPreview(request), (std::vector<Texts>{{"b", "c", "", "d"}}));
        return true;
    });
    ShiftCellsCommand(context);
    EXPECT_EQ(RowTexts(0), (Texts{"b", "c", "", "d"}));
    ExpectChanged();
}

struct ShiftCase
{
    const char* name;
    bool left;
    ShiftScope scope;
    int pivot;
    Texts after;
};

class ShiftCellsBounds : public ColumnCommands, public ::testing::WithParamInterface<ShiftCase>
{};

TEST_P(ShiftCellsBounds, ShiftsBetweenLoAndHi)
{
    const ShiftCase& shift = GetParam();
    Open({"1", "2", "3", "4", "5"}, {{"a", "b", "c", "d", "e"}});
    Focus(0, 1);
    AnswerShift(shift.left, shift.scope, shift.pivot);
    ShiftCellsCommand(context);
    EXPECT_EQ(RowTexts(0), shift.after);
}

INSTANTIATE_TEST_SUITE_P(
    ColumnCommands, ShiftCellsBounds,
    ::testing::Values(
        ShiftCase{"LeftAll", true, ShiftScope::All, 3, {"b", "c", "d", "e", ""}},
        ShiftCase{"RightAll", false, ShiftScope::All, 3, {"", "a", "b", "c", "d"}},
        ShiftCase{"LeftOfPivot", true, ShiftScope::LeftOfPivot, 3, {"b", "c", "", "d", "e"}},
        ShiftCase{"RightLeftOfPivot", false, ShiftScope::LeftOfPivot, 3, {"", "a", "b", "d", "e"}},
        ShiftCase{"LeftRightOfPivot", true, ShiftScope::RightOfPivot, 2, {"a", "c", "d", "e", ""}},
        ShiftCase{
            "RightRightOfPivot", false, ShiftScope::RightOfPivot, 2, {"a", "", "b", "c", "d"}},
        ShiftCase{"LeftOfFirstColumn", true, ShiftScope::LeftOfPivot, 1, {"", "b", "c", "d", "e"}},
        ShiftCase{
            "RightOfLastColumn", false, ShiftScope::RightOfPivot, 5, {"a", "b", "c", "d", ""}}),
    CaseName());

TEST_F(ColumnCommands, ShiftCellsWorksOnTheSelectedRowsAndRemembersTheDirection)
{
    Open({"1", "2"}, {{"a", "b"}, {"c", "d"}, {"e", "f"}});
    Focus(1, 1);
    Select({0, 2});
    dialogs.Expect<ShiftCellsRequest>("ShiftCells", [](ShiftCellsRequest& request) {
        EXPECT_EQ(request.rows, (std::vector<Texts>{{"a", "b"}, {"e", "f"}}));
        request.left = false;
        return true;
    });
    ShiftCellsCommand(context);
    EXPECT_EQ(RowTexts(0), (Texts{"", "a"}));
    EXPECT_EQ(RowTexts(1), (Texts{"c", "d"}));
    EXPECT_EQ(RowTexts(2), (Texts{"", "e"}));
    EXPECT_FALSE(prefs.shiftLeft);
    dialogs.Expect<ShiftCellsRequest>("ShiftCells", [](ShiftCellsRequest& request) {
        EXPECT_FALSE(request.left);
        return false;
    });
    ShiftCellsCommand(context);
}

TEST_F(ColumnCommands, ShiftCellsNeedsACellOrASelection)
{
    Open({"1"}, {{"a"}});
    ui.Expect("Shift Cells",
              "Either a cell must have input focus, or one or more rows must be selected.  To "
              "give a cell input focus, simply click on it.  To select rows, hold down the Ctrl "
              "key and click on cells in the first column which is labeled \"#\".");
    ShiftCellsCommand(context);
}

} // namespace
} // namespace quirnel::test
