// The warnings list's commands over a list double: visibility follows the open file, dismissing
// never marks the file modified, and Go to row never moves to a row that is not there.

#include "editing/tool_context.h"
#include "editing/warnings_commands.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

class ListDouble : public WarningsList
{
public:
    int SelectedLine() const override { return selected; }
    bool DeleteLine(int line) override
    {
        if (line < 0 || line >= static_cast<int>(lines.size()))
            return false;
        lines.erase(lines.begin() + line);
        return true;
    }
    void Refill(const TableDocument& document) override
    {
        lines.clear();
        for (const CSV_Warning& warning : document.Warnings())
            lines.push_back(warning.message);
        ++refills;
    }
    void ShowPane(bool on) override { shown = on; }
    void FocusTable() override { ++tableFocused; }

    std::vector<std::string> lines;
    int selected = -1;
    int refills = 0;
    bool shown = false;
    int tableFocused = 0;
};

struct Warnings : EditingFixture, ::testing::Test
{
    Warnings()
    {
        Open({"a", "b"}, {{"1", "2"}, {"3", "4"}, {"5", "6"}});
        document.AddWarning("Comments were detected.  They will be lost if you save the file.", -1);
        document.AddWarning("Row 2 only contains 1 column.", 1);
        document.AddWarning("Row 3 has 2 extra columns: ", 2, "x, y");
        list.Refill(document);
        list.shown = true;
    }
    std::vector<std::string> MenuTexts(int line) const
    {
        std::vector<std::string> texts;
        for (const MenuEntry& entry : WarningsContextMenu(document, line))
            texts.push_back(entry.text);
        return texts;
    }

    ListDouble list;
    bool visible = true;
};

TEST_F(Warnings, DismissingTheLastWarningHidesThePaneAndLeavesTheFileUnmodified)
{
    list.selected = 1;
    DismissWarningCommand(context, list, visible);
    EXPECT_EQ(list.lines, (std::vector<std::string>{
                              "Comments were detected.  They will be lost if you save the file.",
                              "Row 3 has 2 extra columns: "}));
    EXPECT_EQ(document.Warnings()[1].extraData, "x, y");
    list.selected = 0;
    DismissWarningCommand(context, list, visible);
    DismissWarningCommand(context, list, visible);
    EXPECT_TRUE(document.Warnings().empty());
    EXPECT_FALSE(visible);
    EXPECT_FALSE(list.shown);
    EXPECT_FALSE(document.Modified());
    // Shown again, the list is empty.
    ToggleWarnings(document, list, visible);
    EXPECT_TRUE(visible);
    EXPECT_TRUE(list.shown);
    EXPECT_TRUE(list.lines.empty());
}

TEST_F(Warnings, NothingSelectedOrOutOfRangeDoesNothing)
{
    for (int line : {-1, 3}) {
        list.selected = line;
        DismissWarningCommand(context, list, visible);
        GoToWarningCommand(context, list);
        CopyWarningExtraDataCommand(context, list);
        EXPECT_TRUE(MenuTexts(line).empty());
    }
    EXPECT_EQ(document.Warnings().size(), 3u);
    EXPECT_EQ(list.tableFocused, 0);
    EXPECT_EQ(clipboard.writes, 0);
}

TEST_F(Warnings, ToggleWithNoFileOpenLeavesThePaneHidden)
{
    document.SetFileOpen(false);
    ToggleWarnings(document, list, visible);
    EXPECT_FALSE(visible);
    EXPECT_FALSE(list.shown);
    ToggleWarnings(document, list, visible);
    EXPECT_FALSE(visible) << "with no file open the flag always stores false";
    EXPECT_FALSE(SetWarningsVisible(document, list, visible, true));
}

TEST_F(Warnings, GoToRowMovesOnlyToARowThatExists)
{
    Focus(0, 2);
    list.selected = 2;
    GoToWarningCommand(context, list);
    EXPECT_EQ(document.Table().FocusRow(), 2);
    EXPECT_EQ(document.Table().FocusColumn(), 2);
    // No row: the table gets the focus, the cell stays.
    list.selected = 0;
    GoToWarningCommand(context, list);
    EXPECT_EQ(document.Table().FocusRow(), 2);
    // The warning's row was deleted since.
    document.Table().DeleteRows(1, 2);
    Focus(0, 1);
    list.selected = 1;
    GoToWarningCommand(context, list);
    EXPECT_EQ(document.Table().FocusRow(), 0);
    EXPECT_EQ(list.tableFocused, 3);
}

TEST_F(Warnings, ContextMenuOffersCopyOnlyForExtraData)
{
    EXPECT_EQ(MenuTexts(0), (std::vector<std::string>{"Go to row\tDbl Click", "Dismiss"}));
    EXPECT_EQ(MenuTexts(1), (std::vector<std::string>{"Go to row\tDbl Click", "Dismiss"}));
    EXPECT_EQ(MenuTexts(2),
              (std::vector<std::string>{"Go to row\tDbl Click", "Dismiss", "Copy extra data"}));
}

TEST_F(Warnings, CopyExtraDataPutsTheExtraFieldsOnTheClipboard)
{
    list.selected = 1;
    CopyWarningExtraDataCommand(context, list);
    EXPECT_EQ(clipboard.writes, 0);
    list.selected = 2;
    CopyWarningExtraDataCommand(context, list);
    EXPECT_EQ(clipboard.formats.at("text/plain"), "x, y");
}

} // namespace
} // namespace quirnel::test
