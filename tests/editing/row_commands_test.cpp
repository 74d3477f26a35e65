#include "editing/row_commands.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

#include <cstring>

namespace quirnel::test {
namespace {

using Texts = std::vector<std::string>;

class RowCommands : public ::testing::Test, public EditingFixture
{
protected:
    /// Rows "r0" .. "r<n-1>" in one data column "id", with "x" in a second column.
    void OpenRows(int n)
    {
        Open({"id", "other"}, {});
        document.SetRowCount(n);
        for (int r = 0; r < n; ++r) {
            document.SetCellText8(r, 1, "r" + std::to_string(r));
            document.SetCellText8(r, 2, "x");
        }
    }
    TableControl& Table() { return document.Table(); }
    std::string FocusText() const
    {
        return std::string(document.CellText8(document.Table().FocusRow(), 1));
    }
    /// The frame's duties were all done once, and the document is modified.
    void ExpectChanged()
    {
        EXPECT_TRUE(document.Modified());
        EXPECT_EQ(host.modifiedMarks, 1);
        EXPECT_FALSE(host.busy);
        EXPECT_GE(host.commits, 1);
        EXPECT_GE(host.focusShown, 1);
    }
    void ExpectUnchanged()
    {
        EXPECT_FALSE(document.Modified());
        EXPECT_EQ(host.modifiedMarks, 0);
        EXPECT_FALSE(host.busy);
    }
};

TEST_F(RowCommands, InsertBeforeFirstAndAfterLast)
{
    OpenRows(3);
    Focus(0, 2);
    InsertRowCommand(context, 0);
    EXPECT_EQ(Stored(), (Texts{"", "r0", "r1", "r2"}));
    EXPECT_EQ(Table().FocusRow(), 0);
    EXPECT_EQ(Table().FocusColumn(), 2);
    ExpectChanged();

    Focus(3, 1);
    InsertRowCommand(context, 1);
    EXPECT_EQ(Stored(), (Texts{"", "r0", "r1", "r2", ""}));
    EXPECT_EQ(Table().FocusRow(), 4);
}

TEST_F(RowCommands, InsertNeedsACellAndCreateRowDoesNot)
{
    OpenRows(2);
    ui.Expect("Insert Row After", "Please click on a cell first.");
    InsertRowCommand(context, 1);
    ExpectUnchanged();
    // Create Row appends whatever the current row, and makes column 1 current without one.
    Focus(0, -1);
    InsertRowCommand(context, kCreateRowOffset);
    EXPECT_EQ(Stored(), (Texts{"r0", "r1", ""}));
    EXPECT_EQ(Table().FocusRow(), 2);
    EXPECT_EQ(Table().FocusColumn(), 1);
}

TEST_F(RowCommands, CreateRowOnSortedTableAppendsWithoutAsking)
{
    OpenRows(3);
    Table().SetSort(1, false);
    Focus(1);
    InsertRowCommand(context, kCreateRowOffset);
    EXPECT_EQ(Stored(), (Texts{"r0", "r1", "r2", ""}));
    EXPECT_EQ(Shown(), (Texts{"r2", "r1", "r0", ""}));
}

TEST_F(RowCommands, CreateRowWithoutDataColumnsRefuses)
{
    document.SetFileOpen(true);
    ui.Expect("Create Row", "This tool cannot run on an empty table.");
    InsertRowCommand(context, kCreateRowOffset);
    EXPECT_EQ(document.RowCount(), 0);
}

TEST_F(RowCommands, InsertIntoSortedTableAsksToUnsort)
{
    const std::string refusal =
        "Rows cannot be inserted when the table is sorted.  To unsort the table, right click on "
        "a column heading and choose \"Don't sort rows\".";
    OpenRows(3);
    Table().SetSort(1, false);
    Focus(2);
    ui.Expect("Insert Row Before", refusal, ost::kButtonCancel);
    InsertRowCommand(context, 0);
    EXPECT_EQ(Table().SortColumn(), 1);
    const ost::MessageBoxRequest& box = ui.Shown().at(0);
    ASSERT_EQ(box.extraButtons.size(), 1u);
    EXPECT_EQ(box.extraButtons[0].caption, "Unsort");
    EXPECT_EQ(box.extraButtons[0].tip,
              "Disable the table's sorting so that a row can be inserted.");

    // "Unsort" stays chosen even when the user then says No.
    ui.Expect("Insert Row Before", refusal, ost::kFirstExtraButtonId);
    ui.Expect("Insert Row Before",
              "The table is now unsorted.  Do you still want to insert a new row before this one?",
              ost::kButtonNo);
    InsertRowCommand(context, 0);
    EXPECT_EQ(Table().SortColumn(), -1);
    EXPECT_EQ(document.RowCount(), 3);
    ExpectUnchanged();

    Table().SetSort(1, true);
    ui.Expect("Insert Row After", refusal, ost::kFirstExtraButtonId);
    ui.Expect("Insert Row After",
              "The table is now unsorted.  Do you still want to insert a new row after this one?",
              ost::kButtonYes);
    InsertRowCommand(context, 1);
    EXPECT_EQ(Stored(), (Texts{"r0", "r1", "r2", ""}));
}

TEST_F(RowCommands, DeleteKeepsTheShrinkingBoundOfTheNextPosition)
{
    OpenRows(10);
    Select({0, 1, 5});
    Focus(6);
    ui.Expect("Delete Rows", "Delete the 3 selected rows?", ost::kButtonYes);
    DeleteRowsCommand(context);
    EXPECT_EQ(Stored(), (Texts{"r2", "r3", "r4", "r6", "r7", "r8", "r9"}));
    // Rows 0 and 1 lower the position to 4; row 5 then lies past the bound.
    EXPECT_EQ(FocusText(), "r7");
    EXPECT_EQ(Table().SelectedRowCount(), 0);
    ExpectChanged();
}

TEST_F(RowCommands, DeleteQuestionAndItsCheckBox)
{
    OpenRows(3);
    Focus(2);
    ui.Expect("Delete Row", "Delete the current row?", ost::kButtonNo).CheckBox(true);
    DeleteRowsCommand(context);
    const ost::MessageBoxRequest& box = ui.Shown().at(0);
    EXPECT_EQ(box.checkBoxText, "Never ask this question again");
    EXPECT_EQ(box.checkBoxTip, "If checked, this question will never be asked again.  The row(s) "
                               "will be deleted immediately without confirmation.");
    // Kept although the answer was No.
    EXPECT_TRUE(prefs.noConfirmDeleteRow);
    EXPECT_EQ(document.RowCount(), 3);

    DeleteRowsCommand(context);
    EXPECT_EQ(Stored(), (Texts{"r0", "r1"}));
    EXPECT_EQ(FocusText(), "r1");

    // One selected row still reads "Delete Row" and counts in the question.
    prefs.noConfirmDeleteRow = false;
    Select({0});
    ui.Expect("Delete Row", "Delete the 1 selected rows?", ost::kButtonYes);
    DeleteRowsCommand(context);
    EXPECT_EQ(Stored(), (Texts{"r1"}));
}

TEST_F(RowCommands, DeleteFollowsTheOrderShownWhenSorted)
{
    OpenRows(4);
    Table().SetSort(1, false); // r3 r2 r1 r0
    Focus(2);
    prefs.noConfirmDeleteRow = true;
    DeleteRowsCommand(context);
    EXPECT_EQ(Shown(), (Texts{"r3", "r1", "r0"}));
    EXPECT_EQ(FocusText(), "r1");
}

TEST_F(RowCommands, DuplicateCurrentRowAndSelection)
{
    OpenRows(4);
    Focus(1);
    DuplicateRowsCommand(context);
    EXPECT_EQ(Stored(), (Texts{"r0", "r1", "r1", "r2", "r3"}));
    EXPECT_EQ(Table().FocusRow(), 2);
    ExpectChanged();

    Focus(0);
    Select({0, 3});
    DuplicateRowsCommand(context);
    EXPECT_EQ(Stored(), (Texts{"r0", "r0", "r1", "r1", "r2", "r2", "r3"}));
    EXPECT_EQ(Table().FocusRow(), 0);
    // The copies are not selected.
    EXPECT_EQ(Table().SelectedRows(), (std::vector<int>{0, 4}));
}

TEST_F(RowCommands, MoveSelectionWithGapsClosesUpAgainstTheEdge)
{
    OpenRows(6);
    Select({0, 1, 3});
    MoveRowsCommand(context, true);
    EXPECT_EQ(Stored(), (Texts{"r0", "r1", "r3", "r2", "r4", "r5"}));
    EXPECT_EQ(Table().SelectedRows(), (std::vector<int>{0, 1, 2}));
    // Packed against the top now: nothing can move, and the user hears so.
    MoveRowsCommand(context, true);
    EXPECT_EQ(ui.Beeps(), 1);
    EXPECT_EQ(Stored(), (Texts{"r0", "r1", "r3", "r2", "r4", "r5"}));

    Table().DeselectAllRows();
    Select({2, 4, 5});
    MoveRowsCommand(context, false);
    EXPECT_EQ(Stored(), (Texts{"r0", "r1", "r2", "r3", "r4", "r5"}));
}

TEST_F(RowCommands, MoveCurrentRowSkipsHiddenRows)
{
    OpenRows(4);
    Table().SetRowHidden(1, true);
    Focus(2, 2);
    MoveRowsCommand(context, true);
    // r2 trades places with r0, the row shown above it; the hidden r1 keeps its slot.
    EXPECT_EQ(Stored(), (Texts{"r2", "r1", "r0", "r3"}));
    EXPECT_EQ(FocusText(), "r2");
    EXPECT_EQ(Table().FocusColumn(), 2);
    EXPECT_TRUE(Table().IsRowHidden(1));
    MoveRowsCommand(context, true);
    EXPECT_EQ(ui.Beeps(), 1);
}

TEST_F(RowCommands, MoveOnSortedTableAsksToUnsort)
{
    const std::string refusal =
        "Rows cannot be moved when the table is sorted.  To unsort the table, right click on a "
        "column heading and choose \"Don't sort rows\".";
    OpenRows(3);
    Table().SetSort(1, false);
    Focus(1);
    ui.Expect("Move Row Down", refusal, ost::kFirstExtraButtonId);
    ui.Expect("Move Row Down", "The table is now unsorted.  Do you still want to move the row?",
              ost::kButtonYes);
    MoveRowsCommand(context, false);
    EXPECT_EQ(ui.Shown().at(0).extraButtons.at(0).tip,
              "Disable the table's sorting so that the row can be moved.");
    EXPECT_EQ(Stored(), (Texts{"r0", "r2", "r1"}));

    Table().SetSort(1, true);
    Select({0, 2});
    ui.Expect("Move Rows Up", refusal, ost::kFirstExtraButtonId);
    ui.Expect("Move Rows Up",
              "The table is now unsorted.  Do you still want to move the selected rows?",
              ost::kButtonNo);
    MoveRowsCommand(context, true);
    EXPECT_EQ(ui.Shown().at(2).extraButtons.at(0).tip,
              "Disable the table's sorting so that the selected rows can be moved.");
    EXPECT_EQ(Stored(), (Texts{"r0", "r2", "r1"}));
}

TEST(RowTextHash, WordsTailBytesAndLength)
{
    EXPECT_EQ(RowTextHash("", 0), 0x79E2BC9Du);
    std::uint32_t word;
    std::memcpy(&word, "abcd", 4);
    EXPECT_EQ(RowTextHash("abcde", 5), 0x79E2BC9Du + word + 'e' + 5);
    // Tail bytes count as signed: 0xFF adds -1.
    EXPECT_EQ(RowTextHash("\xff", 1), 0x79E2BC9Du - 1 + 1);
}

TEST_F(RowCommands, DeduplicateKeepsTheFirstOfEachGroup)
{
    Open({"a", "b"}, {{"x", "1"},
                      {"y", "1"},
                      {"same", "s"},
                      {"X", "1"},
                      {"y", "1"},
                      {"", ""},
                      {"", ""},
                      {"same", "s"},
                      {"x", "1 "},
                      {"same", "s"}});
    Focus(8);
    ui.Expect("Deduplicate Rows",
              "There are 4 rows that are duplicates of other rows.  Do you wish to discard them?",
              ost::kButtonYes);
    DeduplicateRowsCommand(context);
    // Case and a trailing space make rows different.
    EXPECT_EQ(Stored(), (Texts{"x", "y", "same", "X", "", "x"}));
    EXPECT_EQ(Stored(2), (Texts{"1", "1", "s", "1", "", "1 "}));
    EXPECT_EQ(document.CellText8(Table().FocusRow(), 2), "1 ");
    ExpectChanged();

    ui.Expect("Deduplicate Rows", "There are no duplicate rows.");
    DeduplicateRowsCommand(context);
}

TEST_F(RowCommands, DeduplicateKeepsTheCurrentRowCurrent)
{
    // Deleted rows right above the current one all count, not only those below a lowered
    // position.
    Open({"a"}, {{"a"}, {"a"}, {"a"}, {"b"}, {"c"}});
    Focus(3);
    ui.Expect("Deduplicate Rows",
              "There are 2 rows that are duplicates of other rows.  Do you wish to discard them?",
              ost::kButtonYes);
    DeduplicateRowsCommand(context);
    EXPECT_EQ(FocusText(), "b");
}

TEST_F(RowCommands, DeduplicateComparesUnicodeCellsByUnit)
{
    document.SetTextMode(true);
    document.AddColumn("", u"name");
    document.SetRowCount(3);
    document.SetCellText16(0, 1, u"caf\u00e9");
    document.SetCellText16(1, 1, u"cafe");
    document.SetCellText16(2, 1, u"caf\u00e9");
    document.SetFileOpen(true);
    EXPECT_EQ(FindDuplicateRows(Table(), true), (std::vector<int>{2}));
}

TEST_F(RowCommands, ShuffleNeedsTwoRowsAndKeepsEveryRow)
{
    OpenRows(1);
    ui.Expect("Shuffle Rows", "There must be at least two rows.");
    ShuffleRowsCommand(context);

    document.Clear();
    OpenRows(50);
    const Texts before = Stored();
    Table().SetSort(1, true);
    ShuffleRowsCommand(context);
    Texts stored = Stored();
    EXPECT_NE(stored, before);
    std::sort(stored.begin(), stored.end());
    Texts expected = before;
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(stored, expected);
    EXPECT_EQ(Table().SortColumn(), -1);
    EXPECT_EQ(Shown(), Stored());
}

TEST_F(RowCommands, DeleteAllRowsAsksFirst)
{
    OpenRows(3);
    ui.Expect("Delete All Rows", "Delete all 3 rows of the table?", ost::kButtonNo);
    DeleteAllRowsCommand(context);
    EXPECT_EQ(document.RowCount(), 3);
    ExpectUnchanged();
    ui.Expect("Delete All Rows", "Delete all 3 rows of the table?", ost::kButtonYes);
    DeleteAllRowsCommand(context);
    EXPECT_EQ(document.RowCount(), 0);
    EXPECT_EQ(Table().FocusRow(), -1);
    ExpectChanged();
}

TEST_F(RowCommands, FrameReopensTheEditorPaneAndTellsTheViewOnce)
{
    struct Counter : TableControlObserver
    {
        int resets = 0;
        void OnTableReset() override { ++resets; }
    } counter;
    OpenRows(20);
    Table().AddObserver(&counter);
    host.multiline = true;
    Select({1, 3, 5, 7, 9});
    DuplicateRowsCommand(context);
    EXPECT_EQ(counter.resets, 1);
    EXPECT_EQ(host.editorReopened, 1);
    Table().RemoveObserver(&counter);
}

} // namespace
} // namespace quirnel::test
