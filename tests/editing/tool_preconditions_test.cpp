#include "editing/tool_preconditions.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

constexpr const char* kEmpty = "This tool cannot run on an empty table.";

struct Refusal
{
    const char* name;
    unsigned flags;
    int rows;     ///< rows in a two-column table; -1 for a table without data columns
    int focusRow; ///< -1 for none
    int focusColumn;
    bool selectRow0;
    const char* text; ///< nullptr: the check passes
};

class Preconditions : public ::testing::TestWithParam<Refusal>
{};

TEST_P(Preconditions, FirstFailingTestSpeaks)
{
    const Refusal& c = GetParam();
    EditingFixture f;
    if (c.rows < 0) {
        f.document.SetFileOpen(true);
    } else {
        f.Open({"a", "b"}, {});
        f.document.SetRowCount(c.rows);
    }
    f.Focus(c.focusRow, c.focusColumn);
    if (c.selectRow0)
        f.Select({0});
    if (c.text)
        f.ui.Expect("Title", c.text);
    EXPECT_EQ(CheckToolPreconditions(f.context, c.flags, "Title", "icon"), c.text != nullptr);
    if (c.text) {
        ASSERT_EQ(f.ui.Shown().size(), 1u);
        EXPECT_EQ(f.ui.Shown()[0].icon, ost::MessageIcon::Information);
        EXPECT_EQ(f.ui.Shown()[0].buttons, unsigned{ost::kButtonOk});
        EXPECT_EQ(f.ui.Shown()[0].commandIcon, "icon");
    }
}

const char* const kColumn = "Please select a column first by clicking on any cell in the column.";
const char* const kCell = "Please click on a cell first.";
const char* const kMultiple = "This tool cannot operate on multiple rows.  Please right click on "
                              "the table and choose \"Deselect All\" first.";
const char* const kEither =
    "Either a cell must have input focus, or one or more rows must be selected.  To give a cell "
    "input focus, simply click on it.  To select rows, hold down the Ctrl key and click on cells "
    "in the first column which is labeled \"#\".";

INSTANTIATE_TEST_SUITE_P(
    Order, Preconditions,
    ::testing::Values(
        Refusal{"NoDataColumns", 0, -1, -1, -1, false, kEmpty},
        Refusal{"NoDataColumnsAllowed", 0x10, -1, -1, -1, false, nullptr},
        // Columns are tested before rows, rows before two rows, two rows before the cell.
        Refusal{"ColumnsBeforeRows", 0x08 | 0x80 | 0x01, -1, -1, -1, false, kEmpty},
        Refusal{"NoRows", 0x08 | 0x80, 0, -1, -1, false, kEmpty},
        Refusal{"OneRowOfTwo", 0x80 | 0x01, 1, -1, -1, false, "There must be at least two rows."},
        Refusal{"ColumnBeforeCell", 0x20 | 0x01, 3, -1, -1, false, kColumn},
        Refusal{"IndexColumnIsNoColumn", 0x20, 3, 1, 0, false, kColumn},
        Refusal{"ColumnWithoutRowPasses", 0x20, 3, -1, 2, false, nullptr},
        Refusal{"CellNeedsRow", 0x01, 3, -1, 2, false, kCell},
        Refusal{"CellBeforeSelection", 0x01 | 0x02, 3, -1, -1, true, kCell},
        Refusal{"SelectionRefused", 0x02 | 0x04, 3, 0, 1, true, kMultiple},
        Refusal{"NeitherCellNorSelection", 0x04, 3, -1, -1, false, kEither},
        Refusal{"SelectionWithoutCell", 0x04, 3, -1, -1, true, nullptr},
        Refusal{"CellWithoutSelection", 0x04 | 0x01 | 0x20 | 0x08 | 0x80, 3, 2, 2, false, nullptr}),
    [](const auto& param) { return std::string(param.param.name); });

TEST(CheckToolPreconditions, NoFileOffersOpenAndStops)
{
    EditingFixture f;
    f.ui.Expect("Create Row", "You must first open a file.", ost::kButtonCancel);
    EXPECT_TRUE(CheckToolPreconditions(f.context, 0x100, "Create Row", "row-create"));
    const ost::MessageBoxRequest& box = f.ui.Shown().at(0);
    ASSERT_EQ(box.extraButtons.size(), 1u);
    EXPECT_EQ(box.extraButtons[0].caption, "`Open File");
    EXPECT_EQ(box.extraButtons[0].tip, "Open an existing CSV file.");
    EXPECT_EQ(box.commandIcon, "row-create");
}

TEST(CheckToolPreconditions, NewFileButtonStandsBeforeOpenFile)
{
    EditingFixture f;
    f.ui.Expect("T", "You must first open a file or create a new one.", ost::kButtonCancel);
    EXPECT_TRUE(CheckToolPreconditions(f.context, 0x40, "T", ""));
    const auto& buttons = f.ui.Shown().at(0).extraButtons;
    ASSERT_EQ(buttons.size(), 2u);
    EXPECT_EQ(buttons[0].caption, "`New File");
    EXPECT_EQ(buttons[0].tip, "Create a new CSV file.");
    EXPECT_EQ(buttons[1].caption, "`Open File");
}

TEST(CheckToolPreconditions, GoesOnAfterOpeningOnlyWithBit100)
{
    struct Case
    {
        unsigned flags;
        bool opens;
        bool stops;
    };
    for (const Case& c : {Case{0x100 | 0x10, true, false}, Case{0x10, true, true},
                          Case{0x100 | 0x10, false, true}}) {
        EditingFixture f;
        int opened = 0;
        f.host.openFile = [&] {
            ++opened;
            if (c.opens)
                f.document.SetFileOpen(true);
            return true;
        };
        f.ui.Expect("T", "You must first open a file.", ost::kFirstExtraButtonId + 1);
        EXPECT_EQ(CheckToolPreconditions(f.context, c.flags, "T", ""), c.stops) << c.flags;
        EXPECT_EQ(opened, 1);
    }
}

TEST(CheckToolPreconditions, NewFileRunsNewAndTheRemainingTestsFollow)
{
    EditingFixture f;
    f.host.newFile = [&] {
        f.document.SetFileOpen(true);
        return true;
    };
    // The new file has no data columns yet: the next test speaks.
    f.ui.Expect("T", "You must first open a file or create a new one.", ost::kFirstExtraButtonId);
    f.ui.Expect("T", kEmpty);
    EXPECT_TRUE(CheckToolPreconditions(f.context, 0x40 | 0x100, "T", ""));
}

TEST(CheckToolPreconditions, CancelledOpenStops)
{
    EditingFixture f;
    f.host.openFile = [] { return false; };
    f.ui.Expect("T", "You must first open a file.", ost::kFirstExtraButtonId + 1);
    EXPECT_TRUE(CheckToolPreconditions(f.context, 0x100 | 0x10, "T", ""));
}

} // namespace
} // namespace quirnel::test
